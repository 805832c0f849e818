#include <cups/ppd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using testing::HasSubstr;

class QueryExample : public SamplePrinter {
 protected:
  Finished RunExample(const std::vector<std::string>& arguments) const {
    Command command = ToolCommand({IA_TEST_EXAMPLE});
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    command.environment.insert(command.environment.end(),
                               {{"CUPS_SERVERROOT", cups_root()}, {"CUPS_SERVER", "localhost"}});
    return ia_test::RunProgram(command);
  }
  static void ExpectFailure(const Finished& run, const std::string& message) {
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(message));
  }
};

TEST_F(QueryExample, GivesTheLinesOfTheTool) {
  const Finished run = RunExample({IA_TEST_DRIVER_FOLDER, "office-mfp", device_info()});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out), ExpectedOptions());
  EXPECT_EQ(run.out, RunQuery().out);
  EXPECT_EQ(run.err, "");
}

TEST_F(QueryExample, PrintsItsUsage) {
  ExpectFailure(RunExample({IA_TEST_DRIVER_FOLDER}), "usage: query");
}

TEST_F(QueryExample, ReportsAMissingCommunicationLibrary) {
  ExpectFailure(RunExample({root_ / "nowhere", "office-mfp", device_info()}), root_ / "nowhere");
}

TEST_F(QueryExample, ReportsAMissingQueue) {
  WritePpd("*PPD-Adobe: \"4.3\"\n");
  ExpectFailure(RunExample({IA_TEST_DRIVER_FOLDER, "office-mfp", device_info()}), "office-mfp");
}

TEST_F(QueryExample, ReportsAFailedQuery) {
  RemoveDocument("Devicename.xml");
  ExpectFailure(RunExample({IA_TEST_DRIVER_FOLDER, "office-mfp", device_info()}), "documents");
}

// libcups deprecates its PPD functions, but the parser of its programs is still this one.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

struct PpdCloser {
  void operator()(ppd_file_t* ppd) const { ppdClose(ppd); }
};

class SamplePpd : public testing::Test {
 protected:
  SamplePpd() {
    ppdSetConformance(PPD_CONFORM_STRICT);
    ppd_.reset(ppdOpenFile((std::string(ia_test::kSample) + "/ppd/office-mfp.ppd").c_str()));
  }
  void SetUp() override {
    int line = 0;
    const char* error = ppdErrorString(ppdLastError(&line));
    ASSERT_NE(ppd_, nullptr) << error << " in line " << line;
  }

  std::unique_ptr<ppd_file_t, PpdCloser> ppd_;
};

TEST_F(SamplePpd, HasNoConflictingDefaults) {
  ppdMarkDefaults(ppd_.get());
  EXPECT_EQ(ppdConflicts(ppd_.get()), 0);
}

TEST_F(SamplePpd, HasTheModelCodeAndTheFiveFlagTexts) {
  for (const char* key : {"QVAnlz_DriverName", "QV_Prot_MediaType", "QVAnlz_SlotMediaInfo",
                          "QVAnlz_InputTray", "QVAnlz_FinisherName", "QVAnlz_SrcOption"}) {
    const ppd_attr_t* attribute = ppdFindAttr(ppd_.get(), key, nullptr);
    ASSERT_NE(attribute, nullptr) << key;
    EXPECT_STRNE(attribute->value, "") << key;
  }
}

// The memory size is a number and no choice; every other value can be chosen.
TEST_F(SamplePpd, OffersWhatThePrinterIsExpectedToReport) {
  const std::string file = std::string(ia_test::kSample) + "/expected-options.txt";
  for (const std::string& line : Lines(ia_test::ReadFile(file))) {
    const std::size_t equals = line.find('=');
    const std::string keyword = line.substr(0, equals);
    if (keyword == "QVTotalMemSize") continue;
    ppd_option_t* option = ppdFindOption(ppd_.get(), keyword.c_str());
    ASSERT_NE(option, nullptr) << keyword;
    EXPECT_NE(ppdFindChoice(option, line.substr(equals + 1).c_str()), nullptr) << line;
  }
}

}  // namespace
