// Which protocol and script flags a driver function version selects.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

#include "info_analyze/analyzer.h"
#include "info_analyze/option_list.h"
#include "info_analyze/printer_updates.h"
#include "info_common/ascii.h"
#include "info_common/flag_keys.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

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

// One of them is in each of these keys. Most other keys have no underscore.
constexpr std::string_view kSource = "QVAnlz_FuncVer_";
constexpr std::string_view kTarget = "QV_Prot_";
constexpr std::size_t kFirstCapacity = 16;  // of entries
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

// Entries of a table in their order, as a list in one array. Its nodes borrow their texts.
class BorrowedEntries {
 public:
  // The list; null when it is empty. No entry may be added afterwards.
  [[nodiscard]] OptTable* Link() noexcept {
    for (std::size_t i = 1; i < count_; ++i) nodes_[i - 1].next = &nodes_[i];
    return nodes_.get();
  }
  // The entry that was appended last is not appended again. False when an allocation fails.
  [[nodiscard]] bool Append(const OptTable& node) noexcept {
    if (count_ > 0 && nodes_[count_ - 1].key == node.key) return true;
    if (count_ == capacity_) {
      capacity_ = std::max(kFirstCapacity, 2 * capacity_);
      if (!Resize(nodes_, capacity_)) return false;
    }
    nodes_[count_++] = {.key = node.key, .value = node.value, .next = nullptr};
    return true;
  }

 private:
  CPtr<OptTable[]> nodes_;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
};

// The entries that function versions depend on. One whose key holds several sources is in the list
// of each.
struct FlagEntries {
  std::array<BorrowedEntries, kFlagKeys.size()> of_source;
  BorrowedEntries of_targets;

  // False when an allocation fails.
  [[nodiscard]] bool Collect(const OptTable* table) noexcept {
    for (const OptTable* node = table; node != nullptr; node = node->next) {
      if (node->key == nullptr || std::strchr(node->key, '_') == nullptr) continue;
      if (!AddToSources(*node)) return false;
      if (ContainsIgnoringCase(node->key, kTarget) && !of_targets.Append(*node)) return false;
    }
    return true;
  }

 private:
  [[nodiscard]] bool AddToSources(const OptTable& node) noexcept {
    const std::string_view key = node.key;
    for (std::size_t at = FindIgnoringCase(key, kSource); at != key.npos;
         at = FindIgnoringCase(key, kSource, at + 1)) {
      const std::string_view end_of_source = RestOf(key, at + kSource.size());
      for (std::size_t i = 0; i < kFlagKeys.size(); ++i) {
        const std::string_view end = RestOf(kFlagKeys[i].source, kSource.size());
        if (HasPrefixIgnoringCase(end_of_source, end) && !of_source[i].Append(node)) return false;
      }
    }
    return true;
  }
};

// Calls set(value) for each value that the source key has for the version and for lower ones, until
// it returns non-zero.
template <class Set>
std::int32_t ForEachValue(OptTable* table, const char* source, std::int32_t version,
                          Set set) noexcept {
  OptTable* cursor = table;
  char* value = nullptr;
  std::int32_t status = 0;
  while (status == 0 && OptionList_Get_FlagValue(&cursor, source, version, &value) == 1) {
    status = set(value);
  }
  return status;
}

std::int32_t AddItems(OptTable* sources, const char* source, std::int32_t version,
                      OptionList& options) noexcept {
  return ForEachValue(sources, source, version, [&](const char* value) noexcept {
    return OptionList_Set_ArrrayFlagValue(value, &options);
  });
}

std::int32_t AddFlags(OptTable* sources, const OptTable* targets, const FlagKeys& keys,
                      std::int32_t version, OptionList& options) noexcept {
  if (keys.target == nullptr) return AddItems(sources, keys.source, version, options);
  std::optional<FlagAdder> adder;
  return ForEachValue(sources, keys.source, version, [&](const char* value) noexcept {
    if (!adder) adder.emplace(targets, keys.target, options);
    return adder->Add(value);
  });
}

}  // namespace
}  // namespace ia

int32_t Analyze_Info_FromFunctionVersion(AnalyzeContext* context, uint32_t function_version,
                                         OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  ia::FlagEntries entries;
  if (!entries.Collect(context->ppd_options)) return -1;
  const OptTable* const targets = entries.of_targets.Link();
  const int32_t number = ia::NumberInKeys(function_version);
  for (std::size_t i = 0; i < ia::kFlagKeys.size(); ++i) {
    const int32_t status =
        ia::AddFlags(entries.of_source[i].Link(), targets, ia::kFlagKeys[i], number, *options);
    if (status != 0) return status;
  }
  return 0;
}

int32_t z_Update_FuncVer(AnalyzeContext* context, const char* source_key, int32_t version,
                         const char* target_key, OptionList* options) noexcept {
  if (context == nullptr || source_key == nullptr || options == nullptr) return -1;
  OptTable* const table = context->ppd_options;
  if (target_key == nullptr) return ia::AddItems(table, source_key, version, *options);
  return ia::ForEachValue(table, source_key, version, [&](const char* value) noexcept {
    return OptionList_Set_FlagValue(table, target_key, value, options);
  });
}
