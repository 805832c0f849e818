// The model tables by option family: a column for each.
#ifndef ANALYZE_MODEL_MODEL_MATRIX_H_
#define ANALYZE_MODEL_MODEL_MATRIX_H_

#include <cstddef>
#include <cstdint>
#include <optional>

#include "analyze/inputs.h"
#include "analyze/model_row.h"
#include "info_analyze/provenance.h"

namespace ia {

// One family's part of a row.
struct ModelCell {
  const char* code;         // "": other models
  const char* handler;      // exported name; null: none
  const InputList* inputs;  // of the handler; null: none
  bool is_whole_code;
};

struct ModelColumn {
  std::int32_t (*find)(const char* code) noexcept;              // IA_OTHER_MODELS: none
  std::optional<ModelCell> (*cell)(std::int32_t row) noexcept;  // nothing: no such row
};

// Each column is defined in the file of its table.
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

// A family's slot in the rows of a table, and in the row of models without one.
template <class Row, const auto& kTable, const Row& kOthers, auto kSlot>
struct ColumnOf {
  static std::int32_t Find(const char* code) noexcept {
    const Row* const row = FindModel<Row>(kTable, code);
    return row != nullptr ? static_cast<std::int32_t>(row - kTable.data()) : IA_OTHER_MODELS;
  }

  static std::optional<ModelCell> Cell(std::int32_t index) noexcept {
    if (index < IA_OTHER_MODELS || index >= static_cast<std::int32_t>(kTable.size())) return {};
    const Row& row = index < 0 ? kOthers : kTable[static_cast<std::size_t>(index)];
    const auto* const handler = row.*kSlot;
    return ModelCell{.code = row.model.data(),
                     .handler = handler != nullptr ? handler->name : nullptr,
                     .inputs = handler != nullptr ? &handler->inputs : nullptr,
                     .is_whole_code = false};
  }

  static constexpr ModelColumn kColumn{Find, Cell};
};

}  // namespace ia

#endif  // ANALYZE_MODEL_MODEL_MATRIX_H_
