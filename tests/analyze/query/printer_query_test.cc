#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/analyzer.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/build_folders.h"
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

// The condition for running a handler. Handler n runs if document n is loaded, whichever document
// it reads. The tenth runs if the store of media-type flags exists, and the combined pass always.
constexpr std::size_t kMediaTypeFlags = 9;
constexpr std::size_t kNothing = 10;
using Guards = std::bitset<11>;

Guards GuardsOf(const Documents& loaded, bool has_media_type_flags) {
  Guards guards(loaded.to_ulong());
  guards[kMediaTypeFlags] = has_media_type_flags;
  guards[kNothing] = true;
  return guards;
}

// The handlers in their order, and what they append. Handlers of plain values fail without the
// document that they read, handlers of lists find an empty list.
struct QueryHandler {
  std::size_t guard;
  std::size_t document;
  Entries entries;
  std::optional<Entries> without_document = std::nullopt;
};

const std::vector<QueryHandler>& Handlers() {
  static const std::vector<QueryHandler> handlers = {
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
      {4,
       3,
       {{"QVOptionStaple", "False"},
        {"QVPuncher", "None"},
        {"QVFolder", "None"},
        {"QVTrimmer", "None"},
        {"QVInnerTrimmer", "None"},
        {"QVInsertUnit", "INSU1"},
        {"QVEnableMultiInserter", "False"},
        {"QVStacker", "STKU1"},
        {"QVBinderOption", "None"},
        {"QVProPuncher", "None"},
        {"QVTopBottomTrimmer", "None"}},
       Entries{{"QVOptionStaple", "False"},
               {"QVPuncher", "None"},
               {"QVFolder", "None"},
               {"QVTrimmer", "None"},
               {"QVInnerTrimmer", "None"},
               {"QVInsertUnit", "None"},
               {"QVEnableMultiInserter", "False"},
               {"QVStacker", "None"},
               {"QVBinderOption", "None"},
               {"QVProPuncher", "None"},
               {"QVTopBottomTrimmer", "None"}}},
      {5, 4, {{"QVTrayCSetting", "FinCenterTray"}}, Entries{{"QVTrayCSetting", "FinTopTray"}}},
      {6,
       5,
       {{"QVSidePaperDeck", "None"}, {"QVSrcOption", "None"}, {"QVMediaOfCas1", "PlainPaper"}},
       Entries{{"QVSidePaperDeck", "None"}, {"QVSrcOption", "None"}}},
      {7, 6, {{"QVEnableQuick", "True"}, {"QVEnableFine", "False"}, {"QVEnableSuperFine", "True"}}},
      {8,
       7,
       {{"QVFAXNumOfLine", "1"},
        {"QVFAXLineType", "isdn"},
        {"QVFAXDialLineA", "True"},
        {"QVFAXDialLineB", "True"},
        {"QVFAXDialLineC", "True"},
        {"QVFAXDialLineD", "True"},
        {"QVFAXIPFAXINTRA", "True"},
        {"QVFAXIPFAXVoIP", "False"},
        {"QVFAXIPFAXNGN", "False"},
        {"QVFAXIPFAXMyNumberNGN", "False"}},
       Entries{{"QVFAXNumOfLine", "0"},
               {"QVFAXLineType", "None"},
               {"QVFAXDialLineA", "True"},
               {"QVFAXDialLineB", "True"},
               {"QVFAXDialLineC", "True"},
               {"QVFAXDialLineD", "False"},
               {"QVFAXIPFAXINTRA", "False"},
               {"QVFAXIPFAXVoIP", "False"},
               {"QVFAXIPFAXNGN", "False"},
               {"QVFAXIPFAXMyNumberNGN", "False"}}},
      {kMediaTypeFlags, 5, {{"QVInsertUnit", "MINSU1"}}, Entries{{"QVInsertUnit", "None"}}},
      {kNothing,
       3,
       {{"QVFinisher", "STACKER"}, {"QVCopyTray", "None"}, {"QVFinTray", "None"}},
       Entries{{"QVFinisher", "None"}, {"QVCopyTray", "None"}, {"QVFinTray", "None"}}},
  };
  return handlers;
}

// Adds to a list: an existing keyword keeps its place and gets the new value.
void AddAll(Entries& entries, const Entries& added) {
  for (const Entry& entry : added) {
    const auto known = std::ranges::find(entries, entry.first, &Entry::first);
    if (known == entries.end()) {
      entries.push_back(entry);
    } else {
      known->second = entry.second;
    }
  }
}

// The result of a query when these documents are loaded.
Outcome RunHandlers(const Documents& loaded, bool has_media_type_flags = true) {
  const Guards guards = GuardsOf(loaded, has_media_type_flags);
  Outcome outcome = {0, {}};
  for (const QueryHandler& handler : Handlers()) {
    if (!guards[handler.guard]) continue;
    if (loaded[handler.document]) {
      AddAll(outcome.entries, handler.entries);
    } else if (handler.without_document) {
      AddAll(outcome.entries, *handler.without_document);
    } else {
      outcome.result = -1;
      return outcome;
    }
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
      ScriptedDocument{.longs = {{"type", 15}, {"binnum", 1}},
                       .strings = {{"name", "Vorel Stacker-A1"}},
                       .dict_counts = {{"list", 1}},
                       .array_counts = {{"func", 1}},
                       .string_elements = {{0, "inserter"}}},
      ScriptedDocument{.longs = {{"number", 3}},
                       .dict_counts = {{"list", 1}},
                       .array_counts = {{"alias", 1}},
                       .long_elements = {{0, 101}}},
      ScriptedDocument{.dict_counts = {{"list", 1}},
                       .array_counts = {{"alias", 1}},
                       .long_elements = {{0, 198}}},
      ScriptedDocument{.longs = {{"resolution_300", 1}, {"resolution_1200", 1}}},
      ScriptedDocument{.longs = {{"type", 2}, {"id_support", 21}},
                       .dict_counts = {{"list", 1}},
                       .array_counts = {{"communication_mode", 1}},
                       .long_elements = {{0, 17}}},
      ScriptedDocument{.strings = {{"devicename", "HZL-A"}}},
  };
  return contents;
}

FlagInfo* NewFlags(const char* flags) {
  FlagInfo* store = zflaginfo_init("flags", 8);
  EXPECT_EQ(zflaginfo_get(flags, store), 0);
  return store;
}

class PrinterQuery : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    for (std::size_t i = 0; i < kFiles.size(); ++i) recording_.documents[kFiles[i]] = Contents()[i];
    context_.bidi = bidi_.get();
    context_.xml_folder = folder_.path().c_str();
    context_.driver_name = const_cast<char*>("RA-Z5");
    context_.media_type_flags = NewFlags("Thick:2");
    context_.input_tray_flags = NewFlags("Cas1:198");
    context_.slot_media_info_flags = NewFlags("Cas1:QVMediaOfCas1");
    context_.finisher_name_flags = NewFlags("Vorel Stacker:STACKER");
  }

  void TearDown() override {
    analyze_common_destroy_all_xmldata(&context_);
    for (FlagInfo* store : {context_.media_type_flags, context_.input_tray_flags,
                            context_.slot_media_info_flags, context_.finisher_name_flags}) {
      zflaginfo_term(store);
    }
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

  void RemoveMediaTypeFlags() {
    zflaginfo_term(context_.media_type_flags);
    context_.media_type_flags = nullptr;
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

TEST_F(PrinterQuery, AppendsAfterExistingOptions) {
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

class EverySetOfDocuments : public PrinterQuery, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    PrinterQuery::SetUp();
    if (!GetParam()) RemoveMediaTypeFlags();
  }
};

TEST_P(EverySetOfDocuments, RunsItsHandlersWhenTheOtherFilesAreMissing) {
  for (unsigned set = 0; set < 512; ++set) {
    const Documents documents(set);
    WriteDocuments(documents);
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    // The last file is the last one loaded, so that it alone decides.
    const Outcome expected =
        documents[kDevicename] ? RunHandlers(documents, GetParam()) : Outcome{-1, {}};
    ASSERT_EQ(outcome, expected) << documents;
    ASSERT_EQ(Loaded(), documents);
  }
}

TEST_P(EverySetOfDocuments, RunsItsHandlersWhenTheOtherFilesAreNoDocuments) {
  for (unsigned set = 0; set < 512; ++set) {
    const Documents documents(set);
    WriteDocuments(documents, "no document");
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    ASSERT_EQ(outcome, RunHandlers(documents, GetParam())) << documents;
    ASSERT_EQ(Loaded(), documents);
  }
}

INSTANTIATE_TEST_SUITE_P(MediaTypeFlags, EverySetOfDocuments, testing::Values(true, false),
                         [](const auto& info) { return info.param ? "Exist" : "AreMissing"; });

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

// A handler of each place, by a keyword of its own.
struct PlaceRow {
  const char* keyword;
  std::size_t guard;
};

void PrintTo(const PlaceRow& row, std::ostream* out) { *out << row.keyword; }

class PlaceOfHandler : public PrinterQuery, public testing::WithParamInterface<PlaceRow> {};

TEST_P(PlaceOfHandler, IsThatOfTheDocumentThatItWaitsFor) {
  for (std::size_t missing = 0; missing < kFiles.size(); ++missing) {
    if (missing == IA_DOCUMENT_SPECID || missing == IA_DOCUMENT_RESOLUTIONS) continue;  // fail
    Documents documents = kAllDocuments;
    documents.reset(missing);
    WriteDocuments(documents, "no document");
    analyze_common_destroy_all_xmldata(&context_);
    const Outcome outcome = Query();
    EXPECT_EQ(outcome.result, 0);
    const auto is_appended = Contains(Pair(GetParam().keyword, testing::_));
    if (missing == GetParam().guard) {
      EXPECT_THAT(outcome.entries, Not(is_appended)) << kFiles[missing];
    } else {
      EXPECT_THAT(outcome.entries, is_appended) << kFiles[missing];
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Handlers, PlaceOfHandler,
                         testing::Values(PlaceRow{"QVHardDisk", IA_DOCUMENT_ACCESSORIES},
                                         PlaceRow{"QVDupUnit", IA_DOCUMENT_FUNCTIONS},
                                         PlaceRow{"QVSpecID", IA_DOCUMENT_SPECID},
                                         PlaceRow{"QVPlatformVersion", IA_DOCUMENT_FINISHER_LIST},
                                         PlaceRow{"QVStacker", IA_DOCUMENT_BIN_LIST},
                                         PlaceRow{"QVTrayCSetting", IA_DOCUMENT_TRAY_LIST},
                                         PlaceRow{"QVSidePaperDeck", IA_DOCUMENT_RESOLUTIONS},
                                         PlaceRow{"QVEnableQuick", IA_DOCUMENT_FAX_LINE_LIST},
                                         PlaceRow{"QVFAXNumOfLine", IA_DOCUMENT_DEVICENAME},
                                         PlaceRow{"QVInsertUnit", kMediaTypeFlags},
                                         PlaceRow{"QVFinisher", kNothing}),
                         [](const auto& info) { return std::string(info.param.keyword); });

TEST_F(PrinterQuery, TraysAreSkippedWithoutResolutions) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_RESOLUTIONS);
  documents.reset(IA_DOCUMENT_FAX_LINE_LIST);  // resolutions wait for it, and would fail
  WriteDocuments(documents);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_THAT(outcome.entries, Not(Contains(Pair("QVSidePaperDeck", testing::_))));
}

TEST_F(PrinterQuery, SpecIdIsSkippedWithoutSpecid) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_SPECID);
  documents.reset(IA_DOCUMENT_FINISHER_LIST);  // the platform version waits for it, and would fail
  WriteDocuments(documents);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_THAT(outcome.entries, Not(Contains(Pair("QVSpecID", testing::_))));
}

TEST_F(PrinterQuery, ExtraOptionsAreSkippedWithoutMediaTypeFlags) {
  WriteDocuments(kAllDocuments);
  EXPECT_THAT(Query().entries, Contains(Pair("QVInsertUnit", "MINSU1")));
  RemoveMediaTypeFlags();
  EXPECT_THAT(Query().entries, Contains(Pair("QVInsertUnit", "INSU1")));
}

TEST_F(PrinterQuery, ExtraOptionsWaitForNoDocument) {
  WriteDocuments(Documents(), "no document");
  EXPECT_EQ(Query(), (Outcome{0,
                              {{"QVInsertUnit", "None"},
                               {"QVFinisher", "None"},
                               {"QVCopyTray", "None"},
                               {"QVFinTray", "None"}}}));
}

TEST_F(PrinterQuery, CombinedPassAlwaysRuns) {
  RemoveMediaTypeFlags();
  WriteDocuments(Documents(), "no document");
  EXPECT_EQ(Query(),
            (Outcome{0, {{"QVFinisher", "None"}, {"QVCopyTray", "None"}, {"QVFinTray", "None"}}}));
}

TEST_F(PrinterQuery, OtherFlagsAreNotWaitedFor) {
  for (FlagInfo** store : {&context_.input_tray_flags, &context_.slot_media_info_flags,
                           &context_.finisher_name_flags}) {
    zflaginfo_term(*store);
    *store = nullptr;
  }
  WriteDocuments(kAllDocuments);
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 0);
  EXPECT_THAT(outcome.entries,
              IsSupersetOf(Entries{
                  {"QVInsertUnit", "MINSU1"}, {"QVSrcOption", "None"}, {"QVFinisher", "None"}}));
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

TEST_F(PrinterQuery, ResultOfAFailingListHandlerIsTheQuerys) {
  WriteDocuments(kAllDocuments);
  for (const std::size_t place : {4U, 5U, 6U, 8U}) {
    for (const std::int32_t result : {-1, 5}) {
      ListReads reads;
      reads.results = {{{static_cast<std::int32_t>(Handlers()[place].document), 0}, result}};
      Outcome expected = {result, {}};
      for (std::size_t i = 0; i < place; ++i) AddAll(expected.entries, Handlers()[i].entries);
      EXPECT_EQ(Query(), expected) << place;
    }
  }
}

TEST_F(PrinterQuery, ResultOfTheExtraOptionsIsTheQuerys) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_RESOLUTIONS);  // the trays wait for it
  documents.reset(IA_DOCUMENT_FAX_LINE_LIST);
  WriteDocuments(documents);
  ListReads reads;
  reads.results = {{{IA_DOCUMENT_TRAY_LIST, 0}, 5}};
  const Outcome outcome = Query();
  EXPECT_EQ(outcome.result, 5);
  EXPECT_THAT(outcome.entries, Contains(Pair("QVInsertUnit", "None")));
  EXPECT_THAT(outcome.entries, Not(Contains(Pair("QVFinisher", testing::_))));
}

TEST_F(PrinterQuery, ResultOfTheCombinedPassIsTheQuerys) {
  Documents documents = kAllDocuments;
  documents.reset(IA_DOCUMENT_TRAY_LIST);  // the bins wait for it
  WriteDocuments(documents);
  ListReads reads;
  reads.results = {{{IA_DOCUMENT_BIN_LIST, 0}, 5}};
  Outcome expected = RunHandlers(documents);
  expected.result = 5;
  expected.entries.resize(expected.entries.size() - 3);
  EXPECT_EQ(Query(), expected);
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
    "*QVAnlz_DriverName: \"RA-Z5\"\n"
    "*QV_Prot_MediaType: \"Plain:1,Thick:2\"\n"
    "*QVAnlz_InputTray: \"Cas1:101,Cas2:161\"\n"
    "*QVAnlz_SlotMediaInfo: \"Cas1:QVMediaOfCas1,Cas2:QVMediaOfCas2\"\n"
    "*QVAnlz_FinisherName: \"Vorel Saddle Finisher-W:SADDLEW,Vorel Stacker:STACKER\"\n"
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

class WholeQuery : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr) << ia_test::kReferenceDriver;
    PrintQueues::Get().Add("whole_query", kPpd);
    for (const char* file : kFiles) folder_.Write(file, Document(""));
    folder_.Write("Accessories.xml", Document(Number("hd", 1) + Number("memory", 512)));
    folder_.Write("Functions.xml", Document(Number("duplex", 1) + Number("management", 1) +
                                            Text("authentication_user", "MODE4") +
                                            Text("authentication_job_password", "mode2") +
                                            Text("authentication_f_code", "mode3")));
    folder_.Write("Specid.xml", Document(Number("version", 291) + Text("platform_name", "ncpp") +
                                         Number("platform_version", 256)));
    folder_.Write("Finisher_list.xml",
                  ListDocument({Number("type", 1) + Text("name", "Vorel Saddle Finisher-W4") +
                                    Number("binnum", 3) +
                                    TextArray("func", {"punch", "folding", "trimming"}) +
                                    TextArray("detail_func", {"punching_3_holes"}),
                                Number("type", 15) + TextArray("func", {"inserter"})}));
    folder_.Write("Bin_list.xml",
                  ListDocument({Number("number", 1) + NumberArray("alias", {119}),
                                Number("number", 3) + NumberArray("alias", {100, 101})}));
    folder_.Write("Tray_list.xml",
                  ListDocument({Number("type", 1) + NumberArray("alias", {101}) +
                                    Number("capacity", 550) + Number("medium_type", 1),
                                Number("type", 6) + NumberArray("alias", {161, 196}) +
                                    Number("capacity", 2000) + Number("medium_type", 2),
                                NumberArray("alias", {196})}));
    folder_.Write("Resolutions.xml", Document(Number("resolution_600", 1)));
    folder_.Write("Fax_line_list.xml",
                  ListDocument({Number("type", 2) + Number("id_support", 19),
                                Number("type", 3) + Number("id_support", 0) +
                                    NumberArray("communication_mode", {17, 146})}));
    folder_.Write("Devicename.xml", Document(Text("devicename", "Sample")));
    analyzer_.reset(Analyze_Create(bidi_.get(), "whole_query", folder_.path().c_str()));
    ASSERT_NE(analyzer_, nullptr);
  }

  Entries Query(std::uint8_t reload) {
    CallersList list;
    EXPECT_EQ(Analyze_Info_FromPrinter(analyzer_.get(), list.get(), reload), 0);
    return list.entries();
  }

  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(ia_test::kReferenceDriver)};
  AnalyzerPtr analyzer_;
};

TEST_F(WholeQuery, ReportsWhatTheDocumentsSayInTheTermsOfThePpd) {
  EXPECT_EQ(Query(0), (Entries{{"QVHardDisk", "True"},
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
                               {"QVOptionStaple", "False"},
                               {"QVPuncher", "PUNU3"},
                               {"QVFolder", "FLDU1"},
                               {"QVTrimmer", "TRMU1"},
                               {"QVInnerTrimmer", "None"},
                               {"QVInsertUnit", "INSU1"},
                               {"QVEnableMultiInserter", "False"},
                               {"QVStacker", "STKU1"},
                               {"QVBinderOption", "None"},
                               {"QVProPuncher", "None"},
                               {"QVTopBottomTrimmer", "None"},
                               {"QVTrayCSetting", "FinCenterTray"},
                               {"QVSidePaperDeck", "Large"},
                               {"QVSrcOption", "MltDeck1"},
                               {"QVMediaOfCas1", "Plain"},
                               {"QVMediaOfCas2", "Thick"},
                               {"QVEnableQuick", "False"},
                               {"QVEnableFine", "True"},
                               {"QVEnableSuperFine", "False"},
                               {"QVFAXNumOfLine", "1"},
                               {"QVFAXLineType", "public"},
                               {"QVFAXDialLineA", "False"},
                               {"QVFAXDialLineB", "True"},
                               {"QVFAXDialLineC", "False"},
                               {"QVFAXDialLineD", "False"},
                               {"QVFAXIPFAXINTRA", "True"},
                               {"QVFAXIPFAXVoIP", "True"},
                               {"QVFAXIPFAXNGN", "False"},
                               {"QVFAXIPFAXMyNumberNGN", "False"},
                               {"QVFinisher", "SADDLEW"},
                               {"QVCopyTray", "None"},
                               {"QVFinTray", "None"}}));
}

TEST_F(WholeQuery, ReadsAChangedFileOnReloadOnly) {
  Query(0);
  folder_.Write("Accessories.xml", Document(Number("memory", 1024)));
  EXPECT_THAT(Query(0), IsSupersetOf(Entries{{"QVHardDisk", "True"}, {"QVTotalMemSize", "512"}}));
  EXPECT_THAT(Query(1), IsSupersetOf(Entries{{"QVHardDisk", "False"}, {"QVTotalMemSize", "1024"}}));
}

TEST_F(WholeQuery, PassesOverADocumentThatIsNoXml) {
  folder_.Write("Accessories.xml", "<document version=\"1\"><long");
  const Entries entries = Query(0);
  EXPECT_THAT(entries, Not(Contains(Pair("QVHardDisk", testing::_))));
  EXPECT_THAT(entries, Contains(Pair("QVDupUnit", "True")));
}

TEST_F(WholeQuery, LeavesNoTemporaryFiles) {
  Query(0);
  analyzer_.reset();
  EXPECT_EQ(CountEntries(PrintQueues::Get().temporary_folder()), 0);
}

}  // namespace
}  // namespace ia_test
