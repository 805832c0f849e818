#include "analyze/model/model_matrix.h"

#include <array>

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

}  // namespace
}  // namespace ia

int32_t Analyze_Provenance_FindModelRow(int32_t family, const char* model_code) noexcept {
  const ia::ModelColumn* const column = ia::FindColumn(family);
  return column != nullptr ? column->find(model_code) : IA_OTHER_MODELS;
}

int32_t Analyze_Provenance_GetModelRow(int32_t family, int32_t row, ModelRow* source) noexcept {
  const ia::ModelColumn* const column = ia::FindColumn(family);
  if (column == nullptr || source == nullptr) return 0;
  return column->describe(row, *source) ? 1 : 0;
}
