#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <ostream>
#include <string>

#include "calib/model_table.h"
#include "info_analyze/calibration.h"
#include "tests/calib/job.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using Codes = std::array<std::uint32_t, 3>;

constexpr Codes kUntouched = {7, 8, 9};

struct Answer {
  std::int32_t status;
  Codes codes;
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << answer.status << ": " << testing::PrintToString(answer.codes);
}

Answer Ask(Calib3SettingsHandler question, const AnalyzeContext* context, const Job& job) {
  Codes codes = kUntouched;
  const std::int32_t status = question(context, job.options(), &codes[0], &codes[1], &codes[2]);
  return {status, codes};
}

// Model table ------------------------------------------------------------------------------------

constexpr Codes kLarch = {0, 0x10000, 0x80000};
constexpr Codes kGradationNormal = {0, 0, 0};
constexpr Codes kSfp = {0x10000, 0x80000, 0x10000};

struct ModelRow {
  const char* model;
  Calib3SettingsHandler handler;
  Codes codes;  // for a job of normal gradation without a colour mode
};

std::ostream& operator<<(std::ostream& out, const ModelRow& row) { return out << row.model; }

class Calib3SettingsOfModel : public testing::TestWithParam<ModelRow> {
 protected:
  const Job job_{Entries{{"QVGradation", "Normal"}}};
};

TEST_P(Calib3SettingsOfModel, ComeFromItsHandler) {
  const Answer right = {0, GetParam().codes};
  for (const std::string& code : CodesThatBeginWith(GetParam().model)) {
    const Analyser analyser(code);
    EXPECT_EQ(Ask(Analyze_Info_GetCalib3Settings, analyser.context(), job_), right) << code;
    EXPECT_EQ(Ask(analyze_GetCalib3Settings, analyser.context(), job_), right) << code;
    EXPECT_EQ(Ask(GetParam().handler, analyser.context(), job_), right) << code;
  }
}

TEST_P(Calib3SettingsOfModel, AreNoneForANearCode) {
  for (const std::string& code : CodesNear(GetParam().model)) {
    const Analyser analyser(code);
    EXPECT_EQ(Ask(Analyze_Info_GetCalib3Settings, analyser.context(), job_),
              (Answer{0, kUntouched}))
        << code;
  }
}

const ModelRow kModels[] = {
    {"RC-STD", analyze_GetCalibSettingsSFP, kSfp},
    {"RB-W7", analyze_GetCalibSettingsLARCH, kLarch},
    {"RB-Z4", analyze_GetCalibSettingsLARCH, kLarch},
    {"RC-T9", analyze_GetCalibSettingsLARCH, kLarch},
    {"RB-P9", analyze_GetCalibSettingsLINDEN, kGradationNormal},
    {"RB-J9", analyze_GetCalibSettingsPINE_POPLAR, kGradationNormal},
};

INSTANTIATE_TEST_SUITE_P(Table, Calib3SettingsOfModel, testing::ValuesIn(kModels),
                         ModelName<ModelRow>);

TEST(Calib3SettingsOfModelTable, HasAnExpectationForEachRow) {
  EXPECT_TRUE(std::ranges::equal(ia::kCalib3SettingsModels, kModels, {},
                                 &ia::CalibModelEntry<Calib3SettingsHandler>::model,
                                 &ModelRow::model));
}

TEST(Calib3Settings, AreNoneWithoutAModel) {
  const Job job;
  EXPECT_EQ(Ask(Analyze_Info_GetCalib3Settings, &kWithoutModel, job), (Answer{0, kUntouched}));
  EXPECT_EQ(Ask(analyze_GetCalib3Settings, &kWithoutModel, job), (Answer{0, kUntouched}));
}

// The model is the dispatcher's concern.
TEST(Calib3Settings, HandlersDoNotDependOnTheModel) {
  const Job job;
  EXPECT_EQ(Ask(analyze_GetCalibSettingsLARCH, &kWithoutModel, job), (Answer{0, kLarch}));
}

// Null arguments ---------------------------------------------------------------------------------

struct FunctionRow : NamedRow {
  Calib3SettingsHandler function;
};

class Calib3SettingsFunction : public testing::TestWithParam<FunctionRow> {};

TEST_P(Calib3SettingsFunction, RefusesNullArgumentsAndWritesNothing) {
  const Calib3SettingsHandler ask = GetParam().function;
  const Analyser analyser("RB-W7");
  const AnalyzeContext* const context = analyser.context();
  const Job job;
  const OptTable* const options = job.options();
  Codes codes = kUntouched;
  auto& [out1, out2, out3] = codes;
  EXPECT_EQ(ask(nullptr, options, &out1, &out2, &out3), -1);
  EXPECT_EQ(ask(context, nullptr, &out1, &out2, &out3), -1);
  EXPECT_EQ(ask(context, options, nullptr, &out2, &out3), -1);
  EXPECT_EQ(ask(context, options, &out1, nullptr, &out3), -1);
  EXPECT_EQ(ask(context, options, &out1, &out2, nullptr), -1);
  EXPECT_EQ(codes, kUntouched);
}

INSTANTIATE_TEST_SUITE_P(Each, Calib3SettingsFunction,
                         Rows<FunctionRow>({{"Question", Analyze_Info_GetCalib3Settings},
                                            {"Dispatch", analyze_GetCalib3Settings},
                                            {"Larch", analyze_GetCalibSettingsLARCH},
                                            {"Linden", analyze_GetCalibSettingsLINDEN},
                                            {"PinePoplar", analyze_GetCalibSettingsPINE_POPLAR},
                                            {"Sfp", analyze_GetCalibSettingsSFP}}),
                         RowName<FunctionRow>);

// A missing argument is refused before a model is looked for.
TEST(Calib3Settings, NullArgumentIsRefusedForAModelWithoutSettings) {
  const Job job;
  std::uint32_t out = 7;
  EXPECT_EQ(Analyze_Info_GetCalib3Settings(&kWithoutModel, job.options(), &out, nullptr, &out), -1);
  EXPECT_EQ(analyze_GetCalib3Settings(&kWithoutModel, nullptr, &out, &out, &out), -1);
  EXPECT_EQ(out, 7U);
}

// Handlers ---------------------------------------------------------------------------------------

struct OptionsRow : NamedRow {
  Entries options;
  Codes codes;
};

class LarchSettings : public testing::TestWithParam<OptionsRow> {};

TEST_P(LarchSettings, DoNotDependOnOptions) {
  EXPECT_EQ(Ask(analyze_GetCalibSettingsLARCH, &kWithoutModel, Job(GetParam().options)),
            (Answer{0, GetParam().codes}));
}

INSTANTIATE_TEST_SUITE_P(Options, LarchSettings,
                         Rows<OptionsRow>({{"None", {}, kLarch},
                                           {"Gradation", {{"QVGradation", "Normal"}}, kLarch},
                                           {"Halftone",
                                            {{"QVColorMode", "mono"}, {"QVHalftone", "gradation"}},
                                            kLarch}}),
                         RowName<OptionsRow>);

class GradationSettings : public testing::TestWithParam<OptionsRow> {};

TEST_P(GradationSettings, FollowFromTheGradation) {
  const Job job(GetParam().options);
  const Answer right = {0, GetParam().codes};
  EXPECT_EQ(Ask(analyze_GetCalibSettingsLINDEN, &kWithoutModel, job), right);
  EXPECT_EQ(Ask(analyze_GetCalibSettingsPINE_POPLAR, &kWithoutModel, job), right);
}

constexpr Codes kGradationHigh = {0, 0x80000, 0x10000};

INSTANTIATE_TEST_SUITE_P(
    Options, GradationSettings,
    Rows<OptionsRow>({{"Normal", {{"QVGradation", "Normal"}}, kGradationNormal},
                      {"LongerNormal", {{"QVGradation", "Normal2"}}, kGradationNormal},
                      {"LowerCaseNormal", {{"QVGradation", "normal"}}, kGradationHigh},
                      {"ShortNormal", {{"QVGradation", "Norma"}}, kGradationHigh},
                      {"High1", {{"QVGradation", "High1"}}, kGradationHigh},
                      {"High2", {{"QVGradation", "High2"}}, kGradationHigh},
                      {"Other", {{"QVGradation", "Fine"}}, kGradationHigh},
                      {"Empty", {{"QVGradation", ""}}, kGradationHigh},
                      {"None", {}, kGradationHigh}}),
    RowName<OptionsRow>);

class SfpSettings : public testing::TestWithParam<OptionsRow> {};

TEST_P(SfpSettings, FollowFromModeAndHalftone) {
  EXPECT_EQ(Ask(analyze_GetCalibSettingsSFP, &kWithoutModel, Job(GetParam().options)),
            (Answer{0, GetParam().codes}));
}

constexpr Codes kSfpGradation = {0x80000, 0x80000, 0x10000};

INSTANTIATE_TEST_SUITE_P(
    Options, SfpSettings,
    Rows<OptionsRow>(
        {{"None", {}, kSfp},
         {"NoMode", {{"QVHalftone", "gradation"}, {"QVColorHalftone", "gradation"}}, kSfp},
         {"Mono",
          {{"QVColorMode", "mono"}, {"QVHalftone", "gradation"}, {"QVColorHalftone", "x"}},
          kSfpGradation},
         {"Monochrome",
          {{"QVColorMode", "monochrome"}, {"QVHalftone", "gradation"}},
          kSfpGradation},
         {"MonoOther",
          {{"QVColorMode", "mono"}, {"QVHalftone", "x"}, {"QVColorHalftone", "gradation"}},
          kSfp},
         {"MonoWithoutHalftone", {{"QVColorMode", "mono"}, {"QVColorHalftone", "gradation"}}, kSfp},
         {"Color",
          {{"QVColorMode", "color"}, {"QVColorHalftone", "gradation"}, {"QVHalftone", "x"}},
          kSfpGradation},
         {"ColorOther",
          {{"QVColorMode", "color"}, {"QVColorHalftone", "x"}, {"QVHalftone", "gradation"}},
          kSfp},
         {"ColorWithoutHalftone", {{"QVColorMode", "color"}, {"QVHalftone", "gradation"}}, kSfp},
         {"LongerHalftone",
          {{"QVColorMode", "color"}, {"QVColorHalftone", "gradation2"}},
          kSfpGradation},
         {"ShortHalftone", {{"QVColorMode", "color"}, {"QVColorHalftone", "gradatio"}}, kSfp}}),
    RowName<OptionsRow>);

// The reader of the job's halftone takes "Mono" for monochrome and "Gradation" for gradation; here
// they are not.
INSTANTIATE_TEST_SUITE_P(
    CaseMatters, SfpSettings,
    Rows<OptionsRow>(
        {{"UpperMono",
          {{"QVColorMode", "Mono"}, {"QVHalftone", "x"}, {"QVColorHalftone", "gradation"}},
          kSfpGradation},
         {"UpperMonoWithMonoGradation",
          {{"QVColorMode", "MONO"}, {"QVHalftone", "gradation"}, {"QVColorHalftone", "x"}},
          kSfp},
         {"UpperGradation", {{"QVColorMode", "color"}, {"QVColorHalftone", "Gradation"}}, kSfp}}),
    RowName<OptionsRow>);

}  // namespace
}  // namespace ia_test
