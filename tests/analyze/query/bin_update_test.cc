#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kBins = IA_DOCUMENT_BIN_LIST;
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// Getter -----------------------------------------------------------------------------------------

bool IsCenterTray(std::int32_t number, const std::vector<std::int32_t>& aliases) {
  const auto count = static_cast<std::int32_t>(aliases.size());
  const BinUnit bin{number, aliases.data(), &count};
  char* text = zGetTrayCSettingOptionString(&bin);
  if (text == nullptr) return false;
  EXPECT_STREQ(text, "FinCenterTray");
  std::free(text);
  return true;
}

TEST(TrayCSettingGetter, AnswersForBin3WithAlias101) { EXPECT_TRUE(IsCenterTray(3, {101})); }

TEST(TrayCSettingGetter, FindsTheAliasAtAnyPlace) {
  EXPECT_TRUE(IsCenterTray(3, {101, 100}));
  EXPECT_TRUE(IsCenterTray(3, {100, 101}));
  EXPECT_TRUE(IsCenterTray(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 101}));
}

TEST(TrayCSettingGetter, AnswersNullForAnotherBin) {
  for (const std::int32_t number : {kLowest, -3, 0, 1, 2, 4, 5, 101, 259, kHighest}) {
    EXPECT_FALSE(IsCenterTray(number, {101})) << number;
  }
}

TEST(TrayCSettingGetter, AnswersNullForOtherAliases) {
  for (const std::int32_t alias : {kLowest, -101, 0, 3, 100, 102, 357, kHighest}) {
    EXPECT_FALSE(IsCenterTray(3, {alias})) << alias;
  }
  EXPECT_FALSE(IsCenterTray(3, {100, 102, 1, 10}));
}

TEST(TrayCSettingGetter, AnswersNullForNull) {
  const std::int32_t alias = 101;
  const std::int32_t count = 1;
  EXPECT_EQ(zGetTrayCSettingOptionString(nullptr), nullptr);
  BinUnit bin{3, nullptr, &count};
  EXPECT_EQ(zGetTrayCSettingOptionString(&bin), nullptr);
  bin = {3, &alias, nullptr};
  EXPECT_EQ(zGetTrayCSettingOptionString(&bin), nullptr);
  bin = {3, nullptr, nullptr};
  EXPECT_EQ(zGetTrayCSettingOptionString(&bin), nullptr);
}

TEST(TrayCSettingGetter, ReadsNoMoreThanTheCount) {
  const std::int32_t aliases[] = {100, 101};
  for (const std::int32_t count : {kLowest, -1, 0}) {
    const BinUnit bin{3, &aliases[1], &count};
    EXPECT_EQ(zGetTrayCSettingOptionString(&bin), nullptr) << count;
  }
  const std::int32_t count = 1;
  const BinUnit bin{3, aliases, &count};
  EXPECT_EQ(zGetTrayCSettingOptionString(&bin), nullptr);
}

// Handler ----------------------------------------------------------------------------------------

const Entries kTop = {{"QVTrayCSetting", "FinTopTray"}};
const Entries kCenter = {{"QVTrayCSetting", "FinCenterTray"}};

std::string Bin(std::int32_t number, const Numbers& aliases) {
  return Number("number", number) + NumberArray("alias", aliases);
}

class BinList : public ListUpdates {
 protected:
  Entries AppendedFor(const Items& bins) {
    Load(kBins, bins);
    return Appended(z_Update_Prn_bin_list);
  }
};

TEST_F(BinList, RefusesNullArguments) {
  Load(kBins, {Bin(3, {101})});
  ListReads reads;
  CallersList list;
  EXPECT_EQ(z_Update_Prn_bin_list(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_bin_list(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_bin_list(nullptr, nullptr), -1);
  EXPECT_THAT(reads.reads, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

struct BinRow {
  const char* label;
  Items bins;
  bool is_center;
};

void PrintTo(const BinRow& row, std::ostream* out) { *out << row.label; }

class EachBinList : public BinList, public testing::WithParamInterface<BinRow> {};

TEST_P(EachBinList, DecidesTheCenterTray) {
  EXPECT_EQ(AppendedFor(GetParam().bins), GetParam().is_center ? kCenter : kTop);
}

const std::vector<BinRow>& BinLists() {
  static const Items kManyBins(500, Bin(1, {119}));
  static const std::vector<BinRow> lists = {
      {"NoBins", {}, false},
      {"BinThatReportsNothing", {""}, false},
      {"CenterTray", {Bin(3, {101})}, true},
      {"SecondAlias", {Bin(3, {100, 101})}, true},
      {"TenthAlias", {Bin(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 101})}, true},
      {"TenthOfElevenAliases", {Bin(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 101, 11})}, true},
      {"EleventhAliasIsNotSeen", {Bin(3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 101})}, false},
      {"OtherAlias", {Bin(3, {100})}, false},
      {"NoAliases", {Bin(3, {})}, false},
      {"AliasesUnreported", {Number("number", 3)}, false},
      {"OtherBin", {Bin(2, {101}), Bin(4, {101})}, false},
      {"AliasOfOtherBin", {Bin(2, {101}), Bin(3, {100})}, false},
      {"FirstOfBins", {Bin(3, {101}), Bin(1, {119}), Bin(3, {100})}, true},
      {"LastOfBins", {Bin(1, {119}), Bin(3, {100}), Bin(3, {101})}, true},
      // A number that is not reported is that of the bin before.
      {"NumberOfTheBinBefore", {Bin(3, {100}), NumberArray("alias", {101})}, true},
      {"NumberBeforeTheFirstBin", {NumberArray("alias", {101}), Number("number", 3)}, false},
      {"NumberChanged", {Bin(3, {100}), Bin(4, {100}), NumberArray("alias", {101})}, false},
      // Aliases never are.
      {"AliasesOfTheBinBefore", {Bin(1, {101}), Number("number", 3)}, false},
      {"UnreadableAliases", {Bin(1, {101, 101}), Bin(3, {std::nullopt, std::nullopt})}, false},
      {"AliasAfterUnreadableOne", {Bin(3, {std::nullopt, 101})}, true},
      {"NumberIsText", {Text("number", "3") + NumberArray("alias", {101})}, false},
      {"AliasIsNoArray", {Number("number", 3) + Number("alias", 101)}, false},
      {"ManyBins", kManyBins, false},
  };
  return lists;
}

INSTANTIATE_TEST_SUITE_P(Lists, EachBinList, testing::ValuesIn(BinLists()),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(BinList, CenterTrayIsFoundAmongHundreds) {
  Items bins(500, Bin(1, {119}));
  bins[250] = Bin(3, {101});
  EXPECT_EQ(AppendedFor(bins), kCenter);
}

TEST_F(BinList, TakesThousandsOfAliases) {
  Numbers aliases(10000, 100);
  EXPECT_EQ(AppendedFor({Bin(3, aliases)}), kTop);
  aliases[9] = 101;
  EXPECT_EQ(AppendedFor({Bin(3, aliases)}), kCenter);
}

TEST_F(BinList, HasTheTopTrayWithoutDocument) { EXPECT_EQ(Appended(z_Update_Prn_bin_list), kTop); }

TEST_F(BinList, HasTheTopTrayForANegativeCount) {
  Load(kBins, {Bin(3, {101})});
  for (const std::int32_t count : {-1, kLowest}) {
    context_.documents[kBins].count = count;
    EXPECT_EQ(Appended(z_Update_Prn_bin_list), kTop);
  }
}

TEST_F(BinList, AppendsAfterExistingOptions) {
  Load(kBins, {});
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  EXPECT_EQ(z_Update_Prn_bin_list(&context_, list.get()), 0);
  EXPECT_THAT(list.entries(), ElementsAre(Entry("QVOther", "kept"), kTop[0]));
}

TEST_F(BinList, EndsWithTheFirstReadThatFails) {
  Load(kBins, {Bin(3, {101}), Bin(3, {101}), Bin(3, {101})});
  for (std::int32_t failing = 0; failing < 3; ++failing) {
    for (const std::int32_t result : {-1, 5, kHighest, kLowest}) {
      ListReads reads;
      reads.results = {{{kBins, failing}, result}};
      EXPECT_EQ(OutcomeOf(z_Update_Prn_bin_list, context_), (Outcome{result, {}})) << failing;
      EXPECT_THAT(reads.reads, SizeIs(failing + 1));
    }
  }
}

TEST_F(BinList, ReadsEachBinOnceInOrder) {
  Load(kBins, {"", ""});
  ListReads reads;
  Appended(z_Update_Prn_bin_list);
  EXPECT_THAT(reads.reads, ElementsAre(ListReads::Item(kBins, 0), ListReads::Item(kBins, 1)));
}

TEST_F(BinList, FailsAtOnceForItemsOfADocumentThatIsNotLoaded) {
  for (const std::int32_t count : {1, kHighest}) {
    context_.documents[kBins].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_bin_list, context_), (Outcome{-1, {}}));
  }
}

// Calls to the communication library -------------------------------------------------------------

class LyingBinList : public LyingLists {};

TEST_F(LyingBinList, IsAskedForTheKeysOfEachBinInOrder) {
  Load(kBins, {.longs = {{"number", 3}},
               .dict_counts = {{"list", 2}},
               .array_counts = {{"alias", 2}},
               .long_elements = {{1, 101}}});
  EXPECT_EQ(Appended(z_Update_Prn_bin_list), kCenter);
  const std::vector<std::string> bin = {
      "qvxmlwrapGet_OpenDict list",    "qvxmlwrapGet_Long number",
      "qvxmlwrapGet_ArrayCount alias", "qvxmlwrapGet_OpenArray alias",
      "qvxmlwrapGet_LongFromArray 0",  "qvxmlwrapGet_LongFromArray 1",
      "qvxmlwrapGet_CloseArray",       "qvxmlwrapGet_CloseDict"};
  std::vector<std::string> expected = bin;
  expected.insert(expected.end(), bin.begin(), bin.end());
  EXPECT_EQ(Reading(), expected);
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_OpenDict")[1].arguments[2], ArgumentOf(1));
}

TEST_F(LyingBinList, IsAskedForNoMoreThanTenAliases) {
  for (const std::int32_t count : {10, 11, kHighest}) {
    Load(kBins, {.longs = {{"number", 3}},
                 .dict_counts = {{"list", 1}},
                 .array_counts = {{"alias", count}},
                 .long_elements = {{9, 101}}});
    EXPECT_EQ(Appended(z_Update_Prn_bin_list), kCenter);
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_LongFromArray"), SizeIs(10));
  }
}

TEST_F(LyingBinList, IsNotAskedForAliasesBelowZero) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    Load(kBins, {.longs = {{"number", 3}},
                 .dict_counts = {{"list", 1}},
                 .array_counts = {{"alias", count}},
                 .long_elements = {{0, 101}}});
    EXPECT_EQ(Appended(z_Update_Prn_bin_list), kTop);
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_LongFromArray"), IsEmpty());
  }
}

TEST_F(LyingBinList, HasNoBinsBelowZero) {
  for (const std::int32_t count : {-1, kLowest}) {
    Load(kBins, {.longs = {{"number", 3}}, .dict_counts = {{"list", count}}});
    EXPECT_EQ(Appended(z_Update_Prn_bin_list), kTop);
    EXPECT_THAT(recording_.calls, IsEmpty());
  }
}

TEST_F(LyingBinList, EndsForAnyNumberOfBins) {
  Load(kBins, {.dict_counts = {{"list", kHighest}}});
  EXPECT_EQ(RunUnrecorded(z_Update_Prn_bin_list), (Outcome{0, kTop}));
}

}  // namespace
}  // namespace ia_test
