#include "info_analyze/halftone.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

#include "tests/calib/job.h"
#include "tests/info_common/named_row.h"
#include "tests/support/turkish_locale.h"

namespace ia_test {
namespace {

using Triple = std::array<std::uint32_t, 3>;

Triple HalftoneOf(const OptTable* options) {
  Triple values = {7, 8, 9};
  EXPECT_EQ(analyze_common_get_halftone(options, &values[0], &values[1], &values[2]), 0);
  return values;
}

Triple HalftoneOf(const Entries& options) {
  const Job job(options);
  return HalftoneOf(job.options());
}

struct TypeRow : NamedRow {
  const char* value;
  std::uint32_t type;
};

class HalftoneName : public testing::TestWithParam<TypeRow> {
 protected:
  static Triple Expected() { return {GetParam().type, GetParam().type, GetParam().type}; }
};

TEST_P(HalftoneName, GivesItsTypeThreeTimesInColor) {
  EXPECT_EQ(HalftoneOf({{"QVColorMode", "color"},
                        {"QVColorHalftone", GetParam().value},
                        {"QVHalftone", "pattern1"}}),
            Expected());
}

TEST_P(HalftoneName, GivesItsTypeThreeTimesInMonochrome) {
  EXPECT_EQ(HalftoneOf({{"QVColorMode", "mono"},
                        {"QVHalftone", GetParam().value},
                        {"QVColorHalftone", "pattern1"}}),
            Expected());
}

TEST(HalftoneNameInTurkish, IsFoldedAsEverywhere) {
  const TurkishLocale locale;
  if (!locale.IsInForce()) GTEST_SKIP() << kNoTurkishLocale;
  EXPECT_EQ(HalftoneOf({{"qvcolormode", "COLOR"}, {"QVCOLORHALFTONE", "GRADATION"}}),
            (Triple{1, 1, 1}));
  EXPECT_EQ(HalftoneOf({{"QVColorMode", "color"}, {"QVColorHalftone", "ERRDIFFUSION"}}),
            (Triple{5, 5, 5}));
}

INSTANTIATE_TEST_SUITE_P(Table, HalftoneName,
                         Rows<TypeRow>({{"None", "None", 0},
                                        {"Resolution", "resolution", 2},
                                        {"HighResolution", "highresolution", 3},
                                        {"Gradation", "gradation", 1},
                                        {"ColorTone", "colortone", 4},
                                        {"ErrorDiffusion", "errdiffusion", 5}}),
                         RowName<TypeRow>);

INSTANTIATE_TEST_SUITE_P(Prefixes, HalftoneName,
                         Rows<TypeRow>({{"LongerResolution", "resolution2", 2},
                                        {"LongerGradation", "gradation high", 1},
                                        {"LongerColorTone", "colortones", 4}}),
                         RowName<TypeRow>);

INSTANTIATE_TEST_SUITE_P(Case, HalftoneName,
                         Rows<TypeRow>({{"UpperResolution", "RESOLUTION", 2},
                                        {"CamelHighResolution", "HighResolution", 3},
                                        {"UpperErrorDiffusion", "ErrDiffusion", 5},
                                        {"UpperColorTone", "COLORTONE", 4}}),
                         RowName<TypeRow>);

INSTANTIATE_TEST_SUITE_P(Unknown, HalftoneName,
                         Rows<TypeRow>({{"ShortResolution", "resolutio", 0},
                                        {"LeadingBlank", " gradation", 0},
                                        {"Pattern0", "pattern0", 0},
                                        {"PatternAlone", "pattern", 0},
                                        {"Other", "screen", 0},
                                        {"Empty", "", 0}}),
                         RowName<TypeRow>);

// A job of one mode with both patterns' digits, so that the wrong one would be seen.
Entries PatternJob(const std::string& mode, const std::string& number) {
  return {{"QVColorMode", mode},
          {"QVColorHalftone", "pattern" + number},
          {"QVHalftone", "pattern" + number},
          {"QVCHTPattern" + number, "124"},
          {"QVHTPattern" + number, "351"}};
}

class HalftonePattern : public testing::TestWithParam<int> {
 protected:
  const std::string number_ = std::to_string(GetParam());
};

TEST_P(HalftonePattern, LastDigitOfTheColorPatternComesFirst) {
  EXPECT_EQ(HalftoneOf(PatternJob("color", number_)), (Triple{4, 2, 1}));
}

TEST_P(HalftonePattern, LastDigitOfTheMonochromePatternComesFirst) {
  EXPECT_EQ(HalftoneOf(PatternJob("mono", number_)), (Triple{1, 5, 3}));
}

TEST_P(HalftonePattern, NameMayBeLongerAndOfAnyCase) {
  EXPECT_EQ(
      HalftoneOf({{"QVHalftone", "PATTERN" + number_ + "x"}, {"QVHTPattern" + number_, "351"}}),
      (Triple{1, 5, 3}));
}

TEST_P(HalftonePattern, MissingColorPatternGivesZeros) {
  EXPECT_EQ(HalftoneOf({{"QVColorMode", "color"},
                        {"QVColorHalftone", "pattern" + number_},
                        {"QVHTPattern" + number_, "351"}}),
            (Triple{0, 0, 0}));
}

TEST_P(HalftonePattern, MissingMonochromePatternGivesZeros) {
  EXPECT_EQ(HalftoneOf({{"QVHalftone", "pattern" + number_}, {"QVCHTPattern" + number_, "124"}}),
            (Triple{0, 0, 0}));
}

INSTANTIATE_TEST_SUITE_P(Table, HalftonePattern, testing::Range(1, 10));

Triple PatternOf(const std::string& digits) {
  return HalftoneOf({{"QVHalftone", "pattern3"}, {"QVHTPattern3", digits}});
}

TEST(PatternDigits, AreNotChecked) {
  EXPECT_EQ(PatternOf("9A0"), (Triple{0, 'A' - '0', 9}));
  EXPECT_EQ(PatternOf("/99"), (Triple{9, 9, 0xFFFFFFFF}));
  EXPECT_EQ(PatternOf("\xE4"
                      "12"),
            (Triple{2, 1, 0xFFFFFFB4}));
}

TEST(PatternDigits, AfterTheThirdAreNotRead) { EXPECT_EQ(PatternOf("1245"), (Triple{4, 2, 1})); }

TEST(PatternDigits, MissingOnesCountAsNul) {
  constexpr std::uint32_t kNul = 0U - '0';
  EXPECT_EQ(PatternOf("12"), (Triple{kNul, 2, 1}));
  EXPECT_EQ(PatternOf("1"), (Triple{kNul, kNul, 1}));
  EXPECT_EQ(PatternOf(""), (Triple{kNul, kNul, kNul}));
}

struct ModeRow : NamedRow {
  const char* mode;
  std::uint32_t type;
};

class ColorMode : public testing::TestWithParam<ModeRow> {};

TEST_P(ColorMode, ChoosesTheHalftone) {
  EXPECT_EQ(HalftoneOf({{"QVColorMode", GetParam().mode},
                        {"QVColorHalftone", "colortone"},
                        {"QVHalftone", "gradation"}}),
            (Triple{GetParam().type, GetParam().type, GetParam().type}));
}

INSTANTIATE_TEST_SUITE_P(Modes, ColorMode,
                         Rows<ModeRow>({{"Mono", "mono", 1},
                                        {"Monochrome", "monochrome", 1},
                                        {"MonoInUpperCase", "MONO", 1},
                                        {"MonoInMixedCase", "Monochrome", 1},
                                        {"Mon", "mon", 4},
                                        {"Color", "color", 4},
                                        {"Auto", "auto", 4},
                                        {"LeadingBlank", " mono", 4},
                                        {"Empty", "", 4}}),
                         RowName<ModeRow>);

TEST(Halftone, IsMonochromeWithoutAColorMode) {
  EXPECT_EQ(HalftoneOf({{"QVColorHalftone", "colortone"}, {"QVHalftone", "gradation"}}),
            (Triple{1, 1, 1}));
}

TEST(Halftone, IsZeroWithoutItsOption) {
  EXPECT_EQ(HalftoneOf({{"QVColorMode", "color"}, {"QVHalftone", "gradation"}}), (Triple{0, 0, 0}));
  EXPECT_EQ(HalftoneOf({{"QVColorHalftone", "gradation"}}), (Triple{0, 0, 0}));
}

TEST(Halftone, KeysAreFoundInAnyCase) {
  EXPECT_EQ(HalftoneOf({{"qvcolormode", "color"}, {"QVCOLORHALFTONE", "colortone"}}),
            (Triple{4, 4, 4}));
}

TEST(Halftone, OptionWithoutAValueIsAbsent) {
  char mode[] = "QVColorMode";
  char halftone[] = "QVHalftone";
  char gradation[] = "gradation";
  OptTable second = {halftone, gradation, nullptr};
  const OptTable first = {mode, nullptr, &second};
  EXPECT_EQ(HalftoneOf(&first), (Triple{1, 1, 1}));
  second.value = nullptr;
  EXPECT_EQ(HalftoneOf(&first), (Triple{0, 0, 0}));
}

TEST(Halftone, NullArgumentIsRefusedAndNothingWritten) {
  const Job job(Entries{{"QVHalftone", "gradation"}});
  const OptTable* const options = job.options();
  std::uint32_t first = 7;
  std::uint32_t second = 8;
  std::uint32_t third = 9;
  EXPECT_EQ(analyze_common_get_halftone(nullptr, &first, &second, &third), -1);
  EXPECT_EQ(analyze_common_get_halftone(options, nullptr, &second, &third), -1);
  EXPECT_EQ(analyze_common_get_halftone(options, &first, nullptr, &third), -1);
  EXPECT_EQ(analyze_common_get_halftone(options, &first, &second, nullptr), -1);
  EXPECT_EQ((Triple{first, second, third}), (Triple{7, 8, 9}));
}

struct CodeRow : NamedRow {
  std::uint32_t number;
  std::uint32_t code;
};

class BidiCode : public testing::TestWithParam<CodeRow> {};

TEST_P(BidiCode, FollowsFromTheHalftoneType) {
  EXPECT_EQ(analyze_common_convertHalftoneTypePPDtoBidi(GetParam().number), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Table, BidiCode,
                         Rows<CodeRow>({{"None", 0, 0},
                                        {"Gradation", 1, 0x40000},
                                        {"Resolution", 2, 0x10000},
                                        {"HighResolution", 3, 0x20000},
                                        {"ColorTone", 4, 0x80000},
                                        {"ErrorDiffusion", 5, 0x100000},
                                        {"Six", 6, 0},
                                        {"Largest", 0xFFFFFFFF, 0}}),
                         RowName<CodeRow>);

class DensityCode : public testing::TestWithParam<CodeRow> {};

TEST_P(DensityCode, FollowsFromTheCharacteristic) {
  EXPECT_EQ(analyze_common_convertDensityCharCMMtoBidi(GetParam().number), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Table, DensityCode,
                         Rows<CodeRow>({{"Zero", 0, 2},
                                        {"One", 1, 3},
                                        {"Two", 2, 1},
                                        {"Three", 3, 0},
                                        {"Largest", 0xFFFFFFFF, 0}}),
                         RowName<CodeRow>);

}  // namespace
}  // namespace ia_test
