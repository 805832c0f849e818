#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <ios>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "tests/cli/sample_printer.h"

namespace {

using ia_test::Command;
using ia_test::ExpectFailure;
using ia_test::Finished;
using ia_test::Lines;
using ia_test::ReadFile;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kIncomplete = 9;
constexpr int kSnapshotFailure = 9;

class ToolSnapshot : public SamplePrinter {
 protected:
  Finished Take(const std::vector<std::string>& more = {}, const std::string& printer = "") const {
    return TakeTo(folder_, more, printer);
  }
  Finished TakeTo(const std::string& path, std::vector<std::string> more = {},
                  const std::string& printer = "") const {
    const std::string name = printer.empty() ? "office-mfp" : printer;
    const std::string root = printer.empty() ? cups_root() : IA_TEST_SOURCE "/examples/" + printer;
    more.insert(more.begin(), {IA_TEST_TOOL, "snapshot", path, "--queue", name, "--cups-root", root,
                               "--device-info", root + "/device-info"});
    return RunTool(more);
  }
  // Asks the snapshot; the verb may be several words.
  Finished Replay(const std::vector<std::string>& verb = {"query"}) const {
    return ReplayFrom(folder_, verb);
  }
  Finished ReplayFrom(const std::string& path, std::vector<std::string> verb = {"query"}) const {
    verb.insert(verb.begin(), IA_TEST_TOOL);
    verb.insert(verb.end(), {"--snapshot", path, "--driver-folder", IA_TEST_DRIVER_FOLDER});
    return RunTool(verb);
  }
  // A line of a shell with GNU's tar and gzip, in the folder around the snapshots.
  Finished RunShell(const std::string& line) const {
    return RunTool({"/bin/sh", "-ec", "cd " + root_.path() + "; " + line});
  }
  void RemoveDocumentsBut(const std::string& kept) const {
    for (const auto& entry : std::filesystem::directory_iterator(device_info())) {
      if (entry.path().filename() != kept) std::filesystem::remove(entry);
    }
  }
  Finished AskLive(std::vector<std::string> verb, const std::string& printer) const {
    const std::string root = IA_TEST_SOURCE "/examples/" + printer;
    const bool needs_documents =
        verb.front() != "function-version" && verb.front() != "calibration";
    verb.insert(verb.begin(), IA_TEST_TOOL);
    verb.insert(verb.end(), {"--queue", printer, "--cups-root", root, "--driver-folder",
                             IA_TEST_DRIVER_FOLDER});
    if (needs_documents) verb.insert(verb.end(), {"--device-info", root + "/device-info"});
    return RunTool(verb);
  }
  Json List() const { return Json::parse(ReadFile(folder_ + "/snapshot.json")); }
  void WriteList(const Json& list) const {
    std::ofstream(folder_ + "/snapshot.json") << list.dump();
  }

  const std::string folder_ = root_ / "kept";
  const std::string archive_ = root_ / "kept.tar.gz";
};

const std::vector<std::vector<std::string>> kVerbs = {
    {"query"},
    {"query", "--format", "json"},
    {"explain"},
    {"explain", "--format", "json"},
    {"function-version", "0x310"},
    {"calibration", "settings"},
    {"calibration", "defaults", "--format", "json"},
};

class SnapshotOfPrinter : public ToolSnapshot, public testing::WithParamInterface<std::string> {};

TEST_P(SnapshotOfPrinter, AnswersEachVerbAsThePrinterDoes) {
  ASSERT_EQ(Take({}, GetParam()).status, 0);
  for (const auto& verb : kVerbs) {
    const Finished live = AskLive(verb, GetParam());
    const Finished replayed = Replay(verb);
    EXPECT_EQ(replayed.status, live.status) << verb.front() << replayed.err;
    EXPECT_EQ(replayed.out, live.out) << verb.front();
    EXPECT_EQ(replayed.err, live.err) << verb.front();
  }
}

TEST_P(SnapshotOfPrinter, AnswersEachVerbFromAnArchiveToo) {
  ASSERT_EQ(TakeTo(archive_, {}, GetParam()).status, 0);
  for (const auto& verb : kVerbs) {
    const Finished live = AskLive(verb, GetParam());
    const Finished replayed = ReplayFrom(archive_, verb);
    EXPECT_EQ(replayed.status, live.status) << verb.front() << replayed.err;
    EXPECT_EQ(replayed.out, live.out) << verb.front();
    EXPECT_EQ(replayed.err, live.err) << verb.front();
    EXPECT_EQ(ia_test::CountEntries(temporary_), 0);
  }
}

// All but where the PPD is.
TEST_P(SnapshotOfPrinter, HasTheFindingsOfThePrinter) {
  ASSERT_EQ(Take({}, GetParam()).status, 0);
  const auto findings = [](const Finished& run) {
    Json found = Json::array();
    const Json answer = Json::parse(run.out);
    for (const Json& finding : answer["findings"]) {
      if (finding["check"] != "queue") found.push_back(finding);
    }
    return found;
  };
  const std::vector<std::string> verb = {"doctor", "--format", "json"};
  EXPECT_EQ(findings(Replay(verb)), findings(AskLive(verb, GetParam())));
}

std::vector<std::string> Printers() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(IA_TEST_SOURCE "/examples")) {
    if (entry.is_directory()) names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

INSTANTIATE_TEST_SUITE_P(Samples, SnapshotOfPrinter, testing::ValuesIn(Printers()),
                         [](const auto& info) {
                           std::string name = info.param;
                           std::ranges::replace(name, '-', '_');
                           return name;
                         });

TEST_F(ToolSnapshot, HoldsThePpdTheDocumentsAndTheirChecksums) {
  const Finished run = Take();
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(ReadFile(folder_ + "/ppd/office-mfp.ppd"), ReadFile(ppd()));
  EXPECT_EQ(ReadFile(folder_ + "/device-info/Specid.xml"), ReadFile(Document("Specid.xml")));
  const Json list = List();
  EXPECT_EQ(list["snapshot_version"], 1);
  EXPECT_THAT(list["date"].get<std::string>(),
              testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z"));
  EXPECT_EQ(list["device_uri"], nullptr);
  EXPECT_EQ(list["model_code"], "RA-H5-MLT-JP");
  EXPECT_EQ(list["tool_version"], IA_TEST_VERSION);
  EXPECT_EQ(list["library_version"], IA_TEST_VERSION);
  EXPECT_EQ(list["queue"], "office-mfp");
  EXPECT_EQ(list["redacted"], false);
  EXPECT_EQ(list["files"].size(), 10U);
}

// Whoever gets a snapshot can check it without this tool.
TEST_F(ToolSnapshot, ChecksumsAreThoseOfSha256sum) {
  Take();
  const std::string sums = root_ / "sums";
  std::ofstream file(sums);
  const Json list = List();
  for (const Json& entry : list["files"]) {
    file << entry["sha256"].get<std::string>() << "  " << entry["name"].get<std::string>() << "\n";
  }
  file.close();
  Command command = ToolCommand({"/usr/bin/sha256sum", "--check", "--quiet", sums});
  command.folder = folder_;
  EXPECT_EQ(ia_test::RunProgram(command).status, 0);
}

TEST_F(ToolSnapshot, IsMadeOfAQueueOfTheEnvironmentsCups) {
  Command command = ToolCommand(
      {IA_TEST_TOOL, "snapshot", folder_, "--queue", "office-mfp", "--device-info", device_info()});
  command.environment.insert(command.environment.end(),
                             {{"CUPS_SERVERROOT", cups_root()}, {"CUPS_SERVER", "localhost"}});
  EXPECT_EQ(ia_test::RunProgram(command).status, 0);
  EXPECT_EQ(Replay().out, RunQuery().out);
}

TEST_F(ToolSnapshot, OfAPrinterWithoutSomeDocumentAnswersLikeIt) {
  RemoveDocument("Accessories.xml");
  const Finished run = Take();
  EXPECT_EQ(run.status, kIncomplete);
  EXPECT_THAT(run.err, HasSubstr("warning: document " + Document("Accessories.xml")));
  EXPECT_EQ(Replay().status, 0);
  EXPECT_EQ(Replay().out, RunQuery().out);
  EXPECT_EQ(TakeTo(archive_).status, kIncomplete);
  EXPECT_EQ(ReplayFrom(archive_).out, RunQuery().out);
}

TEST_F(ToolSnapshot, ArchiveIsNamedAsItWasGiven) {
  RemoveDocument("Accessories.xml");
  TakeTo(archive_);
  const std::string document =
      "document " + archive_ + "/device-info/Accessories.xml: No such file";
  EXPECT_THAT(ReplayFrom(archive_).err, HasSubstr(document));
  EXPECT_THAT(ReplayFrom(archive_, {"doctor"}).out, HasSubstr(document));
  EXPECT_THAT(ReplayFrom(archive_, {"doctor", "--format", "json"}).out, HasSubstr(document));
}

TEST_F(ToolSnapshot, MayBePartialWhereThatIsAccepted) {
  RemoveDocumentsBut("Specid.xml");
  const Finished run = Take({"--partial"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(Lines(run.err).size(), 8U);
  EXPECT_EQ(List()["files"].size(), 2U);
}

TEST_F(ToolSnapshot, OfNothingIsAFailure) {
  RemoveDocumentsBut("");
  for (const std::string& path : {folder_, archive_}) {
    for (const std::string option : {"--quiet", "--partial"}) {
      const Finished run = TakeTo(path, {option});
      EXPECT_EQ(run.status, 5);
      EXPECT_THAT(run.err, HasSubstr("error: document directory " + device_info() +
                                     ": no document can be read, so there is nothing to save"));
      EXPECT_FALSE(std::filesystem::exists(path));
    }
  }
}

TEST_F(ToolSnapshot, OfAnOlderVersionIsRead) {
  Take();
  Json list = List();
  for (const char* const key : {"date", "device_uri", "model_code", "library_version"}) {
    list.erase(key);
  }
  WriteList(list);
  EXPECT_EQ(Replay().out, RunQuery().out);
}

TEST_F(ToolSnapshot, HasTheDeviceUriWithoutCredentials) {
  root_.Write("printer/printers.conf",
              "<DefaultPrinter office-mfp>\nDeviceURI ipp://me:se@cret@[fd00::1]:631/a@b\n"
              "</DefaultPrinter>\n<Printer other>\nDeviceURI socket://other\n</Printer>\n");
  Take();
  EXPECT_EQ(List()["device_uri"], "ipp://[fd00::1]:631/a@b");
}

// Archives ---------------------------------------------------------------------------------------

TEST_F(ToolSnapshot, ArchiveHasTheFilesOfTheFolder) {
  Take();
  EXPECT_EQ(TakeTo(archive_).out, "");
  const Finished run = RunShell(
      "gzip -t kept.tar.gz; mkdir unpacked; tar -xzf kept.tar.gz -C unpacked;"
      "diff -r -x snapshot.json kept unpacked; ls -A unpacked");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(Lines(run.out), Lines("device-info\nppd\nsnapshot.json\n"));
}

TEST_F(ToolSnapshot, ArchiveCanHaveAShortSuffix) {
  EXPECT_EQ(TakeTo(root_ / "kept.tgz").err, "");
  EXPECT_TRUE(std::filesystem::is_regular_file(root_ / "kept.tgz"));
}

TEST_F(ToolSnapshot, ArchiveOfGnuTarIsRead) {
  Take();
  for (const std::string format : {"gnu", "posix", "ustar"}) {
    const Finished run =
        RunShell("cd kept; find * -type f | tar --format=" + format + " -czf ../kept.tar.gz -T -");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(ReplayFrom(archive_).out, RunQuery().out) << format;
  }
}

TEST_F(ToolSnapshot, ArchiveIsForTheOwnersEyes) {
  TakeTo(archive_);
  EXPECT_EQ(std::filesystem::status(archive_).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(ToolSnapshot, LeavesAnExistingFileAlone) {
  for (const std::string& path : {folder_, archive_}) {
    std::filesystem::create_symlink("nowhere", path);
    ExpectFailure(TakeTo(path), kSnapshotFailure, HasSubstr("exists already"));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
  }
}

TEST_F(ToolSnapshot, LeavesNothingWhereItCannotBeWritten) {
  root_.Write("file", "");
  for (const std::string name : {"file/kept", "file/kept.tar.gz"}) {
    ExpectFailure(TakeTo(root_ / name), kSnapshotFailure, HasSubstr("snapshot " + root_.path()));
  }
  const Finished run =
      RunShell("mkdir place; cd place; ulimit -f 1; trap '' XFSZ; " + std::string(IA_TEST_TOOL) +
               " snapshot x.tar.gz --queue office-mfp --cups-root ../printer "
               "--device-info ../printer/device-info; ls -A");
  EXPECT_THAT(run.err, HasSubstr("File too large"));
  EXPECT_EQ(run.out, "");
}

TEST_F(ToolSnapshot, ArchiveWithoutATemporaryFolderIsNotRead) {
  TakeTo(archive_);
  Command command = ToolCommand(
      {IA_TEST_TOOL, "query", "--snapshot", archive_, "--driver-folder", IA_TEST_DRIVER_FOLDER});
  std::ranges::replace_if(
      command.environment, [](const auto& variable) { return variable.first == "TMPDIR"; },
      std::pair<std::string, std::string>{"TMPDIR", root_ / "nowhere"});
  ExpectFailure(ia_test::RunProgram(command), kSnapshotFailure, HasSubstr("TMPDIR"));
}

TEST_F(ToolSnapshot, ArchivesAreCompared) {
  TakeTo(archive_);
  Take();
  EXPECT_EQ(RunTool({IA_TEST_TOOL, "diff", archive_, folder_, "--driver-folder",
                     IA_TEST_DRIVER_FOLDER, "--check"})
                .status,
            0);
}

TEST_F(ToolSnapshot, QueueNamesOfAnyLengthAndAlphabetAreArchived) {
  for (const std::string& name : {std::string(127, 'q'), std::string("B\xc3\xbcro")}) {
    std::filesystem::copy(ppd(), cups_root() + "/ppd/" + name + ".ppd");
    std::filesystem::remove(archive_);
    ASSERT_EQ(RunTool({IA_TEST_TOOL, "snapshot", archive_, "--queue", name, "--cups-root",
                       cups_root(), "--device-info", device_info()})
                  .err,
              "");
    EXPECT_EQ(ReplayFrom(archive_).out, RunQuery().out) << name;
  }
}

TEST_F(ToolSnapshot, LeavesAnExistingFolderAlone) {
  std::filesystem::create_directory(folder_);
  ExpectFailure(Take(), kSnapshotFailure, HasSubstr("exists already"));
  EXPECT_TRUE(std::filesystem::is_empty(folder_));
}

TEST_F(ToolSnapshot, IsForTheOwnersEyes) {
  Take();
  EXPECT_EQ(std::filesystem::status(folder_).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(ToolSnapshot, OfAQueueWithoutPpdIsNotMade) {
  std::filesystem::remove(ppd());
  ExpectFailure(Take(), 3, HasSubstr("cannot read PPD of queue"));
  EXPECT_FALSE(std::filesystem::exists(folder_));
}

TEST_F(ToolSnapshot, QueueNameThatLeadsElsewhereIsRefused) {
  std::vector<std::string> arguments = {IA_TEST_TOOL, "snapshot",      folder_,
                                        "--queue",    "../escape",     "--cups-root",
                                        cups_root(),  "--device-info", device_info()};
  ExpectFailure(RunTool(arguments), 3, HasSubstr("not the name of a queue"));
}

TEST_F(ToolSnapshot, TakesNoOtherPrinterBesideIt) {
  Take();
  for (const char* const option : {"--queue", "--cups-root", "--device-info"}) {
    ExpectFailure(Replay({"query", option, "x"}), 2, HasSubstr("excludes"));
  }
}

// Redaction --------------------------------------------------------------------------------------

TEST_F(ToolSnapshot, RedactedOneHasNeitherDeviceNameNorLineIds) {
  WriteDocument("Devicename.xml",
                "<?xml version=\"1.0\"?>\n<!-- SECRET --><document version=\"1\">"
                "<!-- SECRET --><string key=\"devicename\">SECRET</string>"
                "<string key=\"devicename\">SECRET</string></document>\n");
  const Finished run = Take({"--redact"});
  EXPECT_EQ(run.status, 0);
  EXPECT_THAT(Lines(run.out), testing::IsSupersetOf({"device name: replaced in 2 places",
                                                     "fax line id: replaced in 3 places"}));
  EXPECT_EQ(List()["redacted"], true);
  EXPECT_THAT(ReadFile(folder_ + "/device-info/Devicename.xml"), Not(HasSubstr("SECRET")));
  EXPECT_THAT(ReadFile(folder_ + "/device-info/Fax_line_list.xml"),
              AllOf(Not(HasSubstr("\"id\"")), HasSubstr("\"id_support\"")));
  EXPECT_EQ(Replay().out, RunQuery().out);
}

TEST_F(ToolSnapshot, DocumentOfAnotherFormatCannotBeRedacted) {
  WriteDocument("Devicename.xml", "devicename=SECRET\n");
  ExpectFailure(Take({"--redact"}), 5, HasSubstr("Devicename.xml: cannot be redacted"));
  EXPECT_FALSE(std::filesystem::exists(folder_));
  WriteDocument("Devicename.xml", "<?xml version=\"1.0\"?><other>SECRET</other>");
  ExpectFailure(Take({"--redact"}), 5, HasSubstr("cannot be redacted"));
}

// Damage -----------------------------------------------------------------------------------------

struct Damage {
  const char* name;
  std::function<void(const std::string& folder)> make;
  const char* message;
};

void PrintTo(const Damage& damage, std::ostream* out) { *out << damage.name; }

void ChangeList(const std::string& folder, const std::function<void(Json&)>& change) {
  Json list = Json::parse(ReadFile(folder + "/snapshot.json"));
  change(list);
  std::ofstream(folder + "/snapshot.json") << list.dump();
}

void Append(const std::string& path) { std::ofstream(path, std::ios::app) << "\n"; }

const Damage kDamages[] = {
    {"NoFolder", [](const std::string& folder) { std::filesystem::remove_all(folder); },
     "No such file"},
    {"NoList",
     [](const std::string& folder) { std::filesystem::remove(folder + "/snapshot.json"); },
     "snapshot.json: No such file"},
    {"ListIsNoJson",
     [](const std::string& folder) { std::ofstream(folder + "/snapshot.json") << "{"; },
     "is no list of a snapshot"},
    {"ListIsAnArray",
     [](const std::string& folder) { std::ofstream(folder + "/snapshot.json") << "[]"; },
     "is no list of a snapshot"},
    {"VersionIsNoNumber",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["snapshot_version"] = "1"; });
     },
     "is no list of a snapshot"},
    {"VersionIsZero",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["snapshot_version"] = 0; });
     },
     "is no list of a snapshot"},
    {"NewerVersion",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list = {{"snapshot_version", 2}}; });
     },
     "is of version 2, made by a newer info-analyze; this one reads versions up to 1"},
    {"NoQueue",
     [](const std::string& folder) { ChangeList(folder, [](Json& list) { list.erase("queue"); }); },
     "\"queue\" is missing"},
    {"NoFiles",
     [](const std::string& folder) { ChangeList(folder, [](Json& list) { list["files"] = 3; }); },
     "\"files\" is missing"},
    {"FileWithoutName",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["files"][0] = "text"; });
     },
     "\"name\" is missing"},
    {"FileWithoutChecksum",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["files"][0].erase("sha256"); });
     },
     "\"sha256\" is missing"},
    {"FileElsewhere",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["files"][0]["name"] = "../../etc/passwd"; });
     },
     "names an unexpected file: ../../etc/passwd"},
    {"PpdIsNotListed",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["files"].erase(9); });
     },
     "has no PPD"},
    {"ChangedPpd", [](const std::string& folder) { Append(folder + "/ppd/office-mfp.ppd"); },
     "ppd/office-mfp.ppd: is damaged, its checksum is different"},
    {"ChangedDocument",
     [](const std::string& folder) { Append(folder + "/device-info/Bin_list.xml"); },
     "device-info/Bin_list.xml: is damaged"},
    {"NoDocument",
     [](const std::string& folder) {
       std::filesystem::remove(folder + "/device-info/Bin_list.xml");
     },
     "device-info/Bin_list.xml: No such file"},
    {"DocumentIsAFifo",
     [](const std::string& folder) {
       std::filesystem::remove(folder + "/device-info/Bin_list.xml");
       mkfifo((folder + "/device-info/Bin_list.xml").c_str(), 0600);
     },
     "device-info/Bin_list.xml: not a regular file"},
    {"DocumentThatWasNotThere",
     [](const std::string& folder) {
       ChangeList(folder, [](Json& list) { list["files"].erase(0); });
     },
     "device-info/Accessories.xml: was added after the snapshot was made"},
};

class DamagedSnapshot : public ToolSnapshot, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedSnapshot, IsRefusedAndNamed) {
  ASSERT_EQ(Take().status, 0);
  GetParam().make(folder_);
  for (const char* const verb : {"query", "doctor"}) {
    ExpectFailure(Replay({verb}), kSnapshotFailure, HasSubstr(GetParam().message));
  }
}

INSTANTIATE_TEST_SUITE_P(Each, DamagedSnapshot, testing::ValuesIn(kDamages),
                         [](const auto& info) { return info.param.name; });

TEST_F(ToolSnapshot, QueueOfAListThatLeadsElsewhereIsRefused) {
  Take();
  Json list = List();
  list["queue"] = "../../other";
  WriteList(list);
  ExpectFailure(Replay(), 3, HasSubstr("not the name of a queue"));
}

}  // namespace
