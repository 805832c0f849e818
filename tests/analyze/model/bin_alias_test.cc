#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::int32_t kDocument = IA_DOCUMENT_BIN_LIST;
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

using Codes = std::vector<std::int32_t>;

class BinAliases : public ListUpdates {
 protected:
  // Bins with these aliases.
  void LoadBins(const std::vector<Numbers>& bins) {
    Items items;
    for (const Numbers& aliases : bins) {
      items.push_back(Number("number", 1) + NumberArray("alias", aliases));
    }
    Load(kDocument, items);
  }

  // The codes that are collected; the getter returns `result`. Nothing is written after the tenth
  // code.
  Codes Collect(std::int32_t result = 0) {
    constexpr std::int32_t kUntouched = -4711;
    std::array<std::int32_t, 12> codes;
    codes.fill(kUntouched);
    std::int32_t count = kUntouched;
    EXPECT_EQ(analyze_GetBinAlias(&context_, codes.data(), &count), result);
    EXPECT_TRUE(count >= 0 && count <= 10) << count;
    const auto end = codes.begin() + std::clamp(count, 0, 10);
    EXPECT_EQ(std::count(end, codes.end(), kUntouched), codes.end() - end);
    return {codes.begin(), end};
  }
};

TEST_F(BinAliases, CodesOfAllBinsAreCollectedInOrder) {
  LoadBins({{101, 102}, {119}, {121, 101}});
  EXPECT_THAT(Collect(), ElementsAre(101, 102, 119, 121, 101));
}

TEST_F(BinAliases, ZerosAreLeftOut) {
  LoadBins({{0, 101, 0}, {0}, {0, 0, 119}});
  EXPECT_THAT(Collect(), ElementsAre(101, 119));
}

TEST_F(BinAliases, AnyOtherCodeIsKept) {
  LoadBins({{-1, 1, kSmallest, kLargest}});
  EXPECT_THAT(Collect(), ElementsAre(-1, 1, kSmallest, kLargest));
}

TEST_F(BinAliases, BinsWithoutCodesAddNothing) {
  Load(kDocument, {NumberArray("alias", {101}), "", Number("number", 3), NumberArray("alias", {}),
                   NumberArray("other", {7}), Number("alias", 8), NumberArray("alias", {119})});
  EXPECT_THAT(Collect(), ElementsAre(101, 119));
}

TEST_F(BinAliases, ElementsThatAreNoNumbersAddNothing) {
  LoadBins({{101, std::nullopt, 103}});
  EXPECT_THAT(Collect(), ElementsAre(101, 103));
}

TEST_F(BinAliases, ElementThatIsNoNumberDoesNotRepeatTheBinBefore) {
  LoadBins({{101, 102}, {std::nullopt, 103}, {std::nullopt, std::nullopt, std::nullopt}});
  EXPECT_THAT(Collect(), ElementsAre(101, 102, 103));
}

TEST_F(BinAliases, OfTenCodesAllAreCollected) {
  LoadBins({{1, 2, 3, 4, 5, 6, 7, 8, 9, 10}});
  EXPECT_THAT(Collect(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(BinAliases, OfABinTenCodesAreRead) {
  LoadBins({{0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {11}});
  EXPECT_THAT(Collect(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 11));
}

TEST_F(BinAliases, OfAllBinsTenCodesAreCollected) {
  LoadBins({{1, 2, 3, 4, 5, 6}, {7, 8, 9, 10, 11, 12}, {13}});
  EXPECT_THAT(Collect(), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(BinAliases, WithoutBinsThereAreNoCodes) {
  LoadBins({});
  EXPECT_THAT(Collect(), IsEmpty());
}

TEST_F(BinAliases, WithoutDocumentThereAreNoCodes) { EXPECT_THAT(Collect(), IsEmpty()); }

TEST_F(BinAliases, EachBinOfTheDocumentIsReadOnce) {
  LoadBins({{101}, {102}, {103}});
  ListReads reads;
  Collect();
  EXPECT_THAT(reads.reads, ElementsAre(ListReads::Item(kDocument, 0), ListReads::Item(kDocument, 1),
                                       ListReads::Item(kDocument, 2)));
}

TEST_F(BinAliases, FailingReadKeepsTheCodesOfTheBinsBefore) {
  LoadBins({{101, 0, 102}, {103}, {104}});
  for (const std::int32_t result : {-1, 5}) {
    ListReads reads;
    reads.results[{kDocument, 1}] = result;
    EXPECT_THAT(Collect(result), ElementsAre(101, 102));
    EXPECT_THAT(reads.reads,
                ElementsAre(ListReads::Item(kDocument, 0), ListReads::Item(kDocument, 1)));
  }
}

TEST_F(BinAliases, FailingFirstReadGivesNoCodes) {
  LoadBins({{101}, {102}});
  ListReads reads;
  reads.results[{kDocument, 0}] = 12;
  EXPECT_THAT(Collect(12), IsEmpty());
}

TEST_F(BinAliases, NullArgumentLeavesTheCountUntouched) {
  LoadBins({{101}});
  std::array<std::int32_t, 10> codes = {};
  std::int32_t count = 7;
  EXPECT_EQ(analyze_GetBinAlias(nullptr, codes.data(), &count), -1);
  EXPECT_EQ(analyze_GetBinAlias(&context_, nullptr, &count), -1);
  EXPECT_EQ(analyze_GetBinAlias(&context_, codes.data(), nullptr), -1);
  EXPECT_EQ(count, 7);
  EXPECT_EQ(codes[0], 0);
}

// A communication library that says that each bin has this many codes: 1, 2, 3, ...
class LyingBins : public LyingLists {
 protected:
  Codes Collect(std::int32_t bins, std::int32_t codes_per_bin) {
    ScriptedDocument document{.dict_counts = {{"list", bins}},
                              .array_counts = {{"alias", codes_per_bin}}};
    for (std::int32_t i = 0; i < 20; ++i) document.long_elements[i] = i + 1;
    Load(kDocument, std::move(document));
    std::array<std::int32_t, 10> codes = {};
    std::int32_t count = 0;
    EXPECT_EQ(analyze_GetBinAlias(&context_, codes.data(), &count), 0);
    return {codes.begin(), codes.begin() + std::clamp(count, 0, 10)};
  }
};

TEST_F(LyingBins, CountsOutOfRangeDoNoHarm) {
  const Codes all = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(Collect(1, kLargest), all);
  EXPECT_EQ(Collect(1, 11), all);
  EXPECT_EQ(Collect(3, 10), all);
  EXPECT_THAT(Collect(3, 0), IsEmpty());
  EXPECT_THAT(Collect(3, -1), IsEmpty());
  EXPECT_THAT(Collect(3, kSmallest), IsEmpty());
  EXPECT_THAT(Collect(-1, 10), IsEmpty());
}

struct CheckRow : NamedRow {
  Codes aliases;
  std::int32_t low;
  std::int32_t high;
  std::int32_t result;
};

class CheckedBinAlias : public testing::TestWithParam<CheckRow> {};

INSTANTIATE_TEST_SUITE_P(
    , CheckedBinAlias,
    testing::Values(CheckRow{{"OneBelowTheRange"}, {100}, 101, 105, 0},
                    CheckRow{{"LowEnd"}, {101}, 101, 105, 1},
                    CheckRow{{"Inside"}, {103}, 101, 105, 1},
                    CheckRow{{"HighEnd"}, {105}, 101, 105, 1},
                    CheckRow{{"OneAboveTheRange"}, {106}, 101, 105, 0},
                    CheckRow{{"BothSidesOfTheRange"}, {100, 106}, 101, 105, 0},
                    CheckRow{{"FirstOfSeveral"}, {105, 1, 2}, 101, 105, 1},
                    CheckRow{{"LastOfSeveral"}, {1, 2, 101}, 101, 105, 1},
                    CheckRow{{"OneBelowTheOnlyCode"}, {118}, 119, 119, 0},
                    CheckRow{{"TheOnlyCode"}, {118, 120, 119}, 119, 119, 1},
                    CheckRow{{"OneAboveTheOnlyCode"}, {120}, 119, 119, 0},
                    CheckRow{{"ReversedRange"}, {101, 103, 105}, 105, 101, 0},
                    CheckRow{{"NegativeCode"}, {-5}, -6, -5, 1}, CheckRow{{"Zero"}, {0}, 0, 0, 1},
                    CheckRow{{"SmallestOfAll"}, {kSmallest}, kSmallest, kLargest, 1},
                    CheckRow{{"LargestOfAll"}, {kLargest}, kSmallest, kLargest, 1},
                    CheckRow{{"SmallestOutside"}, {kSmallest}, kSmallest + 1, kLargest, 0},
                    CheckRow{{"LargestOutside"}, {kLargest}, kSmallest, kLargest - 1, 0},
                    CheckRow{{"NoAliases"}, {}, kSmallest, kLargest, 0}),
    RowName<CheckRow>);

TEST_P(CheckedBinAlias, IsFoundInTheClosedRange) {
  const CheckRow& row = GetParam();
  // A block of exactly this length.
  const auto block = std::make_unique<std::int32_t[]>(row.aliases.size());
  std::copy(row.aliases.begin(), row.aliases.end(), block.get());
  const auto count = static_cast<std::int32_t>(row.aliases.size());
  EXPECT_EQ(analyze_CheckBinAlias(block.get(), count, row.low, row.high), row.result);
}

TEST(CheckBinAlias, CodesBeyondTheCountAreNotSeen) {
  const Codes aliases = {1, 119};
  EXPECT_EQ(analyze_CheckBinAlias(aliases.data(), 1, 119, 119), 0);
  EXPECT_EQ(analyze_CheckBinAlias(aliases.data(), 2, 119, 119), 1);
}

TEST(CheckBinAlias, NullArrayHasNoCodes) {
  EXPECT_EQ(analyze_CheckBinAlias(nullptr, 0, kSmallest, kLargest), 0);
  EXPECT_EQ(analyze_CheckBinAlias(nullptr, 3, kSmallest, kLargest), 0);
}

TEST(CheckBinAlias, CountBelowOneHasNoCodes) {
  const Codes aliases = {119};
  for (const std::int32_t count : {0, -1, kSmallest}) {
    EXPECT_EQ(analyze_CheckBinAlias(aliases.data(), count, 119, 119), 0) << count;
  }
}

}  // namespace
}  // namespace ia_test
