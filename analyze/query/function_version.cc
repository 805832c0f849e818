// Which protocol and script flags a driver function version selects.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>

#include "info_analyze/analyzer.h"
#include "info_analyze/option_list.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"

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

// One of them is in each of these keys.
constexpr std::string_view kSource = "QVAnlz_FuncVer_";
constexpr std::string_view kTarget = "QV_Prot_";
static_assert(std::ranges::all_of(kFlagKeys, [](const FlagKeys& keys) {
  return std::string_view(keys.source).starts_with(kSource) &&
         (keys.target == nullptr || std::string_view(keys.target).starts_with(kTarget));
}));

// The keys carry the hexadecimal digits of a version as a decimal number (0x0310: 310), up to the
// first letter.
std::int32_t NumberInKeys(std::uint32_t version) noexcept {
  char digits[9];  // of 32 bits, and a NUL
  std::snprintf(digits, sizeof digits, "%x", version);
  return ParseInt32(digits, 10);
}

struct TableDeleter {
  void operator()(OptTable* head) const noexcept { FreeTable(head); }
};
using TablePtr = std::unique_ptr<OptTable, TableDeleter>;

// Copies of the entries that function versions depend on, in their order, so that each key and flag
// searches fewer entries. Nullopt when an allocation fails.
std::optional<TablePtr> FlagEntries(const OptTable* table) noexcept {
  TablePtr entries;
  OptTable* last = nullptr;
  for (const OptTable* node = table; node != nullptr; node = node->next) {
    if (node->key == nullptr) continue;
    const std::string_view key = node->key;
    if (!ContainsIgnoringCase(key, kSource) && !ContainsIgnoringCase(key, kTarget)) continue;
    OptTable* const entry = CopyOf(*node).release();
    if (entry == nullptr) return std::nullopt;
    if (last == nullptr) {
      entries.reset(entry);
    } else {
      last->next = entry;
    }
    last = entry;
  }
  return entries;
}

// Adds the flags that the source key has for the version and for lower ones.
std::int32_t AddFlags(OptTable* table, const FlagKeys& keys, std::int32_t version,
                      OptionList* options) noexcept {
  OptTable* cursor = table;
  char* value = nullptr;
  std::int32_t status = 0;
  while (status == 0 && OptionList_Get_FlagValue(&cursor, keys.source, version, &value) == 1) {
    status = keys.target != nullptr ? OptionList_Set_FlagValue(table, keys.target, value, options)
                                    : OptionList_Set_ArrrayFlagValue(value, options);
  }
  return status;
}

}  // namespace
}  // namespace ia

int32_t Analyze_Info_FromFunctionVersion(AnalyzeContext* context, uint32_t function_version,
                                         OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  const auto entries = ia::FlagEntries(context->ppd_options);
  if (!entries) return -1;
  const int32_t number = ia::NumberInKeys(function_version);
  for (const ia::FlagKeys& keys : ia::kFlagKeys) {
    const int32_t status = ia::AddFlags(entries->get(), keys, number, options);
    if (status != 0) return status;
  }
  return 0;
}

int32_t z_Update_FuncVer(AnalyzeContext* context, const char* source_key, int32_t version,
                         const char* target_key, OptionList* options) noexcept {
  if (context == nullptr || source_key == nullptr || options == nullptr) return -1;
  return ia::AddFlags(context->ppd_options, {source_key, target_key}, version, options);
}
