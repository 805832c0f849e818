// The output of each verb for each sample printer, compared byte for byte with the files under
// golden/: the text of all printers, and of long JSON that of one or two printers. explain_check.py
// and schema_check.py check the JSON of all printers. With IA_RENEW_GOLDEN in the environment this
// test writes the files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "tests/cli/process.h"
#include "tests/support/temp_folder.h"

namespace {

using ia_test::Finished;
using ia_test::ReadFile;

using Words = std::vector<std::string>;

struct VerbCase {
  std::string name;                                // of the golden file
  Words (*arguments)(const std::string& printer);  // in the folder of the test
  std::map<std::string, int> statuses = {};        // of printers; the others exit with 0
  Words json_printers = {};                        // with a golden file in JSON; empty: all
};

Words OnQueue(Words verb, const std::string& printer) {
  verb.insert(verb.end(), {"--queue", printer, "--driver-folder", "driver", "--cups-root",
                           "printers/" + printer});
  return verb;
}

Words OnPrinter(const std::string& verb, const std::string& printer) {
  Words arguments = OnQueue({verb}, printer);
  arguments.insert(arguments.end(), {"--device-info", "printers/" + printer + "/device-info"});
  return arguments;
}

std::string ModelCodeOf(const std::string& printer) {
  const std::string ppd =
      ReadFile(IA_TEST_SOURCE "/examples/" + printer + "/ppd/" + printer + ".ppd");
  const std::string key = "*QVAnlz_DriverName: \"";
  const std::size_t at = ppd.find(key) + key.size();
  return ppd.substr(at, ppd.find('"', at) - at);
}

const VerbCase kVerbs[] = {
    {.name = "query",
     .arguments = [](const std::string& printer) { return OnPrinter("query", printer); },
     .json_printers = {"office-mfp"}},
    {.name = "explain",
     .arguments = [](const std::string& printer) { return OnPrinter("explain", printer); },
     .json_printers = {"office-mfp"}},
    {.name = "doctor",
     .arguments = [](const std::string& printer) { return OnPrinter("doctor", printer); },
     .json_printers = {"office-mfp", "fax-centre"}},  // all keys reported, and not all
    {.name = "diff",
     .arguments =
         [](const std::string& printer) {
           return Words{"diff", "first", "second/" + printer, "--driver-folder", "driver"};
         },
     .json_printers = {"office-mfp", "colour-copier"}},  // the same printer and a different one
    {.name = "models",
     .arguments = [](const std::string& printer) { return Words{"models", ModelCodeOf(printer)}; },
     .json_printers = {"office-mfp"}},
    {.name = "function-version",
     .arguments =
         [](const std::string& printer) {
           return OnQueue({"function-version", "0x310"}, printer);
         }},
    {.name = "calibration-settings",
     .arguments =
         [](const std::string& printer) { return OnQueue({"calibration", "settings"}, printer); }},
    {.name = "calibration-defaults",
     .arguments =
         [](const std::string& printer) { return OnQueue({"calibration", "defaults"}, printer); }},
};

std::vector<std::string> Printers() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(IA_TEST_SOURCE "/examples")) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

using Parameters = std::tuple<VerbCase, std::string, std::string>;  // printer, format

std::vector<Parameters> Outputs() {
  std::vector<Parameters> outputs;
  for (const VerbCase& verb : kVerbs) {
    for (const std::string& printer : Printers()) outputs.emplace_back(verb, printer, "text");
    const Words in_json = verb.json_printers.empty() ? Printers() : verb.json_printers;
    for (const std::string& printer : in_json) outputs.emplace_back(verb, printer, "json");
  }
  return outputs;
}

std::string GoldenFile(const Parameters& output) {
  const auto& [verb, printer, format] = output;
  return IA_TEST_SOURCE "/tests/cli/golden/" + printer + "/" + verb.name +
         (format == "json" ? ".json" : ".txt");
}

class Golden : public testing::TestWithParam<Parameters> {
 protected:
  Golden() {
    std::filesystem::create_directory_symlink(IA_TEST_DRIVER_FOLDER, root_ / "driver");
    std::filesystem::create_directory_symlink(IA_TEST_SOURCE "/examples", root_ / "printers");
  }
  // With relative folders, so that the output names no folder of this machine.
  Finished RunTool(Words arguments) const {
    arguments.insert(arguments.begin(), IA_TEST_TOOL);
    return ia_test::RunProgram({.arguments = arguments,
                                .environment = {{"HOME", root_.path()}},
                                .folder = root_.path(),
                                .output = ""});
  }
  Finished Run() const {
    const auto& [verb, printer, format] = GetParam();
    if (verb.name == "diff") {
      TakeSnapshot("office-mfp", "first");
      TakeSnapshot(printer, "second/" + printer);
    }
    Words arguments = verb.arguments(printer);
    arguments.insert(arguments.end(), {"--format", format});
    return RunTool(arguments);
  }
  void TakeSnapshot(const std::string& printer, const std::string& folder) const {
    const std::string root = "printers/" + printer;
    EXPECT_EQ(RunTool({"snapshot", folder, "--queue", printer, "--cups-root", root, "--device-info",
                       root + "/device-info"})
                  .status,
              0);
  }
  static void Renew(const std::string& text) {
    const std::filesystem::path file = GoldenFile(GetParam());
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }

  const ia_test::TempFolder root_;
};

TEST_P(Golden, IsWhatTheToolPrints) {
  const Finished run = Run();
  if (std::getenv("IA_RENEW_GOLDEN") != nullptr) Renew(run.out);
  const auto& [verb, printer, format] = GetParam();
  const auto status = verb.statuses.find(printer);
  EXPECT_EQ(run.status, status != verb.statuses.end() ? status->second : 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.out, ReadFile(GoldenFile(GetParam())));
}

std::string NameOf(const testing::TestParamInfo<Parameters>& info) {
  const auto& [verb, printer, format] = info.param;
  std::string name = verb.name + "_" + printer + "_" + format;
  std::ranges::replace(name, '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Samples, Golden, testing::ValuesIn(Outputs()), NameOf);

// A file that no test compares would say what was once so.
TEST(GoldenFiles, AreAllCompared) {
  std::set<std::string> compared;
  for (const Parameters& output : Outputs()) compared.insert(GoldenFile(output));
  std::set<std::string> present;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(IA_TEST_SOURCE "/tests/cli/golden")) {
    if (entry.is_regular_file()) present.insert(entry.path());
  }
  EXPECT_EQ(present, compared);
}

}  // namespace
