#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;

class ToolQuery : public SamplePrinter {
 protected:
  static Json ExpectedJson() {
    Json json = {{"schema_version", 1},
                 {"verb", "query"},
                 {"driver_name", "RA-H5-MLT-JP"},
                 {"options", Json::array()}};
    for (const std::string& line : ExpectedOptions()) {
      const std::size_t equals = line.find('=');
      json["options"].push_back(
          {{"keyword", line.substr(0, equals)}, {"value", line.substr(equals + 1)}});
    }
    return json;
  }
};

TEST_F(ToolQuery, GivesTheOptionsOfTheSamplePrinter) {
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out), ExpectedOptions());
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolQuery, EndsItsLastLine) { EXPECT_THAT(RunQuery().out, testing::EndsWith("\n")); }

TEST_F(ToolQuery, TextIsTheDefaultFormat) {
  EXPECT_EQ(RunQuery({"--format", "text"}).out, RunQuery().out);
}

TEST_F(ToolQuery, GivesTheOptionsOfTheSamplePrinterAsJson) {
  const Finished run = RunQuery({"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Json::parse(run.out).dump(), ExpectedJson().dump());
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolQuery, GivesNoModelCodeWhenThePpdHasNone) {
  ReplaceInPpd("*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n", "");
  const Finished run = RunQuery({"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(Json::parse(run.out)["driver_name"].is_null());
}

TEST_F(ToolQuery, HostileModelCodeDoesNotBreakJson) {
  ReplaceInPpd("RA-H5-MLT-JP", "RA-H5\x1b[31m\xff\\");
  const Finished run = RunQuery({"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Json::parse(run.out)["driver_name"], "RA-H5\x1b[31m\ufffd\\");
  EXPECT_THAT(run.out, testing::Not(HasSubstr("\x1b")));
}

// A value of the PPD that would colour the terminal of whoever reads the answer.
TEST_F(ToolQuery, HostileFinisherValueDoesNotReachTheTerminal) {
  ReplaceInPpd("Finisher-W1:BKFINW1", "Finisher-W1:BKF\x1b[31mIN");
  const Finished text = RunQuery();
  EXPECT_EQ(text.status, 0);
  EXPECT_THAT(Lines(text.out), testing::Contains("QVFinisher=BKF\\x1b[31mIN"));
  EXPECT_THAT(text.out, testing::Not(HasSubstr("\x1b")));
  const Finished json = RunQuery({"--format", "json"});
  EXPECT_THAT(json.out, testing::Not(HasSubstr("\x1b")));
  EXPECT_THAT(Json::parse(json.out)["options"],
              testing::Contains(Json({{"keyword", "QVFinisher"}, {"value", "BKF\x1b[31mIN"}})));
}

TEST_F(ToolQuery, TakesAFolderRelativeToTheCurrentOne) {
  const Finished run = RunQueryWith("--cups-root", "printer");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out), ExpectedOptions());
}

TEST_F(ToolQuery, WithoutACupsRootTakesThatOfTheEnvironment) {
  Command command = ToolCommand({IA_TEST_TOOL, "query", "--queue", "office-mfp", "--driver-folder",
                                 IA_TEST_DRIVER_FOLDER, "--device-info", device_info()});
  command.environment.insert(command.environment.end(),
                             {{"CUPS_SERVERROOT", cups_root()}, {"CUPS_SERVER", "localhost"}});
  const Finished run = ia_test::RunProgram(command);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out), ExpectedOptions());
}

TEST_F(ToolQuery, AnswerThatCannotBeWrittenIsAFailure) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
  Command command = ToolCommand(QueryArguments());
  command.output = "/dev/full";
  ExpectFailure(ia_test::RunProgram(command), 1,
                HasSubstr("standard output: No space left on device"));
}

}  // namespace
