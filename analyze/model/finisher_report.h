// The input of the handlers of finisher options, and helpers that set their results.
#ifndef ANALYZE_MODEL_FINISHER_REPORT_H_
#define ANALYZE_MODEL_FINISHER_REPORT_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "info_analyze/model_options.h"

namespace ia {

using AccessoryRules = std::span<const AccessoryBinRule>;

// A range of alias codes of bins.
struct AliasRange {
  std::int32_t low;
  std::int32_t high;
};
inline constexpr AliasRange kInnerBins{101, 105};
inline constexpr AliasRange kFirstInnerBin{101, 101};
inline constexpr AliasRange kTwoWayBin{119, 119};
inline constexpr AliasRange kFinisherBin{121, 121};

// A call of a FinisherOptionHandler, argument by argument.
struct FinisherCall {
  FinisherCall(AnalyzeContext* analyzer, const FinisherEntry* units, std::int32_t unit_count,
               const std::int32_t* codes, std::int32_t code_count, OptionSetter* option) noexcept
      : context(analyzer),
        finishers(units),
        finisher_count(unit_count),
        aliases(codes),
        alias_count(code_count),
        row(option) {}

  AnalyzeContext* context;
  const FinisherEntry* finishers;
  std::int32_t finisher_count;
  const std::int32_t* aliases;
  std::int32_t alias_count;
  OptionSetter* row;
};

// What the device reports, with at least one finisher.
struct FinisherReport {
  const AnalyzeContext& context;
  std::span<const FinisherEntry> finishers;
  std::span<const std::int32_t> aliases;

  [[nodiscard]] bool HasAlias(AliasRange range) const noexcept;
  [[nodiscard]] bool HasNameWithPrefix(std::string_view prefix) const noexcept;
};

[[nodiscard]] bool HasNamePrefix(const FinisherEntry& finisher, std::string_view prefix) noexcept;

// The first rule whose accessory the finisher is, or null.
[[nodiscard]] const AccessoryBinRule* FindRule(AccessoryRules rules,
                                               const FinisherEntry& finisher) noexcept;

[[nodiscard]] AccessoryRules RulesOf(const AccessoryBinRule* rules, std::int32_t count) noexcept;

// The value that the PPD's finisher names give; the last finisher that has one decides. Null: none.
[[nodiscard]] const char* FinisherValue(const FlagInfo* names,
                                        std::span<const FinisherEntry> finishers) noexcept;

inline constexpr std::int32_t kMaxAliases = 10;  // callers' arrays hold the codes of all bins

// Puts a copy of the value into the row, which keeps its own without a value or when the copy
// fails.
void SetRow(const char* value, OptionSetter* row) noexcept;

// Calls use(report) when there are finishers.
template <class Use>
std::int32_t WithReport(const FinisherCall& call, Use use) noexcept {
  if (call.context == nullptr || call.finishers == nullptr || call.row == nullptr) return -1;
  if (call.finisher_count < 1) return 0;
  const bool has_aliases = call.aliases != nullptr && call.alias_count > 0;
  use(FinisherReport{*call.context,
                     {call.finishers, static_cast<std::size_t>(call.finisher_count)},
                     {call.aliases, has_aliases ? static_cast<std::size_t>(call.alias_count) : 0}});
  return 0;
}

// Puts a copy of decide(report), unless that is null, into the row.
template <class Decide>
std::int32_t SetFinisherValue(const FinisherCall& call, Decide decide) noexcept {
  return WithReport(call, [&](const FinisherReport& report) { SetRow(decide(report), call.row); });
}

std::int32_t SetDecided(const FinisherCall& call,
                        const char* (*decide)(const FinisherReport&) noexcept) noexcept;

// The rule of a handler that needs nothing but the report.
template <const char* (*kDecide)(const FinisherReport&) noexcept>
std::int32_t SetValue(const FinisherCall& call) noexcept {
  return SetDecided(call, kDecide);
}

}  // namespace ia

#endif  // ANALYZE_MODEL_FINISHER_REPORT_H_
