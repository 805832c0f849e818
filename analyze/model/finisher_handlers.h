// The handlers of finisher options, each defined in the file of its option.
#ifndef ANALYZE_MODEL_FINISHER_HANDLERS_H_
#define ANALYZE_MODEL_FINISHER_HANDLERS_H_

#include <cstdint>
#include <initializer_list>

#include "analyze/model/finisher_report.h"
#include "analyze/model/handler.h"
#include "info_analyze/model_options.h"

namespace ia {

using FinisherHandler =
    Handler<FinisherOptionHandler, std::int32_t (*)(const FinisherCall&) noexcept>;

extern const FinisherHandler kFinisherCommon;
extern const FinisherHandler kFinisherSpecialIn2TrayCommon;
extern const FinisherHandler kFinisherAspen;
extern const FinisherHandler kFinisherFir;
extern const FinisherHandler kFinisherBeech;
extern const FinisherHandler kFinisherBirch;
extern const FinisherHandler kFinisherCedar;
extern const FinisherHandler kFinisherHazel;
extern const FinisherHandler kFinisherMaple;
extern const FinisherHandler kFinisherSpruce;
extern const FinisherHandler kFinisherWillow;
extern const FinisherHandler kFinisherSumac;
extern const FinisherHandler kFinisherHickory;
extern const FinisherHandler kFinisherWalnut;
extern const FinisherHandler kCopyTrayCommon;
extern const FinisherHandler kCopyTrayAspen;
extern const FinisherHandler kCopyTrayFir;
extern const FinisherHandler kCopyTrayCedar;
extern const FinisherHandler kCopyTrayBeech;
extern const FinisherHandler kCopyTrayBirch;
extern const FinisherHandler kCopyTrayHazel;
extern const FinisherHandler kCopyTrayMaple;
extern const FinisherHandler kFinTrayCommon;
extern const FinisherHandler kFinTrayAlder;
extern const FinisherHandler kFinTrayAspen;
extern const FinisherHandler kFinTrayFir;
extern const FinisherHandler kFinTrayBeech;
extern const FinisherHandler kFinTrayBirch;
extern const FinisherHandler kFinTrayHazel;
extern const FinisherHandler kFinTrayMaple;
extern const FinisherHandler kFinTrayMyrtle;
extern const FinisherHandler kFinTrayWillow;
extern const FinisherHandler kFinTraySumac;
extern const FinisherHandler kFinTrayHornbeam;

// What the exported functions of handlers do.
std::int32_t Apply(const FinisherHandler& handler, const FinisherCall& call) noexcept;

// Runs the handlers of a row in their order, each with its option row. One that fails ends the run;
// null: an empty slot.
void RunHandlers(std::initializer_list<const FinisherHandler*> handlers,
                 FinisherCall call) noexcept;

}  // namespace ia

#endif  // ANALYZE_MODEL_FINISHER_HANDLERS_H_
