#include "info_analyze/device_documents.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/provenance.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kPointer = sizeof(void*);
static_assert(std::is_standard_layout_v<XmlData>);
static_assert(offsetof(XmlData, xml) == 0);
static_assert(offsetof(XmlData, count) == kPointer);
static_assert(sizeof(XmlData) == 2 * kPointer);
static_assert(std::is_same_v<decltype(XmlData::count), std::int32_t>);

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::size_t kLargestDocument = 16 * 1024 * 1024;

struct DocumentRow {
  std::int32_t index;
  const char* file;
  const char* list_key;
};

constexpr auto kDocuments = std::to_array<DocumentRow>({
    {0, "Accessories.xml", nullptr},
    {1, "Functions.xml", nullptr},
    {2, "Specid.xml", nullptr},
    {3, "Finisher_list.xml", "list"},
    {4, "Bin_list.xml", "list"},
    {5, "Tray_list.xml", "list"},
    {6, "Resolutions.xml", nullptr},
    {7, "Fax_line_list.xml", "list"},
    {8, "Devicename.xml", nullptr},
});

void PrintTo(const DocumentRow& row, std::ostream* out) { *out << row.file; }

class DeviceDocuments : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    descriptors_ = CountOpenDescriptors();
  }

  void TearDown() override {
    EXPECT_EQ(CountOpenDescriptors(), descriptors_);
    analyze_common_destroy_all_xmldata(&context_);
    EXPECT_THAT(recording_.faults, IsEmpty());
    EXPECT_THAT(recording_.readers, IsEmpty());
  }

  // A file that the communication library takes for a document.
  void WriteDocument(const std::string& file, ScriptedDocument document = {}) {
    const std::string text = "text of " + file;
    folder_.Write(file, text);
    recording_.documents[text] = std::move(document);
  }
  void WriteAllDocuments() {
    for (const DocumentRow& row : kDocuments) WriteDocument(row.file);
  }

  std::int32_t Create(std::int32_t index) {
    return analyze_common_create_xmldata(&context_, index);
  }
  std::vector<std::int32_t> LoadedIndexes() const {
    std::vector<std::int32_t> loaded;
    for (const DocumentRow& row : kDocuments) {
      if (context_.documents[row.index].xml != nullptr) loaded.push_back(row.index);
    }
    return loaded;
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {.bidi = bidi_.get(),
                             .queue_name = nullptr,
                             .xml_folder = folder_.path().c_str(),
                             .driver_name = nullptr,
                             .documents = {},
                             .media_type_flags = nullptr,
                             .input_tray_flags = nullptr,
                             .slot_media_info_flags = nullptr,
                             .src_option_flags = nullptr,
                             .finisher_name_flags = nullptr,
                             .ppd_options = nullptr,
                             .is_ppd_cache = 0};
  std::ptrdiff_t descriptors_ = 0;
};

class EachDocument : public DeviceDocuments, public testing::WithParamInterface<DocumentRow> {};

TEST_P(EachDocument, IsReadFromItsFileOnly) {
  WriteDocument(GetParam().file);
  for (const DocumentRow& row : kDocuments) {
    EXPECT_EQ(Create(row.index), row.index == GetParam().index ? 0 : -1) << row.file;
  }
  EXPECT_THAT(LoadedIndexes(), ElementsAre(GetParam().index));
}

TEST_P(EachDocument, IsNamedAsItsFile) {
  EXPECT_STREQ(Analyze_Provenance_GetDocumentName(GetParam().index), GetParam().file);
}

TEST(DocumentName, IsNullOutOfRange) {
  for (const std::int32_t index : {-1, std::int32_t{IA_DOCUMENT_COUNT}, kHighest, kLowest}) {
    EXPECT_EQ(Analyze_Provenance_GetDocumentName(index), nullptr) << index;
  }
}

TEST_P(EachDocument, CountsItsListAndNoOther) {
  WriteDocument(GetParam().file, {.dict_counts = {{"list", 12}, {"", 99}}});
  ASSERT_EQ(Create(GetParam().index), 0);
  const std::vector<Call> counted = recording_.CallsTo("qvxmlwrapGet_DictCount");
  EXPECT_EQ(counted.size(), GetParam().list_key != nullptr ? 1U : 0U);
  for (const Call& call : counted) EXPECT_EQ(call.arguments[1], ArgumentOf(GetParam().list_key));
  EXPECT_EQ(context_.documents[GetParam().index].count, GetParam().list_key != nullptr ? 12 : 0);
}

TEST_P(EachDocument, HasNoItemsWithoutList) {
  WriteDocument(GetParam().file);
  context_.documents[GetParam().index].count = 77;
  ASSERT_EQ(Create(GetParam().index), 0);
  EXPECT_EQ(context_.documents[GetParam().index].count, 0);
}

TEST_P(EachDocument, MissingIsAFailure) {
  EXPECT_EQ(Create(GetParam().index), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Table, EachDocument, testing::ValuesIn(kDocuments), [](const auto& info) {
  return std::string(info.param.file, std::string(info.param.file).find('.'));
});

TEST_F(DeviceDocuments, ArePassedOnWhole) {
  WriteDocument("Specid.xml");
  ASSERT_EQ(Create(2), 0);
  EXPECT_THAT(recording_.NamesOfCalls(), ElementsAre("qvxmlwrapGet_New"));
  EXPECT_EQ(recording_.calls[0].arguments[1], ArgumentOf(std::string("text of Specid.xml").size()));
}

TEST_F(DeviceDocuments, ArePassedOnWithTheirNuls) {
  const std::string text("\0a\0\xff\n\0", 6);
  folder_.Write("Specid.xml", text);
  recording_.documents[text] = {};
  EXPECT_EQ(Create(2), 0);
  EXPECT_NE(context_.documents[2].xml, nullptr);
}

TEST_F(DeviceDocuments, MayBeOneByteLong) {
  folder_.Write("Specid.xml", "x");
  recording_.documents["x"] = {};
  EXPECT_EQ(Create(2), 0);
  EXPECT_NE(context_.documents[2].xml, nullptr);
}

TEST_F(DeviceDocuments, NeedAContext) { EXPECT_EQ(analyze_common_create_xmldata(nullptr, 0), -1); }

TEST_F(DeviceDocuments, NeedAnIndexOfTheTable) {
  WriteAllDocuments();
  for (const std::int32_t index : {-1, 9, kLowest, kHighest}) {
    EXPECT_EQ(Create(index), -1) << index;
  }
  EXPECT_THAT(LoadedIndexes(), IsEmpty());
}

TEST_F(DeviceDocuments, NeedAFolder) {
  context_.xml_folder = nullptr;
  for (const DocumentRow& row : kDocuments) EXPECT_EQ(Create(row.index), -1) << row.file;
}

TEST_F(DeviceDocuments, NeedAnExistingFolder) {
  const std::string missing = folder_ / "missing";
  context_.xml_folder = missing.c_str();
  EXPECT_EQ(Create(0), -1);
}

TEST_F(DeviceDocuments, FolderIsUsedAsItIsWritten) {
  WriteDocument("Accessories.xml");
  WriteDocument("prefixAccessories.xml");
  const std::string with_slash = folder_ / "";
  context_.xml_folder = with_slash.c_str();
  EXPECT_EQ(Create(0), 0);
  const std::string without_slash = folder_ / "prefix";
  context_.xml_folder = without_slash.c_str();
  EXPECT_EQ(Create(0), -1);
}

TEST_F(DeviceDocuments, PathsOfLessThan1024BytesFit) {
  WriteAllDocuments();
  for (const DocumentRow& row : kDocuments) {
    for (const std::size_t length : {1021U, 1022U, 1023U, 1024U, 1025U, 2048U}) {
      std::string folder = folder_.path();
      folder.resize(length - 1 - std::string(row.file).size(), '/');
      context_.xml_folder = folder.c_str();
      analyze_common_destroy_xmldata(&context_, row.index);
      EXPECT_EQ(Create(row.index), length < 1024 ? 0 : -1) << row.file << " " << length;
    }
  }
}

TEST_F(DeviceDocuments, DirectoryIsNone) {
  std::filesystem::create_directory(folder_ / "Accessories.xml");
  EXPECT_EQ(Create(0), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, FifoIsNoneAndDoesNotBlock) {
  ASSERT_EQ(mkfifo((folder_ / "Accessories.xml").c_str(), 0600), 0);
  alarm(20);
  EXPECT_EQ(Create(0), -1);
  alarm(0);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, FifoWithAWriterIsNone) {
  const std::string fifo = folder_ / "Accessories.xml";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  const int writer = open(fifo.c_str(), O_RDWR);
  ASSERT_EQ(write(writer, "text", 4), 4);
  alarm(20);
  EXPECT_EQ(Create(0), -1);
  alarm(0);
  close(writer);
}

TEST_F(DeviceDocuments, DeviceIsNone) {
  std::filesystem::create_symlink("/dev/zero", folder_ / "Accessories.xml");
  std::filesystem::create_symlink("/dev/null", folder_ / "Functions.xml");
  EXPECT_EQ(Create(0), -1);
  EXPECT_EQ(Create(1), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, SocketIsNone) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  (folder_ / "Accessories.xml").copy(address.sun_path, sizeof address.sun_path - 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(Create(0), -1);
  close(listener);
}

TEST_F(DeviceDocuments, LinkToAFileIsFollowed) {
  WriteDocument("elsewhere");
  std::filesystem::create_symlink("elsewhere", folder_ / "Accessories.xml");
  EXPECT_EQ(Create(0), 0);
  EXPECT_NE(context_.documents[0].xml, nullptr);
}

TEST_F(DeviceDocuments, LinkToNowhereIsNone) {
  std::filesystem::create_symlink("nowhere", folder_ / "Accessories.xml");
  EXPECT_EQ(Create(0), -1);
}

TEST_F(DeviceDocuments, EmptyFileIsForTheLibraryToJudge) {
  folder_.Write("Accessories.xml", "");
  EXPECT_EQ(Create(0), 0);
  EXPECT_EQ(context_.documents[0].xml, nullptr);
  recording_.documents[""] = {};
  EXPECT_EQ(Create(0), 0);
  EXPECT_NE(context_.documents[0].xml, nullptr);
  const std::vector<Call> parsed = recording_.CallsTo("qvxmlwrapGet_New");
  ASSERT_EQ(parsed.size(), 2U);
  EXPECT_EQ(parsed[0].arguments[1], ArgumentOf(0));
  EXPECT_EQ(parsed[1].arguments[1], ArgumentOf(0));
}

TEST_F(DeviceDocuments, LargestFileIsRead) {
  folder_.Write("Accessories.xml", "");
  std::filesystem::resize_file(folder_ / "Accessories.xml", kLargestDocument);
  recording_.documents[std::string(kLargestDocument, '\0')] = {};
  EXPECT_EQ(Create(0), 0);
  EXPECT_NE(context_.documents[0].xml, nullptr);
}

TEST_F(DeviceDocuments, LargerFilesAreNone) {
  for (const std::uintmax_t size :
       {std::uintmax_t{kLargestDocument} + 1, std::uintmax_t{1} << 31, std::uintmax_t{1} << 32}) {
    folder_.Write("Accessories.xml", "");
    std::filesystem::resize_file(folder_ / "Accessories.xml", size);
    EXPECT_EQ(Create(0), -1) << size;
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, UnreadableContentKeepsTheSlot) {
  WriteDocument("Finisher_list.xml", {.dict_counts = {{"list", 4}}});
  ASSERT_EQ(Create(3), 0);
  const XmlData before = context_.documents[3];
  folder_.Write("Finisher_list.xml", "no document");
  EXPECT_EQ(Create(3), 0);
  EXPECT_EQ(context_.documents[3].xml, before.xml);
  EXPECT_EQ(context_.documents[3].count, 4);
}

TEST_F(DeviceDocuments, UnreadableContentIsNotCounted) {
  folder_.Write("Finisher_list.xml", "no document");
  EXPECT_EQ(Create(3), 0);
  EXPECT_EQ(context_.documents[3].xml, nullptr);
  EXPECT_EQ(context_.documents[3].count, 0);
  EXPECT_THAT(recording_.NamesOfCalls(), ElementsAre("qvxmlwrapGet_New"));
}

TEST_F(DeviceDocuments, FailureKeepsTheSlot) {
  WriteDocument("Finisher_list.xml", {.dict_counts = {{"list", 4}}});
  ASSERT_EQ(Create(3), 0);
  const XmlData before = context_.documents[3];
  folder_.Remove("Finisher_list.xml");
  EXPECT_EQ(Create(3), -1);
  EXPECT_EQ(context_.documents[3].xml, before.xml);
  EXPECT_EQ(context_.documents[3].count, 4);
}

TEST_F(DeviceDocuments, ListThatCannotBeCountedIsEmpty) {
  WriteDocument("Tray_list.xml");
  EXPECT_EQ(Create(5), 0);
  EXPECT_NE(context_.documents[5].xml, nullptr);
  EXPECT_EQ(context_.documents[5].count, 0);
}

TEST_F(DeviceDocuments, CountIsTakenFromTheLibrary) {
  for (const std::int32_t count : {0, 1, 255, 65536, 900000}) {
    WriteDocument("Tray_list.xml", {.dict_counts = {{"list", count}}});
    EXPECT_EQ(Create(5), 0);
    EXPECT_EQ(context_.documents[5].count, count);
    analyze_common_destroy_xmldata(&context_, 5);
  }
}

TEST_F(DeviceDocuments, CountThatCannotBeTrueIsNoFailure) {
  for (const std::int32_t count : {-1, kLowest, kHighest}) {
    WriteDocument("Tray_list.xml", {.dict_counts = {{"list", count}}});
    EXPECT_EQ(Create(5), 0);
    EXPECT_NE(context_.documents[5].xml, nullptr);
    EXPECT_EQ(context_.documents[5].count > 0, count > 0) << count;
    analyze_common_destroy_xmldata(&context_, 5);
  }
}

TEST_F(DeviceDocuments, CacheInThePpdIsNeverThere) {
  WriteDocument("Accessories.xml");
  context_.is_ppd_cache = 1;
  EXPECT_EQ(Create(0), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, StayAbsentWithoutCommunicationLibrary) {
  WriteDocument("Accessories.xml");
  context_.bidi = nullptr;
  EXPECT_EQ(Create(0), 0);
  EXPECT_EQ(context_.documents[0].xml, nullptr);
}

// Runs `check` in a child process, where it may close descriptors that the test needs; 0 means
// success.
template <class Check>
int StatusOfChild(Check check) {
  const pid_t child = fork();
  if (child == 0) _exit(check());
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

// Closes the descriptor; false when the next file to be opened does not get its number.
bool Vacate(int descriptor, const std::string& file) {
  close(descriptor);
  const int next = open(file.c_str(), O_RDONLY);
  close(next);
  return next == descriptor;
}

TEST_F(DeviceDocuments, DescriptorZeroIsAFailureAndClosed) {
  WriteDocument("Accessories.xml");
  EXPECT_EQ(StatusOfChild([this] {
              if (!Vacate(STDIN_FILENO, folder_ / "Accessories.xml")) return 1;
              if (Create(0) != -1) return 2;
              return fcntl(STDIN_FILENO, F_GETFD) == -1 ? 0 : 3;
            }),
            0);
}

TEST_F(DeviceDocuments, DescriptorOneIsAsGoodAsAnyOther) {
  WriteDocument("Accessories.xml");
  EXPECT_EQ(StatusOfChild([this] {
              if (!Vacate(STDOUT_FILENO, folder_ / "Accessories.xml")) return 1;
              if (Create(0) != 0 || context_.documents[0].xml == nullptr) return 2;
              return fcntl(STDOUT_FILENO, F_GETFD) == -1 ? 0 : 3;
            }),
            0);
}

TEST_F(DeviceDocuments, LoadAllInOrder) {
  WriteAllDocuments();
  EXPECT_EQ(analyze_common_create_all_xmldata(&context_), 0);
  EXPECT_THAT(LoadedIndexes(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
  std::vector<Argument> lengths;
  for (const Call& call : recording_.CallsTo("qvxmlwrapGet_New")) {
    lengths.push_back(call.arguments[1]);
  }
  std::vector<Argument> expected;
  for (const DocumentRow& row : kDocuments) {
    expected.push_back(ArgumentOf(("text of " + std::string(row.file)).size()));
  }
  EXPECT_EQ(lengths, expected);
}

TEST_F(DeviceDocuments, LoadingAllStopsAtTheFirstFailure) {
  WriteAllDocuments();
  folder_.Remove("Finisher_list.xml");
  EXPECT_EQ(analyze_common_create_all_xmldata(&context_), -1);
  EXPECT_THAT(LoadedIndexes(), ElementsAre(0, 1, 2));
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_New").size(), 3U);
}

TEST_F(DeviceDocuments, LoadingAllPassesOverUnreadableContent) {
  WriteAllDocuments();
  folder_.Write("Finisher_list.xml", "no document");
  EXPECT_EQ(analyze_common_create_all_xmldata(&context_), 0);
  EXPECT_THAT(LoadedIndexes(), ElementsAre(0, 1, 2, 4, 5, 6, 7, 8));
}

TEST_F(DeviceDocuments, LoadingAllNeedsAContext) {
  EXPECT_EQ(analyze_common_create_all_xmldata(nullptr), -1);
}

TEST_F(DeviceDocuments, DestroyReleasesTheReaderAndEmptiesTheSlot) {
  WriteDocument("Bin_list.xml", {.dict_counts = {{"list", 4}}});
  ASSERT_EQ(Create(4), 0);
  QvXmlReader* reader = context_.documents[4].xml;
  recording_.calls.clear();
  analyze_common_destroy_xmldata(&context_, 4);
  EXPECT_EQ(recording_.calls, (std::vector{CallTo("qvxmlwrapGet_Destroy", reader)}));
  EXPECT_EQ(context_.documents[4].xml, nullptr);
  EXPECT_EQ(context_.documents[4].count, 0);
}

TEST_F(DeviceDocuments, DestroyEmptiesTheSlotWhateverTheLibraryAnswers) {
  WriteDocument("Bin_list.xml");
  ASSERT_EQ(Create(4), 0);
  recording_.results["qvxmlwrapGet_Destroy"] = -1;
  analyze_common_destroy_xmldata(&context_, 4);
  EXPECT_EQ(context_.documents[4].xml, nullptr);
}

TEST_F(DeviceDocuments, DestroyPassesOverAnEmptySlot) {
  analyze_common_destroy_xmldata(&context_, 4);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(DeviceDocuments, DestroyPassesOverNullAndIndexesOutOfRange) {
  WriteAllDocuments();
  ASSERT_EQ(analyze_common_create_all_xmldata(&context_), 0);
  recording_.calls.clear();
  analyze_common_destroy_xmldata(nullptr, 0);
  for (const std::int32_t index : {-1, 9, kLowest, kHighest}) {
    analyze_common_destroy_xmldata(&context_, index);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_EQ(LoadedIndexes().size(), 9U);
}

TEST_F(DeviceDocuments, DestroyAllReleasesThemInOrder) {
  WriteAllDocuments();
  folder_.Write("Tray_list.xml", "no document");
  ASSERT_EQ(analyze_common_create_all_xmldata(&context_), 0);
  std::vector<Call> expected;
  for (const XmlData& slot : context_.documents) {
    if (slot.xml != nullptr) expected.push_back(CallTo("qvxmlwrapGet_Destroy", slot.xml));
  }
  ASSERT_EQ(expected.size(), 8U);
  recording_.calls.clear();
  EXPECT_EQ(analyze_common_destroy_all_xmldata(&context_), 0);
  EXPECT_EQ(recording_.calls, expected);
  EXPECT_THAT(LoadedIndexes(), IsEmpty());
}

TEST_F(DeviceDocuments, DestroyAllNeedsAContext) {
  EXPECT_EQ(analyze_common_destroy_all_xmldata(nullptr), -1);
}

TEST_F(DeviceDocuments, DestroyAllOfNoneSucceeds) {
  EXPECT_EQ(analyze_common_destroy_all_xmldata(&context_), 0);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

class DocumentInMemory : public DeviceDocuments {
 protected:
  void SetUp() override {
    DeviceDocuments::SetUp();
    recording_.documents["text"] = {.dict_counts = {{"list", 2}, {"other", 5}}};
  }
};

TEST_F(DocumentInMemory, IsParsedIntoItsSlot) {
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 4, nullptr), 0);
  EXPECT_TRUE(recording_.readers.contains(context_.documents[6].xml));
  EXPECT_EQ(context_.documents[6].count, 0);
}

TEST_F(DocumentInMemory, IsCountedByTheGivenKey) {
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 4, "other"), 0);
  EXPECT_EQ(context_.documents[6].count, 5);
}

TEST_F(DocumentInMemory, HasNoItemsWithoutKey) {
  context_.documents[3].count = 9;
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 3, "text", 4, nullptr), 0);
  EXPECT_EQ(context_.documents[3].count, 0);
}

TEST_F(DocumentInMemory, HasNoItemsUnderAMissingKey) {
  context_.documents[3].count = 9;
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 3, "text", 4, "missing"), 0);
  EXPECT_EQ(context_.documents[3].count, 0);
}

TEST_F(DocumentInMemory, MayHaveNoLength) {
  recording_.documents[""] = {};
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 0, nullptr), 0);
  EXPECT_NE(context_.documents[6].xml, nullptr);
}

TEST_F(DocumentInMemory, KeepsTheSlotWhenItIsNone) {
  ASSERT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 4, "list"), 0);
  const XmlData before = context_.documents[6];
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 6, "none", 4, "list"), 0);
  EXPECT_EQ(context_.documents[6].xml, before.xml);
  EXPECT_EQ(context_.documents[6].count, 2);
}

TEST_F(DocumentInMemory, DoesNotReleaseTheReaderInItsSlot) {
  ASSERT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 4, nullptr), 0);
  QvXmlReader* old_reader = context_.documents[6].xml;
  ASSERT_EQ(analyze_common_initialize_xmldata(&context_, 6, "text", 4, nullptr), 0);
  EXPECT_NE(context_.documents[6].xml, old_reader);
  EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_Destroy"), IsEmpty());
  Bidi_qvxmlwrapGet_Destroy(bidi_.get(), old_reader);
}

TEST_F(DocumentInMemory, RefusesNullsAndNumbersOutOfRange) {
  EXPECT_EQ(analyze_common_initialize_xmldata(nullptr, 0, "text", 4, nullptr), -1);
  EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 0, nullptr, 4, nullptr), -1);
  for (const std::int32_t length : {-1, kLowest}) {
    EXPECT_EQ(analyze_common_initialize_xmldata(&context_, 0, "text", length, nullptr), -1);
  }
  for (const std::int32_t index : {-1, 9, kLowest, kHighest}) {
    EXPECT_EQ(analyze_common_initialize_xmldata(&context_, index, "text", 4, nullptr), -1);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

}  // namespace
}  // namespace ia_test
