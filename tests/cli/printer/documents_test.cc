#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::SamplePrinter;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kDocuments[] = {"Accessories.xml",   "Functions.xml",     "Specid.xml",
                                      "Finisher_list.xml", "Bin_list.xml",      "Tray_list.xml",
                                      "Resolutions.xml",   "Fax_line_list.xml", "Devicename.xml"};

class ToolDocuments : public SamplePrinter {
 protected:
  std::string Sentence(const std::string& name, const std::string& reason) const {
    return "document " + Document(name) + ": " + reason;
  }
  std::string Warning(const std::string& name, const std::string& reason) const {
    return "info-analyze: warning: " + Sentence(name, reason);
  }
  void ExpectFailureOf(const std::string& name, const std::string& reason) const {
    ExpectFailure(RunQuery(), 5,
                  testing::Eq("info-analyze: error: " + Sentence(name, reason) +
                              "\ninfo-analyze: error: queue office-mfp: the query failed, because "
                              "1 of 9 documents cannot be read; find out "
                              "why with info-analyze doctor\n"));
  }
};

TEST_F(ToolDocuments, LibraryThatReadsNoneFailsTheQuery) {
  std::vector<std::string> arguments = QueryArguments();
  std::ranges::replace(arguments, std::string(IA_TEST_DRIVER_FOLDER),
                       std::string(IA_TEST_SUPPORT_BUILD "/faulty/stub"));
  ExpectFailure(RunTool(arguments), 5, testing::HasSubstr("9 of 9 documents cannot be read"));
}

// The loader's last result decides, and Devicename.xml is read last.
TEST_F(ToolDocuments, MissingLastOneFailsTheQuery) {
  RemoveDocument("Devicename.xml");
  ExpectFailureOf("Devicename.xml", "No such file or directory");
}

TEST_F(ToolDocuments, FolderInPlaceOfTheLastOneFailsTheQuery) {
  RemoveDocument("Devicename.xml");
  std::filesystem::create_directory(Document("Devicename.xml"));
  ExpectFailureOf("Devicename.xml", "not a regular file");
}

TEST_F(ToolDocuments, FifoInPlaceOfTheLastOneFailsTheQueryWithoutWaiting) {
  RemoveDocument("Devicename.xml");
  ASSERT_EQ(mkfifo(Document("Devicename.xml").c_str(), 0600), 0);
  ExpectFailureOf("Devicename.xml", "not a regular file");
}

TEST_F(ToolDocuments, TooLargeLastOneFailsTheQuery) {
  std::filesystem::resize_file(Document("Devicename.xml"), (16 << 20) + 1);
  ExpectFailureOf("Devicename.xml", "larger than 16 MiB");
}

TEST_F(ToolDocuments, UnreadableLastOneFailsTheQuery) {
  RemoveDocument("Devicename.xml");
  std::filesystem::create_symlink("/proc/self/mem", Document("Devicename.xml"));
  ExpectFailureOf("Devicename.xml", "Input/output error");
}

TEST_F(ToolDocuments, OneThatAHandlerNeedsFailsTheQuery) {
  RemoveDocument("Resolutions.xml");
  ExpectFailureOf("Resolutions.xml", "No such file or directory");
}

TEST_F(ToolDocuments, FailuresNameEveryMissingOne) {
  RemoveDocument("Accessories.xml");
  WriteDocument("Bin_list.xml", "not XML");
  RemoveDocument("Devicename.xml");
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 5);
  EXPECT_THAT(Lines(run.err),
              ElementsAre(HasSubstr(Sentence("Accessories.xml", "No such file or directory")),
                          HasSubstr(Sentence("Bin_list.xml",
                                             "not a document that the "
                                             "communication library reads")),
                          HasSubstr(Sentence("Devicename.xml", "No such file or directory")),
                          HasSubstr("the query failed")));
}

TEST_F(ToolDocuments, MissingFolderIsReportedForEach) {
  std::filesystem::remove_all(device_info());
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 5);
  for (const char* name : kDocuments) {
    EXPECT_THAT(run.err, HasSubstr(Sentence(name, "No such file or directory")));
  }
}

// With this folder "/Functions.xml" ends just below the limit and "/Devicename.xml" on it.
TEST_F(ToolDocuments, PathsOf1024BytesAreTooLong) {
  std::string folder = device_info();
  while (folder.size() + std::string("/Devicename.xml").size() < 1024) folder += '/';
  ExpectFailure(RunQueryWith("--device-info", folder), 5,
                AllOf(HasSubstr(folder + "/Devicename.xml: File name too long"),
                      Not(HasSubstr("Functions.xml"))));
}

TEST_F(ToolDocuments, MissingEarlierOneIsAWarning) {
  RemoveDocument("Accessories.xml");
  std::vector<std::string> expected = ExpectedOptions();
  std::erase(expected, "QVHardDisk=True");
  std::erase(expected, "QVTotalMemSize=4096");
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.out), expected);
  EXPECT_EQ(run.err, Warning("Accessories.xml", "No such file or directory") + "\n");
}

TEST_F(ToolDocuments, OneThatCannotBeParsedIsAWarning) {
  WriteDocument("Functions.xml", "not XML");
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(Lines(run.out), Not(testing::Contains(HasSubstr("QVDupUnit"))));
  EXPECT_EQ(run.err,
            Warning("Functions.xml", "not a document that the communication library reads") + "\n");
}

TEST_F(ToolDocuments, LastOneThatCannotBeParsedIsAWarning) {
  WriteDocument("Devicename.xml", "");
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(
      run.err,
      Warning("Devicename.xml", "not a document that the communication library reads") + "\n");
}

// The platform version is asked only while the finisher list is there.
TEST_F(ToolDocuments, MissingFinisherListHidesThePlatformVersion) {
  RemoveDocument("Finisher_list.xml");
  const Finished run = RunQuery();
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(run.out, AllOf(HasSubstr("QVSpecID=0120"), Not(HasSubstr("QVPlatformVersion"))));
  EXPECT_EQ(run.err, Warning("Finisher_list.xml", "No such file or directory") + "\n");
}

TEST_F(ToolDocuments, WarningsStayOutOfTheAnswer) {
  RemoveDocument("Accessories.xml");
  const Finished run = RunQuery({"--format", "json"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(nlohmann::json::parse(run.out)["options"][0]["keyword"], "QVDupUnit");
}

}  // namespace
