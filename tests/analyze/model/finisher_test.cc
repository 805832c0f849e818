#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/analyze/model/model_names.h"
#include "tests/info_common/named_row.h"
#include "tests/support/turkish_locale.h"

namespace ia_test {
namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

const Value kNoValue = std::nullopt;

// The value string -------------------------------------------------------------------------------

Value ValueString(const Units& units, const char* names) {
  FinisherAnalyzer analyzer(names);
  const FinisherReport report(units, {});
  char* const text =
      analyze_GetQVFinisherValueString(analyzer.get(), report.finishers(), report.count());
  const Value value = text != nullptr ? Value(text) : std::nullopt;
  std::free(text);
  return value;
}

struct ValueStringRow : NamedRow {
  Units units;
  const char* names;
  Value value;
};

class FinisherValueString : public testing::TestWithParam<ValueStringRow> {};

INSTANTIATE_TEST_SUITE_P(
    , FinisherValueString,
    testing::Values(
        ValueStringRow{{"WholeName"}, {{1, "Vorel A1"}}, "Vorel A1:FINA1", "FINA1"},
        ValueStringRow{{"PrefixOfTheName"}, {{1, "Vorel A1 Plus"}}, "Vorel A1:FINA1", "FINA1"},
        ValueStringRow{{"ShortenedName"}, {{1, "Vorel A"}}, "Vorel A1:FINA1", kNoValue},
        ValueStringRow{{"NameInDifferentCase"}, {{1, "vorel a1"}}, "Vorel A1:FINA1", kNoValue},
        ValueStringRow{{"NameAfterOtherText"}, {{1, "A Vorel A1"}}, "Vorel A1:FINA1", kNoValue},
        ValueStringRow{{"OtherName"}, {{1, "Vorel B1"}}, "Vorel A1:FINA1", kNoValue},
        ValueStringRow{{"FirstFlagThatFits"},
                       {{1, "Vorel A1 Plus"}},
                       "Vorel B:FINB,Vorel A:FINA,Vorel A1:FINA1,Vorel A1 Plus:FINP",
                       "FINA"},
        ValueStringRow{{"LongerFlagAheadOfTheShorter"},
                       {{1, "Vorel A1 Plus"}},
                       "Vorel A1 Plus:FINP,Vorel A:FINA",
                       "FINP"},
        ValueStringRow{{"LastFinisherOfSeveral"},
                       {{1, "Vorel A"}, {1, "Vorel B"}},
                       "Vorel A:FINA,Vorel B:FINB",
                       "FINB"},
        ValueStringRow{{"LastFinisherInWhateverOrderTheFlagsAre"},
                       {{1, "Vorel A"}, {1, "Vorel B"}},
                       "Vorel B:FINB,Vorel A:FINA",
                       "FINB"},
        ValueStringRow{{"LastOfThreeFinishers"},
                       {{1, "Vorel A"}, {1, "Vorel B"}, {1, "Vorel A"}},
                       "Vorel A:FINA,Vorel B:FINB",
                       "FINA"},
        ValueStringRow{{"LastFinisherWithoutFlagChangesNothing"},
                       {{1, "Vorel A"}, {1, "Vorel B"}, {1, "Other"}},
                       "Vorel A:FINA,Vorel B:FINB",
                       "FINB"},
        ValueStringRow{{"FirstFinisherWithoutFlagChangesNothing"},
                       {{1, "Other"}, {1, "Vorel A"}},
                       "Vorel A:FINA",
                       "FINA"},
        ValueStringRow{{"NullNameIsSkipped"},
                       {{1, std::nullopt}, {1, "Vorel A"}, {1, std::nullopt}},
                       "Vorel A:FINA",
                       "FINA"},
        ValueStringRow{{"NullNameOnly"}, {{1, std::nullopt}}, "Vorel A:FINA", kNoValue},
        ValueStringRow{
            {"EmptyNameIsSkipped"}, {{1, ""}, {1, "Vorel A"}, {1, ""}}, "Vorel A:FINA", "FINA"},
        ValueStringRow{{"EmptyNameOnly"}, {{1, ""}}, "Vorel A:FINA", kNoValue},
        ValueStringRow{{"EmptyValueOfAFlag"}, {{1, "Vorel A"}}, "Vorel A", ""},
        ValueStringRow{{"EmptyValueReplacesAnEarlierOne"},
                       {{1, "Vorel B"}, {1, "Vorel A"}},
                       "Vorel A,Vorel B:FINB",
                       ""},
        ValueStringRow{{"ValueWithColons"}, {{1, "Vorel A"}}, "Vorel A:F:I:N", "F:I:N"},
        ValueStringRow{{"BinsDoNotMatter"},
                       {{kSmallest, "Vorel A"}, {kLargest, "Vorel B"}},
                       "Vorel A:FINA,Vorel B:FINB",
                       "FINB"},
        ValueStringRow{{"NoFlags"}, {{1, "Vorel A"}}, "", kNoValue},
        ValueStringRow{{"NoFinishers"}, {}, "Vorel A:FINA", kNoValue}),
    RowName<ValueStringRow>);

TEST_P(FinisherValueString, IsThatOfTheLastFinisherWithAFlag) {
  EXPECT_EQ(ValueString(GetParam().units, GetParam().names), GetParam().value);
}

TEST(FinisherValueStringOf, MissingStoreOfNamesIsNull) {
  EXPECT_EQ(ValueString({{1, "Vorel A"}}, nullptr), kNoValue);
}

// Stores that no text of flags makes, but that a caller may hand in.
class HandMadeNames : public testing::Test {
 protected:
  std::string Value(const Units& units) {
    const FinisherReport report(units, {});
    char* const value =
        analyze_GetQVFinisherValueString(&context_, report.finishers(), report.count());
    const std::string text = value != nullptr ? value : "(null)";
    std::free(value);
    return text;
  }

  std::string name_ = "Vorel A";
  std::string value_ = "FA";
  std::string other_name_ = "Vorel B";
  std::array<FlagPair, 2> pairs_ = {{{name_.data(), value_.data()}, {other_name_.data(), nullptr}}};
  FlagInfo names_ = {pairs_.data(), 2, 2};
  AnalyzeContext context_ = [this] {
    AnalyzeContext context{};
    context.finisher_name_flags = &names_;
    return context;
  }();
};

TEST_F(HandMadeNames, LastFinisherWithAFlagDecidesAlsoWithoutValue) {
  EXPECT_EQ(Value({{1, "Vorel A"}}), "FA");
  EXPECT_EQ(Value({{1, "Vorel A"}, {1, "Vorel B"}}), "(null)");
  EXPECT_EQ(Value({{1, "Vorel B"}, {1, "Vorel A"}}), "FA");
}

TEST_F(HandMadeNames, FlagWithoutNameFitsNoFinisher) {
  pairs_[0].name = nullptr;
  EXPECT_EQ(Value({{1, "Vorel A"}, {1, ""}}), "(null)");
}

TEST_F(HandMadeNames, StoreOfFewerThanNoFlagsHasNone) {
  for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    names_.count = count;
    EXPECT_EQ(Value({{1, "Vorel A"}}), "(null)") << count;
  }
}

TEST(FinisherValueStringOf, NullArgumentIsNull) {
  FinisherAnalyzer analyzer(kMakersNames);
  const FinisherReport report({{1, "Vorel A"}}, {});
  EXPECT_EQ(analyze_GetQVFinisherValueString(nullptr, report.finishers(), 1), nullptr);
  EXPECT_EQ(analyze_GetQVFinisherValueString(analyzer.get(), nullptr, 1), nullptr);
}

TEST(FinisherValueStringOf, CountBelowOneIsNull) {
  FinisherAnalyzer analyzer(kMakersNames);
  const FinisherReport report({{1, "Vorel A"}}, {});
  for (const std::int32_t count : {0, -1, kSmallest}) {
    EXPECT_EQ(analyze_GetQVFinisherValueString(analyzer.get(), report.finishers(), count), nullptr)
        << count;
  }
}

TEST(FinisherCommon, GivesTheValueString) {
  const char* const names = "Vorel A:FINA,Vorel B:FINB";
  EXPECT_EQ(ValueBy(analyze_GetQVFinisherCommon, {{1, "Vorel A"}, {1, "Vorel B"}}, {}, names),
            "FINB");
  EXPECT_EQ(ValueBy(analyze_GetQVFinisherCommon, {{1, "Vorel C"}}, {101, 119, 121}, names),
            kNoValue);
}

// Every handler but the first-bins one reads the store of names, and takes a missing one as empty.
TEST(FinisherHandlersWithoutNames, GiveNoValueString) {
  const auto handlers = {analyze_GetQVFinisherCommon, analyze_GetQVFinisherSpecialIn2TrayCommon,
                         analyze_GetQVFinisher_ASPEN, analyze_GetQVFinisher_FIR,
                         analyze_GetQVFinisher_BEECH, analyze_GetQVFinisher_BIRCH,
                         analyze_GetQVFinisher_CEDAR, analyze_GetQVFinisher_HAZEL,
                         analyze_GetQVFinisherMAPLE,  analyze_GetQVFinisherSPRUCE,
                         analyze_GetQVFinisherWILLOW, analyze_GetQVFinisherSUMAC,
                         analyze_GetQVFinisherHICKORY};
  for (const FinisherOptionHandler handler : handlers) {
    EXPECT_EQ(ValueBy(handler, {{3, "Vorel A"}}, {}, nullptr), kNoValue);
    EXPECT_EQ(ValueBy(handler, {{3, "Vorel A"}}, {}, ""), kNoValue);
  }
}

// By bin alias, with the rules of a test ---------------------------------------------------------

using Rules = std::vector<AccessoryBinRule>;

struct Range {
  std::int32_t low;
  std::int32_t high;
};

Value ByBinAlias(const Rules& rules, const Units& units, const Aliases& aliases,
                 Range range = {101, 105}, const char* names = kMakersNames) {
  return ValueAfter(FinisherReport(units, aliases), names,
                    [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                      return analyze_GetQVFinisherByBinTrayAlias(
                          context, report.finishers(), report.count(), rules.data(),
                          static_cast<std::int32_t>(rules.size()), report.aliases(),
                          report.alias_count(), range.low, range.high, row);
                    });
}

const Rules kTrayRule = {{2, "Vorel Tray"}};

TEST(FinisherByBinAlias, UnitOfARuleBesideAnAliasOfTheRangeIsSkipped) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{1, "Vorel Tray-A1"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{kSmallest, "Vorel Tray-A1"}}, {103}), kNoValue);
}

TEST(FinisherByBinAlias, UnitOfMoreBinsIsAFinisher) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{3, "Vorel Tray-A1"}}, {103}), "BYNAME");
}

TEST(FinisherByBinAlias, UnitWithoutAliasOfTheRangeIsAFinisher) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {100, 106}), "BYNAME");
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray-A1"}}, {}), "BYNAME");
}

TEST(FinisherByBinAlias, UnitOfNoRuleIsAFinisher) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tra"}}, {103}), "BYNAME");
}

TEST(FinisherByBinAlias, FirstRuleThatFitsDecides) {
  const Rules rules = {{9, "Other"}, {2, "Vorel Tray"}, {5, "Vorel Tray-A1"}, {5, "Vorel"}};
  EXPECT_EQ(ByBinAlias(rules, {{2, "Vorel Tray-A1"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(rules, {{3, "Vorel Tray-A1"}}, {103}), "BYNAME");
}

TEST(FinisherByBinAlias, WithoutRulesEveryUnitIsAFinisher) {
  EXPECT_EQ(ByBinAlias({}, {{1, "Vorel Tray"}}, {103}), "BYNAME");
}

TEST(FinisherByBinAlias, NullRulesAreNone) {
  EXPECT_EQ(
      ValueAfter(FinisherReport({{1, "Vorel Tray"}}, {103}), kMakersNames,
                 [](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                   return analyze_GetQVFinisherByBinTrayAlias(context, report.finishers(), 1,
                                                              nullptr, 3, report.aliases(), 1, 101,
                                                              105, row);
                 }),
      "BYNAME");
}

TEST(FinisherByBinAlias, RulesBeyondTheCountAreNotSeen) {
  for (const std::int32_t count : {0, -1, kSmallest}) {
    EXPECT_EQ(
        ValueAfter(FinisherReport({{1, "Vorel Tray"}}, {103}), kMakersNames,
                   [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                     return analyze_GetQVFinisherByBinTrayAlias(context, report.finishers(), 1,
                                                                kTrayRule.data(), count,
                                                                report.aliases(), 1, 101, 105, row);
                   }),
        "BYNAME")
        << count;
  }
}

TEST(FinisherByBinAlias, RuleWithoutNameFitsNoUnit) {
  EXPECT_EQ(ByBinAlias({{9, nullptr}, {2, "Vorel Tray"}}, {{2, "Vorel Tray"}}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias({{9, nullptr}}, {{2, "Vorel Tray"}}, {103}), "BYNAME");
}

TEST(FinisherByBinAlias, ReversedRangeHasNoAlias) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {101, 103, 105}, {105, 101}), "BYNAME");
}

TEST(FinisherByBinAlias, RangeOfOneCode) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {103}, {103, 103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}}, {102, 104}, {103, 103}), "BYNAME");
}

TEST(FinisherByBinAlias, NullAliasesAreNone) {
  for (const std::int32_t count : {0, 1, kLargest}) {
    EXPECT_EQ(
        ValueAfter(FinisherReport({{2, "Vorel Tray"}}, {}), kMakersNames,
                   [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* row) {
                     return analyze_GetQVFinisherByBinTrayAlias(context, report.finishers(), 1,
                                                                kTrayRule.data(), 1, nullptr, count,
                                                                kSmallest, kLargest, row);
                   }),
        "BYNAME")
        << count;
  }
}

TEST(FinisherByBinAlias, AllUnitsGiveTheValueOnceOneIsAFinisher) {
  const char* const names = "Vorel Tray:TRAY,Vorel Finisher:FIN";
  const Unit tray = {2, "Vorel Tray"};
  const Unit finisher = {2, "Vorel Finisher"};
  EXPECT_EQ(ByBinAlias(kTrayRule, {tray, finisher}, {103}, {101, 105}, names), "FIN");
  EXPECT_EQ(ByBinAlias(kTrayRule, {finisher, tray}, {103}, {101, 105}, names), "TRAY");
  EXPECT_EQ(ByBinAlias(kTrayRule, {tray, {3, "Vorel Tray"}}, {103}, {101, 105}, names), "TRAY");
  EXPECT_EQ(ByBinAlias(kTrayRule, {tray, tray}, {103}, {101, 105}, names), kNoValue);
}

TEST(FinisherByBinAlias, UnitOfNoFlagIsAFinisherAnyway) {
  const char* const names = "Vorel Tray:TRAY";
  EXPECT_EQ(ByBinAlias(kTrayRule, {{2, "Vorel Tray"}, {2, ""}}, {103}, {101, 105}, names), "TRAY");
}

TEST(FinisherByBinAlias, UnitWithoutNameIsNoFinisher) {
  const Unit tray = {2, "Vorel Tray"};
  const Unit nameless = {9, std::nullopt};
  EXPECT_EQ(ByBinAlias(kTrayRule, {nameless}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {nameless, tray, nameless}, {103}), kNoValue);
  EXPECT_EQ(ByBinAlias(kTrayRule, {nameless, tray, nameless}, {}), "BYNAME");
}

TEST(FinisherByBinAlias, WithoutNamedFinisherThereIsNoValue) {
  EXPECT_EQ(ByBinAlias(kTrayRule, {{9, "Vorel Tray"}}, {}, {101, 105}, "Other:OTHER"), kNoValue);
}

// By bin alias, with the rules of a model --------------------------------------------------------

struct AliasRuleRow {
  const char* model;
  FinisherOptionHandler handler;
  const char* accessory;
  std::int32_t bins;
  bool is_none_of_one_bin;  // a unit of one bin means that there is no finisher, aliases or not

  // The value of one unit of the rule.
  Value ValueOf(std::int32_t unit_bins, bool has_alias) const {
    if (is_none_of_one_bin && unit_bins == 1) return "None";
    return has_alias && unit_bins <= bins ? kNoValue : "BYNAME";
  }
};

void PrintTo(const AliasRuleRow& row, std::ostream* out) {
  *out << row.model << " " << row.accessory;
}

class FinisherAliasRules : public testing::TestWithParam<AliasRuleRow> {
 protected:
  Value ValueOf(std::int32_t bins, const std::string& name, const Aliases& aliases) const {
    return ValueBy(GetParam().handler, {{bins, name}}, aliases);
  }
};

const auto kAliasRules = testing::Values(
    AliasRuleRow{"ASPEN", analyze_GetQVFinisher_ASPEN, "Vorel Inner 2Way Tray-B1", 2, false},
    AliasRuleRow{"FIR", analyze_GetQVFinisher_FIR, "Vorel Inner 2Way Tray-B1", 1, false},
    AliasRuleRow{"BEECH", analyze_GetQVFinisher_BEECH, "Vorel 3 Way Unit-D1", 1, false},
    AliasRuleRow{"BIRCH", analyze_GetQVFinisher_BIRCH, "Vorel 3 Way Unit-D1", 2, true},
    AliasRuleRow{"BIRCH", analyze_GetQVFinisher_BIRCH, "Vorel 3 Way Unit-D2", 2, true},
    AliasRuleRow{"CEDAR", analyze_GetQVFinisher_CEDAR, "Vorel Inner 2 Way Tray-S1", 2, true},
    AliasRuleRow{"HAZEL", analyze_GetQVFinisher_HAZEL, "Vorel Inner 2 Way Tray-S1", 2, true},
    AliasRuleRow{"MAPLE", analyze_GetQVFinisherMAPLE, "Vorel Inner 2Way Tray-R1", 2, true});

INSTANTIATE_TEST_SUITE_P(, FinisherAliasRules, kAliasRules,
                         [](const testing::TestParamInfo<AliasRuleRow>& info) {
                           return TestName(std::string(info.param.model) + info.param.accessory);
                         });

constexpr auto kBins = {kSmallest, -1, 0, 1, 2, 3, 4, kLargest};

TEST_P(FinisherAliasRules, UnitBesideAnAliasIsATrayUpToTheBinsOfTheRule) {
  for (const std::int32_t bins : kBins) {
    EXPECT_EQ(ValueOf(bins, GetParam().accessory, {103}), GetParam().ValueOf(bins, true)) << bins;
  }
}

TEST_P(FinisherAliasRules, UnitWhoseNameHasASuffixIsTheSame) {
  const std::string accessory = GetParam().accessory;
  for (const char* suffix : {" with staples", "0", " "}) {
    for (const std::int32_t bins : kBins) {
      EXPECT_EQ(ValueOf(bins, accessory + suffix, {103}), GetParam().ValueOf(bins, true))
          << suffix << bins;
    }
  }
}

TEST_P(FinisherAliasRules, UnitWithoutAliasIsAFinisher) {
  for (const std::int32_t bins : kBins) {
    EXPECT_EQ(ValueOf(bins, GetParam().accessory, {}), GetParam().ValueOf(bins, false)) << bins;
  }
}

TEST_P(FinisherAliasRules, UnitOfADifferentNameIsAFinisher) {
  const std::string accessory = GetParam().accessory;
  for (const std::string& name : {WithoutLast(accessory), WithoutLast(accessory) + "9",
                                  InLowerCase(accessory), InUpperCase(accessory)}) {
    for (const std::int32_t bins : kBins) {
      EXPECT_EQ(ValueOf(bins, name, {103}), "BYNAME") << name << bins;
    }
  }
}

TEST_P(FinisherAliasRules, AnyAliasFrom101To105Counts) {
  const AliasRuleRow& row = GetParam();
  for (const std::int32_t alias : {101, 102, 103, 104, 105}) {
    EXPECT_EQ(ValueOf(row.bins, row.accessory, {alias}), row.ValueOf(row.bins, true)) << alias;
    EXPECT_EQ(ValueOf(row.bins, row.accessory, {100, 1, alias}), row.ValueOf(row.bins, true))
        << alias;
  }
  for (const std::int32_t alias : {0, -101, 1, 100, 106, 119, 121}) {
    EXPECT_EQ(ValueOf(row.bins, row.accessory, {alias}), row.ValueOf(row.bins, false)) << alias;
  }
}

TEST_P(FinisherAliasRules, NullAliasesAreNone) {
  const AliasRuleRow& row = GetParam();
  EXPECT_EQ(
      ValueAfter(FinisherReport({{row.bins, row.accessory}}, {}), kMakersNames,
                 [&](AnalyzeContext* context, const FinisherReport& report, OptionSetter* setter) {
                   return row.handler(context, report.finishers(), 1, nullptr, 3, setter);
                 }),
      row.ValueOf(row.bins, false));
}

TEST_P(FinisherAliasRules, TrayBesideAFinisherGivesTheValueOfAll) {
  const AliasRuleRow& row = GetParam();
  const Unit tray = {2, row.accessory};
  const Unit finisher = {row.bins, "Finisher"};
  const std::string names = "Finisher:FIN," + std::string(row.accessory) + ":TRAY";
  EXPECT_EQ(ValueBy(row.handler, {tray, finisher}, {103}, names.c_str()), "FIN");
  EXPECT_EQ(ValueBy(row.handler, {finisher, tray}, {103}, names.c_str()), "TRAY");
  EXPECT_EQ(ValueBy(row.handler, {{0, row.accessory}, {0, row.accessory}}, {103}, names.c_str()),
            kNoValue);
}

TEST_P(FinisherAliasRules, UnitOfOneBinAmongOthers) {
  const AliasRuleRow& row = GetParam();
  const Unit tray = {1, row.accessory};
  const Unit finisher = {1, "Vorel Finisher"};
  const Unit nameless = {1, std::nullopt};
  const Value value = row.is_none_of_one_bin ? "None" : "BYNAME";
  EXPECT_EQ(ValueBy(row.handler, {tray, finisher}, {103}), value);
  EXPECT_EQ(ValueBy(row.handler, {finisher, tray}, {103}), value);
  EXPECT_EQ(ValueBy(row.handler, {nameless, finisher, tray, nameless}, {}), value);
  EXPECT_EQ(ValueBy(row.handler, {finisher, tray, tray}, {}), value);
  EXPECT_EQ(ValueBy(row.handler, {finisher, nameless}, {103}), "BYNAME");
}

TEST(FinisherAliasRule, ModelsHaveNoUnitsButTheirOwn) {
  const char* const accessories[] = {"Vorel Inner 2Way Tray-B1", "Vorel 3 Way Unit-D1",
                                     "Vorel 3 Way Unit-D2", "Vorel Inner 2 Way Tray-S1",
                                     "Vorel Inner 2Way Tray-R1"};
  const std::pair<FinisherOptionHandler, std::vector<std::string>> models[] = {
      {analyze_GetQVFinisher_ASPEN, {accessories[0]}},
      {analyze_GetQVFinisher_FIR, {accessories[0]}},
      {analyze_GetQVFinisher_BEECH, {accessories[1]}},
      {analyze_GetQVFinisher_BIRCH, {accessories[1], accessories[2]}},
      {analyze_GetQVFinisher_CEDAR, {accessories[3]}},
      {analyze_GetQVFinisher_HAZEL, {accessories[3]}},
      {analyze_GetQVFinisherMAPLE, {accessories[4]}},
  };
  for (const auto& [handler, own] : models) {
    for (const char* accessory : accessories) {
      const bool is_own = std::find(own.begin(), own.end(), accessory) != own.end();
      EXPECT_EQ(ValueBy(handler, {{0, accessory}}, {103}), is_own ? kNoValue : "BYNAME")
          << accessory << " with " << own.front();
    }
  }
}

// By alias 119 -----------------------------------------------------------------------------------

const std::vector<Aliases>& WithCode119() {
  static const std::vector<Aliases> aliases = {{119}, {119, 1}, {1, 119}, {1, 2, 119}, {119, 119}};
  return aliases;
}

const std::vector<Aliases>& WithoutCode119() {
  static const std::vector<Aliases> aliases = {{},    {118},      {120},          {118, 120},
                                               {121}, {101, 105}, {-119, 0, 1190}};
  return aliases;
}

TEST(FinisherSpruce, IsTheInnerTrayBesideAlias119) {
  for (const Aliases& aliases : WithCode119()) {
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherSPRUCE, {{1, "Vorel A"}}, aliases), "IN2TRAYF1");
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherSPRUCE, {{1, std::nullopt}}, aliases, ""), "IN2TRAYF1");
  }
}

TEST(FinisherSpruce, IsTheValueStringWithoutAlias119) {
  for (const Aliases& aliases : WithoutCode119()) {
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherSPRUCE, {{1, "Vorel A"}}, aliases), "BYNAME");
  }
  EXPECT_EQ(ValueBy(analyze_GetQVFinisherSPRUCE, {{1, "Vorel A"}}, {}, "B:B"), kNoValue);
}

TEST(FinisherWillow, IsTheInnerTrayBesideAlias119OfTwo) {
  for (const Aliases& aliases : {Aliases{119, 1}, {1, 119}, {119, 119}, {119, 0}, {120, 119}}) {
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherWILLOW, {{1, "Vorel A"}}, aliases), "IN2TRAYF1");
  }
}

TEST(FinisherWillow, IsTheValueStringBesideAnyOtherNumberOfAliases) {
  for (const Aliases& aliases :
       {Aliases{}, {119}, {119, 119, 119}, {119, 1, 2}, {1, 2, 119}, {1, 119, 2, 3}}) {
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherWILLOW, {{1, "Vorel A"}}, aliases), "BYNAME");
  }
}

TEST(FinisherWillow, IsTheValueStringWithoutAlias119) {
  for (const Aliases& aliases : {Aliases{118, 120}, {1, 2}, {101, 121}}) {
    EXPECT_EQ(ValueBy(analyze_GetQVFinisherWILLOW, {{1, "Vorel A"}}, aliases), "BYNAME");
  }
  EXPECT_EQ(ValueBy(analyze_GetQVFinisherWILLOW, {{1, "Vorel A"}}, {1, 2}, "B:B"), kNoValue);
}

// By a two-way tray and alias 119 ----------------------------------------------------------------

struct TwoWayTrayRow : NamedRow {
  FinisherOptionHandler handler;
  const char* tray;
  bool ignores_case;
};

class TwoWayTrays : public testing::TestWithParam<TwoWayTrayRow> {
 protected:
  Value ValueOf(const Units& units, const Aliases& aliases,
                const char* names = kMakersNames) const {
    return ValueBy(GetParam().handler, units, aliases, names);
  }
};

INSTANTIATE_TEST_SUITE_P(
    , TwoWayTrays,
    testing::Values(
        TwoWayTrayRow{{"SUMAC"}, analyze_GetQVFinisherSUMAC, "Vorel Inner 2way Tray-N1", false},
        TwoWayTrayRow{{"HICKORY"}, analyze_GetQVFinisherHICKORY, "Vorel Inner 2way Tray-N1", false},
        TwoWayTrayRow{{"SpecialIn2TrayCommon"},
                      analyze_GetQVFinisherSpecialIn2TrayCommon,
                      "Vorel Inner 2way Tray",
                      true}),
    RowName<TwoWayTrayRow>);

TEST(TwoWayTrayInTurkish, IsKnownInAnyCase) {
  const TurkishLocale locale;
  if (!locale.IsInForce()) GTEST_SKIP() << kNoTurkishLocale;
  const auto handler = analyze_GetQVFinisherSpecialIn2TrayCommon;
  for (const char* name : {"Vorel INNER 2WAY TRAY", "vorel inner 2way tray"}) {
    EXPECT_EQ(ValueBy(handler, {{2, name}}, {119}, nullptr), "IN2TRAY") << name;
  }
}

TEST_P(TwoWayTrays, TrayBesideAlias119IsReported) {
  const std::string tray = GetParam().tray;
  for (const Aliases& aliases : WithCode119()) {
    for (const std::string& name : {tray, tray + "0", tray + " with more", tray + "-N1"}) {
      for (const std::int32_t bins : {kSmallest, 0, 1, 2, 9}) {
        EXPECT_EQ(ValueOf({{bins, name}}, aliases), "IN2TRAY") << name << bins;
      }
    }
  }
}

TEST_P(TwoWayTrays, TrayWithoutAlias119IsAsNamed) {
  for (const Aliases& aliases : WithoutCode119()) {
    EXPECT_EQ(ValueOf({{2, GetParam().tray}}, aliases), "BYNAME");
  }
  EXPECT_EQ(ValueOf({{2, GetParam().tray}}, {}, "B:B"), kNoValue);
}

TEST_P(TwoWayTrays, OtherUnitBesideAlias119IsAsNamed) {
  const std::string tray = GetParam().tray;
  for (const std::string& name : {WithoutLast(tray), WithoutLast(tray) + "9", "Vorel A" + tray}) {
    EXPECT_EQ(ValueOf({{2, name}}, {119}), "BYNAME") << name;
  }
  EXPECT_EQ(ValueOf({{2, std::nullopt}}, {119}), kNoValue);
  EXPECT_EQ(ValueOf({{2, ""}}, {119}), kNoValue);
  EXPECT_EQ(ValueOf({{2, "Vorel A"}}, {119}, "B:B"), kNoValue);
}

TEST_P(TwoWayTrays, DifferentCase) {
  const std::string tray = GetParam().tray;
  for (const std::string& name : {InLowerCase(tray), InUpperCase(tray)}) {
    EXPECT_EQ(ValueOf({{2, name}}, {119}), GetParam().ignores_case ? "IN2TRAY" : "BYNAME") << name;
  }
}

TEST_P(TwoWayTrays, TrayIsFoundAmongOtherUnits) {
  const Unit tray = {2, GetParam().tray};
  const Unit other = {3, "Vorel A"};
  const Unit nameless = {3, std::nullopt};
  for (const Units& units :
       {Units{tray, other}, {other, tray}, {nameless, other, tray, nameless}}) {
    EXPECT_EQ(ValueOf(units, {119}), "IN2TRAY");
    EXPECT_EQ(ValueOf(units, {118}), "BYNAME");
  }
}

// By the bins of the first unit ------------------------------------------------------------------

Value WalnutValue(const Units& units, const Aliases& aliases = {119}) {
  return ValueBy(analyze_GetQVFinisherWALNUT, units, aliases);
}

TEST(FinisherWalnut, IsThatOfTheBinsOfTheFirstUnit) {
  const std::pair<std::int32_t, const char*> values[] = {
      {kSmallest, "None"},  {-1, "None"}, {0, "None"}, {1, "FINJ1"},      {2, "IN2TRAY"},
      {3, "IN2TRAYSFING1"}, {4, "None"},  {5, "None"}, {kLargest, "None"}};
  for (const auto& [bins, value] : values) {
    EXPECT_EQ(WalnutValue({{bins, "Vorel A"}}), value) << bins;
  }
}

TEST(FinisherWalnut, OtherUnitsDoNotMatter) {
  EXPECT_EQ(WalnutValue({{5, "Vorel A"}, {2, "Vorel B"}, {1, "Vorel C"}}), "None");
  EXPECT_EQ(WalnutValue({{1, "Vorel A"}, {2, "Vorel B"}, {3, "Vorel C"}}), "FINJ1");
}

TEST(FinisherWalnut, NamesAndAliasesDoNotMatter) {
  EXPECT_EQ(WalnutValue({{2, std::nullopt}}, {}), "IN2TRAY");
  EXPECT_EQ(WalnutValue({{3, ""}}, {101, 105}), "IN2TRAYSFING1");
  EXPECT_EQ(ValueBy(analyze_GetQVFinisherWALNUT, {{1, "Vorel A"}}, {}, nullptr), "FINJ1");
}

}  // namespace
}  // namespace ia_test
