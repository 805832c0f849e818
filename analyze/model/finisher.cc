// QVFinisher: which finisher is attached, per driver model.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "analyze/model/finisher_handlers.h"
#include "analyze/model/finisher_report.h"
#include "info_common/ascii.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::string_view kTwoWayTray = "Vorel Inner 2way Tray";
constexpr std::string_view kTwoWayTrayN1 = "Vorel Inner 2way Tray-N1";

const char* ValueString(const FinisherReport& report) noexcept {
  return FinisherValue(report.context.finisher_name_flags, report.finishers);
}

// Clears the row's value when it has none; all other handlers keep it.
std::int32_t ReplaceValue(const FinisherCall& call) noexcept {
  return WithReport(call, [&](const FinisherReport& report) {
    std::free(call.row->value);
    call.row->value = CopyOf(ValueString(report)).release();
  });
}

// A unit that matches a rule counts as a tray if it has at most the rule's bin count and an alias
// is in range. Once any unit is not a tray, the value string is that of all units.
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

// As ByInnerBins(), but a unit with a single bin that matches a rule means that there is no
// finisher.
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
  return report.HasNameWithPrefix(kTwoWayTrayN1) && report.HasAlias(kTwoWayBin)
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

constexpr InputList kNamesAndAliases = {Input::kFinisherName, Input::kBinAlias,
                                        Input::kFinisherNameFlags};
constexpr InputList kNamesBinsAndAliases = {Input::kFinisherName, Input::kFinisherBins,
                                            Input::kBinAlias, Input::kFinisherNameFlags};

constinit const FinisherHandler kFinisherCommon{
    IA_EXPORTED(analyze_GetQVFinisherCommon),
    .inputs = {Input::kFinisherName, Input::kFinisherNameFlags},
    .rule = ReplaceValue,
};

constinit const FinisherHandler kFinisherSpecialIn2TrayCommon{
    IA_EXPORTED(analyze_GetQVFinisherSpecialIn2TrayCommon),
    .inputs = kNamesAndAliases,
    .rule = SetValue<In2Tray>,
};

constinit const FinisherHandler kFinisherAspen{
    IA_EXPORTED(analyze_GetQVFinisher_ASPEN),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<ByInnerBins<kAspen>>,
};

constinit const FinisherHandler kFinisherFir{
    IA_EXPORTED(analyze_GetQVFinisher_FIR),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<ByInnerBins<kFir>>,
};

constinit const FinisherHandler kFinisherBeech{
    IA_EXPORTED(analyze_GetQVFinisher_BEECH),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<ByInnerBins<kBeech>>,
};

constinit const FinisherHandler kFinisherBirch{
    IA_EXPORTED(analyze_GetQVFinisher_BIRCH),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<NoneOrByInnerBins<kBirch>>,
};

constinit const FinisherHandler kFinisherCedar{
    IA_EXPORTED(analyze_GetQVFinisher_CEDAR),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<NoneOrByInnerBins<kCedarHazel>>,
};

constinit const FinisherHandler kFinisherHazel{
    IA_EXPORTED(analyze_GetQVFinisher_HAZEL),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<NoneOrByInnerBins<kCedarHazel>>,
};

constinit const FinisherHandler kFinisherMaple{
    IA_EXPORTED(analyze_GetQVFinisherMAPLE),
    .inputs = kNamesBinsAndAliases,
    .rule = SetValue<NoneOrByInnerBins<kMaple>>,
};

constinit const FinisherHandler kFinisherSpruce{
    IA_EXPORTED(analyze_GetQVFinisherSPRUCE),
    .inputs = kNamesAndAliases,
    .rule = SetValue<In2TrayF1>,
};

constinit const FinisherHandler kFinisherWillow{
    IA_EXPORTED(analyze_GetQVFinisherWILLOW),
    .inputs = kNamesAndAliases,
    .rule = SetValue<In2TrayF1OfTwoBins>,
};

constinit const FinisherHandler kFinisherSumac{
    IA_EXPORTED(analyze_GetQVFinisherSUMAC),
    .inputs = kNamesAndAliases,
    .rule = SetValue<In2TrayN1>,
};

constinit const FinisherHandler kFinisherHickory{
    IA_EXPORTED(analyze_GetQVFinisherHICKORY),
    .inputs = kNamesAndAliases,
    .rule = SetValue<In2TrayN1>,
};

constinit const FinisherHandler kFinisherWalnut{
    IA_EXPORTED(analyze_GetQVFinisherWALNUT),
    .inputs = {Input::kFinisherBins},
    .rule = SetValue<ByBinsOfFirst>,
};

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
  return ia::SetFinisherValue({context, finishers, finisher_count, aliases, alias_count, row},
                              [&](const ia::FinisherReport& report) {
                                return ia::ByBinAlias(report, ia::RulesOf(rules, rule_count),
                                                      {low, high});
                              });
}

int32_t analyze_GetQVFinisherCommon(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherCommon,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherSpecialIn2TrayCommon(AnalyzeContext* context,
                                                  const FinisherEntry* finishers,
                                                  int32_t finisher_count, const int32_t* aliases,
                                                  int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherSpecialIn2TrayCommon,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_ASPEN(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherAspen,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                  int32_t finisher_count, const int32_t* aliases,
                                  int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherFir,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_BEECH(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherBeech,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_BIRCH(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherBirch,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_CEDAR(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherCedar,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisher_HAZEL(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherHazel,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherMAPLE(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherMaple,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherSPRUCE(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherSpruce,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherWILLOW(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherWillow,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherSUMAC(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherSumac,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherHICKORY(AnalyzeContext* context, const FinisherEntry* finishers,
                                     int32_t finisher_count, const int32_t* aliases,
                                     int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherHickory,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinisherWALNUT(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinisherWalnut,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}
