// QVCopyTray: whether there is a copy tray, per driver model.
#include <algorithm>
#include <array>
#include <cstdint>

#include "analyze/model/finisher_handlers.h"
#include "analyze/model/finisher_report.h"

namespace ia {
namespace {

constexpr const char* kCopyTray = "CPTU1";

const char* ByBinAlias(const FinisherReport& report, AccessoryRules rules,
                       AliasRange range) noexcept {
  const bool has_alias = report.HasAlias(range);
  const bool has_tray = std::ranges::any_of(report.finishers, [&](const FinisherEntry& unit) {
    return std::ranges::any_of(rules, [&](const AccessoryBinRule& rule) {
      return rule.accessory_name != nullptr && HasNamePrefix(unit, rule.accessory_name) &&
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

constinit const FinisherHandler kCopyTrayCommon{
    IA_EXPORTED(analyze_GetQVCopyTrayCommon),
    .inputs = {},
    .rule = SetValue<Never>,
};

constinit const FinisherHandler kCopyTrayAspen{
    IA_EXPORTED(analyze_GetQVCopyTray_ASPEN),
    .inputs = {Input::kFinisherName, Input::kFinisherBins, Input::kBinAlias},
    .rule = SetValue<ByInnerBins<kAspen>>,
};

constinit const FinisherHandler kCopyTrayFir{
    IA_EXPORTED(analyze_GetQVCopyTray_FIR),
    .inputs = {Input::kFinisherName, Input::kFinisherBins, Input::kBinAlias},
    .rule = SetValue<ByInnerBins<kFir>>,
};

constinit const FinisherHandler kCopyTrayCedar{
    IA_EXPORTED(analyze_GetQVCopyTray_CEDAR),
    .inputs = {Input::kFinisherName, Input::kFinisherBins, Input::kBinAlias},
    .rule = SetValue<ByInnerBins<kCedar>>,
};

constinit const FinisherHandler kCopyTrayBeech{
    IA_EXPORTED(analyze_GetQVCopyTray_BEECH),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfAlias<kInnerBins>>,
};

constinit const FinisherHandler kCopyTrayBirch{
    IA_EXPORTED(analyze_GetQVCopyTray_BIRCH),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfAlias<kInnerBins>>,
};

constinit const FinisherHandler kCopyTrayHazel{
    IA_EXPORTED(analyze_GetQVCopyTray_HAZEL),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfAlias<kInnerBins>>,
};

constinit const FinisherHandler kCopyTrayMaple{
    IA_EXPORTED(analyze_GetQVCopyTrayMAPLE),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfAlias<kFirstInnerBin>>,
};

}  // namespace ia

int32_t analyze_GetQVCopyTrayByBinTrayAlias(AnalyzeContext* context, const FinisherEntry* finishers,
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

int32_t analyze_GetQVCopyTrayCommon(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayCommon,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_ASPEN(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayAspen,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                  int32_t finisher_count, const int32_t* aliases,
                                  int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayFir,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_CEDAR(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayCedar,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_BEECH(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayBeech,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_BIRCH(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayBirch,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTray_HAZEL(AnalyzeContext* context, const FinisherEntry* finishers,
                                    int32_t finisher_count, const int32_t* aliases,
                                    int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayHazel,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVCopyTrayMAPLE(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kCopyTrayMaple,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}
