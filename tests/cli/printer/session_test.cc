#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::SamplePrinter;
using testing::AllOf;
using testing::HasSubstr;

class ToolCommunicationLibrary : public SamplePrinter {
 protected:
  // The failure of a query with this driver folder must name the file that was tried.
  void ExpectRefused(const std::string& driver_folder, const std::string& reason) const {
    ExpectFailure(
        RunQueryWith("--driver-folder", driver_folder), 4,
        AllOf(HasSubstr("communication library " + driver_folder + "/Bidi/libmqpd_util.so: "),
              HasSubstr(reason)));
  }
};

TEST_F(ToolCommunicationLibrary, MissingFileIsReported) {
  ExpectRefused(root_ / "nowhere", "No such file or directory");
}

TEST_F(ToolCommunicationLibrary, FileThatIsNoLibraryIsReported) {
  root_.Write("driver/Bidi/libmqpd_util.so", "text");
  ExpectRefused(root_ / "driver", "file too short");
}

TEST_F(ToolCommunicationLibrary, FifoIsRefusedWithoutWaiting) {
  std::filesystem::create_directories(root_ / "fifo/Bidi");
  ASSERT_EQ(mkfifo((root_ / "fifo/Bidi/libmqpd_util.so").c_str(), 0600), 0);
  ExpectFailure(RunQueryWith("--driver-folder", root_ / "fifo"), 4,
                HasSubstr("libmqpd_util.so: not a regular file"));
}

TEST_F(ToolCommunicationLibrary, MissingEntryPointIsReported) {
  ExpectRefused(IA_TEST_SUPPORT_BUILD "/lacking/qvxmlwrapGet_Destroy", "not all entry points");
}

TEST_F(ToolCommunicationLibrary, UnresolvedSymbolIsReported) {
  ExpectRefused(IA_TEST_SUPPORT_BUILD "/unresolved", "undefined symbol");
}

TEST_F(ToolCommunicationLibrary, TooLongPathIsReported) {
  const std::string folder(2048, 'd');
  ExpectFailure(
      RunQueryWith("--driver-folder", folder), 4,
      AllOf(HasSubstr("communication library"), HasSubstr("too long"), HasSubstr(folder)));
}

TEST_F(ToolCommunicationLibrary, IsLoadedBeforeTheQueueIsRead) {
  std::filesystem::remove(ppd());
  ExpectRefused(root_ / "nowhere", "No such file or directory");
}

class ToolQueue : public SamplePrinter {};

TEST_F(ToolQueue, MissingCupsRootIsReported) {
  ExpectFailure(RunQueryWith("--cups-root", root_ / "nowhere"), 3,
                HasSubstr(root_ / "nowhere/ppd/office-mfp.ppd: No such file or directory"));
}

TEST_F(ToolQueue, RelativeCupsRootIsReportedAsItIsRead) {
  ExpectFailure(RunQueryWith("--cups-root", "nowhere"), 3,
                HasSubstr(" " + (root_ / "nowhere/ppd/office-mfp.ppd") + ": "));
}

TEST_F(ToolQueue, IsReadBeforeTheDocuments) {
  std::filesystem::remove_all(device_info());
  ExpectFailure(RunQueryWith("--queue", "lobby"), 3, Not(HasSubstr("document")));
}

TEST_F(ToolQueue, ControlCharactersInItsNameAreNotPrinted) {
  ExpectFailure(RunQueryWith("--queue", "lob\x1b[31m\nby"), 3,
                AllOf(HasSubstr("\"lob\\x1b[31m\\x0aby\": CUPS"), Not(HasSubstr("\x1b"))));
}

}  // namespace
