#include "analyze/model/model_matrix.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "analyze/record_copy.h"

namespace ia {
namespace {

// In the order of the families' numbers.
constexpr auto kColumns = std::to_array<const ModelColumn*>({
    &kFinisherColumn,
    &kCopyTrayColumn,
    &kFinTrayColumn,
    &kSidePaperDeckColumn,
    &kSourceOptionColumn,
    &kMediaTypeColumn,
    &kEnvelopeFeederColumn,
    &kPuncherColumn,
    &kFinishingFunctionColumn,
    &kExtraOptionsColumn,
});
static_assert(kColumns.size() == IA_FAMILY_COUNT);

const ModelColumn* FindColumn(std::int32_t family) noexcept {
  if (family < 0 || family >= IA_FAMILY_COUNT) return nullptr;
  return kColumns[static_cast<std::size_t>(family)];
}

std::optional<ModelCell> FindCell(std::int32_t family, std::int32_t row) noexcept {
  const ModelColumn* const column = FindColumn(family);
  if (column == nullptr) return {};
  return column->cell(row);
}

}  // namespace
}  // namespace ia

int32_t Analyze_Provenance_FindModelRow(int32_t family, const char* model_code) noexcept {
  const ia::ModelColumn* const column = ia::FindColumn(family);
  return column != nullptr ? column->find(model_code) : IA_OTHER_MODELS;
}

int32_t Analyze_Provenance_GetModelRow(int32_t family, int32_t row, ModelRow* source,
                                       size_t size) noexcept {
  const std::optional<ia::ModelCell> cell = ia::FindCell(family, row);
  if (!cell) return 0;
  const ModelRow record = {.code = cell->code,
                           .handler = cell->handler,
                           .whole_code = cell->is_whole_code ? 1 : 0,
                           .input_count = cell->inputs != nullptr ? cell->inputs->Count() : 0};
  return ia::CopyRecord(record, record.input_count, source, size);
}

int32_t Analyze_Provenance_GetModelRowInput(int32_t family, int32_t row, int32_t index) noexcept {
  const std::optional<ia::ModelCell> cell = ia::FindCell(family, row);
  return cell && cell->inputs != nullptr ? cell->inputs->At(index) : IA_NO_INPUT;
}
