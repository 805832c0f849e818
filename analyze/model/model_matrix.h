// The model tables as they are told of: a column for each option family.
#ifndef ANALYZE_MODEL_MODEL_MATRIX_H_
#define ANALYZE_MODEL_MODEL_MATRIX_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "analyze/inputs.h"
#include "analyze/model_row.h"
#include "info_analyze/model_options.h"
#include "info_analyze/provenance.h"

namespace ia {

// A handler of model tables, and what it looks at.
template <class Function>
struct HandlerSource {
  Function function;
  const char* name;
  std::uint64_t inputs;
};

#define IA_HANDLER_SOURCE(handler, inputs) \
  { handler, IA_NAME_OF(handler), inputs }

using FinisherHandlerSources = std::span<const HandlerSource<FinisherOptionHandler>>;
using InputHandlerSources = std::span<const HandlerSource<InputOptionHandler>>;

// Each family's handlers stand beside their functions.
extern const FinisherHandlerSources kFinisherHandlers;
extern const FinisherHandlerSources kCopyTrayHandlers;
extern const FinisherHandlerSources kFinTrayHandlers;
extern const InputHandlerSources kSidePaperDeckHandlers;
extern const InputHandlerSources kSourceOptionHandlers;
extern const InputHandlerSources kMediaTypeHandlers;
extern const InputHandlerSources kEnvelopeFeederHandlers;

struct ModelColumn {
  std::int32_t (*find)(const char* code) noexcept;                  // IA_OTHER_MODELS: none
  bool (*describe)(std::int32_t index, ModelRow& source) noexcept;  // false: no such row
};

// Each column stands beside its table.
extern const ModelColumn kFinisherColumn;
extern const ModelColumn kCopyTrayColumn;
extern const ModelColumn kFinTrayColumn;
extern const ModelColumn kSidePaperDeckColumn;
extern const ModelColumn kSourceOptionColumn;
extern const ModelColumn kMediaTypeColumn;
extern const ModelColumn kEnvelopeFeederColumn;
extern const ModelColumn kPuncherColumn;
extern const ModelColumn kFinishingFunctionColumn;
extern const ModelColumn kExtraOptionsColumn;

// The slot of a row that an option family has, for a table and the row of models without one.
template <class Row, const auto& kTable, const Row& kOthers, auto kSlot, const auto& kHandlers>
struct ColumnOf {
  static std::int32_t Find(const char* code) noexcept {
    const Row* const row = FindModel<Row>(kTable, code);
    return row != nullptr ? static_cast<std::int32_t>(row - kTable.data()) : IA_OTHER_MODELS;
  }

  static bool Describe(std::int32_t index, ModelRow& source) noexcept {
    if (index < IA_OTHER_MODELS || index >= static_cast<std::int32_t>(kTable.size())) return false;
    const Row& row = index < 0 ? kOthers : kTable[static_cast<std::size_t>(index)];
    source = {row.model.data(), 0, nullptr, 0};
    for (const auto& handler : kHandlers) {
      if (handler.function != row.*kSlot) continue;
      source.handler = handler.name;
      source.inputs = handler.inputs;
    }
    return true;
  }

  static constexpr ModelColumn kColumn{Find, Describe};
};

}  // namespace ia

#endif  // ANALYZE_MODEL_MODEL_MATRIX_H_
