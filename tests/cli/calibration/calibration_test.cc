#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <ostream>
#include <pugixml.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "info_analyze/calibration.h"
#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::ReadFile;
using ia_test::SamplePrinter;
using Arguments = std::vector<std::string>;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;

class ToolCalibration : public SamplePrinter {
 protected:
  void UseModel(const std::string& model) const { ReplaceInPpd("RA-H5-MLT-JP", model); }

  Arguments JobArguments(const std::string& verb) const {
    return {IA_TEST_TOOL,      "calibration",         verb,          "--queue",  "office-mfp",
            "--driver-folder", IA_TEST_DRIVER_FOLDER, "--cups-root", cups_root()};
  }
  Finished Ask(const std::string& verb, const Arguments& more = {}) const {
    Arguments arguments = JobArguments(verb);
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  void ExpectAnswer(const Finished& run, const std::string& answer) const {
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, answer);
    EXPECT_EQ(run.err, "");
  }
  Finished AskForCurves(const Arguments& more) const {
    Arguments arguments = {IA_TEST_TOOL, "calibration", "curves"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
};

// Settings ---------------------------------------------------------------------------------------

TEST_F(ToolCalibration, SettingsOfAModelWithoutCalibrationAreNone) {
  ExpectAnswer(Ask("settings"), "calib3=none\ncalib4=none\n");
}

TEST_F(ToolCalibration, SettingsOfAModelWithoutCalibrationAreNullInJson) {
  const Finished run = Ask("settings", {"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Json::parse(run.out).dump(), Json({{"schema_version", 1},
                                               {"verb", "calibration settings"},
                                               {"driver_name", "RA-H5-MLT-JP"},
                                               {"calib3", nullptr},
                                               {"calib4", nullptr}})
                                             .dump());
}

TEST_F(ToolCalibration, SettingsHaveTheCodesOfCalib3) {
  UseModel("RB-W7");
  ExpectAnswer(Ask("settings"), "calib3.halftone_codes=0x0,0x10000,0x80000\ncalib4=none\n");
}

TEST_F(ToolCalibration, SettingsHaveTheWordsOfCalib4) {
  UseModel("RA-H2-JP");
  ExpectAnswer(
      Ask("settings", {"--option", "QVColorMode=mono", "--option", "QVHalftone=pattern1",
                       "--option", "QVHTPattern1=124", "--option", "Resolution=1200x600dpi"}),
      "calib3=none\ncalib4.flag=1\ncalib4.resolution=1200x600\n"
      "calib4.group1=0x80000,3,1\ncalib4.group2=0x10000,3,3\ncalib4.group3=0x40000,3,2\n");
}

TEST_F(ToolCalibration, SettingsAreGivenAsJson) {
  UseModel("RB-T3");
  const Finished run = Ask("settings", {"--format", "json"});
  EXPECT_EQ(run.status, 0);
  const Json json = Json::parse(run.out);
  EXPECT_EQ(json["calib3"], nullptr);
  EXPECT_EQ(json["calib4"].dump(),
            R"({"flag":0,"x_dpi":0,"y_dpi":0,"groups":[[0,0,0],[0,0,0],[0,0,0]]})");
  ReplaceInPpd("RB-T3", "RC-STD");
  EXPECT_EQ(Json::parse(Ask("settings", {"--format", "json"}).out)["calib3"].dump(),
            R"({"halftone_codes":[65536,524288,65536]})");
}

TEST_F(ToolCalibration, PpdWithoutAModelCodeHasNoSettings) {
  ReplaceInPpd("*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n", "");
  const Finished run = Ask("settings", {"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(Json::parse(run.out)["driver_name"].is_null());
}

// Options of the job -----------------------------------------------------------------------------

TEST_F(ToolCalibration, OptionsOfThePpdCount) {
  UseModel("RA-H2");
  ReplaceInPpd("*QVHalftone(Gradation)", "*QVHalftone(Resolution)");
  ReplaceInPpd("*QVColorMode(Auto)", "*QVColorMode(Mono)");
  EXPECT_THAT(Ask("settings").out, HasSubstr("calib4.group1=0x10000,3,3\n"));
}

TEST_F(ToolCalibration, OptionsOfTheJobGoAheadOfThoseOfThePpd) {
  UseModel("RA-H2");
  EXPECT_THAT(
      Ask("settings", {"--option", "qvcolormode=mono", "--option", "QVHalftone=colortone"}).out,
      HasSubstr("calib4.group1=0x80000,3,1\n"));
}

TEST_F(ToolCalibration, LastOfSeveralEqualOptionsCounts) {
  UseModel("RA-H2");
  EXPECT_THAT(
      Ask("settings", {"--option", "Resolution=1200", "--option", "Resolution=1200x600dpi"}).out,
      HasSubstr("calib4.resolution=1200x600\n"));
}

TEST_F(ToolCalibration, ValueOfAnOptionMayBeEmptyOrHoldEqualsSigns) {
  UseModel("RB-P9");
  EXPECT_THAT(Ask("settings", {"--option", "QVGradation="}).out,
              HasSubstr("calib3.halftone_codes=0x0,0x80000,0x10000\n"));
  EXPECT_THAT(Ask("settings", {"--option", "QVGradation=Normal=1"}).out,
              HasSubstr("calib3.halftone_codes=0x0,0x0,0x0\n"));
}

TEST_F(ToolCalibration, OptionWithoutKeyOrValueIsRefused) {
  for (const char* option : {"QVGradation", "=Normal", ""}) {
    ExpectFailure(
        Ask("settings", {"--option", option}), 2,
        AllOf(HasSubstr("KEY=VALUE"), HasSubstr("see info-analyze calibration settings --help")));
  }
}

// Default information ----------------------------------------------------------------------------

TEST_F(ToolCalibration, DefaultsOfAnUnlistedModelAreTheCommonOnes) {
  ExpectAnswer(
      Ask("defaults", {"--option", "QVColorHalftone=pattern1", "--option", "QVCHTPattern1=432"}),
      "calib3.curves=none\ncalib4.values=100,100,100,100\n"
      "calib4.model_values=8,8\ncalib4.codes=1,0,2\n");
}

TEST_F(ToolCalibration, DefaultsAreGivenAsJson) {
  UseModel("RC-W0");
  const Finished run = Ask("defaults", {"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      Json::parse(run.out).dump(),
      R"({"schema_version":1,"verb":"calibration defaults","driver_name":"RC-W0","calib3":{"curves":null},)"
      R"("calib4":{"values":[100,100,100,100],"model_values":[12,8],"codes":[2,2,2]}})");
}

TEST_F(ToolCalibration, DefaultsNameTheTableOfTheCurves) {
  UseModel("RB-J9");
  EXPECT_THAT(Ask("defaults").out, HasSubstr("calib3.curves=PinePoplar_Def_Calib_2bit\n"));
  EXPECT_THAT(Ask("defaults", {"--option", "QVGradation=High2"}).out,
              HasSubstr("calib3.curves=PinePoplar_Def_Calib_4bit\n"));
  EXPECT_THAT(Ask("defaults", {"--option", "QVGradation=Normal"}).out,
              HasSubstr("calib3.curves=none\n"));
  const Finished run = Ask("defaults", {"--format", "json"});
  EXPECT_EQ(Json::parse(run.out)["calib3"]["curves"], "PinePoplar_Def_Calib_2bit");
}

// Failures of both -------------------------------------------------------------------------------

TEST_F(ToolCalibration, MissingQueueIsReported) {
  std::filesystem::remove(ppd());
  for (const char* verb : {"settings", "defaults"}) {
    ExpectFailure(Ask(verb), 3, HasSubstr("cannot read PPD of queue \"office-mfp\""));
  }
}

TEST_F(ToolCalibration, MissingCommunicationLibraryIsReported) {
  Arguments arguments = JobArguments("settings");
  *(std::ranges::find(arguments, "--driver-folder") + 1) = root_ / "nowhere";
  ExpectFailure(RunTool(arguments), 4, HasSubstr("communication library"));
}

TEST_F(ToolCalibration, RequiredOptionsAreMissed) {
  for (const char* option : {"--queue", "--driver-folder"}) {
    Arguments arguments = JobArguments("defaults");
    const auto at = std::ranges::find(arguments, option);
    arguments.erase(at, at + 2);
    ExpectFailure(RunTool(arguments), 2, HasSubstr(option));
  }
}

TEST_F(ToolCalibration, VerbAloneIsRefused) {
  ExpectFailure(
      RunTool({IA_TEST_TOOL, "calibration"}), 2,
      AllOf(HasSubstr("a verb is required"), HasSubstr("see info-analyze calibration --help")));
}

// Curves -----------------------------------------------------------------------------------------

struct Table {
  const char* name;
  const std::uint16_t* values;
};

void PrintTo(const Table& table, std::ostream* out) { *out << table.name; }

class ToolCurves : public ToolCalibration, public testing::WithParamInterface<Table> {
 protected:
  std::string svg_file() const { return root_ / "curves.svg"; }
};

TEST_P(ToolCurves, CsvHasEveryValue) {
  std::string right = "level,curve0,curve1,curve2,curve3,curve4,curve5,curve6,curve7\n";
  for (int level = 0; level < 1024; ++level) {
    right += std::to_string(level);
    for (int curve = 0; curve < 8; ++curve) {
      right += "," + std::to_string(GetParam().values[1024 * curve + level]);
    }
    right += "\n";
  }
  ExpectAnswer(AskForCurves({"--table", GetParam().name, "--csv"}), right);
}

// So measured curves can take the way back.
TEST_P(ToolCurves, CsvMakesTheSameTable) {
  const std::string name = GetParam().name;
  root_.Write(name + ".csv", AskForCurves({"--table", name, "--csv"}).out);
  Command command;
  command.arguments = {IA_TEST_MAKE_CURVE_TABLE, root_ / (name + ".csv"), root_ / "made.inc"};
  ASSERT_EQ(ia_test::RunProgram(command).status, 0);
  const std::string made = ReadFile(root_ / "made.inc");
  EXPECT_THAT(made, HasSubstr(","));
  EXPECT_EQ(made, ReadFile(IA_TEST_CURVE_NUMBERS "/" + name + ".inc"));
}

TEST_P(ToolCurves, SvgHasAPolylineForEachCurve) {
  ExpectAnswer(AskForCurves({"--table", GetParam().name, "--svg", svg_file()}), "");
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(svg_file().c_str()));
  EXPECT_STREQ(document.child("svg").attribute("xmlns").value(), "http://www.w3.org/2000/svg");
  const auto polylines = document.select_nodes("//polyline");
  ASSERT_EQ(polylines.size(), 8U);
  for (const auto& polyline : polylines) {
    std::istringstream points(polyline.node().attribute("points").value());
    EXPECT_EQ(std::distance(std::istream_iterator<std::string>(points), {}), 1024);
  }
}

TEST_P(ToolCurves, SvgIsNamedAfterTheTable) {
  AskForCurves({"--table", GetParam().name, "--svg", svg_file()});
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(svg_file().c_str()));
  EXPECT_THAT(document.child("svg").child("title").text().get(), HasSubstr(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, ToolCurves,
    testing::Values(Table{"LARCH_Def_Calib", LARCH_Def_Calib},
                    Table{"Linden_Def_Calib_2bit", Linden_Def_Calib_2bit},
                    Table{"Linden_Def_Calib_4bit", Linden_Def_Calib_4bit},
                    Table{"PinePoplar_Def_Calib_2bit", PinePoplar_Def_Calib_2bit},
                    Table{"PinePoplar_Def_Calib_4bit", PinePoplar_Def_Calib_4bit}),
    [](const auto& test) { return std::string(test.param.name); });

class ToolCurveChart : public ToolCalibration {
 protected:
  void SetUp() override {
    ASSERT_EQ(AskForCurves({"--svg", root_ / "curves.svg"}).status, 0);
    text_ = ReadFile(root_ / "curves.svg");
    ASSERT_TRUE(document_.load_string(text_.c_str()));
  }
  // The last point of a curve, as the picture has it.
  std::string LastPoint(std::size_t curve) const {
    const auto polylines = document_.select_nodes("//polyline");
    const std::string points = polylines[curve].node().attribute("points").value();
    return points.substr(points.rfind(' ') + 1);
  }

  std::string text_;
  pugi::xml_document document_;
};

TEST_F(ToolCurveChart, HasALegendEntryForEachCurve) {
  for (int curve = 0; curve < 8; ++curve) {
    const std::string path = "count(//text[. = 'curve " + std::to_string(curve) + "']) = 1";
    EXPECT_TRUE(pugi::xpath_query(path.c_str()).evaluate_boolean(document_)) << path;
  }
}

TEST_F(ToolCurveChart, HasAxesWithNamesAndNumbers) {
  for (const char* text : {"input level", "output level", "512"}) {
    const std::string path = std::string("count(//text[. = '") + text + "']) >= 2";
    EXPECT_TRUE(pugi::xpath_query(path.c_str()).evaluate_boolean(document_)) << path;
  }
}

TEST_F(ToolCurveChart, DrawsBothSetsFromTheirLowerLeftToTheirUpperRightCorner) {
  const auto polylines = document_.select_nodes("//polyline");
  for (std::size_t curve = 0; curve < 8; ++curve) {
    EXPECT_THAT(polylines[curve].node().attribute("points").value(),
                testing::StartsWith(curve < 4 ? "80.0,484.0 " : "570.0,484.0 "));
    EXPECT_EQ(LastPoint(curve), curve < 4 ? "480.0,84.0" : "970.0,84.0");
  }
}

TEST_F(ToolCurveChart, HasColorsForDarkSurroundings) {
  EXPECT_THAT(text_, HasSubstr("@media (prefers-color-scheme: dark)"));
}

TEST_F(ToolCalibration, FirstTableIsTheDefault) {
  EXPECT_EQ(AskForCurves({"--csv"}).out, AskForCurves({"--table", "LARCH_Def_Calib", "--csv"}).out);
}

TEST_F(ToolCalibration, UnknownTableIsRefused) {
  ExpectFailure(AskForCurves({"--table", "LARCH", "--csv"}), 2,
                AllOf(HasSubstr("--table"), HasSubstr("Linden_Def_Calib_4bit")));
}

TEST_F(ToolCalibration, CurvesWantOneFormat) {
  ExpectFailure(AskForCurves({}), 2, HasSubstr("--svg or --csv"));
  ExpectFailure(AskForCurves({"--csv", "--svg", root_ / "curves.svg"}), 2, HasSubstr("excludes"));
  EXPECT_FALSE(std::filesystem::exists(root_ / "curves.svg"));
}

TEST_F(ToolCalibration, PictureThatCannotBeWrittenIsAFailure) {
  ExpectFailure(AskForCurves({"--svg", root_ / "none/curves.svg"}), 1,
                HasSubstr("none/curves.svg: No such file or directory"));
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  ExpectFailure(AskForCurves({"--svg", "/dev/full"}), 1,
                HasSubstr("/dev/full: No space left on device"));
}

// Manual page ------------------------------------------------------------------------------------

TEST_F(ToolCalibration, ManualPageHasEveryVerbAndOption) {
  const std::string manual = ReadFile(IA_TEST_SOURCE "/docs/man/info-analyze.1");
  for (const char* verb : {"settings", "defaults", "curves"}) {
    EXPECT_THAT(manual, HasSubstr(std::string("Cm ") + verb + "\n"));
    const std::string help = RunTool({IA_TEST_TOOL, "calibration", verb, "--help"}).out;
    ASSERT_THAT(help, HasSubstr("--"));
    for (std::size_t at = help.find("--"); at != std::string::npos; at = help.find("--", at + 2)) {
      const std::size_t end = help.find_first_of(" \n", at);
      EXPECT_THAT(manual, HasSubstr("Fl " + help.substr(at + 1, end - at - 1)));
    }
  }
}

}  // namespace
