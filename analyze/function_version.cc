// Which protocol and script flags a driver function version selects.
#include <array>
#include <cstdio>

#include "analyze/model/extra_options.h"
#include "analyze/update_handlers.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/model_options.h"
#include "info_analyze/option_list.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ascii.h"

namespace ia {
namespace {

struct FlagKeys {
  const char* source;
  const char* target;  // null: the values are "key:value" items
};

constexpr auto kFlagKeys = std::to_array<FlagKeys>({
    {"QVAnlz_FuncVer_UI", nullptr},
    {"QVAnlz_FuncVer_CommonFlag", "QV_Prot_CommonFlag"},
    {"QVAnlz_FuncVer_JobScriptFlag", "QV_Prot_JobScriptFlag"},
    {"QVAnlz_FuncVer_BinderScriptFlag", "QV_Prot_BinderScriptFlag"},
    {"QVAnlz_FuncVer_DocumentScriptFlag", "QV_Prot_DocumentScriptFlag"},
    {"QVAnlz_FuncVer_CJLScriptFlag", "QV_Prot_CJLScriptFlag"},
});

// The keys carry the hexadecimal digits of a version as a decimal number (0x0310: 310), up to the
// first letter.
std::int32_t NumberInKeys(std::uint32_t version) noexcept {
  char digits[9];  // of 32 bits, and a NUL
  std::snprintf(digits, sizeof digits, "%x", version);
  return ParseInt32(digits, 10);
}

constexpr auto kExtraOptions = std::to_array<OptionSource>({kExtraOption});

std::int32_t UpdateExtra(AnalyzeContext* context, const OptionTarget& target) noexcept {
  if (context == nullptr || target.list == nullptr) return -1;
  return HasExtraOptions(context->driver_name) ? SetExtraOptions(context, target) : 0;
}

}  // namespace

IA_DEFINE_UPDATE(kExtraUpdate, z_Update_Prn_extra, IA_GUARD_FLAGS, UpdateExtra, kExtraOptions);

}  // namespace ia

int32_t Analyze_Info_FromFunctionVersion(AnalyzeContext* context, uint32_t function_version,
                                         OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  const int32_t number = ia::NumberInKeys(function_version);
  for (const ia::FlagKeys& keys : ia::kFlagKeys) {
    const int32_t status = z_Update_FuncVer(context, keys.source, number, keys.target, options);
    if (status != 0) return status;
  }
  return 0;
}

int32_t z_Update_FuncVer(AnalyzeContext* context, const char* source_key, int32_t version,
                         const char* target_key, OptionList* options) noexcept {
  if (context == nullptr || source_key == nullptr || options == nullptr) return -1;
  OptTable* cursor = context->ppd_options;
  char* value = nullptr;
  int32_t status = 0;
  while (status == 0 && OptionList_Get_FlagValue(&cursor, source_key, version, &value) == 1) {
    status = target_key != nullptr
                 ? OptionList_Set_FlagValue(context->ppd_options, target_key, value, options)
                 : OptionList_Set_ArrrayFlagValue(value, options);
  }
  return status;
}

int32_t z_Update_Prn_extra(AnalyzeContext* context, OptionList* options) noexcept {
  return ia::UpdateExtra(context, {options, true});
}
