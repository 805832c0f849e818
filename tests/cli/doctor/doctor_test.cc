// The doctor on a printer that is well but for one fault, fault by fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "tests/cli/sample_printer.h"
#include "tests/support/entry_points.h"

namespace {

using ia_test::Finished;
using ia_test::Lines;
using ia_test::ReadFile;
using ia_test::SamplePrinter;
using Json = nlohmann::ordered_json;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr int kWarnings = 7;
constexpr int kFailures = 8;

std::string DocumentOf(const std::string& values) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">" + values +
         "</document>\n";
}

class DoctorSetUp : public SamplePrinter {
 public:
  DoctorSetUp() { std::filesystem::create_directory_symlink(IA_TEST_DRIVER_FOLDER, driver()); }

  std::string driver() const { return root_ / "driver"; }
  // A driver folder of our own, with this file for a communication library.
  void WriteLibrary(const std::string& text) const {
    std::filesystem::remove(driver());
    root_.Write("driver/Bidi/libmqpd_util.so", text);
  }
  void UseDriver(const std::string& folder) const {
    std::filesystem::remove(driver());
    std::filesystem::create_directory_symlink(folder, driver());
  }
  void InPpd(const std::string& old_text, const std::string& new_text) const {
    ReplaceInPpd(old_text, new_text);
  }
  void AddToPpd(const std::string& line) const {
    InPpd("*QVAnlz_DriverName", line + "\n*QVAnlz_DriverName");
  }
  void InDocument(const std::string& name, const std::string& old_text,
                  const std::string& new_text) const {
    std::string text = ReadFile(Document(name));
    const std::size_t at = text.find(old_text);
    ASSERT_NE(at, std::string::npos) << old_text;
    WriteDocument(name, text.replace(at, old_text.size(), new_text));
  }
  void Replace(const std::string& name, const std::function<void(const std::string&)>& make) const {
    RemoveDocument(name);
    make(Document(name));
  }
  using SamplePrinter::RemoveDocument;
  using SamplePrinter::WriteDocument;
  using SamplePrinter::WritePpd;
  std::string Folder() const { return root_.path(); }

  Finished Examine(const std::vector<std::string>& more = {}) const {
    return RunTool(Arguments(more));
  }
  std::vector<std::string> Arguments(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = QueryArguments();
    arguments[1] = "doctor";
    *(std::ranges::find(arguments, IA_TEST_DRIVER_FOLDER)) = driver();
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

 private:
  void TestBody() override {}
};

struct Fault {
  const char* name;
  std::function<void(const DoctorSetUp&)> make;
  int status;
  const char* sentence;  // part of what to fix first
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

std::string ManyItems() {
  std::string lines;
  for (int line = 0; line < 52; ++line) {
    lines += "*QV_Prot_MediaType_" + std::to_string(line) + ": \"";
    for (int item = 0; item < 20; ++item) {
      lines += "m" + std::to_string(line * 20 + item) + ":9,";
    }
    lines.back() = '"';
    lines += "\n";
  }
  return lines;
}

const Fault kFaults[] = {
    // The queue and its PPD.
    {"NoCupsRoot",
     [](const DoctorSetUp& it) { std::filesystem::remove_all(it.Folder() + "/printer/ppd"); },
     kFailures, "cannot read PPD of queue \"office-mfp\": "},
    {"NoPpdOfTheQueue",
     [](const DoctorSetUp& it) {
       std::filesystem::rename(it.Folder() + "/printer/ppd/office-mfp.ppd",
                               it.Folder() + "/printer/ppd/other.ppd");
     },
     kFailures, "ppd/office-mfp.ppd: No such file or directory"},
    {"EmptyPpd", [](const DoctorSetUp& it) { it.WritePpd(""); }, kFailures,
     "PPD of queue \"office-mfp\": it has no option lines of the driver"},
    {"GenericPpd",
     [](const DoctorSetUp& it) { it.WritePpd("*PPD-Adobe: \"4.3\"\n*ModelName: \"Any\"\n"); },
     kFailures, "PPD of queue \"office-mfp\": it has no option lines of the driver"},
    {"PpdWithoutItsHead", [](const DoctorSetUp& it) { it.InPpd("*PPD-Adobe:", "*PPD-Other:"); },
     kWarnings, "does not begin with \"*PPD-Adobe:\""},
    {"NoModelCode",
     [](const DoctorSetUp& it) { it.InPpd("*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n", ""); },
     kWarnings, "the PPD has no model code"},
    {"EmptyModelCode", [](const DoctorSetUp& it) { it.InPpd("\"RA-H5-MLT-JP\"", "\"\""); },
     kWarnings, "the PPD has no model code"},
    {"TwoModelCodes", [](const DoctorSetUp& it) { it.AddToPpd("*QVAnlz_DriverName: \"RA-P9\""); },
     kWarnings, "2 lines of QVAnlz_DriverName; only the last one is used"},
    {"LineThatIsTooLong",
     [](const DoctorSetUp& it) { it.AddToPpd("*QVLong: \"" + std::string(300, 'x') + "\""); },
     kWarnings, "the line that starts with *QVLong: \"xxx"},
    {"BlockThatIsNotClosed",
     [](const DoctorSetUp& it) {
       std::string text = ReadFile(it.Folder() + "/printer/ppd/office-mfp.ppd");
       const std::size_t last = text.rfind("*CloseUI");
       it.WritePpd(text.erase(last, text.find('\n', last) - last));
     },
     kWarnings, "a block of the PPD is not closed"},
    // Flag texts.
    {"NoFinisherNames",
     [](const DoctorSetUp& it) { it.InPpd("*QVAnlz_FinisherName:", "*QVOther:"); }, kWarnings,
     "the PPD has no QVAnlz_FinisherName: no finisher is recognised by its name"},
    {"NoMediaTypes", [](const DoctorSetUp& it) { it.InPpd("*QV_Prot_MediaType:", "*QVOther:"); },
     kWarnings, "the PPD has no QV_Prot_MediaType: every tray is reported to hold plain paper"},
    {"NoSlotKeywords",
     [](const DoctorSetUp& it) { it.InPpd("*QVAnlz_SlotMediaInfo:", "*QVOther:"); }, kWarnings,
     "the PPD has no QVAnlz_SlotMediaInfo"},
    {"NoSlotsOfTrays", [](const DoctorSetUp& it) { it.InPpd("*QVAnlz_InputTray:", "*QVOther:"); },
     kWarnings, "the PPD has no QVAnlz_InputTray"},
    {"NoSources", [](const DoctorSetUp& it) { it.InPpd("*QVAnlz_SrcOption:", "*QVOther:"); },
     kWarnings, "the PPD has no QVAnlz_SrcOption"},
    {"OverFullFlagText", [](const DoctorSetUp& it) { it.AddToPpd(ManyItems()); }, kWarnings,
     "QV_Prot_MediaType is over-full: the item "},
    {"ItemTwice", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", "Heavy1:2,Heavy1:12,"); },
     kWarnings, "QV_Prot_MediaType: the item Heavy1 appears 2 times; only the value 12 is used"},
    {"ItemWithoutValue", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", "Heavy1,"); }, kWarnings,
     "the item \"Heavy1\" has no value"},
    {"EmptyItem", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", "Heavy1:2,,"); }, kWarnings,
     "the item \"\" is empty"},
    {"ItemOfColons", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", "Heavy1:2,:::,"); },
     kWarnings, "the item \":::\" is colons only"},
    {"ItemThatBeginsWithAColon", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", ":Heavy1:2,"); },
     kWarnings, "the item \":Heavy1:2\" begins with a colon"},
    {"ItemWithBlanks", [](const DoctorSetUp& it) { it.InPpd(",Cas1:101", ", Cas1:101"); },
     kWarnings, "the item \" Cas1:101\" has blanks around its name"},
    {"ValueThatIsNoNumber", [](const DoctorSetUp& it) { it.InPpd("Heavy1:2,", "Heavy1:two,"); },
     kWarnings, "the item \"Heavy1:two\" has a value that is no number"},
    {"SlotKeywordThatIsNoOption",
     [](const DoctorSetUp& it) { it.InPpd("Cas1:QVCas1MediaType", "Cas1:QVCas1Paper"); }, kWarnings,
     "the slot Cas1 has the keyword QVCas1Paper, which is no option of the PPD"},
    {"FinisherThatIsNoChoice", [](const DoctorSetUp& it) { it.InPpd("W1:BKFINW1", "W1:BKFINW9"); },
     kWarnings, "Vorel Booklet Finisher-W1 gives BKFINW9, which is no choice of QVFinisher"},
    {"LevelThatIsNoNumber",
     [](const DoctorSetUp& it) { it.InPpd("*QVSpecID 0100/", "*QVSpecID old/"); }, kWarnings,
     "QVSpecID: the choice \"old\" is no hexadecimal number"},
    // The driver folder and the communication library.
    {"NoDriverFolder", [](const DoctorSetUp& it) { std::filesystem::remove(it.driver()); },
     kFailures, "driver: No such file or directory"},
    {"DriverFolderIsAFile",
     [](const DoctorSetUp& it) {
       std::filesystem::remove(it.driver());
       std::ofstream(it.driver()) << "text";
     },
     kFailures, "driver: is no folder"},
    {"NoLibrary",
     [](const DoctorSetUp& it) {
       std::filesystem::remove(it.driver());
       std::filesystem::create_directory(it.driver());
     },
     kFailures, "libmqpd_util.so: No such file or directory"},
    {"LibraryIsAFolder",
     [](const DoctorSetUp& it) {
       std::filesystem::remove(it.driver());
       std::filesystem::create_directories(it.driver() + "/Bidi/libmqpd_util.so");
     },
     kFailures, "libmqpd_util.so: not a regular file"},
    {"LibraryIsNone", [](const DoctorSetUp& it) { it.WriteLibrary("this is no library\n"); },
     kFailures, "cannot be loaded: "},
    {"LibraryIsEmpty", [](const DoctorSetUp& it) { it.WriteLibrary(""); }, kFailures,
     "file too short"},
    {"LibraryNeedsAMissingLibrary",
     [](const DoctorSetUp& it) { it.UseDriver(IA_TEST_SUPPORT_BUILD "/unresolved"); }, kFailures,
     "undefined symbol"},
    // The documents.
    {"NoDocumentDirectory",
     [](const DoctorSetUp& it) {
       std::filesystem::remove_all(it.Folder() + "/printer/device-info");
     },
     kFailures, "device-info: No such file or directory"},
    {"DocumentDirectoryIsAFile",
     [](const DoctorSetUp& it) {
       std::filesystem::remove_all(it.Folder() + "/printer/device-info");
       std::ofstream(it.Folder() + "/printer/device-info") << "text";
     },
     kFailures, "device-info: not a directory"},
    {"NoDocument", [](const DoctorSetUp& it) { it.RemoveDocument("Tray_list.xml"); }, kFailures,
     "Tray_list.xml: No such file or directory"},
    {"DocumentIsAFolder",
     [](const DoctorSetUp& it) {
       it.Replace("Bin_list.xml",
                  [](const std::string& path) { std::filesystem::create_directory(path); });
     },
     kFailures, "Bin_list.xml: not a regular file"},
    {"DocumentIsAFifo",
     [](const DoctorSetUp& it) {
       it.Replace("Bin_list.xml", [](const std::string& path) { mkfifo(path.c_str(), 0600); });
     },
     kFailures, "Bin_list.xml: not a regular file"},
    {"DocumentLeadsNowhere",
     [](const DoctorSetUp& it) {
       it.Replace("Specid.xml", [](const std::string& path) {
         std::filesystem::create_symlink("/nowhere/at/all", path);
       });
     },
     kFailures, "Specid.xml: No such file or directory"},
    {"DocumentIsTooLarge",
     [](const DoctorSetUp& it) {
       it.Replace("Functions.xml", [](const std::string& path) {
         std::ofstream(path) << "x";
         std::filesystem::resize_file(path, (16U << 20) + 1);
       });
     },
     kFailures, "Functions.xml: larger than 16 MiB"},
    {"DocumentIsEmpty", [](const DoctorSetUp& it) { it.WriteDocument("Devicename.xml", ""); },
     kFailures, "Devicename.xml: is empty"},
    {"DocumentIsCutOff",
     [](const DoctorSetUp& it) { it.InDocument("Resolutions.xml", "</document>", ""); }, kFailures,
     "Resolutions.xml: not a document that the communication library reads"},
    // Keys and values.
    {"KeyIsNoNumber",
     [](const DoctorSetUp& it) {
       it.InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "<long key=\"hd\">x</long>");
     },
     kWarnings, "Accessories.xml hd cannot be read as a number"},
    {"KeyHasTheWrongType",
     [](const DoctorSetUp& it) {
       it.InDocument("Functions.xml", "<long key=\"duplex\">1</long>",
                     "<string key=\"duplex\">1</string>");
     },
     kWarnings, "Functions.xml duplex has the wrong type; expected a number"},
    {"KeyOfAnItemHasTheWrongType",
     [](const DoctorSetUp& it) {
       it.InDocument("Finisher_list.xml", "<string key=\"name\">Vorel Booklet Finisher-W1</string>",
                     "<binary key=\"name\">AAAA</binary>");
     },
     kWarnings, "Finisher_list.xml list[1] name has the wrong type; expected a text"},
    {"ElementHasTheWrongType",
     [](const DoctorSetUp& it) {
       it.InDocument("Bin_list.xml", "<long>119</long>", "<string>119</string>");
     },
     kWarnings, "Bin_list.xml list[0] alias: the element 0 has the wrong type"},
    {"ListHasTheWrongType",
     [](const DoctorSetUp& it) {
       it.WriteDocument("Tray_list.xml", DocumentOf("<long key=\"list\">3</long>"));
     },
     kWarnings, "Tray_list.xml list has the wrong type; expected dictionaries"},
    {"ValueThatIsNoChoice",
     [](const DoctorSetUp& it) { it.InPpd("*QVPuncher PUNU24/2 and 4 holes: \"\"\n", ""); },
     kWarnings, "QVPuncher=PUNU24: the PPD has no such choice"},
};

class Doctor : public DoctorSetUp {};
class DoctorOfFault : public Doctor, public testing::WithParamInterface<Fault> {};

TEST_P(DoctorOfFault, NamesItFirst) {
  GetParam().make(*this);
  const Finished run = Examine();
  EXPECT_EQ(run.status, GetParam().status) << run.out;
  EXPECT_EQ(run.err, "");
  EXPECT_THAT(Lines(run.out).back(),
              AllOf(StartsWith("fix first: "), HasSubstr(GetParam().sentence)))
      << run.out;
}

// The same in JSON, with what is to be done.
TEST_P(DoctorOfFault, PrintsHowToFixIt) {
  GetParam().make(*this);
  const Json json = Json::parse(Examine({"--format", "json"}).out);
  EXPECT_EQ(json["result"], GetParam().status == kFailures ? "failure" : "warning");
  EXPECT_THAT(json["fix_first"].get<std::string>(), HasSubstr(GetParam().sentence));
  for (const Json& finding : json["findings"]) {
    const bool is_bad = finding["level"] == "warning" || finding["level"] == "failure";
    EXPECT_EQ(finding["fix"].is_string(), is_bad) << finding;
  }
}

INSTANTIATE_TEST_SUITE_P(Prepared, DoctorOfFault, testing::ValuesIn(kFaults),
                         [](const auto& info) { return info.param.name; });

TEST_F(Doctor, FindsNothingWrongWithAPrinterThatIsWell) {
  const Finished run = Examine();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(Lines(run.out), Contains("0 failures, 0 warnings"));
  EXPECT_THAT(run.out, Not(HasSubstr("fix")));
  EXPECT_EQ(Json::parse(Examine({"--format", "json"}).out)["result"], "ok");
}

TEST_F(Doctor, NamesEachEntryPointThatIsMissing) {
  for (const char* const name : ia_test::kEntryPoints) {
    UseDriver(IA_TEST_SUPPORT_BUILD "/lacking/" + std::string(name));
    const Finished run = Examine();
    EXPECT_EQ(run.status, kFailures) << name;
    EXPECT_THAT(Lines(run.out).back(),
                testing::EndsWith(std::string(" lacks the entry point ") + name));
  }
}

TEST_F(Doctor, ReportsEveryFaultAtOnce) {
  RemoveDocument("Tray_list.xml");
  InPpd("*QVAnlz_DriverName: \"RA-H5-MLT-JP\"\n", "");
  WriteLibrary("none");
  const Finished run = Examine();
  EXPECT_EQ(run.status, kFailures);
  EXPECT_THAT(run.out, AllOf(HasSubstr("no model code"), HasSubstr("cannot be loaded"),
                             HasSubstr("Tray_list.xml: No such file")));
  EXPECT_THAT(Lines(run.out).back(), HasSubstr("cannot be loaded")) << "failures before warnings";
}

// The warning that a text is missing would be noise where no handler reads it.
TEST_F(Doctor, TextThatNoHandlerOfTheModelReadsMayBeMissing) {
  InPpd("RA-H5-MLT-JP", "RA-X6");
  InPpd("*QVAnlz_SrcOption:", "*QVOther:");
  EXPECT_THAT(Lines(Examine().out),
              Contains(AllOf(StartsWith("note"), HasSubstr("no QVAnlz_SrcOption"))));
}

// What a device does not have, it does not report.
TEST_F(Doctor, KeysThatTheDeviceDoesNotReportAreNotes) {
  InDocument("Accessories.xml", "<long key=\"hd\">1</long>", "");
  InDocument("Functions.xml", "<long key=\"duplex\">1</long>", "");
  InDocument("Functions.xml", "<long key=\"management\">1</long>", "");
  InDocument("Tray_list.xml", "<long key=\"type\">6</long>", "");
  const Finished run = Examine();
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(Lines(run.out),
              AllOf(Contains("note     keys       the device does not report Accessories.xml hd"),
                    Contains(AllOf(StartsWith("note"), HasSubstr("report Functions.xml "),
                                   HasSubstr("; the same for "), HasSubstr("duplex"),
                                   HasSubstr("management"))),
                    Contains("note     keys       the device does not report Tray_list.xml "
                             "list[5] type")));
}

TEST_F(Doctor, QueryThatFailsIsNamed) {
  RemoveDocument("Devicename.xml");
  EXPECT_EQ(RunQuery().status, 5);
  EXPECT_THAT(Examine().out, HasSubstr("the query fails with result -1"));
}

// Each document is missing in turn: doctor and query agree.
TEST_F(Doctor, QuerySucceedsForTheDoctorWhenItDoes) {
  for (const char* const name :
       {"Accessories.xml", "Functions.xml", "Specid.xml", "Finisher_list.xml", "Bin_list.xml",
        "Tray_list.xml", "Resolutions.xml", "Fax_line_list.xml", "Devicename.xml"}) {
    const std::string document = ReadFile(Document(name));
    RemoveDocument(name);
    const Finished query = RunQuery();
    const auto options = std::to_string(Lines(query.out).size());
    EXPECT_THAT(Examine().out, HasSubstr(query.status == 0 ? "the query returns " + options + " "
                                                           : "the query fails"))
        << name;
    WriteDocument(name, document);
  }
}

TEST_F(Doctor, SumsUpFindingsThatRepeat) {
  InPpd("Heavy1:2,", "Heavy1:2,a,b,c,d,e,f,g,h,i,j,");
  const Finished run = Examine();
  EXPECT_THAT(run.out,
              HasSubstr("QV_Prot_MediaType: the item \"a\" has no value; the same for "
                        "\"b\", \"c\", \"d\", \"e\", \"f\", \"g\", \"h\", \"i\" and 1 more"));
  EXPECT_THAT(run.out, HasSubstr("0 failures, 1 warning\n"));
}

TEST_F(Doctor, ReportsThatItExaminesASnapshot) {
  const std::string saved = root_ / "saved";
  ASSERT_EQ(RunTool({IA_TEST_TOOL, "snapshot", saved, "--queue", "office-mfp", "--cups-root",
                     cups_root(), "--device-info", device_info()})
                .status,
            0);
  const Finished run = RunTool(
      {IA_TEST_TOOL, "doctor", "--snapshot", saved, "--driver-folder", IA_TEST_DRIVER_FOLDER});
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_THAT(Lines(run.out),
              AllOf(Contains(HasSubstr("bytes in the snapshot " + saved)),
                    Contains(AllOf(StartsWith("note"), HasSubstr("this is a snapshot")))));
  EXPECT_THAT(Examine().out, Not(HasSubstr("this is a snapshot")));
}

TEST_F(Doctor, FindsNoFaultInTheSamplePrinters) {
  for (const auto& entry : std::filesystem::directory_iterator(IA_TEST_SOURCE "/examples")) {
    if (!entry.is_directory()) continue;
    const Finished run = RunTool(
        {IA_TEST_TOOL, "doctor", "--queue", entry.path().filename(), "--cups-root", entry.path(),
         "--device-info", entry.path() / "device-info", "--driver-folder", IA_TEST_DRIVER_FOLDER});
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_THAT(Lines(run.out), Contains("0 failures, 0 warnings")) << entry.path();
  }
}

// Communication libraries at fault ----------------------------------------------------------------

TEST_F(Doctor, NamesAllMissingEntryPointsAtOnce) {
  UseDriver(IA_TEST_SUPPORT_BUILD "/foreign");
  const Finished run = Examine();
  EXPECT_THAT(run.out, HasSubstr(" lacks all 36 entry points: it is a different library\n"));
  EXPECT_THAT(Lines(run.out), Contains("1 failure, 0 warnings"));
}

TEST_F(Doctor, BlamesAStubForTheDocumentsThatItDoesNotRead) {
  UseDriver(IA_TEST_SUPPORT_BUILD "/faulty/stub");
  const Finished run = Examine();
  EXPECT_EQ(run.status, kFailures);
  EXPECT_THAT(Lines(run.out).back(),
              HasSubstr("the communication library reads none of the 9 documents in " +
                        device_info() + ": it is a stub, or of a different driver"));
  EXPECT_THAT(run.out, Not(HasSubstr("failure  documents")));
  EXPECT_THAT(run.out, Not(HasSubstr("fetch the documents again")));
}

struct Misbehaviour {
  const char* library;
  const char* sentence;
};

TEST_F(Doctor, OutlivesALibraryThatEndsOrStopsTheProcess) {
  for (const auto& [library, sentence] : {
           Misbehaviour{"crash_when_loaded", "ends the process with SIGSEGV while it is loaded"},
           Misbehaviour{"hang_when_loaded", "does not return within 1 s while it is loaded"},
           Misbehaviour{"exit_when_loaded", "ends the process with status 0 while it is loaded"},
           Misbehaviour{"crash_when_called",
                        "ends the process with SIGSEGV while it reads the "
                        "document"},
           Misbehaviour{"hang_when_called",
                        "does not return within 1 s while it reads the "
                        "document"},
           Misbehaviour{"crash_when_unloaded",
                        "ends the process with SIGSEGV while it is "
                        "unloaded"},
       }) {
    UseDriver(IA_TEST_SUPPORT_BUILD "/faulty/" + std::string(library));
    const Finished run = Examine({"--timeout", "1"});
    EXPECT_EQ(run.status, kFailures) << library;
    EXPECT_EQ(run.err, "") << library;
    EXPECT_THAT(Lines(run.out).back(), HasSubstr(sentence)) << library;
    EXPECT_THAT(run.out, HasSubstr("the contents of the documents are not checked")) << library;
    EXPECT_EQ(Json::parse(Examine({"--timeout", "1", "--format", "json"}).out)["failures"], 1);
  }
}

TEST_F(Doctor, WarnsOfAUnitThatNothingKnowsAndNamesTheNearest) {
  WriteDocument("Finisher_list.xml",
                DocumentOf("<dict key=\"list\"><string key=\"name\">Vorel Bookled Finisher-W1"
                           "</string></dict>"));
  const Finished run = Examine();
  EXPECT_EQ(run.status, kWarnings) << run.out;
  EXPECT_THAT(run.out, HasSubstr("Finisher_list.xml list[0] name = \"Vorel Bookled Finisher-W1\": "
                                 "not in QVAnlz_FinisherName; the nearest known value is "
                                 "\"Vorel Booklet Finisher-W1\""));
}

TEST_F(Doctor, NamesWhatTheUserMayNotRead) {
  std::filesystem::permissions(Document("Tray_list.xml"), std::filesystem::perms::none);
  EXPECT_THAT(RunUnprivileged(Arguments()).out,
              testing::ContainsRegex("Tray_list.xml: Permission denied\n"
                                     " +fix: run as a user who may read it"));
  std::filesystem::permissions(device_info(), std::filesystem::perms::none);
  const std::string out = RunUnprivileged(Arguments()).out;
  EXPECT_THAT(out, HasSubstr("document directory " + device_info() + ": Permission denied"));
  EXPECT_THAT(out, Not(HasSubstr("Tray_list.xml")));
  std::filesystem::permissions(device_info(), std::filesystem::perms::owner_all);
}

TEST_F(Doctor, ListsMayBeEmpty) {
  for (const char* const name : {"Finisher_list.xml", "Fax_line_list.xml", "Bin_list.xml"}) {
    WriteDocument(name, DocumentOf(""));
  }
  const Finished run = Examine();
  EXPECT_EQ(run.status, 0) << run.out;
}

TEST_F(Doctor, HostileTextsDoNotReachTheTerminal) {
  InPpd("Heavy1:2,", "Heavy\x1b[31m\xff,");
  const Finished run = Examine();
  EXPECT_THAT(run.out, AllOf(HasSubstr("Heavy\\x1b[31m"), Not(HasSubstr("\x1b"))));
  EXPECT_THAT(Examine({"--format", "json"}).out, Not(HasSubstr("\x1b")));
}

}  // namespace
