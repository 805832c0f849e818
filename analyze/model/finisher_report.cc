#include "analyze/model/finisher_report.h"

#include <algorithm>
#include <cstddef>

#include "info_common/owned.h"

static_assert(sizeof(FinisherEntry) == 2 * sizeof(void*));
static_assert(offsetof(FinisherEntry, name) == 1 * sizeof(void*));
static_assert(sizeof(AccessoryBinRule) == 2 * sizeof(void*));
static_assert(offsetof(AccessoryBinRule, accessory_name) == 1 * sizeof(void*));

namespace ia {

bool FinisherReport::HasAlias(AliasRange range) const noexcept {
  return analyze_CheckBinAlias(aliases.data(), static_cast<std::int32_t>(aliases.size()), range.low,
                               range.high) != 0;
}

bool FinisherReport::HasNameBeginningWith(std::string_view beginning) const noexcept {
  return std::ranges::any_of(
      finishers, [&](const FinisherEntry& finisher) { return BeginsWith(finisher, beginning); });
}

bool BeginsWith(const FinisherEntry& finisher, std::string_view beginning) noexcept {
  return finisher.name != nullptr && std::string_view(finisher.name).starts_with(beginning);
}

const AccessoryBinRule* FindRule(AccessoryRules rules, const FinisherEntry& finisher) noexcept {
  const auto hit = std::ranges::find_if(rules, [&](const AccessoryBinRule& rule) {
    return rule.accessory_name != nullptr && BeginsWith(finisher, rule.accessory_name);
  });
  return hit != rules.end() ? &*hit : nullptr;
}

AccessoryRules RulesOf(const AccessoryBinRule* rules, std::int32_t count) noexcept {
  if (rules == nullptr || count < 1) return {};
  return {rules, static_cast<std::size_t>(count)};
}

const char* FinisherValue(const FlagInfo* names,
                          std::span<const FinisherEntry> finishers) noexcept {
  if (names == nullptr || names->count < 1) return nullptr;
  const std::span<const FlagPair> flags(names->entries, static_cast<std::size_t>(names->count));
  const char* value = nullptr;
  for (const FinisherEntry& finisher : finishers) {
    const auto flag = std::ranges::find_if(flags, [&](const FlagPair& pair) {
      return pair.name != nullptr && BeginsWith(finisher, pair.name);
    });
    if (flag != flags.end()) value = flag->value;
  }
  return value;
}

void SetRow(const char* value, OptionSetter* row) noexcept {
  CString copy = CopyOf(value);
  if (copy == nullptr) return;
  std::free(row->value);
  row->value = copy.release();
}

}  // namespace ia

int32_t analyze_CheckBinAlias(const int32_t* aliases, int32_t alias_count, int32_t low,
                              int32_t high) noexcept {
  if (aliases == nullptr) return 0;
  const auto in_range = [&](int32_t alias) { return alias >= low && alias <= high; };
  return std::any_of(aliases, aliases + std::max(alias_count, 0), in_range) ? 1 : 0;
}
