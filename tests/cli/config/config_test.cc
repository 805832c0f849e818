#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using Words = std::vector<std::string>;

constexpr char kDriver[] = IA_TEST_DRIVER_FOLDER;

class ToolConfig : public SamplePrinter {
 protected:
  // Runs a verb with the home folder of this test.
  Finished Run(const Words& words) const {
    Command command = ToolCommand({IA_TEST_TOOL});
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    command.environment.emplace_back("HOME", root_ / "home");
    command.environment.insert(command.environment.end(), variables_.begin(), variables_.end());
    command.mounts = mounts_;
    return ia_test::RunProgram(command);
  }
  // With the queue of the sample printer.
  Finished RunForQueue(Words words) const {
    words.insert(words.end(), {"--queue", "office-mfp", "--cups-root", cups_root()});
    return Run(words);
  }
  Words LinesOf(const std::string& key, const Words& more = {}) const {
    Words words = {"config"};
    words.insert(words.end(), more.begin(), more.end());
    Words lines = Lines(Run(words).out);
    std::erase_if(lines, [&](const std::string& line) { return !line.starts_with(key + " "); });
    return lines;
  }
  void ExpectSamplePrinter(const Finished& run) const {
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Lines(run.out), ExpectedOptions());
    EXPECT_EQ(run.err, "");
  }
  void WriteUserFile(const std::string& text) const {
    root_.Write("home/.config/info-analyze.conf", text);
  }
  std::string user_file() const { return root_ / "home/.config/info-analyze.conf"; }
  std::string Located() const {
    return "driver-folder = " + std::string(kDriver) + "\ndevice-info = " + device_info() + "\n";
  }

  std::vector<std::pair<std::string, std::string>> variables_;
  ia_test::Mounts mounts_;
};

TEST_F(ToolConfig, QueryNeedsOnlyTheQueueWhenBothFoldersAreConfigured) {
  WriteUserFile(Located());
  ExpectSamplePrinter(RunForQueue({"query"}));
  EXPECT_THAT(RunForQueue({"explain", "QVFinisher"}).out,
              testing::StartsWith("QVFinisher=BKFINW1"));
  EXPECT_EQ(RunForQueue({"doctor"}).status, 0);
  EXPECT_EQ(RunForQueue({"function-version", "0x310"}).status, 0);
  EXPECT_EQ(RunForQueue({"calibration", "settings"}).status, 0);
}

TEST_F(ToolConfig, EachPlaceWinsOverTheEarlierOnes) {
  EXPECT_THAT(LinesOf("device-info"), testing::ElementsAre(HasSubstr("not set")));
  WriteUserFile("device-info = /user\n");
  EXPECT_EQ(LinesOf("device-info"), Words{"device-info    /user  (" + user_file() + ")"});
  root_.Write("xdg/info-analyze.conf", "device-info = /xdg\n");
  variables_.emplace_back("XDG_CONFIG_HOME", root_ / "xdg");
  EXPECT_EQ(LinesOf("device-info"),
            Words{"device-info    /xdg  (" + (root_ / "xdg/info-analyze.conf") + ")"});
  root_.Write("named.conf", "device-info = /named\n");
  EXPECT_EQ(LinesOf("device-info", {"--config", "named.conf"}),
            Words{"device-info    /named  (named.conf)"});
  variables_.emplace_back("INFO_ANALYZE_DEVICE_INFO", "/variable");
  EXPECT_EQ(LinesOf("device-info", {"--config", "named.conf"}),
            Words{"device-info    /variable  (INFO_ANALYZE_DEVICE_INFO)"});
  ExpectSamplePrinter(
      RunForQueue({"query", "--driver-folder", kDriver, "--device-info", device_info()}));
}

TEST_F(ToolConfig, FolderOfTheUserMustBeAFullPath) {
  WriteUserFile("timeout = 9\n");
  variables_.emplace_back("XDG_CONFIG_HOME", "xdg");
  EXPECT_EQ(LinesOf("timeout"), Words{"timeout        9  (" + user_file() + ")"});
  variables_.emplace_back("HOME", "home");
  EXPECT_EQ(LinesOf("timeout"), Words{"timeout        30  (default)"});
  EXPECT_EQ(LinesOf("file").size(), 1U);
}

TEST_F(ToolConfig, FileOfTheSystemIsReadBeforeThatOfTheUser) {
  root_.Write("etc/info-analyze.conf", "device-info = /system\ntimeout = 3\n");
  WriteUserFile("timeout = 4\n");
  mounts_ = {{root_ / "etc", "/etc"}};
  if (Run({"--version"}).status == ia_test::kNoMounts) GTEST_SKIP() << ia_test::kNoNamespaces;
  EXPECT_EQ(LinesOf("device-info"), Words{"device-info    /system  (/etc/info-analyze.conf)"});
  EXPECT_EQ(LinesOf("timeout"), Words{"timeout        4  (" + user_file() + ")"});
  EXPECT_EQ(LinesOf("file"), (Words{"file           /etc/info-analyze.conf  (read)",
                                    "file           " + user_file() + "  (read)"}));
}

TEST_F(ToolConfig, WhatIsMissingEverywhereIsNamedInAllItsForms) {
  ExpectFailure(
      RunForQueue({"query", "--device-info", device_info()}), 2,
      AllOf(HasSubstr("--driver-folder is required"), HasSubstr("set INFO_ANALYZE_DRIVER_FOLDER"),
            HasSubstr("write driver-folder into /etc/info-analyze.conf")));
  for (const Words& words :
       {Words{"query", "--driver-folder", kDriver}, Words{"snapshot", "saved"}}) {
    ExpectFailure(
        RunForQueue(words), 2,
        AllOf(HasSubstr("--device-info is required"), HasSubstr("set INFO_ANALYZE_DEVICE_INFO"),
              HasSubstr("write device-info into /etc/info-analyze.conf")));
  }
}

TEST_F(ToolConfig, PatternsAreReplacedInOptionsAndSettings) {
  WriteUserFile("driver-folder = " + (root_ / "{model}") + "\n");
  std::filesystem::create_symlink(kDriver, root_ / "RA-H5-MLT-JP");
  std::filesystem::create_symlink(device_info(), root_ / "office-mfp");
  ExpectSamplePrinter(RunForQueue({"query", "--device-info", root_ / "{queue}"}));
}

TEST_F(ToolConfig, HostIsThatOfTheDeviceUri) {
  root_.Write("printer/printers.conf",
              "<Printer office-mfp>\nDeviceURI net:192.0.2.10/PDLType=kappa2\n</Printer>\n");
  std::filesystem::create_symlink(device_info(), root_ / "192.0.2.10");
  variables_ = {{"INFO_ANALYZE_DRIVER_FOLDER", kDriver},
                {"INFO_ANALYZE_DEVICE_INFO", root_ / "{host}"}};
  ExpectSamplePrinter(RunForQueue({"query"}));
  root_.Write("printer/printers.conf", "<Printer office-mfp>\nDeviceURI ipp://../x\n</Printer>\n");
  ExpectFailure(RunForQueue({"query"}), 3,
                HasSubstr("cannot replace {host} of INFO_ANALYZE_DEVICE_INFO: \"..\""));
  std::filesystem::remove(cups_root() + "/printers.conf");
  ExpectFailure(RunForQueue({"query"}), 3, HasSubstr("cannot replace {host}"));
}

TEST_F(ToolConfig, QueueNameCannotLeadToADifferentFolder) {
  variables_ = {{"INFO_ANALYZE_DRIVER_FOLDER", kDriver}};
  ExpectFailure(Run({"query", "--queue", "../x", "--device-info", "/{queue}"}), 3,
                HasSubstr("cannot replace {queue} of --device-info: \"../x\""));
}

TEST_F(ToolConfig, DriverFolderDependsOnTheModel) {
  WriteUserFile("driver-folder = /none\ndevice-info = " + device_info() +
                "\n[driver-folders]\nRA* = /short\nRA-H5* = " + kDriver + "\n");
  ExpectSamplePrinter(RunForQueue({"query"}));
  variables_ = {{"INFO_ANALYZE_DRIVER_FOLDER", "/variable"}};
  ExpectFailure(RunForQueue({"query"}), 4, HasSubstr("/variable/Bidi"));
}

TEST_F(ToolConfig, SnapshotHasItsOwnModelAndHost) {
  root_.Write("printer/printers.conf",
              "<Printer office-mfp>\nDeviceURI net:192.0.2.10/PDLType=kappa2\n</Printer>\n");
  WriteUserFile(Located());
  for (const std::string& path : {root_ / "saved", root_ / "saved.tar.gz"}) {
    ASSERT_EQ(RunForQueue({"snapshot", path}).status, 0);
    std::filesystem::remove(root_ / "192.0.2.10-RA-H5-MLT-JP-office-mfp");
    std::filesystem::create_symlink(kDriver, root_ / "192.0.2.10-RA-H5-MLT-JP-office-mfp");
    ExpectSamplePrinter(
        Run({"query", "--snapshot", path, "--driver-folder", root_ / "{host}-{model}-{queue}"}));
    ExpectSamplePrinter(Run({"query", "--snapshot", path}));
  }
}

TEST_F(ToolConfig, LiveQueuesWithDocumentsOfTheirOwnCanBeCompared) {
  std::filesystem::copy(ppd(), cups_root() + "/ppd/second.ppd");
  std::filesystem::create_directory(root_ / "info");
  for (const char* queue : {"office-mfp", "second"}) {
    std::filesystem::copy(device_info(), root_ / ("info/" + std::string(queue)),
                          std::filesystem::copy_options::recursive);
  }
  const Words diff = {"diff",        "queue:office-mfp", "queue:second", "--driver-folder", kDriver,
                      "--cups-root", cups_root(),        "--check",      "--device-info"};
  Words words = diff;
  words.push_back(root_ / "info/{queue}");
  EXPECT_EQ(Run(words).status, 0);
  words.back() = device_info();
  ExpectFailure(Run(words), 2, HasSubstr("one document directory"));
}

TEST_F(ToolConfig, VerbPrintsWhatTheSettingsAreForAQueue) {
  WriteUserFile("device-info = /var/{queue}/{model}\n[driver-folders]\nRA* = /ra\nRB* = /rb\n");
  const Finished run = RunForQueue({"config"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      Lines(run.out),
      (Words{"driver-folder  /ra  (RA* in " + user_file() + ")",
             "driver-folder  /rb  (RB* in " + user_file() + ")", "  for queue    /ra  (office-mfp)",
             "device-info    /var/{queue}/{model}  (" + user_file() + ")",
             "  for queue    /var/office-mfp/RA-H5-MLT-JP  (office-mfp)",
             "timeout        30  (default)", "file           /etc/info-analyze.conf  (missing)",
             "file           " + user_file() + "  (read)"}));
}

TEST_F(ToolConfig, VerbPrintsJson) {
  WriteUserFile("timeout = 5\n");
  const Finished run = Run({"config", "--format", "json"});
  EXPECT_EQ(run.status, 0);
  const Json json = Json::parse(run.out);
  EXPECT_TRUE(json["settings"][0]["value"].is_null());
  EXPECT_EQ(
      json["settings"][2].dump(),
      Json({{"key", "timeout"}, {"value", "5"}, {"source", user_file()}, {"for_queue", nullptr}})
          .dump());
  EXPECT_EQ(json["files"][1].dump(), Json({{"path", user_file()}, {"state", "read"}}).dump());
}

TEST_F(ToolConfig, TimeoutOfTheCommandLineWins) {
  WriteUserFile("timeout = 5\n");
  EXPECT_EQ(LinesOf("timeout", {"--timeout", "30"}), Words{"timeout        30  (--timeout)"});
}

TEST_F(ToolConfig, FaultsInFilesAndVariablesAreErrorsOfUsage) {
  WriteUserFile("devise-info = /x\n");
  for (const Words& verb : {Words{"query"}, Words{"config"}, Words{"snapshot", "saved"}}) {
    ExpectFailure(RunForQueue(verb), 2,
                  HasSubstr("configuration file " + user_file() +
                            ": unknown key devise-info (did you mean device-info?)"));
  }
  ExpectFailure(RunForQueue({"query", "--config", "none.conf"}), 2,
                HasSubstr("cannot read configuration file none.conf: No such file or directory"));
  ExpectFailure(RunForQueue({"query", "--config", ""}), 2, HasSubstr("--config"));
  EXPECT_EQ(Run({"models", "RA-H5"}).status, 0);
  WriteUserFile("");
  variables_ = {{"INFO_ANALYZE_TIMEOUT", "0"}};
  ExpectFailure(RunForQueue({"query"}), 2, HasSubstr("INFO_ANALYZE_TIMEOUT"));
  ExpectFailure(Run({"queues", "cups"}), 2, HasSubstr("INFO_ANALYZE_TIMEOUT"));
}

TEST_F(ToolConfig, FifosAreRefusedWithoutWaiting) {
  ASSERT_EQ(mkfifo((root_ / "fifo").c_str(), 0600), 0);
  ExpectFailure(RunForQueue({"query", "--config", "fifo"}), 2, HasSubstr("a FIFO"));
}

TEST_F(ToolConfig, FileThatCannotBeReadIsIgnoredWithAWarning) {
  std::filesystem::create_directories(user_file());
  const Finished run = Run({"config"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.err, HasSubstr("warning: cannot read configuration file " + user_file() +
                                 ": not a regular file but a folder"));
  EXPECT_THAT(Lines(run.out), Contains("file           " + user_file() + "  (unreadable)"));
  EXPECT_EQ(Run({"config", "--quiet"}).err, "");
}

TEST_F(ToolConfig, ControlCharactersDoNotReachTheTerminal) {
  WriteUserFile("device-info = \"/\x1b[31m\"\n");
  EXPECT_EQ(LinesOf("device-info"), Words{"device-info    /\\x1b[31m  (" + user_file() + ")"});
  EXPECT_THAT(Run({"config", "--format", "json"}).out, Not(HasSubstr("\x1b")));
  WriteUserFile("\x1b[31m = x\n");
  ExpectFailure(Run({"config"}), 2, AllOf(HasSubstr("\\x1b[31m"), Not(HasSubstr("\x1b"))));
}

TEST_F(ToolConfig, LongValuesArePrintedWhole) {
  const std::string folder = "/" + std::string(100'000, 'x');
  WriteUserFile("driver-folder = " + folder + "\ndevice-info = " + folder + "\n");
  EXPECT_EQ(LinesOf("driver-folder"),
            Words{"driver-folder  " + folder + "  (" + user_file() + ")"});
  ExpectFailure(RunForQueue({"query"}), 4, HasSubstr("too long"));
}

TEST_F(ToolConfig, SampleFileIsReadAsItIsAndWithItsSettings) {
  const std::string sample = IA_TEST_SOURCE "/docs/info-analyze.conf";
  EXPECT_THAT(LinesOf("driver-folder", {"--config", sample}),
              testing::ElementsAre(HasSubstr("not set")));
  std::string active;
  for (const std::string& line : Lines(ia_test::ReadFile(sample))) {
    const bool is_setting = line.size() > 1 && line[0] == '#' && line[1] != ' ';
    active += (is_setting ? line.substr(1) : line) + "\n";
  }
  root_.Write("active.conf", active);
  EXPECT_EQ(LinesOf("driver-folder", {"--config", "active.conf"}).size(), 2U);
  EXPECT_EQ(LinesOf("timeout", {"--config", "active.conf"}),
            Words{"timeout        30  (active.conf)"});
}

}  // namespace
