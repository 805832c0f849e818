#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::ReadFile;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using Options = std::map<std::string, std::string>;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> Printers() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(IA_TEST_SOURCE "/examples")) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

Options OptionsOf(const std::string& printer) {
  Options options;
  const std::string file = IA_TEST_SOURCE "/examples/" + printer + "/expected-options.txt";
  for (const std::string& line : Lines(ReadFile(file))) {
    const std::size_t equals = line.find('=');
    options[line.substr(0, equals)] = line.substr(equals + 1);
  }
  return options;
}

Options Applied(Options options, const Json& changes) {
  for (const Json& change : changes) {
    const std::string keyword = change["keyword"];
    EXPECT_EQ(options.contains(keyword), !change["before"].is_null()) << keyword;
    if (!change["before"].is_null()) {
      EXPECT_EQ(options[keyword], change["before"]["value"].get<std::string>());
    }
    options.erase(keyword);
    if (!change["after"].is_null()) options[keyword] = change["after"]["value"];
  }
  return options;
}

class ToolDiff : public SamplePrinter {
 protected:
  // The folder of a sample's snapshot.
  std::string Take(const std::string& printer, const std::string& root) const {
    const std::string folder = root_ / ("of-" + printer);
    if (std::filesystem::exists(folder)) return folder;
    const Finished run = RunTool({IA_TEST_TOOL, "snapshot", folder, "--queue", printer,
                                  "--cups-root", root, "--device-info", root + "/device-info"});
    EXPECT_EQ(run.status, 0) << run.err;
    return folder;
  }
  std::string TakeSample(const std::string& printer) const {
    return Take(printer, IA_TEST_SOURCE "/examples/" + printer);
  }
  // From the unchanged sample to the copy that a test may change.
  Finished DiffToCopy(std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {IA_TEST_TOOL, "diff", TakeSample("office-mfp"), "queue:office-mfp",
                               "--driver-folder", IA_TEST_DRIVER_FOLDER, "--cups-root", cups_root(),
                               "--device-info", device_info()});
    return RunTool(more);
  }
  Finished Diff(const std::string& before, const std::string& after,
                std::vector<std::string> more = {}) const {
    more.insert(more.begin(),
                {IA_TEST_TOOL, "diff", before, after, "--driver-folder", IA_TEST_DRIVER_FOLDER});
    return RunTool(more);
  }
  void InDocument(const std::string& name, const std::string& old_text,
                  const std::string& new_text) const {
    std::string text = ReadFile(Document(name));
    const std::size_t at = text.find(old_text);
    ASSERT_NE(at, std::string::npos) << old_text;
    WriteDocument(name, text.replace(at, old_text.size(), new_text));
  }
  // The words that a shell makes of a command line for lpadmin.
  std::vector<std::string> WordsInShell(const std::string& line) const {
    root_.Write("run.sh", "lpadmin() { for word; do printf '%s\\n' \"$word\"; done; }\n" + line);
    const Finished run = ia_test::RunProgram({.arguments = {"/bin/sh", root_ / "run.sh"},
                                              .environment = {},
                                              .folder = root_.path(),
                                              .output = ""});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return Lines(run.out);
  }
};

class DiffOfSamples : public ToolDiff, public testing::WithParamInterface<std::string> {};

TEST_P(DiffOfSamples, AppliedToTheOneGivesTheOther) {
  for (const std::string& other : Printers()) {
    const Finished run = Diff(TakeSample(GetParam()), TakeSample(other), {"--format", "json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const Json json = Json::parse(run.out);
    EXPECT_EQ(json["same"], GetParam() == other);
    EXPECT_EQ(json["before"]["queue"], GetParam());
    EXPECT_EQ(json["after"]["queue"], other);
    EXPECT_EQ(Applied(OptionsOf(GetParam()), json["changes"]), OptionsOf(other)) << other;
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, DiffOfSamples, testing::ValuesIn(Printers()), [](const auto& info) {
  std::string name = info.param;
  std::ranges::replace(name, '-', '_');
  return name;
});

TEST_F(ToolDiff, OfTheSamePrinterSaysNothing) {
  const Finished run = DiffToCopy();
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(DiffToCopy({"--check"}).status, 0);
  EXPECT_EQ(DiffToCopy({"--lpadmin"}).out, "");
}

TEST_F(ToolDiff, ReportsAnAddedTray) {
  InDocument("Tray_list.xml", "</document>",
             "<dict key=\"list\"><long key=\"type\">2</long>"
             "<array key=\"alias\"><long>124</long></array></dict></document>");
  ReplaceInPpd("Cas6:161\"", "Cas6:161,Cas5:124\"");
  ReplaceInPpd("Cas6:QVCas6MediaType\"", "Cas6:QVCas6MediaType,Cas5:QVCas5MediaType\"");
  EXPECT_THAT(
      Lines(DiffToCopy().out),
      ElementsAre("number of trays: 6 -> 7", "QVCas5MediaType: - -> PlainPaper  (new option)"));
}

TEST_F(ToolDiff, ReportsARemovedFinisher) {
  WriteDocument("Finisher_list.xml", "<?xml version=\"1.0\"?>\n<document version=\"1\"/>");
  const std::vector<std::string> lines = Lines(DiffToCopy().out);
  EXPECT_THAT(lines, Contains("number of finishers: 3 -> 0"));
  EXPECT_THAT(lines,
              Contains("QVFinisher: BKFINW1 -> None  (gone: Finisher, Booklet Finisher-W1)"));
}

TEST_F(ToolDiff, ReportsADifferentModel) {
  ReplaceInPpd("RA-H5-MLT-JP", "RA-H5-MLT");
  EXPECT_THAT(Lines(DiffToCopy().out), Contains("model code: RA-H5-MLT-JP -> RA-H5-MLT"));
}

TEST_F(ToolDiff, CheckAnswersByItsStatusOnly) {
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "<long key=\"hd\">0</long>");
  const Finished run = DiffToCopy({"--check"});
  EXPECT_EQ(run.status, 10);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");
}

TEST_F(ToolDiff, CheckExcludesLpadmin) {
  ExpectFailure(DiffToCopy({"--check", "--lpadmin"}), 2, HasSubstr("excludes"));
}

TEST_F(ToolDiff, LpadminLineSetsWhatHasChanged) {
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "<long key=\"hd\">0</long>");
  InDocument("Tray_list.xml", "<long key=\"medium_type\">4</long>",
             "<long key=\"medium_type\">2</long>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.out, "lpadmin -p office-mfp -o QVHardDisk=False -o QVCas2MediaType=Heavy1\n");
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(WordsInShell(run.out), ElementsAre("-p", "office-mfp", "-o", "QVHardDisk=False", "-o",
                                                 "QVCas2MediaType=Heavy1"));
}

TEST_F(ToolDiff, LpadminLineLeavesOutWhatThePpdDoesNotOffer) {
  InDocument("Accessories.xml", "<long key=\"memory\">4096</long>",
             "<long key=\"memory\">1</long>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("warning: QVTotalMemSize=1 is left out"));
}

// What is a default only because the device reported nothing would remove what the printer has.
TEST_F(ToolDiff, LpadminLineLeavesOutDefaultsForWantOfADocument) {
  RemoveDocument("Finisher_list.xml");
  RemoveDocument("Bin_list.xml");
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "<long key=\"hd\">0</long>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 5);
  EXPECT_THAT(WordsInShell(run.out), ElementsAre("-p", "office-mfp", "-o", "QVHardDisk=False"));
  EXPECT_THAT(run.err, HasSubstr("warning: QVFinisher=None is left out: Finisher_list.xml"));
}

// Nothing but the document differs, so there is nothing to propose, also where a handler makes a
// value of what is left.
TEST_P(DiffOfSamples, ProposesNothingForWantOfADocument) {
  const std::string root = IA_TEST_SOURCE "/examples/" + GetParam();
  for (const auto& document : std::filesystem::directory_iterator(root + "/device-info")) {
    const std::string name = document.path().filename();
    const std::string folder = root_ / ("without-" + name);
    std::filesystem::copy(root + "/device-info", folder);
    std::filesystem::remove(folder + "/" + name);
    const Finished run = Diff(TakeSample(GetParam()), "queue:" + GetParam(),
                              {"--lpadmin", "--cups-root", root, "--device-info", folder});
    EXPECT_EQ(run.out, "") << name;
  }
}

TEST_F(ToolDiff, LpadminLineLeavesOutDefaultsForWantOfAKey) {
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 5);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("QVHardDisk=False is left out: Accessories.xml hd is missing"));
}

TEST_F(ToolDiff, LpadminLineLeavesOutWhatAnUnknownUnitMayDecide) {
  InDocument("Finisher_list.xml", "Booklet Finisher-W1", "Booklett Finisher-W1");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 5);
  EXPECT_THAT(run.out, Not(HasSubstr("QVFinisher")));
  EXPECT_THAT(run.err,
              HasSubstr("QVFinisher=INSHFTD1 is left out: Finisher_list.xml list[1] name"));
}

// So many values are not tried, so any unknown one may decide.
TEST_F(ToolDiff, LpadminLineLeavesOutWhatAnUnknownUnitOfManyMayDecide) {
  std::string units =
      "<dict key=\"list\"><string key=\"name\">Vorel Booklett Finisher-W1</string>"
      "<array key=\"func\"><string>staple</string></array></dict>";
  for (int i = 0; i < 500; ++i) {
    units += "<dict key=\"list\"><string key=\"name\"></string></dict>";
  }
  WriteDocument("Finisher_list.xml", "<document version=\"1\">" + units + "</document>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 5);
  EXPECT_THAT(run.out, Not(HasSubstr("QVFinisher")));
  EXPECT_THAT(run.err, HasSubstr("QVFinisher=None is left out: Finisher_list.xml list[0] name"));
}

TEST_F(ToolDiff, LpadminLineLeavesOutDefaultsForWantOfANumber) {
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "<string key=\"hd\">1</string>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 5);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("Accessories.xml hd has the wrong type"));
}

// An empty list is what a device without units reports.
TEST_F(ToolDiff, LpadminLineHasTheDefaultOfAnEmptyList) {
  WriteDocument("Finisher_list.xml", "<document version=\"1\"></document>");
  const Finished run = DiffToCopy({"--lpadmin"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("-o QVFinisher=None"));
}

TEST_F(ToolDiff, TwoLiveQueuesAreRefused) {
  ExpectFailure(Diff("queue:office-mfp", "queue:small-office",
                     {"--cups-root", cups_root(), "--device-info", device_info()}),
                2, HasSubstr("cannot compare two live queues with one document directory"));
}

// A choice that a shell would run is one word; one that lpadmin would take apart is left out.
TEST_F(ToolDiff, LpadminLineRunsNothingItReports) {
  ReplaceInPpd("Finisher-W1:BKFINW1", "Finisher-W1:$(touch${IFS}x);`y`'");
  ReplaceInPpd("*QVFinisher BKFINW1/", "*QVFinisher $(touch${IFS}x);`y`'/");
  EXPECT_EQ(DiffToCopy({"--lpadmin"}).out, "");
  ReplaceInPpd("Finisher-W1:$(touch${IFS}x);`y`'", "Finisher-W1:$(x);`y`*&|<>#~!");
  ReplaceInPpd("*QVFinisher $(touch${IFS}x);`y`'/", "*QVFinisher $(x);`y`*&|<>#~!/");
  EXPECT_THAT(WordsInShell(DiffToCopy({"--lpadmin"}).out),
              ElementsAre("-p", "office-mfp", "-o", "QVFinisher=$(x);`y`*&|<>#~!"));
}

TEST_F(ToolDiff, HostileTextsDoNotReachTheTerminal) {
  ReplaceInPpd("Finisher-W1:BKFINW1", "Finisher-W1:B\x1b[31m\xff");
  EXPECT_THAT(DiffToCopy().out, AllOf(HasSubstr("B\\x1b[31m"), Not(HasSubstr("\x1b"))));
  EXPECT_EQ(DiffToCopy({"--lpadmin"}).out, "");
  EXPECT_THAT(DiffToCopy({"--lpadmin"}).err, Not(HasSubstr("\x1b")));
  EXPECT_EQ(Json::parse(DiffToCopy({"--format", "json"}).out)["changes"][0]["after"]["value"],
            "B\x1b[31m\ufffd");
}

TEST_F(ToolDiff, FailsAsTheQueryOfItsPrinterDoes) {
  ExpectFailure(Diff(root_ / "nowhere", root_ / "nowhere"), 9, HasSubstr("nowhere: No such file"));
  ExpectFailure(Diff(TakeSample("office-mfp"), "queue:office-mfp"), 2,
                HasSubstr("--device-info is required"));
  RemoveDocument("Devicename.xml");
  ExpectFailure(DiffToCopy(), 5, HasSubstr("Devicename.xml"));
  std::filesystem::remove(ppd());
  ExpectFailure(DiffToCopy({"--check"}), 3, HasSubstr("cannot read PPD of queue"));
}

}  // namespace
