#include "analyze/model_row.h"

#include <gtest/gtest.h>

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace ia_test {
namespace {

struct Row {
  std::string_view model;
  int place;
};

using Rows = std::span<const Row>;

constexpr auto kRows = std::to_array<Row>({{"RA-P9-1", 0}, {"RA-P9", 1}, {"RB-X1-1", 2}});

int PlaceOf(Rows rows, const char* code) {
  const Row* row = ia::FindModel<Row>(rows, code);
  return row != nullptr ? row->place : -1;
}

TEST(FindModel, FindsTheRowOfTheCode) {
  EXPECT_EQ(PlaceOf(kRows, "RA-P9-1"), 0);
  EXPECT_EQ(PlaceOf(kRows, "RA-P9"), 1);
  EXPECT_EQ(PlaceOf(kRows, "RB-X1-1"), 2);
}

TEST(FindModel, FindsTheRowThatIsAPrefixOfTheCode) {
  EXPECT_EQ(PlaceOf(kRows, "RA-P9-1-JP"), 0);
  EXPECT_EQ(PlaceOf(kRows, "RA-P9-10"), 0);
  EXPECT_EQ(PlaceOf(kRows, "RA-P9-2"), 1);
  EXPECT_EQ(PlaceOf(kRows, "RA-P99"), 1);
  EXPECT_EQ(PlaceOf(kRows, "RB-X1-1 "), 2);
  EXPECT_EQ(PlaceOf(kRows, ("RB-X1-1" + std::string(100 * 1024, 'x')).c_str()), 2);
}

TEST(FindModel, FindsNoRowForADifferentCode) {
  for (const char* code : {"", "RA", "RA-P", "RA-P8", "RB-X1", "RB-X1-", "RB-X1-2", "ra-p9",
                           " RA-P9", "XRA-P9", "RA_P9"}) {
    EXPECT_EQ(PlaceOf(kRows, code), -1) << code;
  }
}

TEST(FindModel, FindsNoRowForNull) { EXPECT_EQ(PlaceOf(kRows, nullptr), -1); }

TEST(FindModel, FindsNoRowInAnEmptyTable) { EXPECT_EQ(PlaceOf({}, "RA-P9"), -1); }

TEST(FindModel, FirstFittingRowHidesTheOthers) {
  constexpr auto kTwice = std::to_array<Row>({{"RA-P9", 0}, {"RA-P9-1", 1}, {"RA-P9", 2}});
  EXPECT_EQ(PlaceOf(kTwice, "RA-P9-1"), 0);
  EXPECT_EQ(PlaceOf(kTwice, "RA-P9"), 0);
}

TEST(CountUnreachableRows, IsZeroForRowsThatCanBeReached) {
  EXPECT_EQ(ia::CountUnreachableRows<Row>(kRows), 0U);
  EXPECT_EQ(ia::CountUnreachableRows<Row>({}), 0U);
}

TEST(CountUnreachableRows, CountsRowsAfterARowThatIsTheirPrefix) {
  constexpr auto kHidden =
      std::to_array<Row>({{"RA-P9", 0}, {"RB", 1}, {"RA-P9-1", 2}, {"RA-P9", 3}, {"RA-P8", 4}});
  EXPECT_EQ(ia::CountUnreachableRows<Row>(kHidden), 2U);
}

TEST(CountUnreachableRows, CountsRowsWithoutCode) {
  constexpr auto kEmpty = std::to_array<Row>({{"RA", 0}, {"", 1}});
  EXPECT_EQ(ia::CountUnreachableRows<Row>(kEmpty), 1U);
}

}  // namespace
}  // namespace ia_test
