#include "cli/config/settings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cli/terminal/failure.h"
#include "tests/support/temp_folder.h"

namespace {

using ia::cli::ExitStatus;
using ia::cli::Failure;
using ia::cli::FileState;
using ia::cli::FindModelFolder;
using ia::cli::ModelFolder;
using ia::cli::PrinterLocation;
using ia::cli::ReadSettings;
using ia::cli::Settings;
using ia::cli::TimeoutOf;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class SettingsTest : public testing::Test {
 protected:
  void WriteSystemFile(const std::string& text) const { folder_.Write("system.conf", text); }
  void WriteUserFile(const std::string& text) const { folder_.Write("user.conf", text); }
  Settings Read(const std::string& config_file = "") const {
    return ReadSettings({.system_file = system_,
                         .user_file = user_,
                         .config_file = config_file,
                         .variable = [this](const char* name) -> const char* {
                           const auto hit = variables_.find(name);
                           return hit != variables_.end() ? hit->second.c_str() : nullptr;
                         }});
  }
  // The settings in the text of one file.
  Settings ReadText(const std::string& text) const {
    folder_.Write("named.conf", text);
    return Read(named_);
  }
  // The failure that the text of a file causes.
  std::string FailureOf(const std::string& text) const {
    try {
      (void)ReadText(text);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::kUsage);
      EXPECT_THAT(failure.what(), HasSubstr("configuration file " + named_ + ": "));
      return ia::cli::MessageOf(failure.parts());  // what() ends at a NUL
    }
    return "no failure";
  }
  std::string FolderFor(const std::string& code) const {
    const Settings settings = Read();
    const ModelFolder* const folder = FindModelFolder(settings, code);
    return folder != nullptr ? folder->folder : "";
  }

  const ia_test::TempFolder folder_;
  const std::string system_ = folder_ / "system.conf";
  const std::string user_ = folder_ / "user.conf";
  const std::string named_ = folder_ / "named.conf";
  std::map<std::string, std::string> variables_;
};

TEST_F(SettingsTest, AreUnsetWithoutFilesAndVariables) {
  const Settings settings = Read();
  EXPECT_FALSE(settings.driver_folder || settings.device_info || settings.timeout);
  EXPECT_TRUE(settings.model_folders.empty());
  ASSERT_EQ(settings.files.size(), 2U);
  EXPECT_EQ(settings.files[0].path, system_);
  EXPECT_EQ(settings.files[0].state, FileState::kMissing);
  EXPECT_EQ(settings.files[1].state, FileState::kMissing);
}

TEST_F(SettingsTest, LaterPlacesWinKeyByKey) {
  WriteSystemFile("driver-folder = /1\ndevice-info = /1\ntimeout = 1\n");
  EXPECT_EQ(Read().driver_folder->text, "/1");
  EXPECT_EQ(Read().driver_folder->source, system_);
  WriteUserFile("driver-folder = /2\ndevice-info = /2\n");
  variables_["INFO_ANALYZE_DRIVER_FOLDER"] = "/3";
  variables_["INFO_ANALYZE_DEVICE_INFO"] = "";
  const Settings settings = Read();
  EXPECT_EQ(settings.driver_folder->text, "/3");
  EXPECT_EQ(settings.driver_folder->source, "INFO_ANALYZE_DRIVER_FOLDER");
  EXPECT_EQ(settings.device_info->text, "/2");
  EXPECT_EQ(settings.device_info->source, user_);
  EXPECT_EQ(settings.timeout->text, "1");
}

TEST_F(SettingsTest, NamedFileReplacesTheOthers) {
  WriteSystemFile("driver-folder = /1\n");
  WriteUserFile("wrong\n");
  const Settings settings = ReadText("device-info = /3\n");
  EXPECT_FALSE(settings.driver_folder);
  EXPECT_EQ(settings.device_info->text, "/3");
  ASSERT_EQ(settings.files.size(), 1U);
  EXPECT_EQ(settings.files[0].path, named_);
}

TEST_F(SettingsTest, TimeoutIsThatOfTheCommandLineThenTheSettingThenTheDefault) {
  PrinterLocation location;
  EXPECT_EQ(TimeoutOf(location, Read()), 30);
  variables_["INFO_ANALYZE_TIMEOUT"] = "86400";
  EXPECT_EQ(TimeoutOf(location, Read()), 86400);
  location.timeout = 30;
  location.has_timeout = true;
  EXPECT_EQ(TimeoutOf(location, Read()), 30);
}

TEST_F(SettingsTest, LongestMatchOfAModelCodeWins) {
  WriteSystemFile(
      "[driver-folders]\nRA-P* = /p\nRA-P9-* = /p9\nRA-P9-1 = /whole\n\"RA-P9*\" = /short\n");
  EXPECT_EQ(FolderFor("RA-P9-1"), "/whole");
  EXPECT_EQ(FolderFor("RA-P9-12"), "/p9");
  EXPECT_EQ(FolderFor("RA-P9"), "/short");
  EXPECT_EQ(FolderFor("RA-P"), "/p");
  EXPECT_EQ(FolderFor("ra-p9"), "");
  EXPECT_EQ(FolderFor(""), "");
}

TEST_F(SettingsTest, ModelCodesMayHavePeriodsAndAStarMatchesAllModels) {
  WriteSystemFile("[driver-folders]\nRA.P9* = /dots\n* = /all\n");
  EXPECT_EQ(FolderFor("RA.P9-1"), "/dots");
  EXPECT_EQ(FolderFor("X"), "/all");
}

TEST_F(SettingsTest, FoldersForModelsWinOverThoseForAllInTheSameAndEarlierFiles) {
  WriteSystemFile("driver-folder = /1\n[driver-folders]\nRA* = /ra1\nRB* = /rb1\n");
  EXPECT_EQ(FolderFor("RA-P9"), "/ra1");
  WriteUserFile("[driver-folders]\nRA* = /ra2\n");
  EXPECT_EQ(FolderFor("RA-P9"), "/ra2");
  EXPECT_EQ(FolderFor("RB-T9"), "/rb1");
  WriteUserFile("driver-folder = /2\n[driver-folders]\nRB* = /rb2\n");
  EXPECT_EQ(FolderFor("RA-P9"), "");
  EXPECT_EQ(FolderFor("RB-T9"), "/rb2");
  variables_["INFO_ANALYZE_DRIVER_FOLDER"] = "/3";
  EXPECT_EQ(FolderFor("RB-T9"), "");
}

TEST_F(SettingsTest, ReadsQuotesCommentsAndOtherLineEnds) {
  const Settings settings = ReadText(
      "# comment\n; comment\n\n  driver-folder=/a-b.c  # comment\r\ndevice-info = \"/with blank, "
      "comma\"\r\n[driver-folders]\r\nRA* = '/back\\slash'");
  EXPECT_EQ(settings.driver_folder->text, "/a-b.c");
  EXPECT_EQ(settings.device_info->text, "/with blank, comma");
  EXPECT_EQ(settings.model_folders.at(0).folder, "/back\\slash");
}

TEST_F(SettingsTest, UnknownKeysAndSectionsAreRefused) {
  EXPECT_THAT(FailureOf("driver_folder = /x\n"),
              HasSubstr("unknown key driver_folder (did you mean driver-folder?)"));
  EXPECT_THAT(FailureOf("colour = red\n"), HasSubstr("unknown key colour;"));
  EXPECT_THAT(FailureOf("[driver-folder]\n"),
              HasSubstr("unknown section driver-folder (did you mean driver-folders?)"));
  EXPECT_THAT(FailureOf("[driver-folders]\nRA* = /x\n[other]\n"), HasSubstr("section other"));
  EXPECT_THAT(FailureOf("driver-folders.RA = /x\n"), HasSubstr("unknown key"));
  EXPECT_THAT(FailureOf("[driver-folders]\nR*A = /x\n"), HasSubstr("\"R*A\""));
}

TEST_F(SettingsTest, MalformedLinesAreRefusedWithTheirNumber) {
  EXPECT_THAT(FailureOf("timeout = 3\nx\n"), HasSubstr("line 2, \"x\", is neither KEY = VALUE"));
  for (const char* line :
       {"driver-folder", "driver-folder =", "driver-folder = # none", "driver-folder = \"/x",
        "driver-folder = \"/x\" y", "driver-folder = \"/x#y\"", "driver-folder = \"/x\\y\"",
        "driver-folder = [/x]", "[driver-folders", "x"}) {
    EXPECT_THAT(FailureOf(line), HasSubstr("line 1, \"")) << line;
  }
}

TEST_F(SettingsTest, EachKeyHasOneValue) {
  EXPECT_THAT(FailureOf("device-info = /a b\n"), HasSubstr("device-info has more than one value"));
  EXPECT_THAT(FailureOf("device-info = /a,b\n"), HasSubstr("device-info has more than one value"));
  EXPECT_THAT(FailureOf("device-info = \"\"\n"), HasSubstr("device-info has no value"));
  EXPECT_THAT(FailureOf("timeout = 1\ntimeout = 2\n"), HasSubstr("timeout has more than one"));
  EXPECT_THAT(FailureOf("timeout = 1\ndevice-info = /a\ntimeout = 2\n"),
              HasSubstr("timeout is in the file twice"));
  EXPECT_THAT(FailureOf("[driver-folders]\nA = /a\nB = /b\nA = /a\n"),
              HasSubstr("A is in the file twice"));
}

TEST_F(SettingsTest, TimeoutsOutOfRangeAreRefused) {
  for (const char* text :
       {"0", "-1", "86401", "99999999999999999999", "1.5", "0x10", "3s", "ten"}) {
    EXPECT_THAT(FailureOf("timeout = " + std::string(text)),
                HasSubstr("key timeout: \"" + std::string(text) + "\" is not a number of seconds"));
    variables_["INFO_ANALYZE_TIMEOUT"] = text;
    EXPECT_THROW((void)Read(), Failure) << text;
    variables_.clear();
  }
}

TEST_F(SettingsTest, FoldersInWhichAShellWouldReplaceATildeAreRefused) {
  for (const char* line :
       {"driver-folder = ~/driver", "device-info = ~", "[driver-folders]\nRA* = ~root/x"}) {
    EXPECT_THAT(FailureOf(line), HasSubstr("begins with \"~\", which is not replaced")) << line;
  }
  EXPECT_EQ(ReadText("device-info = /a/~b\n").device_info->text, "/a/~b");
  variables_["INFO_ANALYZE_DEVICE_INFO"] = "~/x";
  try {
    (void)Read();
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::kUsage);
    EXPECT_THAT(failure.what(),
                HasSubstr("environment variable INFO_ANALYZE_DEVICE_INFO: \"~/x\""));
  }
}

TEST_F(SettingsTest, NulBytesAreRefused) {
  EXPECT_THAT(FailureOf(std::string("driver-folder = /x\0y\n", 21)), HasSubstr("has a NUL byte"));
}

TEST_F(SettingsTest, LongTextsAreReadAndMessagesStayShort) {
  const std::string text(100'000, 'x');
  EXPECT_EQ(ReadText("driver-folder = /" + text).driver_folder->text, "/" + text);
  EXPECT_LT(FailureOf(text + " = x").size(), 500U);
  EXPECT_LT(FailureOf(text).size(), 500U);
  EXPECT_LT(FailureOf("[" + text + "]\n").size(), 500U);
  EXPECT_LT(FailureOf("timeout = " + text).size(), 500U);
  EXPECT_LT(FailureOf("[driver-folders]\n*" + text + " = /x").size(), 500U);
}

TEST_F(SettingsTest, UsualFilesThatCannotBeReadAreIgnoredWithAWarning) {
  std::filesystem::create_directory(system_);
  ASSERT_EQ(mkfifo(user_.c_str(), 0600), 0);
  testing::internal::CaptureStderr();
  const Settings settings = Read();
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              AllOf(HasSubstr("warning: cannot read configuration file " + system_ +
                              ": not a regular file but a folder"),
                    HasSubstr(user_ + ": not a regular file but a FIFO")));
  EXPECT_EQ(settings.files.at(0).state, FileState::kUnreadable);
  EXPECT_EQ(settings.files.at(1).state, FileState::kUnreadable);
}

TEST_F(SettingsTest, NamedFilesThatCannotBeReadAreFailures) {
  for (const std::string& file : {folder_ / "none", folder_.path(), std::string("/dev/zero")}) {
    try {
      (void)Read(file);
      ADD_FAILURE() << file;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.status(), ExitStatus::kUsage);
      EXPECT_THAT(failure.what(), AllOf(HasSubstr("cannot read configuration file " + file + ": "),
                                        HasSubstr("correct --config")));
    }
  }
}

TEST_F(SettingsTest, FilesBeyondTheLimitAreNotRead) {
  folder_.Write("named.conf", std::string((1 << 20) + 1, '\n'));
  EXPECT_THROW((void)Read(named_), Failure);
}

}  // namespace
