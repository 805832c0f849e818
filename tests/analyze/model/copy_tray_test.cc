#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/analyze/model/model_names.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

const Value kNoValue = std::nullopt;
const Value kCopyTray = "CPTU1";

// By bin alias, with the rules of a test ---------------------------------------------------------

using Rules = std::vector<AccessoryBinRule>;

struct Range {
  std::int32_t low;
  std::int32_t high;
};

Value ByBinAlias(const Rules& rules, const Units& units, const Aliases& aliases,
                 Range range = {101, 105}) {
  return ValueAfter(FinisherReport(units, aliases), kMakersNames,
                    [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                      return analyze_GetQVCopyTrayByBinTrayAlias(
                          context, report.finishers(), report.count(), rules.data(),
                          static_cast<std::int32_t>(rules.size()), report.aliases(),
                          report.alias_count(), range.low, range.high, row);
                    });
}

const Rules kTrayRule = {{2, "Vorel Tray"}};

TEST(CopyTrayByBinAlias, UnitOfARuleHasItByItsBins) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{3, "Vorel Tray-A1"}}, {}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {}), kNoValue);
}

TEST(CopyTrayByBinAlias, UnitOfARuleHasItBesideAnAliasOfTheRange) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {105}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{kSmallest, "Vorel Tray-A1"}}, {1, 101}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {100, 106}), kNoValue);
}

TEST(CopyTrayByBinAlias, UnitOfNoRuleHasNone) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{9, "Vorel Tra"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{9, ""}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{9, std::nullopt}}, {103}), kNoValue);
}

TEST(CopyTrayByBinAlias, LaterRulesAreTriedToo) {
  const Rules rules = {{5, "Vorel Tray"}, {9, "Other"}, {2, "Vorel"}};
  EXPECT_EQ(ByBinAlias(rules, {{3, "Vorel Tray"}}, {}), kCopyTray);
  EXPECT_EQ(ByBinAlias(rules, {{2, "Vorel Tray"}}, {}), kNoValue);
}

TEST(CopyTrayByBinAlias, AnyUnitWillDo) {
  const Unit tray = {3, "Vorel Tray"};
  const Unit small_tray = {2, "Vorel Tray"};
  const Unit other = {9, "Vorel A"};
  const Unit nameless = {9, std::nullopt};
  EXPECT_EQ(ByBinAlias(kTrayRule, {other, nameless, small_tray, tray}, {}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {tray, other, nameless, small_tray}, {}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {other, nameless, small_tray}, {}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {other, nameless, small_tray}, {103}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {other, nameless}, {103}), kNoValue);
}

TEST(CopyTrayByBinAlias, WithoutRulesThereIsNone) {
  EXPECT_EQ(ByBinAlias({}, {{9, "Vorel Tray"}}, {103}), kNoValue);
}

TEST(CopyTrayByBinAlias, NullRulesAreNone) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{9, "Vorel Tray"}}, {103}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return analyze_GetQVCopyTrayByBinTrayAlias(context, report.finishers(), 1,
                                                              nullptr, 3, report.aliases(), 1, 101,
                                                              105, row);
                 }),
      kNoValue);
}

TEST(CopyTrayByBinAlias, RulesBeyondTheCountAreNotSeen) {
  for (const std::int32_t count : {0, -1, kSmallest}) {
    EXPECT_EQ(
        ValueAfter(FinisherReport({{9, "Vorel Tray"}}, {103}), kMakersNames,
                   [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                     return analyze_GetQVCopyTrayByBinTrayAlias(context, report.finishers(), 1,
                                                                kTrayRule.data(), count,
                                                                report.aliases(), 1, 101, 105, row);
                   }),
        kNoValue)
        << count;
  }
}

TEST(CopyTrayByBinAlias, RuleWithoutNameFitsNoUnit) {
  EXPECT_EQ(ByBinAlias({{0, nullptr}}, {{9, "Vorel Tray"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias({{0, nullptr}, {2, "Vorel Tray"}}, {{9, "Vorel Tray"}}, {}), kCopyTray);
}

TEST(CopyTrayByBinAlias, ReversedRangeHasNoAlias) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {101, 103, 105}, {105, 101}), kNoValue);
}

TEST(CopyTrayByBinAlias, RangeOfOneCode) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {103}, {103, 103}), kCopyTray);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {102, 104}, {103, 103}), kNoValue);
}

TEST(CopyTrayByBinAlias, NullAliasesAreNone) {
  for (const std::int32_t count : {0, 1, kLargest}) {
    EXPECT_EQ(
        ValueAfter(FinisherReport({{2, "Vorel Tray"}}, {}), kMakersNames,
                   [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                     return analyze_GetQVCopyTrayByBinTrayAlias(context, report.finishers(), 1,
                                                                kTrayRule.data(), 1, nullptr, count,
                                                                kSmallest, kLargest, row);
                   }),
        kNoValue)
        << count;
  }
}

// By bin alias, with the rules of a model --------------------------------------------------------

struct AliasRuleRow {
  const char* model;
  FinisherOptionHandler handler;
  const char* accessory;
  std::int32_t bins;
};

void PrintTo(const AliasRuleRow& row, std::ostream* out) {
  *out << row.model << " " << row.accessory;
}

class CopyTrayAliasRules : public testing::TestWithParam<AliasRuleRow> {
 protected:
  Value ValueOf(std::int32_t bins, const std::string& name, const Aliases& aliases) const {
    return ValueBy(GetParam().handler, {{bins, name}}, aliases);
  }
};

INSTANTIATE_TEST_SUITE_P(
    , CopyTrayAliasRules,
    testing::Values(
        AliasRuleRow{"ASPEN", analyze_GetQVCopyTray_ASPEN, "Vorel Inner 2Way Tray-B1", 2},
        AliasRuleRow{"ASPEN", analyze_GetQVCopyTray_ASPEN, "Vorel Finisher-Q1", 1},
        AliasRuleRow{"FIR", analyze_GetQVCopyTray_FIR, "Vorel Inner 2Way Tray-B1", 1},
        AliasRuleRow{"FIR", analyze_GetQVCopyTray_FIR, "Vorel Finisher-Q1", 1},
        AliasRuleRow{"CEDAR", analyze_GetQVCopyTray_CEDAR, "Vorel Inner 2 Way Tray-S1", 2},
        AliasRuleRow{"CEDAR", analyze_GetQVCopyTray_CEDAR, "Vorel Finisher-A1", 1}),
    [](const testing::TestParamInfo<AliasRuleRow>& info) {
      return TestName(std::string(info.param.model) + info.param.accessory);
    });

TEST_P(CopyTrayAliasRules, UnitOfMoreBinsThanTheRuleHasIt) {
  const auto& [model, handler, accessory, bins] = GetParam();
  EXPECT_EQ(ValueOf(bins - 1, accessory, {}), kNoValue);
  EXPECT_EQ(ValueOf(bins, accessory, {}), kNoValue);
  EXPECT_EQ(ValueOf(bins + 1, accessory, {}), kCopyTray);
  EXPECT_EQ(ValueOf(kSmallest, accessory, {}), kNoValue);
  EXPECT_EQ(ValueOf(kLargest, accessory, {}), kCopyTray);
}

TEST_P(CopyTrayAliasRules, UnitBesideAnAliasFrom101To105HasIt) {
  const auto& [model, handler, accessory, bins] = GetParam();
  for (const std::int32_t alias : {101, 102, 103, 104, 105}) {
    EXPECT_EQ(ValueOf(bins, accessory, {alias}), kCopyTray) << alias;
    EXPECT_EQ(ValueOf(0, accessory, {100, 1, alias}), kCopyTray) << alias;
  }
  for (const std::int32_t alias : {0, -101, 1, 100, 106, 119, 121}) {
    EXPECT_EQ(ValueOf(bins, accessory, {alias}), kNoValue) << alias;
  }
}

TEST_P(CopyTrayAliasRules, UnitWhoseNameHasASuffixIsTheSame) {
  const auto& [model, handler, accessory, bins] = GetParam();
  for (const char* suffix : {" with staples", "0", " "}) {
    EXPECT_EQ(ValueOf(bins, std::string(accessory) + suffix, {}), kNoValue) << suffix;
    EXPECT_EQ(ValueOf(bins, std::string(accessory) + suffix, {103}), kCopyTray) << suffix;
    EXPECT_EQ(ValueOf(bins + 1, std::string(accessory) + suffix, {}), kCopyTray) << suffix;
  }
}

TEST_P(CopyTrayAliasRules, UnitOfADifferentNameHasNone) {
  const std::string accessory = GetParam().accessory;
  for (const std::string& name : {WithoutLast(accessory), WithoutLast(accessory) + "9",
                                  InLowerCase(accessory), InUpperCase(accessory)}) {
    EXPECT_EQ(ValueOf(9, name, {103}), kNoValue) << name;
  }
}

TEST_P(CopyTrayAliasRules, NullAliasesAreNone) {
  const AliasRuleRow& row = GetParam();
  EXPECT_EQ(
      ValueAfter(FinisherReport({{row.bins, row.accessory}}, {}), kMakersNames,
                 [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* setter) {
                   return row.handler(context, report.finishers(), 1, nullptr, 3, setter);
                 }),
      kNoValue);
}

TEST_P(CopyTrayAliasRules, AnyUnitWillDo) {
  const auto& [model, handler, accessory, bins] = GetParam();
  const Unit tray = {bins, accessory};
  const Unit large_tray = {bins + 1, accessory};
  const Unit other = {9, "Vorel A"};
  const Unit nameless = {9, std::nullopt};
  EXPECT_EQ(ValueBy(handler, {other, nameless, tray}, {103}), kCopyTray);
  EXPECT_EQ(ValueBy(handler, {other, tray, large_tray, nameless}, {}), kCopyTray);
  EXPECT_EQ(ValueBy(handler, {other, tray, nameless}, {}), kNoValue);
  EXPECT_EQ(ValueBy(handler, {other, nameless}, {103}), kNoValue);
}

TEST(CopyTrayAliasRule, ModelsHaveNoUnitsButTheirOwn) {
  const char* const accessories[] = {"Vorel Inner 2Way Tray-B1", "Vorel Finisher-Q1",
                                     "Vorel Inner 2 Way Tray-S1", "Vorel Finisher-A1"};
  for (std::size_t i = 0; i < std::size(accessories); ++i) {
    const Units units = {{9, accessories[i]}};
    const bool is_of_cedar = i >= 2;
    EXPECT_EQ(ValueBy(analyze_GetQVCopyTray_ASPEN, units, {}), is_of_cedar ? kNoValue : kCopyTray);
    EXPECT_EQ(ValueBy(analyze_GetQVCopyTray_FIR, units, {}), is_of_cedar ? kNoValue : kCopyTray);
    EXPECT_EQ(ValueBy(analyze_GetQVCopyTray_CEDAR, units, {}), is_of_cedar ? kCopyTray : kNoValue);
  }
}

// By alias alone ---------------------------------------------------------------------------------

struct AliasRow : NamedRow {
  FinisherOptionHandler handler;
  std::int32_t low;
  std::int32_t high;
};

class CopyTrayAliases : public testing::TestWithParam<AliasRow> {
 protected:
  Value ValueOf(const Aliases& aliases) const {
    return ValueBy(GetParam().handler, {{1, "Vorel A"}}, aliases);
  }
};

INSTANTIATE_TEST_SUITE_P(, CopyTrayAliases,
                         testing::Values(AliasRow{{"BEECH"}, analyze_GetQVCopyTray_BEECH, 101, 105},
                                         AliasRow{{"BIRCH"}, analyze_GetQVCopyTray_BIRCH, 101, 105},
                                         AliasRow{{"HAZEL"}, analyze_GetQVCopyTray_HAZEL, 101, 105},
                                         AliasRow{{"MAPLE"}, analyze_GetQVCopyTrayMAPLE, 101, 101}),
                         RowName<AliasRow>);

TEST_P(CopyTrayAliases, AliasOfTheRangeGivesIt) {
  for (std::int32_t alias = 95; alias <= 125; ++alias) {
    const bool is_inside = alias >= GetParam().low && alias <= GetParam().high;
    EXPECT_EQ(ValueOf({alias}), is_inside ? kCopyTray : kNoValue) << alias;
  }
}

TEST_P(CopyTrayAliases, OneOfSeveralAliasesWillDo) {
  EXPECT_EQ(ValueOf({101, 1, 2}), kCopyTray);
  EXPECT_EQ(ValueOf({1, 2, 101}), kCopyTray);
  EXPECT_EQ(ValueOf({100, 106, 119, 121}), kNoValue);
  EXPECT_EQ(ValueOf({}), kNoValue);
}

TEST_P(CopyTrayAliases, NullAliasesAreNone) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, "Vorel A"}}, {}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return GetParam().handler(context, report.finishers(), 1, nullptr, 3, row);
                 }),
      kNoValue);
}

TEST_P(CopyTrayAliases, AliasesBeyondTheCountAreNotSeen) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, "Vorel A"}}, {1, 101}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return GetParam().handler(context, report.finishers(), 1, report.aliases(), 1,
                                             row);
                 }),
      kNoValue);
}

TEST_P(CopyTrayAliases, FinishersDoNotMatter) {
  for (const Units& units :
       {Units{{kSmallest, std::nullopt}}, {{0, ""}}, {{9, "A"}, {1, std::nullopt}, {2, "B"}}}) {
    EXPECT_EQ(ValueBy(GetParam().handler, units, {101}), kCopyTray);
    EXPECT_EQ(ValueBy(GetParam().handler, units, {100}), kNoValue);
  }
}

// Never ------------------------------------------------------------------------------------------

TEST(CopyTrayCommon, NeverGivesAValue) {
  const Units units = {{9, "Vorel Inner 2Way Tray-B1"}, {9, "Vorel Finisher-Q1"}};
  EXPECT_EQ(ValueBy(analyze_GetQVCopyTrayCommon, units, {101, 105, 119, 121}), kNoValue);
}

}  // namespace
}  // namespace ia_test
