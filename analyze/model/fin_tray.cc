// QVFinTray: whether there is a finisher tray, per driver model.
#include <algorithm>
#include <array>

#include "analyze/model/finisher_report.h"
#include "analyze/model/model_matrix.h"

namespace ia {
namespace {

constexpr const char* kFinisherTray = "FNTU1";
constexpr const char* kExitTray = "EXTU1";

const char* ByBinCount(const FinisherReport& report, AccessoryRules rules) noexcept {
  const bool has_tray = std::ranges::any_of(report.finishers, [&](const FinisherEntry& unit) {
    const AccessoryBinRule* const rule = FindRule(rules, unit);
    return rule != nullptr && unit.binnum > rule->bin_count;
  });
  return has_tray ? kFinisherTray : nullptr;
}

template <const auto& kRules>
const char* ByBinCountOf(const FinisherReport& report) noexcept {
  return ByBinCount(report, kRules);
}

const char* OfFinisherBin(const FinisherReport& report) noexcept {
  return report.HasAlias(kFinisherBin) ? kFinisherTray : nullptr;
}

const char* ExitTrayOfInnerFinisher(const FinisherReport& report) noexcept {
  return report.HasNameBeginningWith("Vorel Inner Finisher-F1") && report.HasAlias(kTwoWayBin)
             ? kExitTray
             : nullptr;
}

// Whole names, stricter than everywhere else.
constexpr auto kHornbeamUnits = std::to_array<std::string_view>({
    "Vorel Inner Finisher-W1",
    "Vorel Inner Shift Sorter-D1",
});

const char* OfHornbeamUnit(const FinisherReport& report) noexcept {
  const bool has_unit = std::ranges::any_of(report.finishers, [](const FinisherEntry& unit) {
    return unit.name != nullptr &&
           std::ranges::find(kHornbeamUnits, std::string_view(unit.name)) != kHornbeamUnits.end();
  });
  return has_unit && report.HasAlias(kTwoWayBin) ? kFinisherTray : nullptr;
}

const char* Never(const FinisherReport&) noexcept { return nullptr; }

constexpr auto kAlder = std::to_array<AccessoryBinRule>({
    {2, "Vorel Finisher-T1"},
    {3, "Vorel Saddle Finisher-T2"},
});
constexpr auto kAspen = std::to_array<AccessoryBinRule>({
    {2, "Vorel Finisher-U3"},
    {3, "Vorel Saddle Finisher-U4"},
    {2, "Vorel Finisher-C1"},
    {3, "Vorel Saddle Finisher-C2"},
});
constexpr auto kFir = std::to_array<AccessoryBinRule>({
    {2, "Vorel Finisher-U1/U3"},
    {3, "Vorel Saddle Finisher-U2/U4"},
});

}  // namespace
}  // namespace ia

int32_t analyze_GetQVFinTrayByBinTrayCount(AnalyzeContext* context, const FinisherEntry* finishers,
                                           int32_t finisher_count, const AccessoryBinRule* rules,
                                           int32_t rule_count, const int32_t* aliases,
                                           int32_t alias_count, OptionSetter* row) noexcept {
  return ia::SetFinisherValue({context, finishers, finisher_count, aliases, alias_count, row},
                              [&](const ia::FinisherReport& report) {
                                return ia::ByBinCount(report, ia::RulesOf(rules, rule_count));
                              });
}

IA_FINISHER_HANDLER(analyze_GetQVFinTrayCommon, ia::Never);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_ALDER, ia::ByBinCountOf<ia::kAlder>);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_ASPEN, ia::ByBinCountOf<ia::kAspen>);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_FIR, ia::ByBinCountOf<ia::kFir>);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_BEECH, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_BIRCH, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTray_HAZEL, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTrayMAPLE, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTrayMYRTLE, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTrayWILLOW, ia::OfFinisherBin);
IA_FINISHER_HANDLER(analyze_GetQVFinTraySUMAC, ia::ExitTrayOfInnerFinisher);
IA_FINISHER_HANDLER(analyze_GetQVFinTrayHORNBEAM, ia::OfHornbeamUnit);

// What each handler looks at.
namespace ia {
namespace {

constexpr std::uint64_t kNames = SetOf(Input::kFinisherName);
constexpr std::uint64_t kBins = SetOf(Input::kFinisherBins);
constexpr std::uint64_t kAliases = SetOf(Input::kBinAlias);

constexpr auto kSources = std::to_array<HandlerSource<FinisherOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVFinTrayCommon, 0),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_ALDER, kNames | kBins),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_ASPEN, kNames | kBins),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_FIR, kNames | kBins),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_BEECH, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_BIRCH, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTray_HAZEL, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTrayMAPLE, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTrayMYRTLE, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTrayWILLOW, kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTraySUMAC, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinTrayHORNBEAM, kNames | kAliases),
});

}  // namespace

constinit const FinisherHandlerSources kFinTrayHandlers = kSources;

}  // namespace ia
