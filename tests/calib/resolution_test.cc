#include <gtest/gtest.h>

#include <cstdint>

#include "info_analyze/halftone.h"
#include "tests/calib/job.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

struct ResolutionRow : NamedRow {
  const char* value;
  std::uint32_t x_dpi;
  std::uint32_t y_dpi;
};

class ResolutionOption : public testing::TestWithParam<ResolutionRow> {};

TEST_P(ResolutionOption, BecomesTwoNumbers) {
  const Job job(Entries{{"Resolution", GetParam().value}});
  std::uint32_t x_dpi = 1;
  std::uint32_t y_dpi = 2;
  EXPECT_EQ(analyze_common_get_resolution(job.options(), &x_dpi, &y_dpi), 0);
  EXPECT_EQ(x_dpi, GetParam().x_dpi);
  EXPECT_EQ(y_dpi, GetParam().y_dpi);
}

INSTANTIATE_TEST_SUITE_P(Table, ResolutionOption,
                         Rows<ResolutionRow>({{"R600x600dpi", "600x600dpi", 600, 600},
                                              {"R1200x600dpi", "1200x600dpi", 1200, 600},
                                              {"R1200x1200dpi", "1200x1200dpi", 1200, 1200},
                                              {"R600", "600", 600, 600},
                                              {"R1200", "1200", 1200, 1200}}),
                         RowName<ResolutionRow>);

INSTANTIATE_TEST_SUITE_P(Case, ResolutionOption,
                         Rows<ResolutionRow>({{"Unit", "1200x600DPI", 1200, 600},
                                              {"Sign", "1200X1200dpi", 1200, 1200}}),
                         RowName<ResolutionRow>);

INSTANTIATE_TEST_SUITE_P(Unknown, ResolutionOption,
                         Rows<ResolutionRow>({{"NoUnit", "1200x600", 600, 600},
                                              {"OtherOrder", "600x1200dpi", 600, 600},
                                              {"Longer", "1200x1200dpi2", 600, 600},
                                              {"LongerNumber", "12000", 600, 600},
                                              {"Shorter", "120", 600, 600},
                                              {"LeadingBlank", " 1200", 600, 600},
                                              {"Empty", "", 600, 600}}),
                         RowName<ResolutionRow>);

TEST(Resolution, IsTheUsualOneWithoutTheOption) {
  const Job job(Entries{{"Resolutions", "1200"}});
  std::uint32_t x_dpi = 1;
  std::uint32_t y_dpi = 2;
  EXPECT_EQ(analyze_common_get_resolution(job.options(), &x_dpi, &y_dpi), 0);
  EXPECT_EQ(x_dpi, 600U);
  EXPECT_EQ(y_dpi, 600U);
}

TEST(Resolution, NullArgumentIsRefusedAndNothingWritten) {
  const Job job(Entries{{"Resolution", "1200"}});
  std::uint32_t x_dpi = 1;
  std::uint32_t y_dpi = 2;
  EXPECT_EQ(analyze_common_get_resolution(nullptr, &x_dpi, &y_dpi), -1);
  EXPECT_EQ(analyze_common_get_resolution(job.options(), nullptr, &y_dpi), -1);
  EXPECT_EQ(analyze_common_get_resolution(job.options(), &x_dpi, nullptr), -1);
  EXPECT_EQ(x_dpi, 1U);
  EXPECT_EQ(y_dpi, 2U);
}

}  // namespace
}  // namespace ia_test
