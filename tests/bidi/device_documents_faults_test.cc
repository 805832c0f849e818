// Device documents whose files or caches fail in rare ways.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ios>
#include <ostream>
#include <string>

#include "info_analyze/analyzer.h"
#include "tests/support/recording_library.h"
#include "tests/support/scripted_read.h"
#include "tests/support/temp_folder.h"

namespace {

// The data cache of a PPD, which answers as a test wants.
struct PpdCache {
  int calls = 0;
  std::string queue_name = {};
  std::string cache_key = {};
  std::int32_t result = -1;
  std::string document = {};
};
PpdCache g_cache;

}  // namespace

extern "C" std::int32_t __wrap_info_common_read_data_from_ppd(const char* queue_name,
                                                              const char* cache_key, void** data,
                                                              std::int32_t* length) {
  ++g_cache.calls;
  g_cache.queue_name = queue_name;
  g_cache.cache_key = cache_key;
  if (g_cache.result != 0) return g_cache.result;
  *data = strdup(g_cache.document.c_str());
  *length = static_cast<std::int32_t>(g_cache.document.size());
  return 0;
}

namespace ia_test {
namespace {

using testing::IsEmpty;

class DocumentFaults : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    g_cache = {};
    ReadSteps().clear();
    folder_.Write("Accessories.xml", text_);
    recording_.documents[text_] = {};
    context_.bidi = bidi_.get();
    context_.xml_folder = folder_.path().c_str();
    context_.queue_name = queue_;
    descriptors_ = CountOpenDescriptors();
  }

  void TearDown() override {
    EXPECT_THAT(ReadSteps(), IsEmpty());
    EXPECT_EQ(CountOpenDescriptors(), descriptors_);
    analyze_common_destroy_all_xmldata(&context_);
    EXPECT_THAT(recording_.readers, IsEmpty());
  }

  std::int32_t Create() { return analyze_common_create_xmldata(&context_, 0); }

  void ExpectNothingLoaded() {
    EXPECT_EQ(context_.documents[0].xml, nullptr);
    EXPECT_THAT(recording_.calls, IsEmpty());
  }

  const std::string text_ = "0123456789";
  char queue_[6] = "queue";
  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
  std::ptrdiff_t descriptors_ = 0;
};

TEST_F(DocumentFaults, ShortReadsGoOn) {
  ReadSteps() = {{.most = 1}, {.most = 2}, {.most = 1}, {.most = 5}, {.most = 1}};
  EXPECT_EQ(Create(), 0);
  EXPECT_NE(context_.documents[0].xml, nullptr);
}

TEST_F(DocumentFaults, FailedReadIsReportedByItsErrno) {
  for (const int error : {EIO, EBADF, EISDIR, EAGAIN}) {
    ReadSteps() = {{.fails = true, .error = error}};
    EXPECT_EQ(Create(), error);
    ReadSteps() = {{.most = 4}, {.fails = true, .error = error}};
    EXPECT_EQ(Create(), error);
  }
  ExpectNothingLoaded();
}

TEST_F(DocumentFaults, FailedReadWithoutErrnoIsAFailureToo) {
  ReadSteps() = {{.most = 4}, {.fails = true, .error = 0}};
  EXPECT_EQ(Create(), -1);
  ExpectNothingLoaded();
}

TEST_F(DocumentFaults, FailedReadKeepsTheSlot) {
  ASSERT_EQ(Create(), 0);
  QvXmlReader* const reader = context_.documents[0].xml;
  ReadSteps() = {{.fails = true, .error = EIO}};
  EXPECT_EQ(Create(), EIO);
  EXPECT_EQ(context_.documents[0].xml, reader);
}

TEST_F(DocumentFaults, InterruptedReadIsReportedOrRepeated) {
  ReadSteps() = {{.most = 4}, {.fails = true, .error = EINTR}};
  const std::int32_t result = Create();
  if (result == 0) {
    EXPECT_NE(context_.documents[0].xml, nullptr);
  } else {
    EXPECT_EQ(result, EINTR);
    ExpectNothingLoaded();
  }
}

TEST_F(DocumentFaults, FileThatShrinksIsAFailure) {
  ReadSteps() = {{.most = 4}, {.most = 0}};
  EXPECT_EQ(Create(), -1);
  ReadSteps() = {{.most = 0}};
  EXPECT_EQ(Create(), -1);
  ReadSteps() = {{.most = 100, .first = [this] {
                    std::filesystem::resize_file(folder_ / "Accessories.xml", 9);
                  }}};
  EXPECT_EQ(Create(), -1);
  ExpectNothingLoaded();
}

TEST_F(DocumentFaults, FileThatGrowsIsReadToItsFirstLength) {
  ReadSteps() = {{.most = 100, .first = [this] {
                    std::ofstream(folder_ / "Accessories.xml", std::ios::app) << "more";
                  }}};
  EXPECT_EQ(Create(), 0);
  EXPECT_NE(context_.documents[0].xml, nullptr);
}

TEST_F(DocumentFaults, LoadingAllReportsTheErrnoOfTheFirstFailure) {
  ReadSteps() = {{.fails = true, .error = EIO}};
  EXPECT_EQ(analyze_common_create_all_xmldata(&context_), EIO);
  ExpectNothingLoaded();
}

struct CacheRow {
  std::int32_t index;
  const char* cache_key;
  const char* list_key;
};

void PrintTo(const CacheRow& row, std::ostream* out) { *out << row.cache_key; }

class CachedDocument : public DocumentFaults, public testing::WithParamInterface<CacheRow> {
 protected:
  void SetUp() override {
    DocumentFaults::SetUp();
    context_.is_ppd_cache = 1;
  }
};

TEST_P(CachedDocument, IsAskedForByItsKey) {
  EXPECT_EQ(analyze_common_create_xmldata(&context_, GetParam().index), -1);
  EXPECT_EQ(g_cache.calls, 1);
  EXPECT_EQ(g_cache.queue_name, "queue");
  EXPECT_EQ(g_cache.cache_key, GetParam().cache_key);
  ExpectNothingLoaded();
}

TEST_P(CachedDocument, IsLoadedWhenThereIsOne) {
  g_cache.result = 0;
  g_cache.document = "cached";
  recording_.documents["cached"] = {.dict_counts = {{"list", 6}}};
  EXPECT_EQ(analyze_common_create_xmldata(&context_, GetParam().index), 0);
  EXPECT_NE(context_.documents[GetParam().index].xml, nullptr);
  EXPECT_EQ(context_.documents[GetParam().index].count, GetParam().list_key != nullptr ? 6 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CachedDocument,
    testing::Values(CacheRow{0, "INFO_Acce", nullptr}, CacheRow{1, "INFO_Func", nullptr},
                    CacheRow{2, "INFO_SpID", nullptr}, CacheRow{3, "INFO_FiLi", "list"},
                    CacheRow{4, "INFO_BiLi", "list"}, CacheRow{5, "INFO_TrLi", "list"},
                    CacheRow{6, "INFO_Reso", nullptr}, CacheRow{7, "INFO_FaLL", "list"},
                    CacheRow{8, "INFO_DeNa", nullptr}),
    [](const auto& info) { return std::string(info.param.cache_key); });

TEST_F(DocumentFaults, CacheIsNotAskedForFiles) {
  EXPECT_EQ(Create(), 0);
  EXPECT_EQ(g_cache.calls, 0);
}

}  // namespace
}  // namespace ia_test
