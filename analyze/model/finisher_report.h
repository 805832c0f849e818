// What the handlers of finisher options look at, and how they answer.
#ifndef ANALYZE_MODEL_FINISHER_REPORT_H_
#define ANALYZE_MODEL_FINISHER_REPORT_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "info_analyze/model_options.h"

namespace ia {

using AccessoryRules = std::span<const AccessoryBinRule>;

// Alias codes of bins, from one to another.
struct AliasRange {
  std::int32_t low;
  std::int32_t high;
};
inline constexpr AliasRange kInnerBins{101, 105};
inline constexpr AliasRange kFirstInnerBin{101, 101};
inline constexpr AliasRange kTwoWayBin{119, 119};
inline constexpr AliasRange kFinisherBin{121, 121};

// The arguments of a FinisherOptionHandler.
struct FinisherArguments {
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
  [[nodiscard]] bool HasNameBeginningWith(std::string_view beginning) const noexcept;
};

[[nodiscard]] bool BeginsWith(const FinisherEntry& finisher, std::string_view beginning) noexcept;

// The first rule whose accessory the finisher is, or null.
[[nodiscard]] const AccessoryBinRule* FindRule(AccessoryRules rules,
                                               const FinisherEntry& finisher) noexcept;

[[nodiscard]] AccessoryRules RulesOf(const AccessoryBinRule* rules, std::int32_t count) noexcept;

// The value that the PPD's finisher names give; the last finisher that has one decides. Null: none.
[[nodiscard]] const char* FinisherValue(const FlagInfo* names,
                                        std::span<const FinisherEntry> finishers) noexcept;

inline constexpr std::int32_t kMostAliases = 10;  // the room that callers give for all bins' codes

// Puts a copy of the value into the row, which stays as it is without value or without memory.
void SetRow(const char* value, OptionSetter* row) noexcept;

// Puts a copy of decide(report), unless that is null, into the row.
template <class Decide>
std::int32_t SetFinisherValue(const FinisherArguments& arguments, Decide decide) noexcept {
  const auto& [context, finishers, finisher_count, aliases, alias_count, row] = arguments;
  if (context == nullptr || finishers == nullptr || row == nullptr) return -1;
  if (finisher_count < 1) return 0;
  const bool has_aliases = aliases != nullptr && alias_count > 0;
  const FinisherReport report{*context,
                              {finishers, static_cast<std::size_t>(finisher_count)},
                              {aliases, has_aliases ? static_cast<std::size_t>(alias_count) : 0}};
  SetRow(decide(report), row);
  return 0;
}

// Defines an exported FinisherOptionHandler that answers with decide(report).
#define IA_FINISHER_HANDLER(name, decide)                                                        \
  int32_t name(AnalyzeContext* context, const FinisherEntry* finishers, int32_t finisher_count,  \
               const int32_t* aliases, int32_t alias_count, OptionSetter* row) noexcept {        \
    return ia::SetFinisherValue({context, finishers, finisher_count, aliases, alias_count, row}, \
                                decide);                                                         \
  }                                                                                              \
  static_assert(true)

}  // namespace ia

#endif  // ANALYZE_MODEL_FINISHER_REPORT_H_
