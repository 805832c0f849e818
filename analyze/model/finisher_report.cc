#include "analyze/model/finisher_report.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

#include "info_common/owned.h"

static_assert(sizeof(FinisherEntry) == 2 * sizeof(void*));
static_assert(offsetof(FinisherEntry, name) == 1 * sizeof(void*));
static_assert(sizeof(AccessoryBinRule) == 2 * sizeof(void*));
static_assert(offsetof(AccessoryBinRule, accessory_name) == 1 * sizeof(void*));

namespace ia {

namespace {

bool HasAlias(std::span<const std::int32_t> aliases, AliasRange range) noexcept {
  return std::ranges::any_of(
      aliases, [&](std::int32_t alias) { return alias >= range.low && alias <= range.high; });
}

}  // namespace

bool FinisherReport::HasAlias(AliasRange range) const noexcept {
  return ia::HasAlias(aliases, range);
}

bool FinisherReport::HasNameWithPrefix(std::string_view prefix) const noexcept {
  return std::ranges::any_of(
      finishers, [&](const FinisherEntry& finisher) { return HasNamePrefix(finisher, prefix); });
}

bool HasNamePrefix(const FinisherEntry& finisher, std::string_view prefix) noexcept {
  return finisher.name != nullptr && std::string_view(finisher.name).starts_with(prefix);
}

const AccessoryBinRule* FindRule(AccessoryRules rules, const FinisherEntry& finisher) noexcept {
  const auto hit = std::ranges::find_if(rules, [&](const AccessoryBinRule& rule) {
    return rule.accessory_name != nullptr && HasNamePrefix(finisher, rule.accessory_name);
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
      return pair.name != nullptr && HasNamePrefix(finisher, pair.name);
    });
    if (flag != flags.end()) value = flag->value;
  }
  return value;
}

std::int32_t SetDecided(const FinisherCall& call,
                        const char* (*decide)(const FinisherReport&) noexcept) noexcept {
  return SetFinisherValue(call, decide);
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
  const std::span codes(aliases, static_cast<std::size_t>(std::max(alias_count, 0)));
  return ia::HasAlias(codes, {low, high}) ? 1 : 0;
}
