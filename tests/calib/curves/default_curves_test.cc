// The exported tables of default curves: their shape and their known values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "info_analyze/calibration.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using Curve = std::span<const std::uint16_t>;

static_assert(sizeof LARCH_Def_Calib == 16384 && sizeof Linden_Def_Calib_2bit == 16384 &&
              sizeof Linden_Def_Calib_4bit == 16384 && sizeof PinePoplar_Def_Calib_2bit == 16384 &&
              sizeof PinePoplar_Def_Calib_4bit == 16384);

Curve CurveOf(const std::uint16_t* table, std::size_t number) {
  return Curve(table + number * 1024, 1024);
}

struct TableRow : NamedRow {
  const std::uint16_t* table;
  std::size_t end;  // first index of the highest level
};

class DefaultCurves : public testing::TestWithParam<TableRow> {};

TEST_P(DefaultCurves, StartAtZero) {
  for (std::size_t i = 0; i < 8; ++i) EXPECT_EQ(CurveOf(GetParam().table, i).front(), 0) << i;
}

TEST_P(DefaultCurves, NeverDecrease) {
  for (std::size_t i = 0; i < 8; ++i) {
    const Curve curve = CurveOf(GetParam().table, i);
    EXPECT_TRUE(std::ranges::is_sorted(curve)) << "curve " << i;
  }
}

TEST_P(DefaultCurves, ReachTheHighestLevelWhereTheyMust) {
  for (std::size_t i = 0; i < 8; ++i) {
    const Curve curve = CurveOf(GetParam().table, i);
    const auto first = std::ranges::find(curve, 1023) - curve.begin();
    EXPECT_EQ(first, static_cast<std::ptrdiff_t>(GetParam().end)) << "curve " << i;
    EXPECT_EQ(curve.back(), 1023) << "curve " << i;
    EXPECT_EQ(std::ranges::max(curve), 1023) << "curve " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Tables, DefaultCurves,
                         Rows<TableRow>({{"Larch", LARCH_Def_Calib, 1020},
                                         {"Linden2bit", Linden_Def_Calib_2bit, 1021},
                                         {"Linden4bit", Linden_Def_Calib_4bit, 1021},
                                         {"PinePoplar2bit", PinePoplar_Def_Calib_2bit, 1021},
                                         {"PinePoplar4bit", PinePoplar_Def_Calib_4bit, 1021}}),
                         RowName<TableRow>);

struct KnownRow : NamedRow {
  const std::uint16_t* table;
  std::size_t curve;
  std::vector<std::uint16_t> first_eight;
  std::uint16_t at_256;
  std::uint16_t at_512;
  std::uint16_t at_768;
};

class KnownCurve : public testing::TestWithParam<KnownRow> {};

TEST_P(KnownCurve, HasItsValues) {
  const Curve curve = CurveOf(GetParam().table, GetParam().curve);
  EXPECT_EQ(std::vector<std::uint16_t>(curve.begin(), curve.begin() + 8), GetParam().first_eight);
  EXPECT_EQ(curve[256], GetParam().at_256);
  EXPECT_EQ(curve[512], GetParam().at_512);
  EXPECT_EQ(curve[768], GetParam().at_768);
}

INSTANTIATE_TEST_SUITE_P(
    Values, KnownCurve,
    Rows<KnownRow>(
        {{"Larch0", LARCH_Def_Calib, 0, {0, 2, 3, 5, 7, 9, 10, 12}, 190, 465, 726},
         {"Larch3", LARCH_Def_Calib, 3, {0, 0, 0, 0, 11, 17, 20, 22}, 210, 460, 751},
         {"Linden2bit0", Linden_Def_Calib_2bit, 0, {0, 0, 25, 25, 28, 28, 32, 32}, 149, 276, 452},
         {"Linden4bit2", Linden_Def_Calib_4bit, 2, {0, 28, 34, 34, 37, 37, 37, 37}, 129, 315, 534},
         {"PinePoplar2bit2",
          PinePoplar_Def_Calib_2bit,
          2,
          {0, 65, 67, 67, 70, 70, 70, 70},
          173,
          348,
          568},
         {"PinePoplar4bit2",
          PinePoplar_Def_Calib_4bit,
          2,
          {0, 68, 74, 74, 77, 77, 77, 77},
          172,
          346,
          567}}),
    RowName<KnownRow>);

}  // namespace
}  // namespace ia_test
