#include "calib/curves/curve_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using ia::Curve;
using ia::CurveFileError;
using ia::CurveTable;
using ia::KnownLevel;
using testing::HasSubstr;

constexpr char kHeading[] = "level,curve0,curve1,curve2,curve3,curve4,curve5,curve6,curve7\n";
constexpr char kFirst[] = "0,0,0,0,0,0,0,0,0\n";
constexpr char kLast[] = "1023,1023,1023,1023,1023,1023,1023,1023,1023\n";

std::vector<KnownLevel> Read(const std::string& text) {
  std::istringstream file(text);
  return ia::ReadKnownLevels(file);
}

// A good file with these rows between the first and the last one.
std::string FileWith(const std::string& rows) {
  return std::string(kHeading) + kFirst + rows + kLast;
}

// The curve through points that are the same for all curves.
Curve CurveThrough(const std::vector<std::pair<int, int>>& points) {
  std::vector<KnownLevel> known = {{0, {}}};
  for (const auto& [level, output] : points) {
    known.push_back({level, {}});
    known.back().outputs.fill(output);
  }
  known.push_back({1023, {}});
  known.back().outputs.fill(1023);
  const CurveTable table = ia::Interpolate(known);
  EXPECT_TRUE(std::ranges::all_of(table, [&](const Curve& curve) { return curve == table[0]; }));
  return table[0];
}

// Reading ----------------------------------------------------------------------------------------

TEST(CurveFile, GivesItsRows) {
  const auto known = Read(FileWith("7,1,2,3,4,5,6,7,8\n300,20,20,20,20,20,20,20,1023\n"));
  ASSERT_EQ(known.size(), 4U);
  EXPECT_EQ(known[0].level, 0);
  EXPECT_EQ(known[1].level, 7);
  EXPECT_THAT(known[1].outputs, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_EQ(known[2].level, 300);
  EXPECT_EQ(known[2].outputs[7], 1023);
  EXPECT_EQ(known[3].level, 1023);
}

TEST(CurveFile, CommentsAndEmptyLinesStandAnywhere) {
  const std::string text = "# one\n\n" + std::string(kHeading) + "# two\n" + kFirst + "\n" + kLast;
  EXPECT_EQ(Read(text + "# three\n").size(), 2U);
}

TEST(CurveFile, LinesMayEndAsSpreadsheetsEndThem) {
  std::string text = FileWith("7,1,2,3,4,5,6,7,8\n");
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2)) {
    text.insert(at, "\r");
  }
  EXPECT_EQ(Read(text).size(), 3U);
}

TEST(CurveFile, LastLineNeedsNoEnd) {
  std::string text = FileWith("");
  text.pop_back();
  EXPECT_EQ(Read(text).size(), 2U);
}

TEST(CurveFile, MayHoldEveryLevel) {
  std::string rows;
  for (int level = 1; level < 1023; ++level) {
    rows += std::to_string(level);
    for (int curve = 0; curve < 8; ++curve) rows += "," + std::to_string(level * (8 - curve) / 8);
    rows += "\n";
  }
  const CurveTable table = ia::Interpolate(Read(FileWith(rows)));
  for (std::size_t curve = 0; curve < 8; ++curve) {
    for (std::size_t level = 0; level < 1023; ++level) {
      ASSERT_EQ(table[curve][level], level * (8 - curve) / 8) << curve << " " << level;
    }
    EXPECT_EQ(table[curve][1023], 1023);
  }
}

struct BadFileRow : NamedRow {
  std::string text;
  int line;
  const char* message;
};

class BadCurveFile : public testing::TestWithParam<BadFileRow> {};

TEST_P(BadCurveFile, IsRefusedWithItsLine) {
  try {
    Read(GetParam().text);
    FAIL() << "taken";
  } catch (const CurveFileError& error) {
    EXPECT_EQ(error.line(), GetParam().line);
    EXPECT_THAT(error.what(), HasSubstr(GetParam().message));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, BadCurveFile,
    Rows<BadFileRow>({
        {"Empty", "", 0, "the last row must be"},
        {"NoHeading", kFirst, 1, "heading wanted"},
        {"OtherHeading", "level,a,b,c,d,e,f,g,h\n", 1, "heading wanted"},
        {"NoRows", kHeading, 1, "the last row must be"},
        {"NoFirstRow", std::string(kHeading) + kLast, 2, "the first row must be"},
        {"FirstRowNotZero", std::string(kHeading) + "0,0,0,0,0,0,0,0,1\n" + kLast, 2,
         "the first row must be"},
        {"NoLastRow", std::string(kHeading) + kFirst, 2, "the last row must be"},
        {"LastRowTooLow",
         std::string(kHeading) + kFirst + "1023,1023,1023,1023,1023,1023,1023,1023,1022\n", 3,
         "the last row must be"},
        {"LastRowTooEarly",
         std::string(kHeading) + kFirst + "1022,1023,1023,1023,1023,1023,1023,1023,1023\n# end\n",
         4, "the last row must be"},
        {"TooFewNumbers", FileWith("7,1,2,3,4,5,6,7\n"), 3, "9 numbers wanted, 8 found"},
        {"TooManyNumbers", FileWith("7,1,2,3,4,5,6,7,8,9\n"), 3, "9 numbers wanted, 10 found"},
        {"CommaAtTheEnd", FileWith("7,1,2,3,4,5,6,7,8,\n"), 3, "\"\" is no level"},
        {"MissingNumber", FileWith("7,1,,3,4,5,6,7,8\n"), 3, "\"\" is no level"},
        {"Word", FileWith("7,1,two,3,4,5,6,7,8\n"), 3, "\"two\" is no level"},
        {"Fraction", FileWith("7,1,2.5,3,4,5,6,7,8\n"), 3, "\"2.5\" is no level"},
        {"Blank", FileWith("7, 1,2,3,4,5,6,7,8\n"), 3, "\" 1\" is no level"},
        {"Negative", FileWith("7,-1,2,3,4,5,6,7,8\n"), 3, "\"-1\" is no level"},
        {"OutputTooHigh", FileWith("7,1,2,3,4,5,6,7,1024\n"), 3, "\"1024\" is no level"},
        {"LevelTooHigh", FileWith("1024,1,2,3,4,5,6,7,8\n"), 3, "\"1024\" is no level"},
        {"BeyondAnyNumber", FileWith("7,1,2,3,4,5,6,7,99999999999999999999\n"), 3,
         "\"99999999999999999999\" is no level"},
        {"LevelTwice", FileWith("7,1,2,3,4,5,6,7,8\n7,1,2,3,4,5,6,7,8\n"), 4, "levels must ascend"},
        {"LevelBack", FileWith("7,1,2,3,4,5,6,7,8\n6,1,2,3,4,5,6,7,8\n"), 4, "levels must ascend"},
        {"Decrease", FileWith("7,1,2,3,4,5,6,7,8\n8,1,2,3,4,4,6,7,8\n"), 4,
         "curve 4 decreases from 5 to 4"},
        {"AfterTheLastRow", FileWith("") + kLast, 4, "levels must ascend"},
    }),
    RowName<BadFileRow>);

// Interpolating ----------------------------------------------------------------------------------

TEST(Interpolation, OfNothingButTheEndsIsAStraightLine) {
  const Curve curve = CurveThrough({});
  for (std::size_t level = 0; level < curve.size(); ++level) ASSERT_EQ(curve[level], level);
}

TEST(Interpolation, GoesThroughEveryPoint) {
  const Curve curve = CurveThrough({{1, 0}, {2, 40}, {100, 41}, {500, 41}, {700, 900}});
  EXPECT_EQ(curve[0], 0);
  EXPECT_EQ(curve[1], 0);
  EXPECT_EQ(curve[2], 40);
  EXPECT_EQ(curve[100], 41);
  EXPECT_EQ(curve[500], 41);
  EXPECT_EQ(curve[700], 900);
  EXPECT_EQ(curve[1023], 1023);
}

TEST(Interpolation, StaysFlatBetweenEqualPoints) {
  const Curve curve = CurveThrough({{100, 300}, {400, 300}});
  EXPECT_TRUE(std::all_of(curve.begin() + 100, curve.begin() + 401,
                          [](std::uint16_t output) { return output == 300; }));
}

TEST(Interpolation, OfPointsOnALineIsTheLine) {
  const Curve curve = CurveThrough({{100, 100}, {700, 700}});
  for (std::size_t level = 0; level < curve.size(); ++level) ASSERT_EQ(curve[level], level);
}

// By hand: the slope at 400 is that between its neighbours, 1. At 200, the middle of the first
// piece, a cubic is the mean of its ends plus an eighth of the width times the difference of its
// slopes: 151 + 400 / 8 * (0.755 - 1) = 138.75.
TEST(Interpolation, IsTheCubicOfTheSlopesBetweenNeighbours) {
  EXPECT_EQ(CurveThrough({{400, 302}})[200], 139);
}

// By hand: the slopes at 10 and 510, 25 / 510 and 605 / 900, are shortened to 3 * 0.01 in all,
// which leaves 0.0299 at 510. At 710 the next piece is then 325 + 400 / 8 * (0.0299 - 998 / 513) =
// 229.2; with the whole slope it would be 261.
TEST(Interpolation, ShortensSlopesThatWouldOvershoot) {
  const Curve curve = CurveThrough({{10, 20}, {510, 25}, {910, 625}});
  EXPECT_EQ(curve[710], 229);
  EXPECT_TRUE(std::ranges::is_sorted(curve));
  EXPECT_LE(*std::max_element(curve.begin(), curve.begin() + 510), 25);
}

TEST(Interpolation, NeverDecreasesNearJumps) {
  const Curve curve = CurveThrough({{1, 500}, {2, 500}, {3, 501}, {900, 502}, {901, 1000}});
  EXPECT_TRUE(std::ranges::is_sorted(curve));
}

TEST(Interpolation, StaysAtTheHighestLevelOnceAPointHasIt) {
  const Curve curve = CurveThrough({{600, 1023}, {800, 1023}});
  EXPECT_EQ(curve[599], 1021);
  EXPECT_TRUE(std::all_of(curve.begin() + 600, curve.end(),
                          [](std::uint16_t output) { return output == 1023; }));
}

// From 1022 on rounding alone would reach 1023 half-way.
TEST(Interpolation, DoesNotReachTheHighestLevelBeforeItsPoint) {
  const Curve curve = CurveThrough({{900, 1022}, {1020, 1023}});
  EXPECT_EQ(curve[1019], 1022);
  EXPECT_EQ(curve[1020], 1023);
}

TEST(Interpolation, TreatsEachCurveByItself) {
  KnownLevel middle = {512, {0, 100, 200, 300, 400, 500, 600, 1023}};
  std::vector<KnownLevel> known = {{0, {}}, middle, {1023, {}}};
  known.back().outputs.fill(1023);
  const CurveTable table = ia::Interpolate(known);
  for (std::size_t curve = 0; curve < 8; ++curve) {
    EXPECT_EQ(table[curve][512], middle.outputs[curve]) << curve;
  }
  EXPECT_EQ(table[0][511], 0);
  EXPECT_EQ(table[7][513], 1023);
}

// Numbers ----------------------------------------------------------------------------------------

TEST(CurveNumbers, AreAllValuesWithACurveToALine) {
  CurveTable table = {};
  table[0][0] = 11;
  table[1][0] = 33;
  table[7][1023] = 22;
  const std::string numbers = ia::FormatNumbers(table);
  EXPECT_THAT(numbers, testing::StartsWith("11,0,"));
  EXPECT_THAT(numbers, HasSubstr(",0,\n33,0,"));
  EXPECT_THAT(numbers, testing::EndsWith(",22,\n"));
  EXPECT_EQ(std::ranges::count(numbers, ','), 8192);
  EXPECT_EQ(std::ranges::count(numbers, '\n'), 8);
}

}  // namespace
}  // namespace ia_test
