#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::SizeIs;

class ToolModels : public SamplePrinter {
 protected:
  Finished RunModels(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {IA_TEST_TOOL, "models"});
    return RunTool(arguments);
  }
};

TEST_F(ToolModels, GivesALineForEachRowOfEachFamily) {
  const Finished run = RunModels();
  EXPECT_EQ(run.status, 0);
  std::size_t rows = 0;
  const Json json = Json::parse(RunModels({"--format", "json"}).out);
  for (const Json& family : json["families"]) {
    EXPECT_GE(family["rows"].size(), 2U) << family["option"];
    rows += family["rows"].size();
  }
  EXPECT_THAT(Lines(run.out), SizeIs(rows));
  EXPECT_THAT(
      Lines(run.out),
      IsSupersetOf({"QVCopyTray\tRA-T7*\tanalyze_GetQVCopyTray_BEECH\tBin_list.xml list[] alias",
                    "QVCopyTray\tRA-J0*\tanalyze_GetQVCopyTrayCommon\t-",
                    "QVCopyTray\t(other models)\t-\t-",
                    "QVInsertUnit\tRA-Z5\tanalyze_GetExtraOptionStringROWAN\t"
                    "Tray_list.xml list[] alias",
                    "QVSrcOption\tRC-J4*\tanalyze_GetQVSrcOptionCommonByCount\t"
                    "Tray_list.xml number of items"}));
}

TEST_F(ToolModels, GivesTheRowsThatACodeSelects) {
  const Finished run = RunModels({"RA-P9-1"});
  EXPECT_THAT(Lines(run.out), SizeIs(10));
  EXPECT_THAT(Lines(run.out),
              Contains(HasSubstr("QVFinisher\tRA-P9-1*\tanalyze_GetQVFinisher_FIR")));
  EXPECT_THAT(Lines(run.out), Contains(HasSubstr("QVPuncher\t(other models)\t")));
}

TEST_F(ToolModels, GivesJson) {
  const Finished run = RunModels({"RA-Z5", "--format", "json"});
  const Json json = Json::parse(run.out);
  EXPECT_EQ(json["schema_version"], 1);
  ASSERT_THAT(json["families"], SizeIs(10));
  EXPECT_EQ(json["families"][9],
            Json::parse(R"({"option": "QVInsertUnit", "rows": [{"code": "RA-Z5", "match": "whole",
                "handler": "analyze_GetExtraOptionStringROWAN", "inputs": [
                {"document": "Tray_list.xml", "in_list": true, "key": "alias"}]}]})"));
  EXPECT_EQ(json["families"][0]["rows"][0]["code"], nullptr);
  EXPECT_EQ(json["families"][0]["rows"][0]["match"], "other models");
  EXPECT_EQ(json["families"][6]["rows"][0]["handler"], nullptr);
}

TEST_F(ToolModels, RefusesAFormatThatThereIsNot) {
  ia_test::ExpectFailure(RunModels({"--format", "yaml"}), 2, HasSubstr("--format"));
}

}  // namespace
