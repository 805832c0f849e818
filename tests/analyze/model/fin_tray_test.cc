#include <gtest/gtest.h>

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
const Value kFinisherTray = "FNTU1";
const Value kExitTray = "EXTU1";

// By bin count, with the rules of a test ---------------------------------------------------------

using Rules = std::vector<AccessoryBinRule>;

Value ByBinCount(const AccessoryBinRule* rules, std::int32_t rule_count, const Units& units) {
  return ValueAfter(FinisherReport(units, {101, 119, 121}), kMakersNames,
                    [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                      return analyze_GetQVFinTrayByBinTrayCount(
                          context, report.finishers(), report.count(), rules, rule_count,
                          report.aliases(), report.alias_count(), row);
                    });
}

Value ByBinCount(const Rules& rules, const Units& units) {
  return ByBinCount(rules.data(), static_cast<std::int32_t>(rules.size()), units);
}

const Rules kUnitRule = {{2, "Vorel Unit"}};

TEST(FinTrayByBinCount, UnitOfMoreBinsThanItsRuleHasIt) {
  EXPECT_EQ(ByBinCount(kUnitRule, {{3, "Vorel Unit-A1"}}), kFinisherTray);
  EXPECT_EQ(ByBinCount(kUnitRule, {{kLargest, "Vorel Unit"}}), kFinisherTray);
  EXPECT_EQ(ByBinCount(kUnitRule, {{2, "Vorel Unit-A1"}}), kNoValue);
  EXPECT_EQ(ByBinCount(kUnitRule, {{kSmallest, "Vorel Unit"}}), kNoValue);
}

TEST(FinTrayByBinCount, UnitOfNoRuleHasNone) {
  EXPECT_EQ(ByBinCount(kUnitRule, {{9, "Vorel Uni"}}), kNoValue);
  EXPECT_EQ(ByBinCount(kUnitRule, {{9, ""}}), kNoValue);
  EXPECT_EQ(ByBinCount(kUnitRule, {{9, std::nullopt}}), kNoValue);
}

TEST(FinTrayByBinCount, FirstRuleThatFitsDecides) {
  const Rules rules = {{9, "Other"}, {5, "Vorel Unit"}, {1, "Vorel Unit-A1"}, {1, "Vorel"}};
  EXPECT_EQ(ByBinCount(rules, {{5, "Vorel Unit-A1"}}), kNoValue);
  EXPECT_EQ(ByBinCount(rules, {{6, "Vorel Unit-A1"}}), kFinisherTray);
  EXPECT_EQ(ByBinCount(rules, {{2, "Vorel Uni"}}), kFinisherTray);
}

TEST(FinTrayByBinCount, AnyUnitWillDo) {
  const Unit unit = {3, "Vorel Unit"};
  const Unit small_unit = {2, "Vorel Unit"};
  const Unit other = {9, "Vorel A"};
  const Unit nameless = {9, std::nullopt};
  EXPECT_EQ(ByBinCount(kUnitRule, {other, nameless, small_unit, unit}), kFinisherTray);
  EXPECT_EQ(ByBinCount(kUnitRule, {unit, small_unit, nameless, other}), kFinisherTray);
  EXPECT_EQ(ByBinCount(kUnitRule, {other, nameless, small_unit}), kNoValue);
}

TEST(FinTrayByBinCount, WithoutRulesThereIsNone) {
  EXPECT_EQ(ByBinCount({}, {{9, "Vorel Unit"}}), kNoValue);
  EXPECT_EQ(ByBinCount(nullptr, 3, {{9, "Vorel Unit"}}), kNoValue);
  for (const std::int32_t count : {0, -1, kSmallest}) {
    EXPECT_EQ(ByBinCount(kUnitRule.data(), count, {{9, "Vorel Unit"}}), kNoValue) << count;
  }
}

TEST(FinTrayByBinCount, RuleWithoutNameFitsNoUnit) {
  EXPECT_EQ(ByBinCount({{0, nullptr}}, {{9, "Vorel Unit"}}), kNoValue);
  EXPECT_EQ(ByBinCount({{9, nullptr}, {2, "Vorel Unit"}}, {{3, "Vorel Unit"}}), kFinisherTray);
}

TEST(FinTrayByBinCount, NullAliasesDoNotMatter) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{3, "Vorel Unit"}}, {}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return analyze_GetQVFinTrayByBinTrayCount(context, report.finishers(), 1,
                                                             kUnitRule.data(), 1, nullptr, 3, row);
                 }),
      kFinisherTray);
}

// By bin count, with the rules of a model --------------------------------------------------------

struct BinRuleRow {
  const char* model;
  FinisherOptionHandler handler;
  const char* accessory;
  std::int32_t bins;
};

void PrintTo(const BinRuleRow& row, std::ostream* out) {
  *out << row.model << " " << row.accessory;
}

class FinTrayBinRules : public testing::TestWithParam<BinRuleRow> {
 protected:
  Value ValueOf(std::int32_t bins, const std::string& name, const Aliases& aliases = {}) const {
    return ValueBy(GetParam().handler, {{bins, name}}, aliases);
  }
};

INSTANTIATE_TEST_SUITE_P(
    , FinTrayBinRules,
    testing::Values(BinRuleRow{"ALDER", analyze_GetQVFinTray_ALDER, "Vorel Finisher-T1", 2},
                    BinRuleRow{"ALDER", analyze_GetQVFinTray_ALDER, "Vorel Saddle Finisher-T2", 3},
                    BinRuleRow{"ASPEN", analyze_GetQVFinTray_ASPEN, "Vorel Finisher-U3", 2},
                    BinRuleRow{"ASPEN", analyze_GetQVFinTray_ASPEN, "Vorel Saddle Finisher-U4", 3},
                    BinRuleRow{"ASPEN", analyze_GetQVFinTray_ASPEN, "Vorel Finisher-C1", 2},
                    BinRuleRow{"ASPEN", analyze_GetQVFinTray_ASPEN, "Vorel Saddle Finisher-C2", 3},
                    BinRuleRow{"FIR", analyze_GetQVFinTray_FIR, "Vorel Finisher-U1/U3", 2},
                    BinRuleRow{"FIR", analyze_GetQVFinTray_FIR, "Vorel Saddle Finisher-U2/U4", 3}),
    [](const testing::TestParamInfo<BinRuleRow>& info) {
      return TestName(std::string(info.param.model) + info.param.accessory);
    });

TEST_P(FinTrayBinRules, UnitOfMoreBinsThanTheRuleHasIt) {
  const auto& [model, handler, accessory, bins] = GetParam();
  EXPECT_EQ(ValueOf(bins - 1, accessory), kNoValue);
  EXPECT_EQ(ValueOf(bins, accessory), kNoValue);
  EXPECT_EQ(ValueOf(bins + 1, accessory), kFinisherTray);
  EXPECT_EQ(ValueOf(kSmallest, accessory), kNoValue);
  EXPECT_EQ(ValueOf(kLargest, accessory), kFinisherTray);
}

TEST_P(FinTrayBinRules, UnitWhoseNameHasASuffixIsTheSame) {
  const auto& [model, handler, accessory, bins] = GetParam();
  for (const char* suffix : {" with staples", "0", " "}) {
    EXPECT_EQ(ValueOf(bins, std::string(accessory) + suffix), kNoValue) << suffix;
    EXPECT_EQ(ValueOf(bins + 1, std::string(accessory) + suffix), kFinisherTray) << suffix;
  }
}

TEST_P(FinTrayBinRules, UnitOfADifferentNameHasNone) {
  const std::string accessory = GetParam().accessory;
  for (const std::string& name : {WithoutLast(accessory), WithoutLast(accessory) + "9",
                                  InLowerCase(accessory), InUpperCase(accessory)}) {
    EXPECT_EQ(ValueOf(9, name, {121}), kNoValue) << name;
  }
}

TEST_P(FinTrayBinRules, AliasesDoNotMatter) {
  const auto& [model, handler, accessory, bins] = GetParam();
  EXPECT_EQ(ValueOf(bins, accessory, {101, 119, 121}), kNoValue);
  EXPECT_EQ(ValueOf(bins + 1, accessory, {101, 119, 121}), kFinisherTray);
}

TEST_P(FinTrayBinRules, AnyUnitWillDo) {
  const auto& [model, handler, accessory, bins] = GetParam();
  const Unit unit = {bins + 1, accessory};
  const Unit small_unit = {bins, accessory};
  const Unit other = {9, "Vorel A"};
  const Unit nameless = {9, std::nullopt};
  EXPECT_EQ(ValueBy(handler, {other, nameless, small_unit, unit}, {}), kFinisherTray);
  EXPECT_EQ(ValueBy(handler, {unit, small_unit, nameless, other}, {}), kFinisherTray);
  EXPECT_EQ(ValueBy(handler, {other, nameless, small_unit}, {}), kNoValue);
}

TEST(FinTrayBinRule, ModelsHaveNoUnitsButTheirOwn) {
  struct Accessory {
    const char* name;
    FinisherOptionHandler handler;
  };
  const Accessory accessories[] = {
      {"Vorel Finisher-T1", analyze_GetQVFinTray_ALDER},
      {"Vorel Saddle Finisher-T2", analyze_GetQVFinTray_ALDER},
      {"Vorel Finisher-U3", analyze_GetQVFinTray_ASPEN},
      {"Vorel Saddle Finisher-U4", analyze_GetQVFinTray_ASPEN},
      {"Vorel Finisher-C1", analyze_GetQVFinTray_ASPEN},
      {"Vorel Saddle Finisher-C2", analyze_GetQVFinTray_ASPEN},
      {"Vorel Finisher-U1/U3", analyze_GetQVFinTray_FIR},
      {"Vorel Saddle Finisher-U2/U4", analyze_GetQVFinTray_FIR},
  };
  for (const Accessory& accessory : accessories) {
    for (const FinisherOptionHandler handler :
         {analyze_GetQVFinTray_ALDER, analyze_GetQVFinTray_ASPEN, analyze_GetQVFinTray_FIR}) {
      EXPECT_EQ(ValueBy(handler, {{9, accessory.name}}, {}),
                handler == accessory.handler ? kFinisherTray : kNoValue)
          << accessory.name;
    }
  }
}

// By alias 121 -----------------------------------------------------------------------------------

struct AliasRow : NamedRow {
  FinisherOptionHandler handler;
};

class FinTrayAliases : public testing::TestWithParam<AliasRow> {
 protected:
  Value ValueOf(const Aliases& aliases) const {
    return ValueBy(GetParam().handler, {{1, "Vorel A"}}, aliases);
  }
};

INSTANTIATE_TEST_SUITE_P(, FinTrayAliases,
                         testing::Values(AliasRow{{"BEECH"}, analyze_GetQVFinTray_BEECH},
                                         AliasRow{{"BIRCH"}, analyze_GetQVFinTray_BIRCH},
                                         AliasRow{{"HAZEL"}, analyze_GetQVFinTray_HAZEL},
                                         AliasRow{{"MAPLE"}, analyze_GetQVFinTrayMAPLE},
                                         AliasRow{{"MYRTLE"}, analyze_GetQVFinTrayMYRTLE},
                                         AliasRow{{"WILLOW"}, analyze_GetQVFinTrayWILLOW}),
                         RowName<AliasRow>);

TEST_P(FinTrayAliases, Alias121GivesIt) {
  for (std::int32_t alias = 95; alias <= 130; ++alias) {
    EXPECT_EQ(ValueOf({alias}), alias == 121 ? kFinisherTray : kNoValue) << alias;
  }
}

TEST_P(FinTrayAliases, OneOfSeveralAliasesWillDo) {
  EXPECT_EQ(ValueOf({121, 1, 2}), kFinisherTray);
  EXPECT_EQ(ValueOf({1, 2, 121}), kFinisherTray);
  EXPECT_EQ(ValueOf({101, 119, 120, 122}), kNoValue);
  EXPECT_EQ(ValueOf({}), kNoValue);
}

TEST_P(FinTrayAliases, NullAliasesAreNone) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, "Vorel A"}}, {}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return GetParam().handler(context, report.finishers(), 1, nullptr, 3, row);
                 }),
      kNoValue);
}

TEST_P(FinTrayAliases, AliasesBeyondTheCountAreNotSeen) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, "Vorel A"}}, {1, 121}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return GetParam().handler(context, report.finishers(), 1, report.aliases(), 1,
                                             row);
                 }),
      kNoValue);
}

TEST_P(FinTrayAliases, FinishersDoNotMatter) {
  for (const Units& units :
       {Units{{kSmallest, std::nullopt}}, {{0, ""}}, {{9, "A"}, {1, std::nullopt}, {2, "B"}}}) {
    EXPECT_EQ(ValueBy(GetParam().handler, units, {121}), kFinisherTray);
    EXPECT_EQ(ValueBy(GetParam().handler, units, {120}), kNoValue);
  }
}

// By an inner unit and alias 119 -----------------------------------------------------------------

struct InnerUnitRow {
  const char* model;
  FinisherOptionHandler handler;
  const char* unit;
  Value value;
  bool is_whole_name;
};

void PrintTo(const InnerUnitRow& row, std::ostream* out) { *out << row.model << " " << row.unit; }

class FinTrayInnerUnits : public testing::TestWithParam<InnerUnitRow> {
 protected:
  Value ValueOf(const Units& units, const Aliases& aliases) const {
    return ValueBy(GetParam().handler, units, aliases);
  }
};

INSTANTIATE_TEST_SUITE_P(
    , FinTrayInnerUnits,
    testing::Values(InnerUnitRow{"SUMAC", analyze_GetQVFinTraySUMAC, "Vorel Inner Finisher-F1",
                                 kExitTray, false},
                    InnerUnitRow{"HORNBEAM", analyze_GetQVFinTrayHORNBEAM,
                                 "Vorel Inner Finisher-W1", kFinisherTray, true},
                    InnerUnitRow{"HORNBEAM", analyze_GetQVFinTrayHORNBEAM,
                                 "Vorel Inner Shift Sorter-D1", kFinisherTray, true}),
    [](const testing::TestParamInfo<InnerUnitRow>& info) {
      return TestName(std::string(info.param.model) + info.param.unit);
    });

TEST_P(FinTrayInnerUnits, UnitBesideAlias119HasIt) {
  for (std::int32_t alias = 95; alias <= 130; ++alias) {
    EXPECT_EQ(ValueOf({{1, GetParam().unit}}, {alias}), alias == 119 ? GetParam().value : kNoValue)
        << alias;
  }
  EXPECT_EQ(ValueOf({{1, GetParam().unit}}, {1, 2, 119}), GetParam().value);
  EXPECT_EQ(ValueOf({{1, GetParam().unit}}, {}), kNoValue);
}

TEST_P(FinTrayInnerUnits, BinsDoNotMatter) {
  for (const std::int32_t bins : {kSmallest, 0, 1, 2, 3, kLargest}) {
    EXPECT_EQ(ValueOf({{bins, GetParam().unit}}, {119}), GetParam().value) << bins;
  }
}

TEST_P(FinTrayInnerUnits, UnitWhoseNameHasASuffix) {
  for (const char* suffix : {" with staples", "0", " "}) {
    EXPECT_EQ(ValueOf({{1, std::string(GetParam().unit) + suffix}}, {119}),
              GetParam().is_whole_name ? kNoValue : GetParam().value)
        << suffix;
  }
}

TEST_P(FinTrayInnerUnits, UnitOfADifferentNameHasNone) {
  const std::string unit = GetParam().unit;
  for (const std::string& name :
       {WithoutLast(unit), WithoutLast(unit) + "9", InLowerCase(unit), InUpperCase(unit),
        "A " + unit, std::string("Vorel A"), std::string()}) {
    EXPECT_EQ(ValueOf({{1, name}}, {119}), kNoValue) << name;
  }
  EXPECT_EQ(ValueOf({{1, std::nullopt}}, {119}), kNoValue);
}

TEST_P(FinTrayInnerUnits, UnitIsFoundAmongOthers) {
  const Unit unit = {1, GetParam().unit};
  const Unit other = {1, "Vorel A"};
  const Unit nameless = {1, std::nullopt};
  EXPECT_EQ(ValueOf({other, nameless, unit}, {119}), GetParam().value);
  EXPECT_EQ(ValueOf({unit, other, nameless}, {119}), GetParam().value);
  EXPECT_EQ(ValueOf({other, nameless}, {119}), kNoValue);
}

TEST_P(FinTrayInnerUnits, NullAliasesAreNone) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, GetParam().unit}}, {}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return GetParam().handler(context, report.finishers(), 1, nullptr, 3, row);
                 }),
      kNoValue);
}

TEST(FinTrayInnerUnit, ModelsHaveNoUnitsButTheirOwn) {
  EXPECT_EQ(ValueBy(analyze_GetQVFinTrayHORNBEAM, {{1, "Vorel Inner Finisher-F1"}}, {119}),
            kNoValue);
  EXPECT_EQ(ValueBy(analyze_GetQVFinTraySUMAC, {{1, "Vorel Inner Finisher-W1"}}, {119}), kNoValue);
  EXPECT_EQ(ValueBy(analyze_GetQVFinTraySUMAC, {{1, "Vorel Inner Shift Sorter-D1"}}, {119}),
            kNoValue);
}

// Never ------------------------------------------------------------------------------------------

TEST(FinTrayCommon, NeverGivesAValue) {
  const Units units = {{9, "Vorel Finisher-T1"}, {9, "Vorel Inner Finisher-F1"}};
  EXPECT_EQ(ValueBy(analyze_GetQVFinTrayCommon, units, {101, 119, 121}), kNoValue);
}

}  // namespace
}  // namespace ia_test
