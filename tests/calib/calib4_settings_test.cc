#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <string>

#include "calib/model_table.h"
#include "info_analyze/calibration.h"
#include "tests/calib/job.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using Words = std::array<std::uint32_t, 9>;

struct Settings {
  std::uint32_t flag;
  std::uint32_t x_dpi;
  std::uint32_t y_dpi;
  Words words;
  bool operator==(const Settings&) const = default;
};

constexpr Settings kUntouched = {11, 12, 13, {1, 2, 3, 4, 5, 6, 7, 8, 9}};

struct Answer {
  std::int32_t status;
  Settings settings;
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << answer.status << ": " << answer.settings.flag << " " << answer.settings.x_dpi << " "
             << answer.settings.y_dpi << " " << testing::PrintToString(answer.settings.words);
}

Answer Ask(Calib4SettingsHandler question, const AnalyzeContext* context, const Job& job) {
  Settings settings = kUntouched;
  const std::int32_t status = question(context, job.options(), &settings.flag, &settings.x_dpi,
                                       &settings.y_dpi, settings.words.data());
  return {status, settings};
}

// Model table ------------------------------------------------------------------------------------

// For a job of halftone "resolution" in 1200 by 600 dots.
const Entries kResolutionJob = {{"QVHalftone", "resolution"}, {"Resolution", "1200x600dpi"}};
constexpr Settings kBaobab = {1, 1200, 600, {0x10000, 3, 3, 0x10000, 3, 3, 0x10000, 3, 3}};
constexpr Settings kEbony = {0, 1200, 600, {0x10000, 3, 2, 0x10000, 3, 2, 0x10000, 3, 2}};
constexpr Settings kSequoia = {0, 0, 0, {0x10000, 0, 0, 0x10000, 0, 0, 0x10000, 0, 0}};
constexpr Settings kTupelo = {1, 1200, 600, {0x10000, 3, 1, 0x10000, 3, 1, 0x10000, 3, 1}};

struct ModelRow {
  const char* model;
  Calib4SettingsHandler handler;
  Settings settings;
};

std::ostream& operator<<(std::ostream& out, const ModelRow& row) { return out << row.model; }

class Calib4SettingsOfModel : public testing::TestWithParam<ModelRow> {
 protected:
  const Job job_{kResolutionJob};
};

TEST_P(Calib4SettingsOfModel, ComeFromItsHandler) {
  const Answer right = {0, GetParam().settings};
  for (const std::string& code : CodesThatBeginWith(GetParam().model)) {
    const Analyser analyser(code);
    EXPECT_EQ(Ask(Analyze_Info_GetCalib4Settings, analyser.context(), job_), right) << code;
    EXPECT_EQ(Ask(analyze_GetCalib4Settings, analyser.context(), job_), right) << code;
    EXPECT_EQ(Ask(GetParam().handler, analyser.context(), job_), right) << code;
  }
}

TEST_P(Calib4SettingsOfModel, AreRefusedForANearCode) {
  for (const std::string& code : CodesNear(GetParam().model)) {
    const Analyser analyser(code);
    EXPECT_EQ(Ask(Analyze_Info_GetCalib4Settings, analyser.context(), job_),
              (Answer{-1, kUntouched}))
        << code;
  }
}

const ModelRow kModels[] = {
    {"RA-H2", analyze_GetCalibSettingsBAOBAB, kBaobab},
    {"RA-H8", analyze_GetCalibSettingsBAOBAB, kBaobab},
    {"RA-Z6", analyze_GetCalibSettingsBAOBAB, kBaobab},
    {"RB-J8", analyze_GetCalibSettingsEBONY, kEbony},
    {"RB-K7", analyze_GetCalibSettingsEBONY, kEbony},
    {"RA-H1", analyze_GetCalibSettingsBAOBAB, kBaobab},
    {"RB-T3", analyze_GetCalibSettingsSEQUOIA, kSequoia},
    {"RB-X7", analyze_GetCalibSettingsBAOBAB, kBaobab},
    {"RA-G5", analyze_GetCalibSettingsTUPELO, kTupelo},
    {"RA-X6", analyze_GetCalibSettingsTUPELO, kTupelo},
};

INSTANTIATE_TEST_SUITE_P(Table, Calib4SettingsOfModel, testing::ValuesIn(kModels),
                         ModelName<ModelRow>);

TEST(Calib4SettingsOfModelTable, HasAnExpectationForEachRow) {
  EXPECT_TRUE(std::ranges::equal(ia::kCalib4SettingsModels, kModels, {},
                                 &ia::CalibModelEntry<Calib4SettingsHandler>::model,
                                 &ModelRow::model));
}

TEST(Calib4Settings, AreRefusedWithoutAModel) {
  const Job job;
  EXPECT_EQ(Ask(Analyze_Info_GetCalib4Settings, &kWithoutModel, job), (Answer{-1, kUntouched}));
  EXPECT_EQ(Ask(analyze_GetCalib4Settings, &kWithoutModel, job), (Answer{-1, kUntouched}));
}

// These have default information only.
TEST(Calib4Settings, AreRefusedForModelsOfTheOtherTable) {
  const Job job;
  for (const char* model : {"RB-X6", "RB-X2", "RC-STD", "RC-J4", "RC-W0", "RC-X8"}) {
    const Analyser analyser(model);
    EXPECT_EQ(Ask(Analyze_Info_GetCalib4Settings, analyser.context(), job),
              (Answer{-1, kUntouched}))
        << model;
  }
}

// Null arguments ---------------------------------------------------------------------------------

struct FunctionRow : NamedRow {
  Calib4SettingsHandler function;
};

class Calib4SettingsFunction : public testing::TestWithParam<FunctionRow> {};

TEST_P(Calib4SettingsFunction, RefusesNullArgumentsAndWritesNothing) {
  const Calib4SettingsHandler ask = GetParam().function;
  const Analyser analyser("RA-H2");
  const AnalyzeContext* const context = analyser.context();
  const Job job(kResolutionJob);
  const OptTable* const options = job.options();
  Settings settings = kUntouched;
  auto& [flag, x_dpi, y_dpi, words] = settings;
  EXPECT_EQ(ask(nullptr, options, &flag, &x_dpi, &y_dpi, words.data()), -1);
  EXPECT_EQ(ask(context, nullptr, &flag, &x_dpi, &y_dpi, words.data()), -1);
  EXPECT_EQ(ask(context, options, nullptr, &x_dpi, &y_dpi, words.data()), -1);
  EXPECT_EQ(ask(context, options, &flag, nullptr, &y_dpi, words.data()), -1);
  EXPECT_EQ(ask(context, options, &flag, &x_dpi, nullptr, words.data()), -1);
  EXPECT_EQ(ask(context, options, &flag, &x_dpi, &y_dpi, nullptr), -1);
  EXPECT_EQ(settings, kUntouched);
}

INSTANTIATE_TEST_SUITE_P(Each, Calib4SettingsFunction,
                         Rows<FunctionRow>({{"Question", Analyze_Info_GetCalib4Settings},
                                            {"Dispatch", analyze_GetCalib4Settings},
                                            {"Baobab", analyze_GetCalibSettingsBAOBAB},
                                            {"Ebony", analyze_GetCalibSettingsEBONY},
                                            {"Sequoia", analyze_GetCalibSettingsSEQUOIA},
                                            {"Tupelo", analyze_GetCalibSettingsTUPELO}}),
                         RowName<FunctionRow>);

// Handlers ---------------------------------------------------------------------------------------

struct Group {
  std::uint32_t code;
  std::uint32_t second;
  std::uint32_t third;
};

struct TypeRow : NamedRow {
  std::uint32_t type;
  Group baobab;
  Group ebony;
  Group sequoia;
  Group tupelo;
};

// A job whose three halftone values are a type and, around it, type 0.
class Calib4HalftoneType : public testing::TestWithParam<TypeRow> {
 protected:
  static void ExpectGroup(Calib4SettingsHandler handler, std::uint32_t flag, std::uint32_t dpi,
                          const Group& of_type, const Group& of_none) {
    const std::string digit(1, static_cast<char>('0' + GetParam().type));
    const Job job(Entries{{"QVHalftone", "pattern9"}, {"QVHTPattern9", "0" + digit + "0"}});
    const Words words = {of_none.code, of_none.second, of_none.third,
                         of_type.code, of_type.second, of_type.third,
                         of_none.code, of_none.second, of_none.third};
    EXPECT_EQ(Ask(handler, &kWithoutModel, job), (Answer{0, {flag, dpi, dpi, words}}));
  }
};

TEST_P(Calib4HalftoneType, GivesItsGroup) {
  const TypeRow& row = GetParam();
  ExpectGroup(analyze_GetCalibSettingsBAOBAB, 1, 600, row.baobab, {0, 3, 2});
  ExpectGroup(analyze_GetCalibSettingsEBONY, 0, 600, row.ebony, {0, 3, 2});
  ExpectGroup(analyze_GetCalibSettingsSEQUOIA, 0, 0, row.sequoia, {0, 0, 0});
  ExpectGroup(analyze_GetCalibSettingsTUPELO, 1, 600, row.tupelo, {0, 3, 1});
}

INSTANTIATE_TEST_SUITE_P(
    Types, Calib4HalftoneType,
    Rows<TypeRow>(
        {{"None", 0, {0, 3, 2}, {0, 3, 2}, {0, 0, 0}, {0, 3, 1}},
         {"Gradation", 1, {0x40000, 3, 2}, {0x40000, 3, 2}, {0x80000, 0, 0}, {0x40000, 3, 1}},
         {"Resolution", 2, {0x10000, 3, 3}, {0x10000, 3, 2}, {0x10000, 0, 0}, {0x10000, 3, 1}},
         {"HighResolution", 3, {0x20000, 3, 3}, {0x20000, 3, 2}, {0, 0, 0}, {0x20000, 3, 1}},
         {"ColorTone", 4, {0x80000, 3, 1}, {0x80000, 3, 2}, {0, 0, 0}, {0x80000, 3, 1}},
         {"ErrorDiffusion", 5, {0x100000, 3, 2}, {0x100000, 3, 2}, {0, 0, 0}, {0x100000, 3, 1}},
         {"Unknown", 6, {0, 3, 2}, {0, 3, 2}, {0, 0, 0}, {0, 3, 1}}}),
    RowName<TypeRow>);

// Group g belongs to halftone value g, and the last digit is the first value.
TEST(Calib4Settings, GroupsAreInTheOrderOfTheHalftoneValues) {
  const Job job(Entries{{"QVHalftone", "pattern1"}, {"QVHTPattern1", "124"}});
  EXPECT_EQ(Ask(analyze_GetCalibSettingsBAOBAB, &kWithoutModel, job).settings.words,
            (Words{0x80000, 3, 1, 0x10000, 3, 3, 0x40000, 3, 2}));
}

TEST(Calib4Settings, SequoiaDoesNotReadTheResolution) {
  const Job job(Entries{{"Resolution", "1200"}});
  EXPECT_EQ(Ask(analyze_GetCalibSettingsSEQUOIA, &kWithoutModel, job), (Answer{0, Settings{}}));
}

TEST(Calib4Settings, NothingIsWrittenAfterTheNinthWord) {
  const Job job(kResolutionJob);
  std::array<std::uint32_t, 10> words;
  words.fill(7);
  std::uint32_t out = 0;
  for (const Calib4SettingsHandler handler : std::initializer_list<Calib4SettingsHandler>{
           analyze_GetCalibSettingsBAOBAB, analyze_GetCalibSettingsEBONY,
           analyze_GetCalibSettingsSEQUOIA, analyze_GetCalibSettingsTUPELO}) {
    EXPECT_EQ(handler(&kWithoutModel, job.options(), &out, &out, &out, words.data()), 0);
    EXPECT_EQ(words.back(), 7U);
  }
}

}  // namespace
}  // namespace ia_test
