#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/analyzer.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/option_lists.h"
#include "tests/support/print_queues.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

constexpr auto kFiles = std::to_array<const char*>(
    {"Accessories.xml", "Functions.xml", "Specid.xml", "Finisher_list.xml", "Bin_list.xml",
     "Tray_list.xml", "Resolutions.xml", "Fax_line_list.xml", "Devicename.xml"});
constexpr std::size_t kDevicename = 8;

using Documents = std::bitset<kFiles.size()>;
const Documents kAllDocuments(0x1FF);

// The handlers in their order. A handler runs when the document at its own place in that order is
// loaded, whichever document it reads; without the one that it reads it fails.
struct Handler {
  std::size_t guard;
  std::size_t document;
  Entries entries;
};

const std::vector<Handler>& Handlers() {
  static const std::vector<Handler> handlers = {
      {0, 0, {{"QVHardDisk", "True"}, {"QVTotalMemSize", "256"}}},
      {1,
       1,
       {{"QVDupUnit", "True"},
        {"QVUseJobAccount", "False"},
        {"QVEnableTrustPrint", "True"},
        {"QVUseSecuredPrint", "False"},
        {"QVUseCSModeJobAccount", "mode2"},
        {"QVUseCSModeSecured", "mode1"},
        {"QVUseCSModeFCode", "mode1"},
        {"QVUseUsrManagement", "False"}}},
      {2, 2, {{"QVSpecID", "0123"}}},
      {3, 2, {{"QVPlatformVersion", "0200"}}},
      {7, 6, {{"QVEnableQuick", "True"}, {"QVEnableFine", "False"}, {"QVEnableSuperFine", "True"}}},
  };
  return handlers;
}

// What a query answers once its documents are loaded.
struct Outcome {
  std::int32_t result = 0;
  Entries entries = {};
};

Outcome RunHandlers(const Documents& loaded) {
  Outcome outcome;
  for (const Handler& handler : Handlers()) {
    if (!loaded[handler.guard]) continue;
    if (!loaded[handler.document]) {
      outcome.result = -1;
      return outcome;
    }
    outcome.entries.insert(outcome.entries.end(), handler.entries.begin(), handler.entries.end());
  }
  return outcome;
}

const std::array<ScriptedDocument, kFiles.size()>& Contents() {
  static const std::array<ScriptedDocument, kFiles.size()> contents = {
      ScriptedDocument{.longs = {{"hd", 1}, {"memory", 256}}},
      ScriptedDocument{.longs = {{"duplex", 1}, {"trustprint", 3}},
                       .strings = {{"authentication_user", "mode2"}}},
      ScriptedDocument{.longs = {{"version", 0x123}, {"platform_version", 0x200}},
                       .strings = {{"platform_name", "ncpp"}}},
      ScriptedDocument{.dict_counts = {{"list", 0}}},
      ScriptedDocument{.dict_counts = {{"list", 0}}},
      ScriptedDocument{.dict_counts = {{"list", 0}}},
      ScriptedDocument{.longs = {{"resolution_300", 1}, {"resolution_1200", 1}}},
      ScriptedDocument{.dict_counts = {{"list", 0}}},
      ScriptedDocument{.strings = {{"devicename", "Sample"}}},
  };
  return contents;
}

class PrinterQuery : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    for (std::size_t i = 0; i < kFiles.size(); ++i) recording_.documents[kFiles[i]] = Contents()[i];
    context_.bidi = bidi_.get();
    context_.xml_folder = folder_.path().c_str();
  }

  void TearDown() override {
    analyze_common_destroy_all_xmldata(&context_);
    EXPECT_THAT(recording_.faults, IsEmpty());
    EXPECT_THAT(recording_.readers, IsEmpty());
  }

  // The folder holds these documents; the files of the others have `others` as text or are missing.
  void WriteDocuments(const Documents& documents, const char* others = nullptr) {
    for (std::size_t i = 0; i < kFiles.size(); ++i) {
      if (documents[i]) {
        folder_.Write(kFiles[i], kFiles[i]);
      } else if (others != nullptr) {
        folder_.Write(kFiles[i], others);
      } else {
        folder_.Remove(kFiles[i]);
      }
    }
  }

  Outcome Query(std::uint8_t reload = 0) {
    CallersList list;
    const std::int32_t result = Analyze_Info_FromPrinter(&context_, list.get(), reload);
    return {result, list.entries()};
  }

  Documents Loaded() const {
    Documents loaded;
    for (std::size_t i = 0; i < kFiles.size(); ++i) {
      loaded[i] = context_.documents[i].xml != nullptr;
    }
    return loaded;
  }

  // The calls that make and release readers.
  std::vector<std::string> ReaderCalls() const {
    std::vector<std::string> calls;
    for (const Call& call : recording_.calls) {
      if (call.name == "qvxmlwrapGet_New") calls.push_back("new");
      if (call.name == "qvxmlwrapGet_Destroy") calls.push_back("destroy");
    }
    return calls;
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

TEST_F(PrinterQuery, RefusesNullArguments) {
  WriteDocuments(kAllDocuments);
  CallersList list;
  for (const std::uint8_t reload : {0, 1}) {
    EXPECT_EQ(Analyze_Info_FromPrinter(nullptr, list.get(), reload), -1);
    EXPECT_EQ(Analyze_Info_FromPrinter(&context_, nullptr, reload), -1);
    EXPECT_EQ(Analyze_Info_FromPrinter(nullptr, nullptr, reload), -1);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(PrinterQuery, RefusesANullListBeforeItDropsDocuments) {
  WriteDocuments(kAllDocuments);
  Query();
  recording_.calls.clear();
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, nullptr, 1), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_EQ(Loaded(), kAllDocuments);
}

TEST_F(PrinterQuery, LoadsAllDocumentsInOrderAndRunsAllHandlers) {
  WriteDocuments(kAllDocuments);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.entries, RunHandlers(kAllDocuments).entries);
  EXPECT_EQ(Loaded(), kAllDocuments);
  std::vector<Argument> lengths;
  for (const Call& call : recording_.CallsTo("qvxmlwrapGet_New")) {
    lengths.push_back(call.arguments[1]);
  }
  std::vector<Argument> expected;
  for (const std::string file : kFiles) expected.push_back(ArgumentOf(file.size()));
  EXPECT_EQ(lengths, expected);
}

TEST_F(PrinterQuery, AppendsBehindWhatTheListHolds) {
  WriteDocuments(kAllDocuments);
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  OptionList_Add(list.get(), "QVSpecID", "old");
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list.get(), 0), 0);
  const Entries entries = list.entries();
  ASSERT_GE(entries.size(), 3U);
  EXPECT_EQ(entries[0], Entry("QVOther", "kept"));
  EXPECT_EQ(entries[1], Entry("QVSpecID", "0123"));
  EXPECT_EQ(entries[2], Entry("QVHardDisk", "True"));
}

// Every set of documents -------------------------------------------------------------------------

TEST_F(PrinterQuery, EverySetOfExistingFilesRunsItsHandlers) {
  for (unsigned set = 0; set < 512; ++set) {
    const Documents documents(set);
    WriteDocuments(documents);
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    // The last file is the last one loaded, so that it alone decides.
    const Outcome expected = documents[kDevicename] ? RunHandlers(documents) : Outcome{-1, {}};
    ASSERT_EQ(outcome.result, expected.result) << documents;
    ASSERT_EQ(outcome.entries, expected.entries) << documents;
    ASSERT_EQ(Loaded(), documents);
  }
}

TEST_F(PrinterQuery, EverySetOfReadableFilesRunsItsHandlers) {
  for (unsigned set = 0; set < 512; ++set) {
    const Documents documents(set);
    WriteDocuments(documents, "no document");
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    const Outcome expected = RunHandlers(documents);
    ASSERT_EQ(outcome.result, expected.result) << documents;
    ASSERT_EQ(outcome.entries, expected.entries) << documents;
    ASSERT_EQ(Loaded(), documents);
  }
}

TEST_F(PrinterQuery, MissingDevicenameFailsAlthoughAllOthersLoad) {
  Documents documents = kAllDocuments;
  documents.reset(kDevicename);
  WriteDocuments(documents);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, -1);
  EXPECT_THAT(outcome.entries, IsEmpty());
  EXPECT_EQ(Loaded(), documents);
}

TEST_F(PrinterQuery, MissingDocumentIsMaskedByALaterOne) {
  for (std::size_t missing = 0; missing < kDevicename; ++missing) {
    Documents documents = kAllDocuments;
    documents.reset(missing);
    WriteDocuments(documents);
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    EXPECT_EQ(outcome.result, RunHandlers(documents).result) << kFiles[missing];
    EXPECT_THAT(outcome.entries, Not(IsEmpty()));
    EXPECT_EQ(Loaded(), documents);
  }
}

TEST_F(PrinterQuery, PlatformVersionIsSkippedWithoutFinisherList) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_FINISHER_LIST);
  WriteDocuments(documents);
  const Outcome outcome = Query();
  EXPECT_THAT(outcome.entries, Contains(Pair("QVSpecID", "0123")));
  EXPECT_THAT(outcome.entries, Not(Contains(Pair("QVPlatformVersion", testing::_))));
}

TEST_F(PrinterQuery, ResolutionsAreSkippedWithoutFaxLineList) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_FAX_LINE_LIST);
  WriteDocuments(documents);
  EXPECT_THAT(Query().entries, Not(Contains(Pair("QVEnableQuick", testing::_))));
}

TEST_F(PrinterQuery, FirstFailingHandlerEndsItAndEarlierOptionsStay) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_SPECID);
  WriteDocuments(documents);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, -1);
  Entries expected = Handlers()[0].entries;
  expected.insert(expected.end(), Handlers()[1].entries.begin(), Handlers()[1].entries.end());
  EXPECT_EQ(outcome.entries, expected);
}

TEST_F(PrinterQuery, FailsWithoutFolder) {
  context_.xml_folder = nullptr;
  for (const std::uint8_t reload : {0, 1}) {
    const Outcome outcome = Query(reload);
    EXPECT_EQ(outcome.result, -1);
    EXPECT_THAT(outcome.entries, IsEmpty());
  }
}

TEST_F(PrinterQuery, FailsForDocumentsCachedInThePpd) {
  WriteDocuments(kAllDocuments);
  context_.is_ppd_cache = 1;
  EXPECT_EQ(Query().result, -1);
  EXPECT_EQ(Loaded(), Documents());
}

// Further queries --------------------------------------------------------------------------------

class FurtherQuery : public PrinterQuery {
 protected:
  void SetUp() override {
    PrinterQuery::SetUp();
    recording_.documents["changed"] = {.longs = {{"memory", 512}}};
    WriteDocuments(kAllDocuments);
  }

  void QueryOnce() {
    ASSERT_EQ(Query().result, 0);
    recording_.calls.clear();
  }
};

TEST_F(FurtherQuery, ReusesItsDocuments) {
  QueryOnce();
  folder_.Write("Accessories.xml", "changed");
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.entries, RunHandlers(kAllDocuments).entries);
  EXPECT_THAT(ReaderCalls(), IsEmpty());
}

TEST_F(FurtherQuery, ReusesItsDocumentsWhenTheFilesAreGone) {
  QueryOnce();
  WriteDocuments(Documents());
  EXPECT_EQ(Query().result, 0);
}

TEST_F(FurtherQuery, LoadsOnlyWhatIsStillMissing) {
  WriteDocuments(kAllDocuments, nullptr);
  folder_.Write("Functions.xml", "no document");
  folder_.Write("Tray_list.xml", "no document");
  QueryOnce();
  WriteDocuments(kAllDocuments);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.entries, RunHandlers(kAllDocuments).entries);
  EXPECT_EQ(ReaderCalls(), (std::vector<std::string>{"new", "new"}));
  EXPECT_EQ(Loaded(), kAllDocuments);
}

TEST_F(FurtherQuery, FailsForADocumentThatTheFirstOneDidWithout) {
  folder_.Remove("Tray_list.xml");
  Query();
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, -1);
  EXPECT_THAT(outcome.entries, IsEmpty());
}

TEST_F(FurtherQuery, ReadsAllDocumentsAgainOnReload) {
  for (const std::uint8_t reload : {1, 2, 255}) {
    folder_.Write("Accessories.xml", "Accessories.xml");
    analyze_common_destroy_all_xmldata(&context_);
    QueryOnce();
    folder_.Write("Accessories.xml", "changed");
    const Outcome outcome = Query(reload);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(outcome.entries, Contains(Pair("QVTotalMemSize", "512")));
    EXPECT_THAT(outcome.entries, Contains(Pair("QVHardDisk", "False")));
  }
}

TEST_F(FurtherQuery, DropsEachDocumentBeforeItReadsItAgain) {
  QueryOnce();
  std::vector<Argument> readers;
  for (const XmlData& slot : context_.documents) readers.push_back(ArgumentOf(slot.xml));
  EXPECT_EQ(Query(1).result, 0);
  std::vector<std::string> expected;
  for (std::size_t i = 0; i < kFiles.size(); ++i) {
    expected.insert(expected.end(), {"destroy", "new"});
  }
  EXPECT_EQ(ReaderCalls(), expected);
  std::vector<Argument> destroyed;
  for (const Call& call : recording_.CallsTo("qvxmlwrapGet_Destroy")) {
    destroyed.push_back(call.arguments[0]);
  }
  EXPECT_EQ(destroyed, readers);
}

TEST_F(FurtherQuery, LosesOnReloadWhatIsGone) {
  QueryOnce();
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_ACCESSORIES);
  WriteDocuments(documents);
  const Outcome outcome = Query(1);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.entries, RunHandlers(documents).entries);
  EXPECT_EQ(Loaded(), documents);
}

TEST_F(FurtherQuery, FailsOnReloadWithoutDevicename) {
  QueryOnce();
  folder_.Remove("Devicename.xml");
  const Outcome outcome = Query(1);
  EXPECT_EQ(outcome.result, -1);
  EXPECT_THAT(outcome.entries, IsEmpty());
  EXPECT_FALSE(Loaded()[kDevicename]);
}

TEST_F(FurtherQuery, FirstOneMayReload) {
  const Outcome outcome = Query(1);
  EXPECT_EQ(outcome.result, 0);
  EXPECT_EQ(outcome.entries, RunHandlers(kAllDocuments).entries);
  EXPECT_EQ(ReaderCalls(), std::vector<std::string>(kFiles.size(), "new"));
}

TEST_F(FurtherQuery, AnswersTheSameEveryTime) {
  for (int round = 0; round < 50; ++round) {
    const Outcome outcome = Query(round % 3 == 0);
    ASSERT_EQ(outcome.result, 0);
    ASSERT_EQ(outcome.entries, RunHandlers(kAllDocuments).entries);
    ASSERT_THAT(recording_.readers, SizeIs(kFiles.size()));
  }
}

// The whole way, from a queue's PPD and real documents -------------------------------------------

constexpr char kPpd[] =
    "*PPD-Adobe: \"4.3\"\n"
    "*QVAnlz_DriverName: \"RA-H2\"\n"
    "*QV_Prot_MediaType: \"Plain:1\"\n"
    "*OpenUI *QVSpecID/Specification: PickOne\n"
    "*DefaultQVSpecID: 0100\n"
    "*QVSpecID 0200/Newest: \"\"\n"
    "*QVSpecID 0100/First: \"\"\n"
    "*QVSpecID 0120/Second: \"\"\n"
    "*CloseUI: *QVSpecID\n"
    "*OpenUI *QVPlatformVersion/Platform: PickOne\n"
    "*QVPlatformVersion 0300/Third: \"\"\n"
    "*QVPlatformVersion 0400/Fourth: \"\"\n"
    "*CloseUI: *QVPlatformVersion\n";

std::string Document(const std::string& body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">" + body +
         "</document>\n";
}

class WholeQuery : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr) << IA_TEST_DRIVER_FOLDER;
    PrintQueues::Get().Add("whole_query", kPpd);
    for (const char* file : kFiles) folder_.Write(file, Document(""));
    folder_.Write("Accessories.xml",
                  Document("<long key=\"hd\">1</long><long key=\"memory\">512</long>"));
    folder_.Write("Functions.xml",
                  Document("<long key=\"duplex\">1</long><long key=\"management\">1</long>"
                           "<string key=\"authentication_user\">MODE4</string>"
                           "<string key=\"authentication_job_password\">mode2</string>"
                           "<string key=\"authentication_f_code\">mode3</string>"));
    folder_.Write("Specid.xml", Document("<long key=\"version\">291</long>"
                                         "<string key=\"platform_name\">ncpp</string>"
                                         "<long key=\"platform_version\">256</long>"));
    folder_.Write("Resolutions.xml", Document("<long key=\"resolution_600\">1</long>"));
    analyzer_.reset(Analyze_Create(bidi_.get(), "whole_query", folder_.path().c_str()));
    ASSERT_NE(analyzer_, nullptr);
  }

  Entries Query(std::uint8_t reload) {
    CallersList list;
    EXPECT_EQ(Analyze_Info_FromPrinter(analyzer_.get(), list.get(), reload), 0);
    return list.entries();
  }

  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(IA_TEST_DRIVER_FOLDER)};
  AnalyzerPtr analyzer_;
};

TEST_F(WholeQuery, ReportsWhatTheDocumentsSayInTheTermsOfThePpd) {
  EXPECT_THAT(Query(0), IsSupersetOf(Entries{{"QVHardDisk", "True"},
                                             {"QVTotalMemSize", "512"},
                                             {"QVDupUnit", "True"},
                                             {"QVUseJobAccount", "True"},
                                             {"QVEnableTrustPrint", "False"},
                                             {"QVUseSecuredPrint", "False"},
                                             {"QVUseCSModeJobAccount", "mode2"},
                                             {"QVUseCSModeSecured", "mode2"},
                                             {"QVUseCSModeFCode", "mode1"},
                                             {"QVUseUsrManagement", "True"},
                                             {"QVSpecID", "0120"},
                                             {"QVPlatformVersion", "0300"},
                                             {"QVEnableQuick", "False"},
                                             {"QVEnableFine", "True"},
                                             {"QVEnableSuperFine", "False"}}));
}

TEST_F(WholeQuery, SeesAChangedFileOnReloadOnly) {
  Query(0);
  folder_.Write("Accessories.xml", Document("<long key=\"memory\">1024</long>"));
  EXPECT_THAT(Query(0), IsSupersetOf(Entries{{"QVHardDisk", "True"}, {"QVTotalMemSize", "512"}}));
  EXPECT_THAT(Query(1), IsSupersetOf(Entries{{"QVHardDisk", "False"}, {"QVTotalMemSize", "1024"}}));
}

TEST_F(WholeQuery, PassesOverADocumentThatIsNoXml) {
  folder_.Write("Accessories.xml", "<document version=\"1\"><long");
  const Entries entries = Query(0);
  EXPECT_THAT(entries, Not(Contains(Pair("QVHardDisk", testing::_))));
  EXPECT_THAT(entries, Contains(Pair("QVDupUnit", "True")));
}

TEST_F(WholeQuery, LeavesNothingBehind) {
  Query(0);
  analyzer_.reset();
  EXPECT_EQ(CountEntries(PrintQueues::Get().temporary_folder()), 0);
}

}  // namespace
}  // namespace ia_test
