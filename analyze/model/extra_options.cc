// QVInsertUnit of the one driver model whose insert unit is reported as a tray.
#include <array>
#include <string_view>

#include "analyze/document_keys.h"
#include "analyze/model/extra_options.h"
#include "analyze/model/model_matrix.h"
#include "info_analyze/model_options.h"

namespace ia {
namespace {

constexpr std::string_view kModelWithExtraOptions = "RA-Z5";

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

std::int32_t Find(const char* code) noexcept { return HasExtraOptions(code) ? 0 : IA_OTHER_MODELS; }

bool Describe(std::int32_t index, ModelRow& source) noexcept {
  if (index != 0 && index != IA_OTHER_MODELS) return false;
  source = {"", 0, nullptr, 0};
  if (index == 0) {
    source = {kModelWithExtraOptions.data(), 1, IA_NAME_OF(analyze_GetExtraOptionStringROWAN),
              SetOf(Input::kTrayAlias)};
  }
  return true;
}

}  // namespace

constinit const ModelColumn kExtraOptionsColumn{Find, Describe};

bool HasExtraOptions(const char* model_code) noexcept {
  return model_code != nullptr && kModelWithExtraOptions == model_code;
}

std::int32_t SetExtraOptions(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  constexpr std::int32_t kDocument = IA_DOCUMENT_TRAY_LIST;
  const char* value = nullptr;
  std::int32_t status = 0;
  for (std::int32_t item = 0; item < context->documents[kDocument].count && value == nullptr;
       ++item) {
    LongArray<1> alias(Input::kTrayAlias);
    status = ReadListItem(context, kDocument, item, {alias.Key()});
    if (status == 0 && alias.Count() > 0) value = ValueOfTray(alias.Data()[0]);
  }
  if (value == nullptr && target.with_defaults) value = kExtraOption.default_value;
  if (value != nullptr) OptionList_Add(target.list, kExtraOption.keyword, value);
  return status;
}

}  // namespace ia

int32_t analyze_GetExtraOptionStringROWAN(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::SetExtraOptions(context, {options, true});
}
