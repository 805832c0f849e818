#include "info_analyze/analyzer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/analyze/intercepted_calls.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/option_lists.h"
#include "tests/support/print_queues.h"
#include "tests/support/recording_library.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

using testing::IsEmpty;

constexpr std::size_t kPointer = sizeof(void*);
static_assert(std::is_standard_layout_v<AnalyzeContext>);
static_assert(offsetof(AnalyzeContext, bidi) == 0);
static_assert(offsetof(AnalyzeContext, queue_name) == kPointer);
static_assert(offsetof(AnalyzeContext, xml_folder) == 2 * kPointer);
static_assert(offsetof(AnalyzeContext, driver_name) == 3 * kPointer);
static_assert(offsetof(AnalyzeContext, documents) == 4 * kPointer);
static_assert(sizeof(AnalyzeContext::documents) == 18 * kPointer);
static_assert(offsetof(AnalyzeContext, media_type_flags) == 22 * kPointer);
static_assert(offsetof(AnalyzeContext, input_tray_flags) == 23 * kPointer);
static_assert(offsetof(AnalyzeContext, slot_media_info_flags) == 24 * kPointer);
static_assert(offsetof(AnalyzeContext, src_option_flags) == 25 * kPointer);
static_assert(offsetof(AnalyzeContext, finisher_name_flags) == 26 * kPointer);
static_assert(offsetof(AnalyzeContext, ppd_options) == 27 * kPointer);
static_assert(offsetof(AnalyzeContext, is_ppd_cache) == 28 * kPointer);
static_assert(sizeof(AnalyzeContext::is_ppd_cache) == 1);

constexpr char kWholePpd[] =
    "*PPD-Adobe: \"4.3\"\n"
    "*QVAnlz_DriverName: \"RA-H2\"\n"
    "*QV_Prot_MediaType: \"Media:1\"\n"
    "*QVAnlz_SlotMediaInfo: \"Slot:2\"\n"
    "*QVAnlz_InputTray: \"Tray:3,Deck:33\"\n"
    "*QVAnlz_FinisherName: \"Finisher:4\"\n"
    "*QVAnlz_SrcOption: \"Source:5\"\n"
    "*%QVUIValue: *QVColorMode(mono)\n";

Entries FlagsOf(const FlagInfo* store) {
  Entries flags;
  for (std::int32_t i = 0; store != nullptr && i < store->count; ++i) {
    flags.emplace_back(store->entries[i].name, store->entries[i].value);
  }
  return flags;
}

class Analyzer : public testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(bidi_, nullptr); }
  void TearDown() override {
    EXPECT_EQ(CountEntries(queues_.temporary_folder()), 0);
    EXPECT_EQ(CountOpenDescriptors(), descriptors_);
  }

  AnalyzerPtr Create(const char* queue, const char* folder = nullptr) {
    return AnalyzerPtr(Analyze_Create(bidi_.get(), queue, folder));
  }

  const PrintQueues& queues_ = PrintQueues::Get();
  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  std::ptrdiff_t descriptors_ = CountOpenDescriptors();
};

TEST_F(Analyzer, HoldsWhatItWasGiven) {
  queues_.Add("whole", kWholePpd);
  const char folder[] = "/some/folder";
  char queue[] = "whole";
  const AnalyzerPtr analyzer = Create(queue, folder);
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(analyzer->bidi, bidi_.get());
  EXPECT_EQ(analyzer->xml_folder, folder);
  EXPECT_NE(analyzer->queue_name, queue);
  queue[0] = 'x';
  EXPECT_STREQ(analyzer->queue_name, "whole");
  EXPECT_EQ(analyzer->is_ppd_cache, 0);
}

TEST_F(Analyzer, HoldsTheOptionsOfThePpd) {
  queues_.Add("options", kWholePpd);
  const AnalyzerPtr analyzer = Create("options");
  ASSERT_NE(analyzer, nullptr);
  Entries entries;
  for (const OptTable* node = analyzer->ppd_options; node != nullptr; node = node->next) {
    entries.emplace_back(node->key, node->value);
  }
  EXPECT_EQ(entries, (Entries{{"QVColorMode", "mono"},
                              {"QVAnlz_SrcOption", "Source:5"},
                              {"QVAnlz_FinisherName", "Finisher:4"},
                              {"QVAnlz_InputTray", "Tray:3,Deck:33"},
                              {"QVAnlz_SlotMediaInfo", "Slot:2"},
                              {"QV_Prot_MediaType", "Media:1"},
                              {"QVAnlz_DriverName", "RA-H2"}}));
}

TEST_F(Analyzer, HoldsTheModelCode) {
  queues_.Add("model", kWholePpd);
  const AnalyzerPtr analyzer = Create("model");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_STREQ(analyzer->driver_name, "RA-H2");
}

TEST_F(Analyzer, HoldsAFlagStoreForEachKey) {
  queues_.Add("flags", kWholePpd);
  const AnalyzerPtr analyzer = Create("flags");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(FlagsOf(analyzer->media_type_flags), (Entries{{"Media", "1"}}));
  EXPECT_EQ(FlagsOf(analyzer->slot_media_info_flags), (Entries{{"Slot", "2"}}));
  EXPECT_EQ(FlagsOf(analyzer->input_tray_flags), (Entries{{"Tray", "3"}, {"Deck", "33"}}));
  EXPECT_EQ(FlagsOf(analyzer->finisher_name_flags), (Entries{{"Finisher", "4"}}));
  EXPECT_EQ(FlagsOf(analyzer->src_option_flags), (Entries{{"Source", "5"}}));
  for (const FlagInfo* store :
       {analyzer->media_type_flags, analyzer->slot_media_info_flags, analyzer->input_tray_flags,
        analyzer->finisher_name_flags, analyzer->src_option_flags}) {
    EXPECT_EQ(store->capacity, 1024);
  }
}

TEST_F(Analyzer, StartsWithoutDocuments) {
  queues_.Add("empty", kWholePpd);
  const AnalyzerPtr analyzer = Create("empty", "/some/folder");
  ASSERT_NE(analyzer, nullptr);
  for (const XmlData& slot : analyzer->documents) {
    EXPECT_EQ(slot.xml, nullptr);
    EXPECT_EQ(slot.count, 0);
  }
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(Analyzer, MayLackItsModelCode) {
  queues_.Add("modelless", "*QVColorMode: \"auto\"\n*QVAnlz_DriverNames: \"RA\"\n");
  const AnalyzerPtr analyzer = Create("modelless");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(analyzer->driver_name, nullptr);
}

TEST_F(Analyzer, FindsItsModelCodeInAnyCase) {
  queues_.Add("lower", "*QVanlz_drivername: \"RC-STD\"\n");
  const AnalyzerPtr analyzer = Create("lower");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_STREQ(analyzer->driver_name, "RC-STD");
}

TEST_F(Analyzer, TakesAnEmptyModelCode) {
  queues_.Add("blank", "*QVAnlz_DriverName: \"\"\n");
  const AnalyzerPtr analyzer = Create("blank");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_STREQ(analyzer->driver_name, "");
}

TEST_F(Analyzer, TakesTheLastOfSeveralModelCodes) {
  queues_.Add("twice", "*QVAnlz_DriverName: \"RA-H2\"\n*QVAnlz_DriverName: \"RC-STD\"\n");
  const AnalyzerPtr analyzer = Create("twice");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_STREQ(analyzer->driver_name, "RC-STD");
}

TEST_F(Analyzer, HasEmptyStoresWithoutFlagKeys) {
  queues_.Add("flagless", "*QVAnlz_DriverName: \"RA-H2\"\n");
  const AnalyzerPtr analyzer = Create("flagless");
  ASSERT_NE(analyzer, nullptr);
  for (const FlagInfo* store :
       {analyzer->media_type_flags, analyzer->slot_media_info_flags, analyzer->input_tray_flags,
        analyzer->finisher_name_flags, analyzer->src_option_flags}) {
    ASSERT_NE(store, nullptr);
    EXPECT_EQ(store->count, 0);
    EXPECT_EQ(store->capacity, 1024);
  }
}

TEST_F(Analyzer, IsMadeEvenForMoreFlagsThanAStoreHolds) {
  std::string ppd;
  for (int flag = 0; flag < 1100; ++flag) {
    const std::string number = std::to_string(flag);
    ppd += "*QVAnlz_SrcOption" + number + ": \"F" + number + ":" + number + "\"\n";
  }
  queues_.Add("full", ppd);
  const AnalyzerPtr analyzer = Create("full");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(analyzer->src_option_flags->count, 1024);
}

// In the order in which their stores are filled.
constexpr const char* kFlagKeys[] = {"QV_Prot_MediaType", "QVAnlz_SlotMediaInfo",
                                     "QVAnlz_InputTray", "QVAnlz_FinisherName", "QVAnlz_SrcOption"};

TEST_F(Analyzer, MayLackAFlagStoreAndHasTheOthers) {
  queues_.Add("stores", kWholePpd);
  for (std::size_t lacking = 0; lacking < std::size(kFlagKeys); ++lacking) {
    FlagStores stores;
    stores.not_made = {kFlagKeys[lacking]};
    const AnalyzerPtr analyzer = Create("stores");
    ASSERT_NE(analyzer, nullptr) << kFlagKeys[lacking];
    const FlagInfo* const made[] = {analyzer->media_type_flags, analyzer->slot_media_info_flags,
                                    analyzer->input_tray_flags, analyzer->finisher_name_flags,
                                    analyzer->src_option_flags};
    for (std::size_t key = 0; key < std::size(kFlagKeys); ++key) {
      EXPECT_EQ(FlagsOf(made[key]).empty(), key == lacking) << kFlagKeys[key];
    }
  }
}

TEST_F(Analyzer, IsMadeWithoutAnyFlagStore) {
  queues_.Add("no_stores", kWholePpd);
  FlagStores stores;
  stores.not_made = {std::begin(kFlagKeys), std::end(kFlagKeys)};
  const AnalyzerPtr analyzer = Create("no_stores");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(analyzer->media_type_flags, nullptr);
  EXPECT_EQ(analyzer->src_option_flags, nullptr);
  EXPECT_STREQ(analyzer->driver_name, "RA-H2");
}

TEST_F(Analyzer, LastFlagStoreThatWasMadeDecidesWhetherFillingFailed) {
  queues_.Add("filled", kWholePpd);
  for (const char* key : kFlagKeys) {
    FlagStores stores;
    stores.results = {{key, -1}};
    EXPECT_EQ(Create("filled") == nullptr, std::string("QVAnlz_SrcOption") == key) << key;
  }
  FlagStores stores;
  stores.results = {{"QVAnlz_FinisherName", 7}};
  stores.not_made = {"QVAnlz_SrcOption"};
  EXPECT_EQ(Create("filled"), nullptr);
}

TEST_F(Analyzer, NeedsCommunicationLibraryAndQueue) {
  queues_.Add("there", kWholePpd);
  EXPECT_EQ(Analyze_Create(nullptr, "there", "/some/folder"), nullptr);
  EXPECT_EQ(Analyze_Create(bidi_.get(), nullptr, "/some/folder"), nullptr);
  EXPECT_EQ(Analyze_Create(nullptr, nullptr, nullptr), nullptr);
}

TEST_F(Analyzer, NeedsNoFolder) {
  queues_.Add("folderless", kWholePpd);
  const AnalyzerPtr analyzer = Create("folderless", nullptr);
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(analyzer->xml_folder, nullptr);
  EXPECT_EQ(analyze_common_create_xmldata(analyzer.get(), 0), -1);
}

TEST_F(Analyzer, NeedsAQueueWithAPpd) { EXPECT_EQ(Create("no_such_queue"), nullptr); }

TEST_F(Analyzer, NeedsAPpdWithOptions) {
  queues_.Add("plain", "*PPD-Adobe: \"4.3\"\n*ModelName: \"Plain\"\n");
  queues_.Add("nothing", "");
  EXPECT_EQ(Create("plain"), nullptr);
  EXPECT_EQ(Create("nothing"), nullptr);
}

TEST_F(Analyzer, LeavesNoTemporaryFileWhileItLives) {
  queues_.Add("lasting", kWholePpd);
  const AnalyzerPtr analyzer = Create("lasting");
  ASSERT_NE(analyzer, nullptr);
  EXPECT_EQ(CountEntries(queues_.temporary_folder()), 0);
}

TEST_F(Analyzer, DoesNotFollowAChangeOfThePpd) {
  queues_.Add("changing", kWholePpd);
  const AnalyzerPtr analyzer = Create("changing");
  ASSERT_NE(analyzer, nullptr);
  queues_.Add("changing", "*QVAnlz_DriverName: \"RC-STD\"\n");
  EXPECT_STREQ(analyzer->driver_name, "RA-H2");
  const AnalyzerPtr later = Create("changing");
  ASSERT_NE(later, nullptr);
  EXPECT_STREQ(later->driver_name, "RC-STD");
}

TEST_F(Analyzer, DestroyingNullDoesNothing) { Analyze_Destroy(nullptr); }

TEST_F(Analyzer, DestroyingReleasesTheDocumentsInOrderAndLeavesTheLibrary) {
  queues_.Add("loaded", kWholePpd);
  AnalyzeContext* analyzer = Analyze_Create(bidi_.get(), "loaded", nullptr);
  ASSERT_NE(analyzer, nullptr);
  std::vector<Call> expected;
  for (const std::size_t index : {0U, 1U, 3U, 4U, 5U, 7U, 8U}) {
    QvXmlReader* reader = recording_.Open({});
    analyzer->documents[index] = {reader, 3};
    expected.push_back(CallTo("qvxmlwrapGet_Destroy", reader));
  }
  Analyze_Destroy(analyzer);
  EXPECT_EQ(recording_.calls, expected);
  EXPECT_THAT(recording_.readers, IsEmpty());
  EXPECT_NE(Bidi_qvxmlwrapGet_CloseDict(bidi_.get(), nullptr), -1);
}

TEST_F(Analyzer, DestroyingTakesOneWithoutContents) {
  Analyze_Destroy(static_cast<AnalyzeContext*>(calloc(1, sizeof(AnalyzeContext))));
  EXPECT_THAT(recording_.calls, IsEmpty());
}

TEST_F(Analyzer, DestroyingTakesOneThatIsHalfMade) {
  auto* analyzer = static_cast<AnalyzeContext*>(calloc(1, sizeof(AnalyzeContext)));
  analyzer->queue_name = strdup("half");
  analyzer->src_option_flags = zflaginfo_init("QVAnlz_SrcOption", 2);
  zflaginfo_get("A:1,B:2,C:3", analyzer->src_option_flags);
  analyzer->ppd_options = NewTable({{"A", "1"}, {"B", "2"}});
  Analyze_Destroy(analyzer);
}

TEST_F(Analyzer, IsIndependentOfOthers) {
  queues_.Add("first", "*QVAnlz_DriverName: \"RA-H2\"\n");
  queues_.Add("second", "*QVAnlz_DriverName: \"RC-STD\"\n");
  AnalyzerPtr first = Create("first");
  const AnalyzerPtr second = Create("second");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  first.reset();
  EXPECT_STREQ(second->driver_name, "RC-STD");
  EXPECT_STREQ(second->queue_name, "second");
}

}  // namespace
}  // namespace ia_test
