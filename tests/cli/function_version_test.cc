#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using testing::ElementsAre;
using testing::HasSubstr;

class ToolFunctionVersion : public SamplePrinter {
 protected:
  Finished Run(const std::vector<std::string>& more) const {
    std::vector<std::string> arguments = {IA_TEST_TOOL,  "function-version", "--queue",
                                          "office-mfp",  "--driver-folder",  IA_TEST_DRIVER_FOLDER,
                                          "--cups-root", cups_root()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
};

// The option table holds the later lines of a PPD first.
TEST_F(ToolFunctionVersion, PrintsTheFlagsOfTheVersion) {
  const Finished run = Run({"0x310"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(
      Lines(run.out),
      ElementsAre("QVEnableSecureErase=True", "QVEnableUniversalPrint=True", "QVEnableMixSize=True",
                  "QV_Prot_CommonFlag=ProofPrint", "QV_Prot_CommonFlag_1=QuotaCheck",
                  "QV_Prot_CommonFlag_2=JobHold", "QV_Prot_JobScriptFlag=ScriptStamp",
                  "QV_Prot_BinderScriptFlag=BinderCover", "QV_Prot_DocumentScriptFlag=DocumentTabs",
                  "QV_Prot_CJLScriptFlag=JobLogging"));
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolFunctionVersion, EarlierVersionHasFewerFlags) {
  EXPECT_THAT(
      Lines(Run({"0x200"}).out),
      ElementsAre("QVEnableMixSize=True", "QV_Prot_CommonFlag=JobHold",
                  "QV_Prot_JobScriptFlag=ScriptStamp", "QV_Prot_BinderScriptFlag=BinderCover"));
}

TEST_F(ToolFunctionVersion, TakesHexadecimalAndDecimalNumbers) {
  const std::string flags = Run({"0x310"}).out;
  for (const char* same : {"0X310", "784", "0784", "0x00000310"}) {
    EXPECT_EQ(Run({same}).out, flags) << same;
  }
}

TEST_F(ToolFunctionVersion, GivesJson) {
  const auto json = nlohmann::json::parse(Run({"--format", "json", "0x200"}).out);
  EXPECT_EQ(json["driver_name"], "RA-H5-MLT-JP");
  EXPECT_EQ(json["options"][1]["keyword"], "QV_Prot_CommonFlag");
  EXPECT_EQ(json["options"][1]["value"], "JobHold");
}

TEST_F(ToolFunctionVersion, PpdWithoutFlagsGivesNone) {
  ReplaceInPpd("*QVAnlz_FuncVer_UI: \"QVEnableMixSize:True\"\n", "");
  ReplaceInPpd("*QVAnlz_FuncVer_CommonFlag: \"JobHold\"\n", "");
  const Finished run = Run({"0x100"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
}

TEST_F(ToolFunctionVersion, NeedsAVersion) { ExpectFailure(Run({}), 2, HasSubstr("version")); }

TEST_F(ToolFunctionVersion, WhatIsNoVersionIsRefused) {
  for (const char* text :
       {"", "0x", "0xg", "310z", "3 ", " 3", "+3", "3.10", "4294967296", "0x100000000"}) {
    ExpectFailure(Run({text}), 2, HasSubstr(std::string("\"") + text + "\""));
  }
}

TEST_F(ToolFunctionVersion, HighestVersionIsTaken) {
  EXPECT_EQ(Run({"0xffffffff"}).status, 0);
  EXPECT_EQ(Run({"4294967295"}).status, 0);
}

TEST_F(ToolFunctionVersion, UnknownQueueIsReported) {
  ExpectFailure(RunTool({IA_TEST_TOOL, "function-version", "--queue", "other", "--driver-folder",
                         IA_TEST_DRIVER_FOLDER, "--cups-root", cups_root(), "0x310"}),
                3, HasSubstr("queue \"other\""));
}

}  // namespace
