#ifndef TESTS_CLI_SAMPLE_PRINTER_H_
#define TESTS_CLI_SAMPLE_PRINTER_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/cli/process.h"
#include "tests/support/temp_folder.h"

namespace ia_test {

inline constexpr char kSample[] = IA_TEST_SOURCE "/examples/office-mfp";

// A copy of the sample printer that a test may change, and the programs that ask it. What is
// around the programs fails programs that read the wrong place: no CUPS server listens there.
// Settings of the user who runs the tests have no effect.
class SamplePrinter : public testing::Test {
 protected:
  SamplePrinter() {
    std::filesystem::copy(kSample, root_ / "printer", std::filesystem::copy_options::recursive);
    std::filesystem::create_directory(temporary_);
  }
  ~SamplePrinter() override { EXPECT_EQ(CountEntries(temporary_), 0) << "a PPD copy was left"; }

  std::string cups_root() const { return root_ / "printer"; }
  std::string device_info() const { return root_ / "printer/device-info"; }
  std::string ppd() const { return root_ / "printer/ppd/office-mfp.ppd"; }
  std::string Document(const std::string& name) const { return device_info() + "/" + name; }

  void ReplaceInPpd(const std::string& old_text, const std::string& new_text) const {
    std::string text = ReadFile(ppd());
    const std::size_t at = text.find(old_text);
    ASSERT_NE(at, std::string::npos) << old_text;
    root_.Write("printer/ppd/office-mfp.ppd", text.replace(at, old_text.size(), new_text));
  }
  void WritePpd(const std::string& text) const { root_.Write("printer/ppd/office-mfp.ppd", text); }
  void WriteDocument(const std::string& name, const std::string& text) const {
    root_.Write("printer/device-info/" + name, text);
  }
  void RemoveDocument(const std::string& name) const { std::filesystem::remove(Document(name)); }

  std::vector<std::string> QueryArguments() const {
    return {IA_TEST_TOOL,          "query",       "--queue",   "office-mfp",    "--driver-folder",
            IA_TEST_DRIVER_FOLDER, "--cups-root", cups_root(), "--device-info", device_info()};
  }
  Command ToolCommand(const std::vector<std::string>& arguments) const {
    return {.arguments = arguments,
            .environment = {{"CUPS_SERVER", "127.0.0.2:9"},
                            {"CUPS_SERVERROOT", temporary_ + "/no-root"},
                            {"HOME", temporary_},
                            {"XDG_CONFIG_HOME", ""},
                            {"INFO_ANALYZE_DRIVER_FOLDER", ""},
                            {"INFO_ANALYZE_DEVICE_INFO", ""},
                            {"INFO_ANALYZE_TIMEOUT", ""},
                            {"TMPDIR", temporary_}},
            .folder = root_.path(),
            .output = ""};
  }
  Finished RunTool(const std::vector<std::string>& arguments) const {
    return RunProgram(ToolCommand(arguments));
  }
  // A query of the copy; the arguments follow those that it takes.
  // As a user who may read only what all may.
  Finished RunUnprivileged(std::vector<std::string> arguments) const {
    std::filesystem::permissions(root_.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(temporary_, std::filesystem::perms(0777));
    if (geteuid() == 0) {
      arguments.insert(arguments.begin(),
                       {"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    }
    return RunTool(arguments);
  }
  Finished RunQuery(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = QueryArguments();
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunTool(arguments);
  }
  // A query with another value for one of its options.
  Finished RunQueryWith(const std::string& option, const std::string& value) const {
    std::vector<std::string> arguments = QueryArguments();
    *(std::ranges::find(arguments, option) + 1) = value;
    return RunTool(arguments);
  }
  static std::vector<std::string> ExpectedOptions() {
    return Lines(ReadFile(std::string(kSample) + "/expected-options.txt"));
  }

  const TempFolder root_;
  const std::string temporary_ = root_ / "tmp";
};

// Failures say so on standard error alone, each line under the program's name.
inline void ExpectFailure(const Finished& run, int status,
                          const testing::Matcher<std::string>& message) {
  EXPECT_EQ(run.status, status);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, message);
  EXPECT_THAT(Lines(run.err), testing::Each(testing::StartsWith("info-analyze: error: ")));
}

}  // namespace ia_test

#endif  // TESTS_CLI_SAMPLE_PRINTER_H_
