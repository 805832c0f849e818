// QVFinisher: which finisher is attached, per driver model.
#include <algorithm>
#include <array>

#include "analyze/model/finisher_report.h"
#include "analyze/model/model_matrix.h"
#include "info_common/ascii.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::string_view kTwoWayTray = "Vorel Inner 2way Tray";
constexpr std::string_view kTwoWayTrayN1 = "Vorel Inner 2way Tray-N1";

const char* ValueString(const FinisherReport& report) noexcept {
  return FinisherValue(report.context.finisher_name_flags, report.finishers);
}

// A unit of a rule that has no more bins than the rule, while an alias of the range is there,
// serves as a tray. The value string, once any unit does not, is that of all units.
const char* ByBinAlias(const FinisherReport& report, AccessoryRules rules,
                       AliasRange range) noexcept {
  const bool has_alias = report.HasAlias(range);
  const bool any_finisher = std::ranges::any_of(report.finishers, [&](const FinisherEntry& unit) {
    if (unit.name == nullptr) return false;
    const AccessoryBinRule* const rule = FindRule(rules, unit);
    return rule == nullptr || unit.binnum > rule->bin_count || !has_alias;
  });
  return any_finisher ? ValueString(report) : nullptr;
}

template <const auto& kRules>
const char* ByInnerBins(const FinisherReport& report) noexcept {
  return ByBinAlias(report, kRules, kInnerBins);
}

// As ByInnerBins(), but one of the rules' units with a single bin means that there is no finisher.
template <const auto& kRules>
const char* NoneOrByInnerBins(const FinisherReport& report) noexcept {
  const bool is_single_bin = std::ranges::any_of(report.finishers, [](const FinisherEntry& unit) {
    return unit.binnum == 1 && FindRule(kRules, unit) != nullptr;
  });
  return is_single_bin ? "None" : ByInnerBins<kRules>(report);
}

const char* In2TrayF1(const FinisherReport& report) noexcept {
  return report.HasAlias(kTwoWayBin) ? "IN2TRAYF1" : ValueString(report);
}

const char* In2TrayF1OfTwoBins(const FinisherReport& report) noexcept {
  return report.aliases.size() == 2 ? In2TrayF1(report) : ValueString(report);
}

const char* In2TrayN1(const FinisherReport& report) noexcept {
  return report.HasNameBeginningWith(kTwoWayTrayN1) && report.HasAlias(kTwoWayBin)
             ? "IN2TRAY"
             : ValueString(report);
}

const char* In2Tray(const FinisherReport& report) noexcept {
  const bool has_tray = std::ranges::any_of(report.finishers, [](const FinisherEntry& unit) {
    return unit.name != nullptr && HasPrefixIgnoringCase(unit.name, kTwoWayTray);
  });
  return has_tray && report.HasAlias(kTwoWayBin) ? "IN2TRAY" : ValueString(report);
}

struct BinCountValue {
  std::int32_t bins;
  const char* value;
};
constexpr auto kWalnut = std::to_array<BinCountValue>({
    {2, "IN2TRAY"},
    {3, "IN2TRAYSFING1"},
    {1, "FINJ1"},
});

const char* ByBinsOfFirst(const FinisherReport& report) noexcept {
  const auto hit =
      std::ranges::find(kWalnut, report.finishers.front().binnum, &BinCountValue::bins);
  return hit != kWalnut.end() ? hit->value : "None";
}

constexpr auto kAspen = std::to_array<AccessoryBinRule>({{2, "Vorel Inner 2Way Tray-B1"}});
constexpr auto kFir = std::to_array<AccessoryBinRule>({{1, "Vorel Inner 2Way Tray-B1"}});
constexpr auto kBeech = std::to_array<AccessoryBinRule>({{1, "Vorel 3 Way Unit-D1"}});
constexpr auto kBirch = std::to_array<AccessoryBinRule>({
    {2, "Vorel 3 Way Unit-D1"},
    {2, "Vorel 3 Way Unit-D2"},
});
constexpr auto kCedarHazel = std::to_array<AccessoryBinRule>({{2, "Vorel Inner 2 Way Tray-S1"}});
constexpr auto kMaple = std::to_array<AccessoryBinRule>({{2, "Vorel Inner 2Way Tray-R1"}});

}  // namespace
}  // namespace ia

char* analyze_GetQVFinisherValueString(const AnalyzeContext* context,
                                       const FinisherEntry* finishers,
                                       int32_t finisher_count) noexcept {
  if (context == nullptr || finishers == nullptr || finisher_count < 1) return nullptr;
  const std::span units(finishers, static_cast<std::size_t>(finisher_count));
  return ia::CopyOf(ia::FinisherValue(context->finisher_name_flags, units)).release();
}

int32_t analyze_GetQVFinisherByBinTrayAlias(AnalyzeContext* context, const FinisherEntry* finishers,
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

// Alone among the handlers it clears the row's value when there is none to give.
int32_t analyze_GetQVFinisherCommon(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t*, int32_t,
                                    OptionSetter* row) noexcept {
  if (context == nullptr || finishers == nullptr || row == nullptr) return -1;
  if (finisher_count < 1) return 0;
  std::free(row->value);
  row->value = analyze_GetQVFinisherValueString(context, finishers, finisher_count);
  return 0;
}

IA_FINISHER_HANDLER(analyze_GetQVFinisherSpecialIn2TrayCommon, ia::In2Tray);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_ASPEN, ia::ByInnerBins<ia::kAspen>);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_FIR, ia::ByInnerBins<ia::kFir>);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_BEECH, ia::ByInnerBins<ia::kBeech>);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_BIRCH, ia::NoneOrByInnerBins<ia::kBirch>);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_CEDAR, ia::NoneOrByInnerBins<ia::kCedarHazel>);
IA_FINISHER_HANDLER(analyze_GetQVFinisher_HAZEL, ia::NoneOrByInnerBins<ia::kCedarHazel>);
IA_FINISHER_HANDLER(analyze_GetQVFinisherMAPLE, ia::NoneOrByInnerBins<ia::kMaple>);
IA_FINISHER_HANDLER(analyze_GetQVFinisherSPRUCE, ia::In2TrayF1);
IA_FINISHER_HANDLER(analyze_GetQVFinisherWILLOW, ia::In2TrayF1OfTwoBins);
IA_FINISHER_HANDLER(analyze_GetQVFinisherSUMAC, ia::In2TrayN1);
IA_FINISHER_HANDLER(analyze_GetQVFinisherHICKORY, ia::In2TrayN1);
IA_FINISHER_HANDLER(analyze_GetQVFinisherWALNUT, ia::ByBinsOfFirst);

// What each handler looks at.
namespace ia {
namespace {

constexpr std::uint64_t kNames = SetOf(Input::kFinisherName, Input::kFinisherNameFlags);
constexpr std::uint64_t kBins = SetOf(Input::kFinisherBins);
constexpr std::uint64_t kAliases = SetOf(Input::kBinAlias);

constexpr auto kSources = std::to_array<HandlerSource<FinisherOptionHandler>>({
    IA_HANDLER_SOURCE(analyze_GetQVFinisherCommon, kNames),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherSpecialIn2TrayCommon, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_ASPEN, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_FIR, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_BEECH, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_BIRCH, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_CEDAR, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisher_HAZEL, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherMAPLE, kNames | kBins | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherSPRUCE, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherWILLOW, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherSUMAC, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherHICKORY, kNames | kAliases),
    IA_HANDLER_SOURCE(analyze_GetQVFinisherWALNUT, kBins),
});

}  // namespace

constinit const FinisherHandlerSources kFinisherHandlers = kSources;

}  // namespace ia
