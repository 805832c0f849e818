// QVCopyTray: whether there is a copy tray, per driver model.
#include <algorithm>
#include <array>

#include "analyze/model/finisher_report.h"
#include "analyze/model/model_matrix.h"

namespace ia {
namespace {

constexpr const char* kCopyTray = "CPTU1";

const char* ByBinAlias(const FinisherReport& report, AccessoryRules rules,
                       AliasRange range) noexcept {
  const bool has_alias = report.HasAlias(range);
  const bool has_tray = std::ranges::any_of(report.finishers, [&](const FinisherEntry& unit) {
    return std::ranges::any_of(rules, [&](const AccessoryBinRule& rule) {
      return rule.accessory_name != nullptr && BeginsWith(unit, rule.accessory_name) &&
             (unit.binnum > rule.bin_count || has_alias);
    });
  });
  return has_tray ? kCopyTray : nullptr;
}

template <const auto& kRules>
const char* ByInnerBins(const FinisherReport& report) noexcept {
  return ByBinAlias(report, kRules, kInnerBins);
}

template <const AliasRange& kRange>
const char* OfAlias(const FinisherReport& report) noexcept {
  return report.HasAlias(kRange) ? kCopyTray : nullptr;
}

const char* Never(const FinisherReport&) noexcept { return nullptr; }

constexpr auto kAspen = std::to_array<AccessoryBinRule>({
    {2, "Vorel Inner 2Way Tray-B1"},
    {1, "Vorel Finisher-Q1"},
});
constexpr auto kFir = std::to_array<AccessoryBinRule>({
    {1, "Vorel Inner 2Way Tray-B1"},
    {1, "Vorel Finisher-Q1"},
});
constexpr auto kCedar = std::to_array<AccessoryBinRule>({
    {2, "Vorel Inner 2 Way Tray-S1"},
    {1, "Vorel Finisher-A1"},
});

}  // namespace
}  // namespace ia

int32_t analyze_GetQVCopyTrayByBinTrayAlias(AnalyzeContext* context, const FinisherEntry* finishers,
                                            int32_t finisher_count, const AccessoryBinRule* rules,
                                            int32_t rule_count, const int32_t* aliases,
                                            int32_t alias_count, int32_t low, int32_t high,
                                            OptionSetter* row) noexcept {
  return ia::SetFinisherValue(
      {context, finishers, finisher_count, aliases, alias_count, row},
      [&](const ia::FinisherReport& report) {
        return ia::ByBinAlias(report, ia::RulesOf(rules, rule_count), {low, high});
      });
}

IA_FINISHER_HANDLER(analyze_GetQVCopyTrayCommon, ia::Never);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_ASPEN, ia::ByInnerBins<ia::kAspen>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_FIR, ia::ByInnerBins<ia::kFir>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_CEDAR, ia::ByInnerBins<ia::kCedar>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_BEECH, ia::OfAlias<ia::kInnerBins>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_BIRCH, ia::OfAlias<ia::kInnerBins>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTray_HAZEL, ia::OfAlias<ia::kInnerBins>);
IA_FINISHER_HANDLER(analyze_GetQVCopyTrayMAPLE, ia::OfAlias<ia::kFirstInnerBin>);

// What each handler looks at.
namespace ia {
namespace {

constexpr std::uint64_t kNames = SetOf(Input::kFinisherName);
constexpr std::uint64_t kBins = SetOf(Input::kFinisherBins);
constexpr std::uint64_t kAliases = SetOf(Input::kBinAlias);

constexpr auto kSources = std::to_array<HandlerSource<FinisherOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVCopyTrayCommon, 0),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_ASPEN, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_FIR, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_CEDAR, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_BEECH, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_BIRCH, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTray_HAZEL, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVCopyTrayMAPLE, kAliases),
});

}  // namespace

constinit const FinisherHandlerSources kCopyTrayHandlers = kSources;

}  // namespace ia
