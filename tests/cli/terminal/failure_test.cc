// Failures as programs read them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::HasSubstr;

class ToolFailure : public SamplePrinter {
 protected:
  // The failure of a run with --format json.
  static Json FailureOf(const Finished& run, const std::string& verb) {
    EXPECT_EQ(run.out, "");
    const Json json = Json::parse(Lines(run.err).back(), nullptr, false);
    EXPECT_EQ(json["schema_version"], 1) << run.err;
    EXPECT_EQ(json["verb"], verb);
    EXPECT_EQ(json["failure"]["exit_status"], run.status);
    return json["failure"];
  }
};

TEST_F(ToolFailure, OfAQueueNamesItInJson) {
  const Json failure =
      FailureOf(RunQuery({"--format", "json", "--quiet", "--queue=none"}), "query");
  EXPECT_EQ(failure["step"], "command line");
  std::filesystem::remove(ppd());
  const Json missing = FailureOf(RunQuery({"--format", "json"}), "query");
  EXPECT_EQ(missing["step"], "queue");
  EXPECT_EQ(missing["action"], "cannot read");
  EXPECT_EQ(missing["object"], "PPD of queue \"office-mfp\"");
  EXPECT_THAT(missing["cause"].get<std::string>(), HasSubstr("No such file"));
  EXPECT_THAT(missing["hint"].get<std::string>(), HasSubstr("info-analyze queues cups"));
}

TEST_F(ToolFailure, OfTheCommandLineHasAHint) {
  for (const std::string format : {"--format=json", "--format"}) {
    std::vector<std::string> words = {IA_TEST_TOOL, "queues", "find", format};
    if (format == "--format") words.emplace_back("json");
    const Json failure = FailureOf(RunTool(words), "queues find");
    EXPECT_EQ(failure["object"], nullptr);
    EXPECT_EQ(failure["hint"], "see info-analyze queues find --help");
  }
}

TEST_F(ToolFailure, IsTheLastLineAfterTheMissingDocuments) {
  for (const auto& entry : std::filesystem::directory_iterator(device_info())) {
    std::filesystem::remove(entry);
  }
  const Finished run = RunQuery({"--format", "json"});
  EXPECT_EQ(run.status, 5);
  EXPECT_EQ(FailureOf(run, "query")["step"], "documents");
}

TEST_F(ToolFailure, OfAPrinterOfADiffIsReportedOnce) {
  const Finished run = RunTool({IA_TEST_TOOL, "diff", "/none", "/none", "--driver-folder",
                                IA_TEST_DRIVER_FOLDER, "--format", "json"});
  EXPECT_EQ(FailureOf(run, "diff")["object"], "snapshot /none");
  EXPECT_EQ(Lines(run.err).size(), 1U);
}

TEST_F(ToolFailure, HasNoControlCharactersInJson) {
  const Finished run = RunTool({IA_TEST_TOOL, "uri", "\x1b[31m\xff", "--format", "json"});
  EXPECT_EQ(FailureOf(run, "uri")["object"], "device URI \x1b[31m\ufffd");
  EXPECT_THAT(run.err, testing::Not(HasSubstr("\x1b")));
}

TEST_F(ToolFailure, IsTextWithoutTheOption) {
  EXPECT_THAT(RunTool({IA_TEST_TOOL, "uri", "json"}).err,
              testing::StartsWith("info-analyze: error: device URI json: "));
}

}  // namespace
