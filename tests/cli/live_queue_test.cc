// The tool with a queue of a real print server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/cli/process.h"
#include "tests/integration/private_cupsd.h"
#include "tests/support/temp_folder.h"

namespace {

using ia_test::Command;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::ReadFile;
using testing::Contains;
using testing::HasSubstr;

const std::string kPrinter = IA_TEST_SOURCE "/examples/office-mfp";
const std::string kOther = IA_TEST_SOURCE "/examples/department-mfp";

class LiveQueue : public testing::Test {
 protected:
  void SetUp() override {
    if (!ia_test::PrivateCupsd::IsInstalled()) GTEST_SKIP() << "no cupsd";
    ASSERT_TRUE(cupsd_.Start());
    ASSERT_TRUE(cupsd_.AddQueue("office", kPrinter + "/ppd/office-mfp.ppd"));
  }
  Finished Run(const std::vector<std::string>& arguments) const {
    return ia_test::RunProgram(
        {.arguments = arguments, .environment = {{"CUPS_SERVER", cupsd_.socket()}}, .output = ""});
  }
  std::vector<std::string> Tool(const std::string& verb, std::vector<std::string> more) const {
    more.insert(more.begin(), {IA_TEST_TOOL, verb});
    return more;
  }
  const std::vector<std::string> live_ = {"--queue",         "office",
                                          "--driver-folder", IA_TEST_DRIVER_FOLDER,
                                          "--device-info",   kPrinter + "/device-info"};

  ia_test::PrivateCupsd cupsd_;
  const ia_test::TempFolder root_;
};

TEST_F(LiveQueue, IsExaminedExplainedAndKept) {
  EXPECT_EQ(Run(Tool("doctor", live_)).status, 0);
  EXPECT_THAT(Run(Tool("explain", live_)).out, HasSubstr("QVFinisher=BKFINW1"));
  const std::string folder = root_ / "kept";
  const Finished taken = Run({IA_TEST_TOOL, "snapshot", folder, "--queue", "office",
                              "--device-info", kPrinter + "/device-info"});
  EXPECT_EQ(taken.status, 0) << taken.err;
  const Finished live = Run(Tool("query", live_));
  cupsd_.Stop();
  EXPECT_EQ(
      Run({IA_TEST_TOOL, "query", "--snapshot", folder, "--driver-folder", IA_TEST_DRIVER_FOLDER})
          .out,
      live.out);
}

TEST_F(LiveQueue, IsKeptWithItsDeviceUriAndRedacted) {
  const Finished set =
      Run({"/bin/sh", "-c",
           "PATH=$PATH:/usr/sbin; lpadmin -p office -v ipp://prn7.corp.example:9100/x "
           "-L 'Tower 7' -D 'Printer of Marthe'"});
  ASSERT_EQ(set.status, 0) << set.err;
  for (const std::string option : {"--partial", "--redact"}) {
    const std::string folder = root_ / ("kept" + option);
    const Finished taken = Run({IA_TEST_TOOL, "snapshot", folder, option, "--queue", "office",
                                "--device-info", kPrinter + "/device-info"});
    EXPECT_EQ(taken.status, 0) << taken.err;
    const std::string host =
        option == "--redact" ? "host-1.invalid:9100" : "prn7.corp.example:9100/x";
    EXPECT_THAT(ReadFile(folder + "/snapshot.json"),
                HasSubstr("\"device_uri\": \"ipp://" + host + "\""));
  }
}

// The host, the PPD for the model code and then the PPD of the query come from one server.
TEST_F(LiveQueue, HostAndModelOfItsFoldersComeFromTheServer) {
  const Finished set = Run({"/bin/sh", "-c",
                            "PATH=$PATH:/usr/sbin; lpadmin -p office "
                            "-v ipp://prn7.corp.example:9100/x"});
  ASSERT_EQ(set.status, 0) << set.err;
  std::filesystem::create_symlink(kPrinter + "/device-info",
                                  root_ / "office-prn7.corp.example-RA-H5-MLT-JP");
  root_.Write("settings.conf", "device-info = " + (root_ / "{queue}-{host}-{model}") +
                                   "\n[driver-folders]\nRA-H5* = " + IA_TEST_DRIVER_FOLDER + "\n");
  const Finished run =
      Run({IA_TEST_TOOL, "query", "--queue", "office", "--config", root_ / "settings.conf"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, Run(Tool("query", live_)).out);
}

// From a printer without anything to the one that is there: every default is set.
TEST_F(LiveQueue, LpadminLineSetsItsDefaults) {
  const std::string bare = root_ / "bare";
  ASSERT_EQ(Run({IA_TEST_TOOL, "snapshot", bare, "--queue", "department-mfp", "--cups-root", kOther,
                 "--device-info", kOther + "/device-info"})
                .status,
            0);
  const Finished diff =
      Run({IA_TEST_TOOL, "diff", bare, "queue:office", "--driver-folder", IA_TEST_DRIVER_FOLDER,
           "--device-info", kPrinter + "/device-info", "--lpadmin"});
  ASSERT_THAT(diff.out, testing::StartsWith("lpadmin -p office -o ")) << diff.err;
  const Finished set = Run({"/bin/sh", "-c", "PATH=$PATH:/usr/sbin; " + diff.out});
  EXPECT_EQ(set.status, 0) << set.err;
  const auto ppd = Lines(ReadFile(cupsd_.server_root() + "/ppd/office.ppd"));
  for (const char* const line : {"*DefaultQVFinisher: BKFINW1", "*DefaultQVPuncher: PUNU24",
                                 "*DefaultQVSrcOption: Cas34,PaperDeck", "*DefaultQVSpecID: 0120",
                                 "*DefaultQVTrimmer: TRMU1", "*DefaultQVCas4MediaType: Heavy2"}) {
    EXPECT_THAT(ppd, Contains(line)) << diff.out;
  }
}

}  // namespace
