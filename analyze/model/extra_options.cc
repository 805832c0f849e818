// QVInsertUnit of the one driver model whose insert unit is reported as a tray.
#include <array>

#include "analyze/document_keys.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

struct InsertUnit {
  std::int32_t alias;
  const char* value;
};
constexpr auto kInsertUnits = std::to_array<InsertUnit>({
    {196, "INSU1"},
    {198, "MINSU1"},
});

const char* ValueOfTray(std::int32_t alias) noexcept {
  for (const InsertUnit& unit : kInsertUnits) {
    if (unit.alias == alias) return unit.value;
  }
  return nullptr;
}

}  // namespace
}  // namespace ia

int32_t analyze_GetExtraOptionStringROWAN(AnalyzeContext* context, OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  constexpr int32_t kDocument = IA_DOCUMENT_TRAY_LIST;
  const char* value = nullptr;
  int32_t status = 0;
  for (int32_t item = 0; item < context->documents[kDocument].count && value == nullptr; ++item) {
    ia::LongArray<1> alias(kDocument, "alias");
    status = ia::ReadListItem(context, kDocument, item, {alias.Key()});
    if (status == 0 && alias.Count() > 0) value = ia::ValueOfTray(alias.Data()[0]);
  }
  OptionList_Add(options, "QVInsertUnit", value != nullptr ? value : "None");
  return status;
}
