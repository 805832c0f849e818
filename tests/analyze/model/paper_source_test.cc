#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

class SourceOption : public InputHandlers {
 protected:
  static OptionRows RowOf(const Text& value) { return {{"QVSrcOption", value, "None"}}; }
};

// By the number of trays -------------------------------------------------------------------------

struct CountRow {
  std::int32_t count;
  Text value;
};

struct CountHandler : NamedRow {
  InputOptionHandler handler;
  std::vector<CountRow> rows;
};

const std::vector<CountRow> kByCount{{0, "None"},    {1, "None"},    {2, "None"}, {3, "OptCas1"},
                                     {4, "OptCas2"}, {5, "OptCas3"}, {6, {}},     {7, {}},
                                     {8, {}},        {9, {}},        {1000, {}}};

const CountHandler kCountHandlers[] = {
    {{"Common"}, analyze_GetQVSrcOptionCommonByCount, kByCount},
    {{"Laurel"}, analyze_GetQVSrcOptionLAUREL, kByCount},
    {{"Myrtle"}, analyze_GetQVSrcOptionMYRTLE, kByCount},
    {{"Elm"}, analyze_GetQVSrcOption_ELM, kByCount},
    {{"Olive"}, analyze_GetQVSrcOptionOLIVE, kByCount},
    {{"Spruce"},
     analyze_GetQVSrcOptionSPRUCE,
     {{0, "None"},
      {1, "None"},
      {2, "None"},
      {3, "OptCas1"},
      {4, "OptCas2"},
      {5, "OptCas2"},
      {6, {}},
      {7, {}},
      {1000, {}}}},
};

class SourceOptionByCount : public SourceOption, public testing::WithParamInterface<CountHandler> {
 protected:
  void ExpectValues(const TrayEntry& tray, std::int32_t extra_trays) {
    for (const CountRow& row : GetParam().rows) {
      const Trays trays(static_cast<std::size_t>(row.count), tray);
      EXPECT_EQ(Appended(GetParam().handler, trays, extra_trays), RowOf(row.value)) << row.count;
    }
  }
};

TEST_P(SourceOptionByCount, HasTheValueOfTheCount) { ExpectValues({3, 101, 550, 1}, 0); }

TEST_P(SourceOptionByCount, CountsTraysOfAllTypes) {
  ExpectValues({}, 0);
  ExpectValues({6, 161, 3000, 0}, 0);
}

TEST_P(SourceOptionByCount, IsNotDecidedByTheNumberOfExtraTrays) {
  ExpectValues({}, 4);
  ExpectValues({}, kHighest);
  ExpectValues({}, -1);
}

INSTANTIATE_TEST_SUITE_P(Handlers, SourceOptionByCount, ValuesIn(kCountHandlers),
                         RowName<CountHandler>);

const CountRow kCypressCounts[] = {
    {kLowest, "None"}, {-1, "None"},   {0, "None"}, {4, "None"}, {5, "OptCas1"}, {6, "OptCas2"},
    {7, "OptCas2"},    {8, "OptCas2"}, {9, {}},     {10, {}},    {kHighest, {}},
};

TEST_F(SourceOption, OfCypressHasTheValueOfTheNumberOfExtraTrays) {
  for (const CountRow& row : kCypressCounts) {
    for (const std::size_t tray_count : {0U, 1U, 5U, 6U, 9U}) {
      EXPECT_EQ(Appended(analyze_GetQVSrcOption_CYPRESS, Trays(tray_count), row.count),
                RowOf(row.value))
          << row.count << " of " << tray_count;
    }
  }
}

// By the number of large decks -------------------------------------------------------------------

const CountRow kHollyCounts[] = {
    {0, "None"}, {1, "OptCas1"}, {2, "None"}, {3, "OptCas3"}, {4, "None"}, {5, "None"},
};

TEST_F(SourceOption, OfHollyHasTheValueOfTheNumberOfTraysOfType6) {
  for (const CountRow& row : kHollyCounts) {
    const Trays decks(static_cast<std::size_t>(row.count), OfType(6));
    EXPECT_EQ(Appended(analyze_GetQVSrcOptionHOLLY, decks), RowOf(row.value)) << row.count;
    Trays among_others{{3, 6, 6, 6}, OfType(5), OfType(7), OfType(0), OfType(-6)};
    among_others.insert(among_others.begin() + 2, decks.begin(), decks.end());
    EXPECT_EQ(Appended(analyze_GetQVSrcOptionHOLLY, among_others, 3), RowOf(row.value))
        << row.count;
  }
}

TEST_F(SourceOption, OfHollyIsNoneForOtherTraysOnly) {
  EXPECT_EQ(Appended(analyze_GetQVSrcOptionHOLLY, {OfType(3)}, 1), RowOf("None"));
  EXPECT_EQ(Appended(analyze_GetQVSrcOptionHOLLY, {OfType(3), OfType(3), OfType(3)}, 3),
            RowOf("None"));
}

TEST_F(SourceOption, OfModelRAW8WithTwoTraysOfType6IsNone) {
  EXPECT_EQ(AppendedFor("RA-W8", {OfType(6), OfType(6)}), RowOf("None"));
}

// By alias ---------------------------------------------------------------------------------------

struct SourceRow : NamedRow {
  InputOptionHandler handler;
  Trays trays;
  Text value;
};

class SourceOptionByAlias : public SourceOption, public testing::WithParamInterface<SourceRow> {};

TEST_P(SourceOptionByAlias, HasTheValue) {
  EXPECT_EQ(Appended(GetParam().handler, GetParam().trays), RowOf(GetParam().value));
}

constexpr auto kOak = analyze_GetQVSrcOptionOAK;
constexpr auto kRowan = analyze_GetQVSrcOptionROWAN;

TrayEntry Deck(std::int32_t capacity) { return {6, 161, capacity, 0}; }

const SourceRow kSources[] = {
    {{"OakWithSecondDeck"}, kOak, {OfAlias(162)}, "OptCas1"},
    {{"OakWithSecondDeckAfterOthers"}, kOak, {OfAlias(101), Deck(0), OfAlias(162)}, "OptCas1"},
    {{"OakWithTwoSecondDecks"}, kOak, {OfAlias(162), OfAlias(162)}, "OptCas1"},
    {{"OakWithOtherAliases"}, kOak, {Deck(2000), OfAlias(163), {162, 0, 162, 162}}, "None"},

    {{"RowanWith167"}, kRowan, {OfAlias(167)}, "PODDeck3"},
    {{"RowanWith164"}, kRowan, {OfAlias(164)}, "PODDeck2"},
    {{"RowanWith164Then167"}, kRowan, {OfAlias(164), OfAlias(167)}, "PODDeck3"},
    {{"RowanWith167Then164"}, kRowan, {OfAlias(167), OfAlias(164)}, "PODDeck3"},
    {{"RowanWithDeckThen164"}, kRowan, {Deck(2000), OfAlias(164)}, "PODDeck2"},
    {{"RowanWith164ThenDeck"}, kRowan, {OfAlias(164), Deck(2000)}, "PODDeck2"},
    {{"RowanWithDeckThen167"}, kRowan, {Deck(1999), OfAlias(167)}, "PODDeck3"},
    {{"RowanWithAll"}, kRowan, {Deck(2000), OfAlias(164), OfAlias(167)}, "PODDeck3"},
    {{"RowanWithDeckFor1998"}, kRowan, {Deck(1998)}, "PODDeck1"},
    {{"RowanWithDeckFor1999"}, kRowan, {Deck(1999)}, "PODDeck1"},
    {{"RowanWithDeckFor2000"}, kRowan, {Deck(2000)}, "MltDeck1"},
    {{"RowanWithDeckForMost"}, kRowan, {Deck(kHighest)}, "MltDeck1"},
    {{"RowanWithDeckForNothing"}, kRowan, {Deck(0)}, "PODDeck1"},
    {{"RowanWithDeckForLessThanNothing"}, kRowan, {Deck(kLowest)}, "PODDeck1"},
    {{"RowanWithSmallDeckFirst"}, kRowan, {OfAlias(101), Deck(1999), Deck(2000)}, "PODDeck1"},
    {{"RowanWithLargeDeckFirst"}, kRowan, {OfAlias(101), Deck(2000), Deck(1999)}, "MltDeck1"},
    {{"RowanWithDeckOfOtherType"}, kRowan, {{3, 161, 2000, 0}}, "MltDeck1"},
    {{"RowanWithOtherAliases"},
     kRowan,
     {OfAlias(160),
      OfAlias(162),
      OfAlias(163),
      OfAlias(165),
      OfAlias(166),
      OfAlias(168),
      {167, 0, 164, 161}},
     {}},
};

INSTANTIATE_TEST_SUITE_P(Each, SourceOptionByAlias, ValuesIn(kSources), RowName<SourceRow>);

TEST_F(SourceOption, OfModelRAZ5IsDecidedByTheDecks) {
  const auto source = [&](const Trays& trays) {
    const OptionRows rows = AppendedFor("RA-Z5", trays);
    EXPECT_EQ(rows.size(), 2U);
    return OptionRows{rows.back()};
  };
  EXPECT_EQ(source({Deck(2000), OfAlias(164)}), RowOf("PODDeck2"));
  EXPECT_EQ(source({Deck(2000)}), RowOf("MltDeck1"));
  EXPECT_EQ(source({Deck(1999)}), RowOf("PODDeck1"));
}

constexpr auto kRedwoodValues = std::to_array({"OptCas1", "OptCas2", "OptCas3", "OptCas4"});

TEST_F(SourceOption, OfRedwoodIsThatOfTheHighestCassette) {
  for (std::size_t fitted = 0; fitted < 16; ++fitted) {
    Trays trays{OfAlias(101)};
    Text value = "None";
    for (std::size_t i = 0; i < kRedwoodValues.size(); ++i) {
      if ((fitted >> i) % 2 == 0) continue;
      trays.push_back(OfAlias(121 + static_cast<std::int32_t>(i)));
      value = kRedwoodValues[i];
    }
    EXPECT_EQ(Appended(analyze_GetQVSrcOptionREDWOOD, trays), RowOf(value)) << fitted;
    std::reverse(trays.begin(), trays.end());
    EXPECT_EQ(Appended(analyze_GetQVSrcOptionREDWOOD, trays), RowOf(value)) << fitted;
  }
}

TEST_F(SourceOption, OfRedwoodIsNoneForOtherAliases) {
  EXPECT_EQ(Appended(analyze_GetQVSrcOptionREDWOOD,
                     {OfAlias(120), OfAlias(125), OfAlias(161), {121, 0, 123, 124}}),
            RowOf("None"));
}

TEST_F(SourceOption, OfModelRCW0WithCassettes121And123IsOptCas3) {
  const OptionRows rows = AppendedFor("RC-W0", {OfAlias(121), OfAlias(123)});
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_EQ(OptionRows{rows[1]}, RowOf("OptCas3"));
}

// By the names in the PPD ------------------------------------------------------------------------

class SourceNames : public SourceOption {
 protected:
  // The value for trays of these aliases, where the PPD gives these names.
  Text ValueOf(const Flags& flags, const std::vector<std::int32_t>& aliases) {
    SetFlags(&AnalyzeContext::src_option_flags, flags);
    Trays trays;
    std::ranges::transform(aliases, std::back_inserter(trays), OfAlias);
    const OptionRows rows = Appended(analyze_GetQVSrcOptionCommon, trays);
    EXPECT_EQ(rows.size(), 1U);
    if (rows.empty()) return "(no row)";
    EXPECT_EQ(rows, RowOf(rows[0].value));
    return rows[0].value;
  }
};

struct NamesRow : NamedRow {
  Flags flags;
  std::vector<std::int32_t> aliases;
  Text value;
};

class EachSourceNames : public SourceNames, public testing::WithParamInterface<NamesRow> {};

TEST_P(EachSourceNames, HasTheValue) {
  EXPECT_EQ(ValueOf(GetParam().flags, GetParam().aliases), GetParam().value);
}

const NamesRow kNames[] = {
    {{"OneTray"}, {{"OptCas1", "121"}, {"OptCas2", "122"}}, {122}, "OptCas2"},
    {{"NoTray"}, {{"OptCas1", "121"}}, {}, {}},
    {{"NoFlagOfTheAlias"}, {{"OptCas1", "121"}}, {120, 122, -121, 0, 1210}, {}},
    {{"NoFlags"}, {}, {121, 0}, {}},
    {{"OrderOfTrays"}, {{"A", "1"}, {"B", "2"}, {"C", "3"}}, {3, 1, 2}, "C,A,B"},
    {{"AllPairsOfATray"}, {{"B", "7"}, {"X", "8"}, {"A", "7"}, {"C", "7"}}, {7}, "B,A,C"},
    {{"TraysBeforePairs"}, {{"A", "1"}, {"B", "2"}, {"C", "1"}, {"D", "2"}}, {2, 1}, "B,D,A,C"},
    {{"TraysOfOneAlias"}, {{"A", "1"}, {"B", "2"}}, {1, 2, 1}, "A,B"},
    {{"UnknownTraysBetween"}, {{"A", "1"}, {"B", "2"}}, {9, 1, 9, 2, 9}, "A,B"},

    // A name that is part of the text already.
    {{"LongerNameSecond"}, {{"Cas1", "101"}, {"Cas10", "101"}}, {101}, "Cas1,Cas10"},
    {{"LongerNameFirst"}, {{"Cas10", "101"}, {"Cas1", "101"}}, {101}, "Cas10"},
    {{"LongerNameOfOtherTray"}, {{"Cas10", "110"}, {"Cas1", "101"}}, {110, 101}, "Cas10"},
    {{"NameIsMiddleOfAnother"},
     {{"SideDeckL", "1"}, {"Deck", "1"}, {"X", "1"}},
     {1},
     "SideDeckL,X"},
    {{"NameIsEndOfAnother"}, {{"A", "1"}, {"SideDeck", "1"}, {"Deck", "1"}}, {1}, "A,SideDeck"},
    {{"NameIsPartOfTwo"}, {{"Cas1", "1"}, {"Cas2", "1"}, {"1,C", "1"}}, {1}, "Cas1,Cas2"},
    {{"OtherCase"}, {{"Cas10", "1"}, {"cas1", "1"}}, {1}, "Cas10,cas1"},
    {{"NearlyPart"}, {{"Cas10", "1"}, {"Cas11", "1"}, {"as1x", "1"}}, {1}, "Cas10,Cas11,as1x"},

    // Numbers.
    {{"NumberThenText"}, {{"A", "101x"}, {"B", "101 2"}}, {101}, "A,B"},
    {{"TextThenNumber"}, {{"A", "x101"}}, {101}, {}},
    {{"TextIsZero"}, {{"A", "x"}, {"B", ""}, {"C", "0"}}, {0}, "A,B,C"},
    {{"Negative"}, {{"A", "-5"}, {"B", "5"}}, {-5}, "A"},
    {{"SignAndBlanks"}, {{"A", "+7"}, {"B", " 7"}, {"C", "\t-7"}}, {7}, "A,B"},
    {{"LeadingZeros"}, {{"A", "0010"}}, {10}, "A"},
    {{"LeadingZerosAreNotOctal"}, {{"A", "010"}}, {8}, {}},
    {{"NotHexadecimal"}, {{"A", "0x10"}}, {16}, {}},
    {{"HexadecimalIsZero"}, {{"A", "0x10"}}, {0}, "A"},
    {{"Highest"}, {{"A", "2147483647"}}, {kHighest}, "A"},
    {{"Lowest"}, {{"A", "-2147483648"}}, {kLowest}, "A"},
    {{"BeyondHighest"}, {{"A", "2147483648"}, {"B", "99999999999999999999"}}, {kHighest}, "A,B"},
    {{"BeyondLowest"}, {{"A", "-2147483649"}, {"B", "-99999999999999999999"}}, {kLowest}, "A,B"},
    {{"NotWrappedAround"}, {{"A", "4294967397"}}, {101}, {}},

    // Flags that no PPD makes.
    {{"NullName"}, {{{}, "1"}, {"B", "1"}}, {1}, "B"},
    {{"NullNameOnly"}, {{{}, "1"}}, {1}, {}},
    {{"NullNameAfter"}, {{"A", "1"}, {{}, "1"}}, {1}, "A"},
    {{"NullValue"}, {{"A", {}}, {"B", "0"}}, {0}, "B"},
    {{"NullFlag"}, {{{}, {}}, {"B", "1"}}, {0, 1}, "B"},
    {{"EmptyNameFirst"}, {{"", "1"}, {"B", "1"}}, {1}, "B"},
    {{"EmptyNameAfter"}, {{"A", "1"}, {"", "1"}, {"B", "1"}}, {1}, "A,B"},
    {{"EmptyNameOnly"}, {{"", "1"}}, {1}, {}},
};

INSTANTIATE_TEST_SUITE_P(Each, EachSourceNames, ValuesIn(kNames), RowName<NamesRow>);

TEST_F(SourceNames, AreNoneWithoutStore) {
  EXPECT_EQ(Appended(analyze_GetQVSrcOptionCommon, {OfAlias(101), OfAlias(0)}), RowOf({}));
}

TEST_F(SourceNames, AreThoseOfTheFlagsInUse) {
  SetFlags(&AnalyzeContext::src_option_flags, {{"A", "1"}, {"B", "1"}});
  for (const std::int32_t count : {1, 0, -1, kLowest}) {
    context_.src_option_flags->count = count;
    EXPECT_EQ(Appended(analyze_GetQVSrcOptionCommon, {OfAlias(1)}),
              RowOf(count == 1 ? Text("A") : Text()))
        << count;
  }
}

TEST_F(SourceNames, AreFoundInTheSourceOptionFlagsOnly) {
  const Flags flags{{"A", "1"}};
  SetFlags(&AnalyzeContext::media_type_flags, flags);
  SetFlags(&AnalyzeContext::input_tray_flags, flags);
  SetFlags(&AnalyzeContext::slot_media_info_flags, flags);
  SetFlags(&AnalyzeContext::finisher_name_flags, flags);
  EXPECT_EQ(Appended(analyze_GetQVSrcOptionCommon, {OfAlias(1)}), RowOf({}));
}

// Names beyond 255 bytes -------------------------------------------------------------------------

std::string Long(std::size_t length, char letter = 'x') { return std::string(length, letter); }

TEST_F(SourceNames, FillThe255BytesWithOneName) {
  EXPECT_EQ(ValueOf({{Long(254), "1"}}, {1}), Long(254));
  EXPECT_EQ(ValueOf({{Long(255), "1"}}, {1}), Long(255));
}

TEST_F(SourceNames, LeaveOutANameOf256Bytes) {
  EXPECT_EQ(ValueOf({{Long(256), "1"}}, {1}), std::nullopt);
  EXPECT_EQ(ValueOf({{Long(257), "1"}}, {1}), std::nullopt);
  EXPECT_EQ(ValueOf({{Long(100000), "1"}}, {1}), std::nullopt);
}

TEST_F(SourceNames, ContinueAfterANameThatDoesNotFit) {
  EXPECT_EQ(ValueOf({{Long(256), "1"}, {"A", "1"}, {"B", "1"}}, {1}), "A,B");
  EXPECT_EQ(ValueOf({{"A", "1"}, {Long(254), "1"}, {"B", "1"}}, {1}), "A,B");
}

TEST_F(SourceNames, FillThe255BytesWithSeveralNames) {
  const std::string filled = Long(100) + "," + Long(154, 'y');
  ASSERT_EQ(filled.size(), 255U);
  EXPECT_EQ(ValueOf({{Long(100), "1"}, {Long(154, 'y'), "1"}}, {1}), filled);
  EXPECT_EQ(ValueOf({{Long(100), "1"}, {Long(155, 'y'), "1"}}, {1}), Long(100));
  EXPECT_EQ(ValueOf({{Long(100), "1"}, {Long(155, 'y'), "1"}, {Long(154, 'z'), "1"}}, {1}),
            Long(100) + "," + Long(154, 'z'));
}

TEST_F(SourceNames, HaveNoRoomForACommaAlone) {
  EXPECT_EQ(ValueOf({{Long(253), "1"}, {"A", "1"}}, {1}), Long(253) + ",A");
  EXPECT_EQ(ValueOf({{Long(254), "1"}, {"A", "1"}}, {1}), Long(254));
  EXPECT_EQ(ValueOf({{Long(255), "1"}, {"A", "1"}}, {1}), Long(255));
}

TEST_F(SourceNames, TakeShorterNamesAfterOneThatDidNotFit) {
  Flags flags{{Long(200), "1"}, {Long(60, 'a'), "1"}};
  for (char letter = 'b'; letter <= 'g'; ++letter) flags.push_back({Long(10, letter), "1"});
  const std::string five = Long(10, 'b') + "," + Long(10, 'c') + "," + Long(10, 'd') + "," +
                           Long(10, 'e') + "," + Long(10, 'f');
  ASSERT_EQ(Long(200).size() + 1 + five.size(), 255U);
  EXPECT_EQ(ValueOf(flags, {1}), Long(200) + "," + five);
}

}  // namespace
}  // namespace ia_test
