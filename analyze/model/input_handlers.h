// The handlers of paper-source options, each defined in the file of its option.
#ifndef ANALYZE_MODEL_INPUT_HANDLERS_H_
#define ANALYZE_MODEL_INPUT_HANDLERS_H_

#include <cstdint>
#include <initializer_list>

#include "analyze/model/handler.h"
#include "analyze/model/tray_report.h"
#include "info_analyze/model_options.h"

namespace ia {

using InputHandler = Handler<InputOptionHandler, std::int32_t (*)(const InputCall&) noexcept>;

extern const InputHandler kSidePaperDeckCommon;
extern const InputHandler kSidePaperDeckCypress;
extern const InputHandler kSidePaperDeckOak;
extern const InputHandler kSrcOptionCommon;
extern const InputHandler kSrcOptionCommonByCount;
extern const InputHandler kSrcOptionLaurel;
extern const InputHandler kSrcOptionMyrtle;
extern const InputHandler kSrcOptionElm;
extern const InputHandler kSrcOptionOlive;
extern const InputHandler kSrcOptionSpruce;
extern const InputHandler kSrcOptionCypress;
extern const InputHandler kSrcOptionHolly;
extern const InputHandler kSrcOptionOak;
extern const InputHandler kSrcOptionRowan;
extern const InputHandler kSrcOptionRedwood;
extern const InputHandler kMediaTypeCommon;
extern const InputHandler kMediaTypeCypress;
extern const InputHandler kMediaTypeYew;
extern const InputHandler kMediaTypeRedwood;
extern const InputHandler kEnvelopeFeederCommon;

// What the exported functions of handlers do.
std::int32_t Apply(const InputHandler& handler, const InputCall& call) noexcept;

// Runs the handlers of a row in their order. One that fails ends the run; null: an empty slot.
void RunHandlers(std::initializer_list<const InputHandler*> handlers,
                 const InputCall& call) noexcept;

}  // namespace ia

#endif  // ANALYZE_MODEL_INPUT_HANDLERS_H_
