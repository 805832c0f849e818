// QVFinTray: whether there is a finisher tray, per driver model.
#include <algorithm>
#include <array>
#include <cstdint>

#include "analyze/model/finisher_handlers.h"
#include "analyze/model/finisher_report.h"

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
  return report.HasNameWithPrefix("Vorel Inner Finisher-F1") && report.HasAlias(kTwoWayBin)
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

constinit const FinisherHandler kFinTrayCommon{
    IA_EXPORTED(analyze_GetQVFinTrayCommon),
    .inputs = {},
    .rule = SetValue<Never>,
};

constinit const FinisherHandler kFinTrayAlder{
    IA_EXPORTED(analyze_GetQVFinTray_ALDER),
    .inputs = {Input::kFinisherName, Input::kFinisherBins},
    .rule = SetValue<ByBinCountOf<kAlder>>,
};

constinit const FinisherHandler kFinTrayAspen{
    IA_EXPORTED(analyze_GetQVFinTray_ASPEN),
    .inputs = {Input::kFinisherName, Input::kFinisherBins},
    .rule = SetValue<ByBinCountOf<kAspen>>,
};

constinit const FinisherHandler kFinTrayFir{
    IA_EXPORTED(analyze_GetQVFinTray_FIR),
    .inputs = {Input::kFinisherName, Input::kFinisherBins},
    .rule = SetValue<ByBinCountOf<kFir>>,
};

constinit const FinisherHandler kFinTrayBeech{
    IA_EXPORTED(analyze_GetQVFinTray_BEECH),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTrayBirch{
    IA_EXPORTED(analyze_GetQVFinTray_BIRCH),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTrayHazel{
    IA_EXPORTED(analyze_GetQVFinTray_HAZEL),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTrayMaple{
    IA_EXPORTED(analyze_GetQVFinTrayMAPLE),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTrayMyrtle{
    IA_EXPORTED(analyze_GetQVFinTrayMYRTLE),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTrayWillow{
    IA_EXPORTED(analyze_GetQVFinTrayWILLOW),
    .inputs = {Input::kBinAlias},
    .rule = SetValue<OfFinisherBin>,
};

constinit const FinisherHandler kFinTraySumac{
    IA_EXPORTED(analyze_GetQVFinTraySUMAC),
    .inputs = {Input::kFinisherName, Input::kBinAlias},
    .rule = SetValue<ExitTrayOfInnerFinisher>,
};

constinit const FinisherHandler kFinTrayHornbeam{
    IA_EXPORTED(analyze_GetQVFinTrayHORNBEAM),
    .inputs = {Input::kFinisherName, Input::kBinAlias},
    .rule = SetValue<OfHornbeamUnit>,
};

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

int32_t analyze_GetQVFinTrayCommon(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayCommon,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_ALDER(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayAlder,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_ASPEN(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayAspen,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_FIR(AnalyzeContext* context, const FinisherEntry* finishers,
                                 int32_t finisher_count, const int32_t* aliases,
                                 int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayFir,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_BEECH(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayBeech,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_BIRCH(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayBirch,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTray_HAZEL(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayHazel,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTrayMAPLE(AnalyzeContext* context, const FinisherEntry* finishers,
                                  int32_t finisher_count, const int32_t* aliases,
                                  int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayMaple,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTrayMYRTLE(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayMyrtle,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTrayWILLOW(AnalyzeContext* context, const FinisherEntry* finishers,
                                   int32_t finisher_count, const int32_t* aliases,
                                   int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayWillow,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTraySUMAC(AnalyzeContext* context, const FinisherEntry* finishers,
                                  int32_t finisher_count, const int32_t* aliases,
                                  int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTraySumac,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}

int32_t analyze_GetQVFinTrayHORNBEAM(AnalyzeContext* context, const FinisherEntry* finishers,
                                     int32_t finisher_count, const int32_t* aliases,
                                     int32_t alias_count, OptionSetter* row) noexcept {
  return ia::Apply(ia::kFinTrayHornbeam,
                   {context, finishers, finisher_count, aliases, alias_count, row});
}
