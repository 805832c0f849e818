#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/process.h"
#include "tests/cli/sample_printer.h"
#include "tests/support/temp_folder.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr char kFolder[] = "/Library/Printers/Vorel/CUPSKAPPA2";
constexpr char kConf[] = "/var/cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf";

// The tool with a spooler and configurations of the test's own in the places of the system's.
class ToolQueues : public testing::Test {
 protected:
  ToolQueues() {
    for (const char* folder : {"etc", "cache"}) std::filesystem::create_directory(root_ / folder);
    if (RunTool({"--version"}).status == ia_test::kNoMounts) is_possible_ = false;
  }

  void SetUp() override {
    if (!is_possible_) GTEST_SKIP() << ia_test::kNoNamespaces;
  }

  void AddPpd(const std::string& name, std::time_t seconds) const {
    const std::string file = "etc/cups/ppd/" + name;
    root_.Write(file, "");
    const timespec times[2] = {{seconds, 0}, {seconds, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, (root_ / file).c_str(), times, 0), 0);
  }
  void WriteConf(const std::string& family, const std::string& text) const {
    root_.Write("cache/Vorel/" + family + "/MQPD/mqpd.conf", text);
  }

  static std::vector<std::string> OfCups() {
    return {"queues", "cups", "--cups-root", "/etc/cups"};
  }
  Finished RunTool(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), IA_TEST_TOOL);
    return ia_test::RunProgram(
        {.arguments = arguments,
         .environment = {},
         .folder = "/",
         .output = "",
         .mounts = {{root_ / "etc", "/etc"}, {root_ / "cache", "/var/cache"}}});
  }
  // The same with JSON; expects success.
  Json RunJson(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--format", "json"});
    const Finished run = RunTool(arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return Json::parse(run.out);
  }
  void ExpectText(const std::vector<std::string>& arguments, const std::string& text) const {
    const Finished run = RunTool(arguments);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, text);
    EXPECT_EQ(run.err, "");
  }

  ia_test::TempFolder root_;
  bool is_possible_ = true;
};

TEST_F(ToolQueues, OfACupsRootAreListedByNameWithTheirTimes) {
  AddPpd("office.ppd", 1'795'270'520);
  AddPpd("lobby.ppd", 1);
  AddPpd("notes.txt", 2);
  ExpectText(OfCups(), "lobby\t1970-01-01T00:00:01Z\noffice\t2026-11-21T14:15:20Z\n");
}

TEST_F(ToolQueues, OfCupsWithoutATimeHaveADash) {
  AddPpd("office.ppd", 0);
  ExpectText(OfCups(), "office\t-\n");
  EXPECT_EQ(
      RunJson(OfCups()),
      Json::parse(
          R"({"schema_version": 1, "verb": "queues cups", "queues": [{"name": "office", "modified": null}]})"));
}

TEST_F(ToolQueues, OfCupsAreListedAsJson) {
  AddPpd("office.ppd", 1'795'270'520);
  EXPECT_EQ(
      RunJson(OfCups()).dump(),
      R"({"schema_version":1,"verb":"queues cups","queues":[{"name":"office","modified":1795270520}]})");
}

TEST_F(ToolQueues, OfCupsMayBeNone) {
  std::filesystem::create_directories(root_ / "etc/cups/ppd");
  ExpectText(OfCups(), "");
  EXPECT_EQ(RunJson(OfCups()).dump(), R"({"schema_version":1,"verb":"queues cups","queues":[]})");
}

TEST_F(ToolQueues, OfCupsHaveRegularFiles) {
  std::filesystem::create_directories(root_ / "etc/cups/ppd/folder.ppd");
  ASSERT_EQ(mkfifo((root_ / "etc/cups/ppd/fifo.ppd").c_str(), 0600), 0);
  ExpectText(OfCups(), "");
}

TEST_F(ToolQueues, OfAFolderThatIsNoCupsRootAreAFailure) {
  ExpectFailure(RunTool(OfCups()), 3,
                AllOf(HasSubstr("cannot list the queues: /etc/cups/ppd: No such file"),
                      HasSubstr("check --cups-root")));
}

TEST_F(ToolQueues, LeaveNoControlCharacterInNames) {
  AddPpd("of\x1b\tfice.ppd", 1);
  ExpectText(OfCups(), "of\\x1b\\x09fice\t1970-01-01T00:00:01Z\n");
}

TEST_F(ToolQueues, OfTheDaemonAreListedInTheOrderOfTheFile) {
  WriteConf("CUPSKAPPA2", "<Printer office>\nDevicePath net:1\n<Printer lobby>\n");
  ExpectText({"queues", "daemon", "--driver-folder", kFolder},
             "office\t" + std::string(kFolder) + "\nlobby\t" + kFolder + "\n");
}

TEST_F(ToolQueues, OfTheDaemonAreListedAsJson) {
  WriteConf("CUPSPS", "<Printer office>\n");
  EXPECT_EQ(
      RunJson({"queues", "daemon", "--driver-folder", "/Library/Printers/Vorel/CUPSPS"}).dump(),
      R"({"schema_version":1,"verb":"queues daemon","queues":[{"name":"office",)"
      R"("driver_folder":"/Library/Printers/Vorel/CUPSPS"}]})");
}

TEST_F(ToolQueues, OfTheDaemonAreThoseOfEveryFamilyWithoutAFolder) {
  const std::vector<std::string> families = {
      "CUPSZETA6", "CUPSTAU2",  "CUPSKAPPA2", "CUPSPS",    "CUPSPS2",         "CUPSPSMF",
      "CUPSFAX",   "CUPSDELTA", "CUPSSIGMA",  "CUPSOMEGA", "CUPS_MF_Printer", "CUPS_Printer"};
  std::string lines;
  for (const std::string& family : families) {
    WriteConf(family, "<Printer of-" + family + ">\n");
    lines += "of-" + family + "\t/Library/Printers/Vorel/" + family + "\n";
  }
  ExpectText({"queues", "daemon"}, lines);
}

TEST_F(ToolQueues, OfTheDaemonMayBeNone) {
  ExpectText({"queues", "daemon"}, "");
  EXPECT_EQ(RunJson({"queues", "daemon"}).dump(),
            R"({"schema_version":1,"verb":"queues daemon","queues":[]})");
}

TEST_F(ToolQueues, OfADriverWithoutConfigurationAreAFailure) {
  ExpectFailure(RunTool({"queues", "daemon", "--driver-folder", kFolder}), 6,
                AllOf(HasSubstr(kFolder), HasSubstr(kConf), HasSubstr("No such file")));
}

TEST_F(ToolQueues, OfAnUnknownFolderAreAFailure) {
  ExpectFailure(RunTool({"queues", "daemon", "--driver-folder", "/opt/\x1b"}), 6,
                AllOf(HasSubstr("/opt/\\x1b: no driver family")));
}

TEST_F(ToolQueues, FindNamesTheQueueOfADevice) {
  WriteConf("CUPSKAPPA2",
            "<Printer lobby>\nDevicePath net:1/PDLType=kappa2\n"
            "<Printer of\tfice>\nDevicePath net:2/PDLType=kappa2\n");
  ExpectText({"queues", "find", "net:2/PDLType=kappa2"}, "of\\x09fice\n");
  EXPECT_EQ(RunJson({"queues", "find", "net:2/PDLType=kappa2"}).dump(),
            R"({"schema_version":1,"verb":"queues find","queue":"of\tfice"})");
}

TEST_F(ToolQueues, FindReportsThatNoQueueServesTheDevice) {
  WriteConf("CUPSKAPPA2", "<Printer lobby>\nDevicePath net:1/PDLType=kappa2\n");
  ExpectFailure(
      RunTool({"queues", "find", "net:2/PDLType=kappa2"}), 6,
      AllOf(HasSubstr("net:2/PDLType=kappa2"), HasSubstr(kConf), HasSubstr("no queue serves it")));
}

TEST_F(ToolQueues, FindReportsAMissingConfiguration) {
  ExpectFailure(RunTool({"queues", "find", "net:2/PDLType=kappa2"}), 6,
                AllOf(HasSubstr(kConf), HasSubstr("No such file")));
}

TEST_F(ToolQueues, FindReportsAnUnreadableConfiguration) {
  std::filesystem::create_directories(root_ / "cache/Vorel/CUPSKAPPA2/MQPD/mqpd.conf");
  ExpectFailure(RunTool({"queues", "find", "net:2/PDLType=kappa2"}), 6,
                AllOf(HasSubstr(kConf), HasSubstr("cannot be read")));
}

TEST_F(ToolQueues, FindReportsThatTheUriHasNoPort) {
  ExpectFailure(RunTool({"queues", "find", "net:2/PDLType=sfp"}), 6,
                AllOf(HasSubstr("net:2/PDLType=sfp"), HasSubstr("no driver family")));
}

TEST_F(ToolQueues, KnowNoOtherFormats) {
  for (const std::vector<std::string>& verb : {std::vector<std::string>{"queues", "cups"},
                                               {"queues", "daemon"},
                                               {"queues", "find", "x"}}) {
    std::vector<std::string> arguments = verb;
    arguments.insert(arguments.end(), {"--format", "xml"});
    ExpectFailure(RunTool(arguments), 2, AllOf(HasSubstr("--format"), HasSubstr("xml")));
  }
}

}  // namespace
