#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::Combine;
using testing::TestParamInfo;
using testing::ValuesIn;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

constexpr auto kCommon = analyze_GetQVXXXMediaTypeCommon;
constexpr auto kCypress = analyze_GetQVXXXMediaType_CYPRESS;
constexpr auto kYew = analyze_GetQVXXXMediaTypeYEW;
constexpr auto kRedwood = analyze_GetQVXXXMediaTypeREDWOOD;

OptionRow RowOf(const std::string& keyword, const std::string& word = "PlainPaper") {
  return {keyword, word, "PlainPaper"};
}

TrayEntry Tray(std::int32_t alias, std::int32_t medium_type = 0) {
  return {0, alias, 0, medium_type};
}

// The flags of a driver.
struct Ppd {
  std::optional<Flags> media_types;
  std::optional<Flags> input_trays;
  std::optional<Flags> slots;
};

class MediaTypes : public InputHandlers {
 protected:
  void SetPpd(const Ppd& ppd) {
    if (ppd.media_types) SetFlags(&AnalyzeContext::media_type_flags, *ppd.media_types);
    if (ppd.input_trays) SetFlags(&AnalyzeContext::input_tray_flags, *ppd.input_trays);
    if (ppd.slots) SetFlags(&AnalyzeContext::slot_media_info_flags, *ppd.slots);
  }
};

struct MediaHandler : NamedRow {
  InputOptionHandler handler;
};

const MediaHandler kHandlers[] = {
    {{"Common"}, kCommon}, {{"Cypress"}, kCypress}, {{"Yew"}, kYew}, {{"Redwood"}, kRedwood}};
const MediaHandler kHandlersWithSlotsOfThePpd[] = {
    {{"Common"}, kCommon}, {{"Cypress"}, kCypress}, {{"Redwood"}, kRedwood}};
const MediaHandler kHandlersWithWholeSlotNames[] = {
    {{"Common"}, kCommon}, {{"Yew"}, kYew}, {{"Redwood"}, kRedwood}};

template <class Row>
std::string HandlerAndRowName(const TestParamInfo<std::tuple<MediaHandler, Row>>& info) {
  return std::string(std::get<0>(info.param).name) + std::get<1>(info.param).name;
}

// Media words ------------------------------------------------------------------------------------

struct WordRow : NamedRow {
  Flags media_types;
  std::int32_t medium_type;
  std::string word;
};

class MediaWord : public MediaTypes,
                  public testing::WithParamInterface<std::tuple<MediaHandler, WordRow>> {};

TEST_P(MediaWord, IsTheNameOfTheMediumType) {
  const auto& [handler, row] = GetParam();
  SetPpd({row.media_types, Flags{{"Cas1", "101"}}, Flags{{"Cas1", "QVCas1MediaType"}}});
  EXPECT_EQ(Appended(handler.handler, {Tray(101, row.medium_type)}),
            (OptionRows{RowOf("QVCas1MediaType", row.word)}));
}

const WordRow kWords[] = {
    {{"OfTheOnlyPair"}, {{"Thick", "2"}}, 2, "Thick"},
    {{"OfALaterPair"}, {{"Thin", "1"}, {"Thick", "2"}, {"Glossy", "3"}}, 3, "Glossy"},
    {{"OfTheFirstPairThatFits"}, {{"Thin", "1"}, {"Thick", "2"}, {"Glossy", "2"}}, 2, "Thick"},
    {{"OfNoPair"}, {{"Thin", "1"}, {"Thick", "2"}}, 3, "PlainPaper"},
    {{"OfNoPairForNothing"}, {{"Thin", "1"}}, 0, "PlainPaper"},
    {{"WithoutPairs"}, {}, 2, "PlainPaper"},
    {{"OfANullName"}, {{{}, "2"}, {"Thick", "2"}}, 2, "PlainPaper"},
    {{"OfAnEmptyName"}, {{"", "2"}}, 2, ""},
    {{"OfANullNumber"}, {{"Thin", {}}, {"Thick", "2"}}, 2, "Thick"},
    {{"OfANullNumberForNothing"}, {{"Thin", {}}, {"Thick", "0"}}, 0, "Thick"},
    {{"OfANumberThenText"}, {{"Thick", "2x"}}, 2, "Thick"},
    {{"OfANegativeNumber"}, {{"Thick", "2"}, {"Odd", "-2"}}, -2, "Odd"},
    {{"OfTextForNothing"}, {{"Odd", "x"}}, 0, "Odd"},
    {{"BeyondHighest"}, {{"Odd", "4294967298"}, {"Thick", "2"}}, 2, "Thick"},
    {{"OfHighest"}, {{"Odd", "4294967298"}}, kHighest, "Odd"},
    {{"OfLowest"}, {{"Odd", "-4294967298"}}, kLowest, "Odd"},
};

INSTANTIATE_TEST_SUITE_P(Each, MediaWord, Combine(ValuesIn(kHandlers), ValuesIn(kWords)),
                         HandlerAndRowName<WordRow>);

// Slots that the PPD names -----------------------------------------------------------------------

struct SlotRow : NamedRow {
  Flags input_trays;
  Trays trays;
  OptionRows rows;
};

class SlotOfThePpd : public MediaTypes,
                     public testing::WithParamInterface<std::tuple<MediaHandler, SlotRow>> {};

TEST_P(SlotOfThePpd, IsTheNameOfTheAlias) {
  const auto& [handler, row] = GetParam();
  SetPpd({Flags{{"Thin", "1"}, {"Thick", "2"}}, row.input_trays,
          Flags{{"Manual", "QVManualMediaType"},
                {"Cas1", "QVCas1MediaType"},
                {"Cas2", "QVCas2MediaType"},
                {"Deck", "QVDeckMediaType"}}});
  EXPECT_EQ(Appended(handler.handler, row.trays), row.rows);
}

const SlotRow kSlots[] = {
    {{"OfTheOnlyPair"}, {{"Cas1", "101"}}, {Tray(101)}, {RowOf("QVCas1MediaType")}},
    {{"OfALaterPair"}, {{"Deck", "5"}, {"Cas1", "101"}}, {Tray(101)}, {RowOf("QVCas1MediaType")}},
    {{"OfTheFirstPairThatFits"},
     {{"Cas2", "101"}, {"Cas1", "101"}},
     {Tray(101)},
     {RowOf("QVCas2MediaType")}},
    {{"OfNoPair"}, {{"Cas1", "101"}}, {Tray(102), Tray(0), Tray(-101)}, {}},
    {{"WithoutPairs"}, {}, {Tray(101), Tray(0)}, {}},
    {{"InOrderOfTrays"},
     {{"Manual", "7"}, {"Cas1", "101"}, {"Cas2", "102"}},
     {Tray(102, 2), Tray(7, 3), Tray(101, 1)},
     {RowOf("QVCas2MediaType", "Thick"), RowOf("QVManualMediaType"),
      RowOf("QVCas1MediaType", "Thin")}},
    {{"OfTraysThatResolveOnly"},
     {{"Manual", "7"}, {"Odd", "8"}, {"Cas2", "102"}},
     {Tray(101, 1), Tray(102, 2), Tray(8, 1), Tray(9, 1), Tray(7, 1)},
     {RowOf("QVCas2MediaType", "Thick"), RowOf("QVManualMediaType", "Thin")}},
    {{"OfEachTrayOfOneAlias"},
     {{"Cas1", "101"}},
     {Tray(101, 1), Tray(101, 2)},
     {RowOf("QVCas1MediaType", "Thin"), RowOf("QVCas1MediaType", "Thick")}},
    {{"NotOfTheOtherFields"}, {{"Cas1", "101"}}, {{101, 5, 101, 101}}, {}},
    {{"OfANullName"}, {{{}, "101"}, {"Cas1", "101"}}, {Tray(101)}, {}},
    {{"OfANullNumber"}, {{"Cas2", {}}, {"Cas1", "0"}}, {Tray(0)}, {RowOf("QVCas1MediaType")}},
    {{"OfANumberThenText"}, {{"Cas1", "101x"}}, {Tray(101)}, {RowOf("QVCas1MediaType")}},
    {{"OfANegativeNumber"}, {{"Cas1", "-101"}}, {Tray(-101)}, {RowOf("QVCas1MediaType")}},
    {{"OfTextForNothing"}, {{"Cas1", "x"}}, {Tray(0)}, {RowOf("QVCas1MediaType")}},
    {{"OfHighest"}, {{"Cas1", "2147483648"}}, {Tray(kHighest)}, {RowOf("QVCas1MediaType")}},
};

INSTANTIATE_TEST_SUITE_P(Each, SlotOfThePpd,
                         Combine(ValuesIn(kHandlersWithSlotsOfThePpd), ValuesIn(kSlots)),
                         HandlerAndRowName<SlotRow>);

// Keywords ---------------------------------------------------------------------------------------

struct KeywordRow : NamedRow {
  Flags slots;
  OptionRows rows;
};

using KeywordParam = std::tuple<MediaHandler, KeywordRow>;

class MediaKeyword : public MediaTypes, public testing::WithParamInterface<KeywordParam> {};

// For a tray in slot "Cas1".
TEST_P(MediaKeyword, IsThatOfTheSlot) {
  const auto& [handler, row] = GetParam();
  SetPpd({Flags{{"Thick", "2"}}, Flags{{"Cas1", "101"}}, row.slots});
  EXPECT_EQ(Appended(handler.handler, {Tray(101, 2)}), row.rows);
}

const KeywordRow kKeywords[] = {
    {{"OfTheOnlyPair"}, {{"Cas1", "QVA"}}, {RowOf("QVA", "Thick")}},
    {{"OfALaterPair"}, {{"Cas2", "QVB"}, {"Cas1", "QVA"}}, {RowOf("QVA", "Thick")}},
    {{"OfTheFirstPairThatFits"}, {{"Cas1", "QVA"}, {"Cas1", "QVB"}}, {RowOf("QVA", "Thick")}},
    {{"OfNoPair"}, {{"Cas2", "QVB"}, {"Cas3", "QVC"}}, {}},
    {{"WithoutPairs"}, {}, {}},
    {{"NotOfAShorterName"}, {{"Cas", "QVB"}, {"", "QVC"}}, {}},
    {{"NotOfOtherCase"}, {{"cas1", "QVB"}, {"CAS1", "QVC"}}, {}},
    {{"NotOfANameThatEndsWithIt"}, {{"MyCas1", "QVB"}}, {}},
    {{"OfANullName"}, {{{}, "QVB"}, {"Cas1", "QVA"}}, {RowOf("QVA", "Thick")}},
    {{"OfAnEmptyValue"}, {{"Cas1", ""}}, {RowOf("", "Thick")}},
};

INSTANTIATE_TEST_SUITE_P(Each, MediaKeyword, Combine(ValuesIn(kHandlers), ValuesIn(kKeywords)),
                         HandlerAndRowName<KeywordRow>);

const KeywordRow kKeywordsOfWholeNames[] = {
    {{"NotOfALongerName"}, {{"Cas10", "QVB"}, {"Cas1s", "QVC"}}, {}},
    {{"AfterALongerName"}, {{"Cas10", "QVB"}, {"Cas1", "QVA"}}, {RowOf("QVA", "Thick")}},
};

INSTANTIATE_TEST_SUITE_P(WholeName, MediaKeyword,
                         Combine(ValuesIn(kHandlersWithWholeSlotNames),
                                 ValuesIn(kKeywordsOfWholeNames)),
                         HandlerAndRowName<KeywordRow>);

const MediaHandler kOnlyCypress[] = {{{"Cypress"}, kCypress}};
const KeywordRow kKeywordsOfPrefixes[] = {
    {{"OfALongerName"}, {{"Cas10", "QVB"}, {"Cas1", "QVA"}}, {RowOf("QVB", "Thick")}},
    {{"OfALongerNameOnly"}, {{"Cas1Upper", "QVB"}}, {RowOf("QVB", "Thick")}},
};

INSTANTIATE_TEST_SUITE_P(PrefixOfName, MediaKeyword,
                         Combine(ValuesIn(kOnlyCypress), ValuesIn(kKeywordsOfPrefixes)),
                         HandlerAndRowName<KeywordRow>);

// Missing stores ---------------------------------------------------------------------------------

class EachMediaType : public MediaTypes, public testing::WithParamInterface<MediaHandler> {
 protected:
  const Ppd kWhole{Flags{{"Thick", "2"}}, Flags{{"Cas1", "101"}},
                   Flags{{"Cas1", "QVA"}, {"Cas6", "QVB"}}};
};

TEST_P(EachMediaType, HasNoRowWithoutKeywords) {
  Ppd ppd = kWhole;
  ppd.slots.reset();
  SetPpd(ppd);
  EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2), Tray(161, 2)}), OptionRows{});
}

TEST_P(EachMediaType, HasNoRowForKeywordsThatAreNotInUse) {
  SetPpd(kWhole);
  for (const std::int32_t count : {0, -1, kLowest}) {
    context_.slot_media_info_flags->count = count;
    EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2)}), OptionRows{}) << count;
  }
}

TEST_P(EachMediaType, HasNoRowForASlotWhoseFlagHasNoKeyword) {
  SetPpd(kWhole);
  char* const keyword = std::exchange(context_.slot_media_info_flags->entries[0].value, nullptr);
  EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2)}), OptionRows{});
  context_.slot_media_info_flags->entries[0].value = keyword;
}

TEST_P(EachMediaType, HasThePlainWordWhereNoFlagsOfMediaAreInUse) {
  SetPpd(kWhole);
  for (const std::int32_t count : {0, -1, kLowest}) {
    context_.media_type_flags->count = count;
    EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2)}), OptionRows{RowOf("QVA")}) << count;
  }
}

INSTANTIATE_TEST_SUITE_P(Handlers, EachMediaType, ValuesIn(kHandlers), RowName<MediaHandler>);

class MediaTypeWithSlotsOfThePpd : public EachMediaType {};

TEST_P(MediaTypeWithSlotsOfThePpd, HasNoRowWithoutSlots) {
  Ppd ppd = kWhole;
  ppd.input_trays.reset();
  SetPpd(ppd);
  EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2), Tray(161, 2), Tray(0, 2)}), OptionRows{});
}

TEST_P(MediaTypeWithSlotsOfThePpd, HasNoRowForSlotsThatAreNotInUse) {
  SetPpd(kWhole);
  for (const std::int32_t count : {0, -1, kLowest}) {
    context_.input_tray_flags->count = count;
    EXPECT_EQ(Appended(GetParam().handler, {Tray(101, 2)}), OptionRows{}) << count;
  }
}

INSTANTIATE_TEST_SUITE_P(Handlers, MediaTypeWithSlotsOfThePpd, ValuesIn(kHandlersWithSlotsOfThePpd),
                         RowName<MediaHandler>);

TEST_F(MediaTypes, WithoutMediaFlagsArePlain) {
  SetPpd({{}, Flags{{"Cas1", "101"}}, Flags{{"Cas1", "QVA"}}});
  for (const InputOptionHandler handler : {kCommon, kCypress, kYew}) {
    EXPECT_EQ(Appended(handler, {Tray(101, 2)}), OptionRows{RowOf("QVA")});
  }
}

TEST_F(MediaTypes, OfRedwoodHaveNoRowWithoutMediaFlags) {
  SetPpd({{}, Flags{{"Cas1", "101"}}, Flags{{"Cas1", "QVA"}, {"Cas6", "QVB"}}});
  EXPECT_EQ(Appended(kRedwood, {Tray(101, 2), Tray(161, 2)}), OptionRows{});
}

TEST_F(MediaTypes, HaveNoRowWithoutAnyFlags) {
  for (const MediaHandler& row : kHandlers) {
    EXPECT_EQ(Appended(row.handler, {Tray(101, 2), Tray(161), Tray(0)}), OptionRows{}) << row.name;
  }
}

// CYPRESS ----------------------------------------------------------------------------------------

class CypressMedia : public MediaTypes {
 protected:
  void SetUp() override {
    SetPpd({Flags{{"Thin", "1"}, {"Thick", "2"}},
            Flags{{"Cas1", "101"},
                  {"Deck1", "161"},
                  {"Cas2", "102"},
                  {"Deck2", "161"},
                  {"Deck3", "161"}},
            Flags{{"Cas1", "QVCas1"},
                  {"Cas2", "QVCas2"},
                  {"Deck1", "QVDeck1"},
                  {"Deck2", "QVDeck2"},
                  {"Deck3", "QVDeck3"}}});
  }
};

TEST_F(CypressMedia, TakesTheSecondSlotOfTheDeckBesideFourOrFewerExtraTrays) {
  for (const std::int32_t extra_trays : {4, 3, 1, 0, -1, kLowest}) {
    EXPECT_EQ(Appended(kCypress, {Tray(161)}, extra_trays), OptionRows{RowOf("QVDeck2")})
        << extra_trays;
  }
}

TEST_F(CypressMedia, TakesTheFirstSlotOfTheDeckBesideFiveOrMoreExtraTrays) {
  for (const std::int32_t extra_trays : {5, 6, kHighest}) {
    EXPECT_EQ(Appended(kCypress, {Tray(161)}, extra_trays), OptionRows{RowOf("QVDeck1")})
        << extra_trays;
  }
}

TEST_F(CypressMedia, PassesOverTheFirstSlotOnceForEachTray) {
  EXPECT_EQ(Appended(kCypress, {Tray(161, 1), Tray(101), Tray(161, 2)}, 3),
            (OptionRows{RowOf("QVDeck2", "Thin"), RowOf("QVCas1"), RowOf("QVDeck2", "Thick")}));
}

TEST_F(CypressMedia, IsNotDecidedByTheNumberOfTrays) {
  EXPECT_EQ(Appended(kCypress, Trays(6, Tray(161)), 4), OptionRows(6, RowOf("QVDeck2")));
  EXPECT_EQ(Appended(kCypress, Trays(1, Tray(161)), 5), OptionRows(1, RowOf("QVDeck1")));
}

TEST_F(CypressMedia, TakesTheFirstSlotOfOtherAliases) {
  SetFlags(&AnalyzeContext::input_tray_flags,
           {{"Cas1", "160"}, {"Cas2", "160"}, {"Deck1", "162"}, {"Deck2", "162"}});
  EXPECT_EQ(Appended(kCypress, {Tray(160), Tray(162)}, 0),
            (OptionRows{RowOf("QVCas1"), RowOf("QVDeck1")}));
}

TEST_F(CypressMedia, HasNoRowWithoutASecondSlot) {
  SetFlags(&AnalyzeContext::input_tray_flags, {{"Cas1", "101"}, {"Deck1", "161"}, {"Cas2", "102"}});
  EXPECT_EQ(Appended(kCypress, {Tray(161), Tray(102)}, 4), OptionRows{RowOf("QVCas2")});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 5), OptionRows{RowOf("QVDeck1")});
  SetFlags(&AnalyzeContext::input_tray_flags, {{"Deck1", "161"}});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 4), OptionRows{});
}

TEST_F(CypressMedia, HasNoRowWithoutAnySlotOfTheDeck) {
  SetFlags(&AnalyzeContext::input_tray_flags, {{"Cas1", "101"}, {"Cas2", "102"}});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 4), OptionRows{});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 5), OptionRows{});
}

TEST_F(CypressMedia, PassesOverASlotWithoutName) {
  SetFlags(&AnalyzeContext::input_tray_flags, {{{}, "161"}, {"Deck2", "161"}});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 4), OptionRows{RowOf("QVDeck2")});
  EXPECT_EQ(Appended(kCypress, {Tray(161)}, 5), OptionRows{});
}

TEST_F(CypressMedia, TakesTheFirstKeywordWhoseNameBeginsWithTheSlot) {
  SetFlags(&AnalyzeContext::input_tray_flags, {{"Cas", "101"}, {"Deck", "161"}, {"Deck", "161"}});
  EXPECT_EQ(Appended(kCypress, {Tray(101), Tray(161)}, 4),
            (OptionRows{RowOf("QVCas1"), RowOf("QVDeck1")}));
}

TEST_F(CypressMedia, TakesTheFirstKeywordOfAllForASlotOfNoLetters) {
  SetFlags(&AnalyzeContext::input_tray_flags, {{"", "101"}});
  EXPECT_EQ(Appended(kCypress, {Tray(101)}, 4), OptionRows{RowOf("QVCas1")});
}

// The other handlers know no such rule.
TEST_F(CypressMedia, IsAloneInPassingOverASlot) {
  EXPECT_EQ(Appended(kCommon, {Tray(161)}, 4), OptionRows{RowOf("QVDeck1")});
}

TEST_F(CypressMedia, OfModelRAZ4IsDecidedByTheExtraTrays) {
  const TrayEntry deck{6, 161, 0, 0};
  const TrayEntry cassette{3, 500, 0, 0};
  const auto media = [&](const Trays& trays) { return AppendedFor("RA-Z4", trays).back(); };
  EXPECT_EQ(media({cassette, cassette, cassette, deck}), RowOf("QVDeck2"));
  EXPECT_EQ(media({cassette, cassette, cassette, cassette, deck}), RowOf("QVDeck1"));
}

// YEW --------------------------------------------------------------------------------------------

struct YewRow : NamedRow {
  Trays trays;
  std::vector<std::string> slots;
};

class YewMedia : public MediaTypes, public testing::WithParamInterface<YewRow> {
 protected:
  void SetUp() override {
    // Each tray carries a number of its own as medium type. The flags of input trays are to
    // mislead.
    SetPpd({{},
            Flags{{"Cas4", "7"},
                  {"Cas4", "101"},
                  {"Cas1", "102"},
                  {"Cas1", "121"},
                  {"Cas1", "122"},
                  {"Cas1", "123"},
                  {"Cas1", "130"},
                  {"Cas1", "161"}},
            Flags{{"Manual", "QVManual"},
                  {"Cas1", "QVCas1"},
                  {"Cas2", "QVCas2"},
                  {"Cas3", "QVCas3"},
                  {"Cas4", "QVCas4"}}});
  }
};

TEST_P(YewMedia, HasTheSlotsOfTheAliases) {
  OptionRows rows;
  for (const std::string& slot : GetParam().slots) rows.push_back(RowOf("QV" + slot));
  EXPECT_EQ(Appended(kYew, GetParam().trays), rows);
}

const YewRow kYewRows[] = {
    {{"Manual"}, {Tray(7)}, {"Manual"}},
    {{"Alias101"}, {Tray(101)}, {"Cas1"}},
    {{"Alias102"}, {Tray(102)}, {"Cas2"}},
    {{"Alias121"}, {Tray(121)}, {"Cas2"}},
    {{"Alias122"}, {Tray(122)}, {"Cas3"}},
    {{"Alias123"}, {Tray(123)}, {"Cas4"}},
    {{"ManualBefore102"}, {Tray(7), Tray(102)}, {"Manual", "Cas2"}},
    {{"Alias101Before102"}, {Tray(101), Tray(102)}, {"Cas1", "Cas2"}},
    {{"Alias121Before102"}, {Tray(121), Tray(102)}, {"Cas3", "Cas2"}},
    {{"Alias121Behind102"}, {Tray(102), Tray(121)}, {"Cas2", "Cas3"}},
    {{"Alias122Before102"}, {Tray(122), Tray(102)}, {"Cas4", "Cas2"}},
    {{"Alias122Behind102"}, {Tray(102), Tray(122)}, {"Cas2", "Cas4"}},
    {{"Alias123Before102"}, {Tray(123), Tray(102)}, {"Cas4", "Cas2"}},
    {{"AllWithout102"},
     {Tray(7), Tray(101), Tray(121), Tray(122), Tray(123)},
     {"Manual", "Cas1", "Cas2", "Cas3", "Cas4"}},
    {{"AllWith102"},
     {Tray(7), Tray(101), Tray(102), Tray(121), Tray(122), Tray(123)},
     {"Manual", "Cas1", "Cas2", "Cas3", "Cas4", "Cas4"}},
    {{"NextAliasesAreOthers"},
     {Tray(7), Tray(6), Tray(8), Tray(100), Tray(103), Tray(120), Tray(124), Tray(0), Tray(-7)},
     std::vector<std::string>(9, "Manual")},
    {{"OtherFieldsAreNoAlias"}, {Tray(121), {102, 122, 102, 102}}, {"Cas2", "Cas3"}},

    // A tray of another alias has the slot of the tray before it.
    {{"OtherAlone"}, {Tray(130)}, {}},
    {{"OthersBeforeTheFirst"}, {Tray(130), Tray(161), Tray(101)}, {"Cas1"}},
    {{"OtherAfterOne"}, {Tray(101), Tray(130)}, {"Cas1", "Cas1"}},
    {{"OthersAfterOne"}, {Tray(121), Tray(130), Tray(161)}, {"Cas2", "Cas2", "Cas2"}},
    {{"OtherBetween"}, {Tray(7), Tray(130), Tray(101)}, {"Manual", "Manual", "Cas1"}},
};

INSTANTIATE_TEST_SUITE_P(Each, YewMedia, ValuesIn(kYewRows), RowName<YewRow>);

class YewMediaWithFewKeywords : public MediaTypes {};

TEST_F(YewMediaWithFewKeywords, KeepsASlotWithoutKeyword) {
  SetPpd({{}, {}, Flags{{"Cas1", "QVCas1"}}});
  EXPECT_EQ(Appended(kYew, {Tray(101), Tray(123), Tray(130), Tray(101)}),
            (OptionRows{RowOf("QVCas1"), RowOf("QVCas1")}));
}

TEST_F(YewMediaWithFewKeywords, GivesEachTrayItsOwnWord) {
  SetPpd({Flags{{"Thin", "1"}, {"Thick", "2"}}, {}, Flags{{"Cas1", "QVCas1"}}});
  EXPECT_EQ(Appended(kYew, {Tray(101, 1), Tray(130, 2), Tray(131, 3)}),
            (OptionRows{RowOf("QVCas1", "Thin"), RowOf("QVCas1", "Thick"), RowOf("QVCas1")}));
}

TEST_F(YewMediaWithFewKeywords, OfModelRBT91HasARowForTheNextTray) {
  SetPpd({{}, {}, Flags{{"Cas1", "QVCas1"}, {"Cas2", "QVCas2"}}});
  OptionRows rows = AppendedFor("RB-T9-1", {Tray(101), Tray(121), Tray(130)});
  ASSERT_EQ(rows.size(), 5U);
  rows.erase(rows.begin(), rows.begin() + 2);
  EXPECT_EQ(rows, (OptionRows{RowOf("QVCas1"), RowOf("QVCas2"), RowOf("QVCas2")}));
}

// REDWOOD ----------------------------------------------------------------------------------------

struct RedwoodRow : NamedRow {
  std::vector<std::int32_t> others;
  std::string slot;
};

class RedwoodDeck : public MediaTypes, public testing::WithParamInterface<RedwoodRow> {
 protected:
  void SetUp() override {
    // The flag of the deck's alias is to mislead.
    SetPpd({Flags{{"Thick", "2"}}, Flags{{"Cas1", "161"}},
            Flags{{"Cas1", "QVCas1"},
                  {"Cas6", "QVCas6"},
                  {"Cas7", "QVCas7"},
                  {"Cas8", "QVCas8"},
                  {"Cas9", "QVCas9"}}});
  }
};

TEST_P(RedwoodDeck, HasTheSlotAfterTheCassettes) {
  const OptionRows rows{RowOf("QV" + GetParam().slot, "Thick")};
  Trays trays;
  for (const std::int32_t alias : GetParam().others) trays.push_back(Tray(alias));
  Trays deck_first = trays;
  deck_first.insert(deck_first.begin(), Tray(161, 2));
  EXPECT_EQ(Appended(kRedwood, deck_first), rows);
  trays.push_back(Tray(161, 2));
  EXPECT_EQ(Appended(kRedwood, trays), rows);
}

const RedwoodRow kRedwoodRows[] = {
    {{"Alone"}, {}, "Cas6"},
    {{"With121"}, {121}, "Cas7"},
    {{"With122"}, {122}, "Cas8"},
    {{"With123"}, {123}, "Cas9"},
    {{"With121And122"}, {121, 122}, "Cas8"},
    {{"With122And121"}, {122, 121}, "Cas8"},
    {{"With121And123"}, {121, 123}, "Cas9"},
    {{"With123And121"}, {123, 121}, "Cas9"},
    {{"With122And123"}, {122, 123}, "Cas9"},
    {{"With123And122"}, {123, 122}, "Cas9"},
    {{"WithAll"}, {121, 122, 123}, "Cas9"},
    {{"WithOthers"}, {101, 102, 120, 124, 0}, "Cas6"},
};

INSTANTIATE_TEST_SUITE_P(Each, RedwoodDeck, ValuesIn(kRedwoodRows), RowName<RedwoodRow>);

class RedwoodMedia : public MediaTypes {};

TEST_F(RedwoodMedia, NeedsTheFlagsOfInputTraysForTheDeckToo) {
  SetPpd({Flags{{"Thick", "2"}}, Flags{}, Flags{{"Cas6", "QVCas6"}}});
  EXPECT_EQ(Appended(kRedwood, {Tray(161, 2)}), OptionRows{RowOf("QVCas6", "Thick")});
  context_.input_tray_flags = nullptr;
  EXPECT_EQ(Appended(kRedwood, {Tray(161, 2)}), OptionRows{});
}

TEST_F(RedwoodMedia, HasNoRowForADeckWithoutKeyword) {
  SetPpd({Flags{}, Flags{{"Cas1", "101"}}, Flags{{"Cas1", "QVCas1"}, {"Cas60", "QVCas60"}}});
  EXPECT_EQ(Appended(kRedwood, {Tray(161), Tray(101)}), OptionRows{RowOf("QVCas1")});
}

TEST_F(RedwoodMedia, DoesNotKeepTheSlotOfTheTrayBefore) {
  SetPpd({Flags{}, Flags{{"Cas1", "101"}}, Flags{{"Cas1", "QVCas1"}, {"Cas6", "QVCas6"}}});
  EXPECT_EQ(Appended(kRedwood, {Tray(101), Tray(130), Tray(161), Tray(131)}),
            (OptionRows{RowOf("QVCas1"), RowOf("QVCas6")}));
}

TEST_F(RedwoodMedia, OfModelRCW0PutsTheDeckAfterAlias123) {
  SetPpd({Flags{}, Flags{}, Flags{{"Cas9", "QVCas9"}, {"Cas7", "QVCas7"}}});
  const OptionRows rows = AppendedFor("RC-W0", {Tray(121), Tray(123), Tray(161)});
  ASSERT_EQ(rows.size(), 4U);
  EXPECT_EQ(rows[2], RowOf("QVCas9"));
}

}  // namespace
}  // namespace ia_test
