// Queries whose files or value getters fail.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>

#include "info_analyze/analyzer.h"
#include "info_analyze/option_setter.h"
#include "info_analyze/printer_updates.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/option_lists.h"
#include "tests/support/print_queues.h"
#include "tests/support/recording_library.h"
#include "tests/support/scripted_read.h"
#include "tests/support/temp_folder.h"

namespace {

bool g_getters_fail = false;
std::int32_t g_is_ppd_cache = 0;

}  // namespace

extern "C" {

#define SOMETIMES_FAILING(getter)                             \
  char* __real_##getter(const void* datum);                   \
  char* __wrap_##getter(const void* datum) noexcept {         \
    return g_getters_fail ? nullptr : __real_##getter(datum); \
  }
SOMETIMES_FAILING(zGetBoolString)
SOMETIMES_FAILING(zGetBinaryString)
SOMETIMES_FAILING(zGetSpecIDString)
SOMETIMES_FAILING(zGetHexString)
SOMETIMES_FAILING(zGetString)
#undef SOMETIMES_FAILING

std::int32_t __wrap_info_common_is_ppd_cache() { return g_is_ppd_cache; }

}  // extern "C"

namespace ia_test {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

constexpr auto kFiles = std::to_array<const char*>(
    {"Accessories.xml", "Functions.xml", "Specid.xml", "Finisher_list.xml", "Bin_list.xml",
     "Tray_list.xml", "Resolutions.xml", "Fax_line_list.xml", "Devicename.xml"});

class QueryFaults : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    g_getters_fail = false;
    g_is_ppd_cache = 0;
    ReadSteps().clear();
    for (const char* file : kFiles) folder_.Write(file, "text");
    recording_.documents["text"] = {.longs = {{"hd", 1},
                                              {"memory", 512},
                                              {"duplex", 1},
                                              {"management", 1},
                                              {"trustprint", 1},
                                              {"securedprint", 1},
                                              {"must_authentication", 1},
                                              {"version", 0x123},
                                              {"platform_version", 0x200},
                                              {"resolution_300", 1},
                                              {"resolution_600", 1},
                                              {"resolution_1200", 1}},
                                    .strings = {{"authentication_user", "mode3"},
                                                {"authentication_job_password", "mode3"},
                                                {"authentication_f_code", "mode3"},
                                                {"platform_name", "NCPP"}}};
    context_.bidi = bidi_.get();
    context_.xml_folder = folder_.path().c_str();
  }

  void TearDown() override {
    EXPECT_THAT(ReadSteps(), IsEmpty());
    analyze_common_destroy_all_xmldata(&context_);
    EXPECT_THAT(recording_.readers, IsEmpty());
  }

  // Each file is read in one step, so that step n is that of document n.
  void FailReading(std::size_t document, int error) {
    ReadSteps().assign(document, ReadStep{.most = 100});
    ReadSteps().push_back({.fails = true, .error = error});
  }

  Entries Appended(decltype(&z_Update_Prn_specid) handler) {
    CallersList list;
    EXPECT_EQ(handler(&context_, list.get()), 0);
    return list.entries();
  }

  CallersList list_;
  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  TempFolder folder_;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

TEST_F(QueryFaults, ErrnoOfTheLastDocumentIsTheResult) {
  FailReading(8, EIO);
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), EIO);
  EXPECT_THAT(list_.entries(), IsEmpty());
  EXPECT_NE(context_.documents[7].xml, nullptr);
  EXPECT_EQ(context_.documents[8].xml, nullptr);
}

TEST_F(QueryFaults, ErrnoOfTheOnlyDocumentToLoadIsTheResult) {
  ASSERT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), 0);
  analyze_common_destroy_xmldata(&context_, 3);
  FailReading(0, ENXIO);
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), ENXIO);
}

TEST_F(QueryFaults, ErrnoOfAnEarlierDocumentIsMasked) {
  FailReading(0, EIO);
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), 0);
  EXPECT_EQ(context_.documents[0].xml, nullptr);
  EXPECT_THAT(list_.entries(), Not(Contains(Pair("QVHardDisk", testing::_))));
  EXPECT_THAT(list_.entries(), Contains(Pair("QVDupUnit", "True")));
}

TEST_F(QueryFaults, NextQueryReadsWhatFailed) {
  FailReading(8, EIO);
  ASSERT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), EIO);
  EXPECT_EQ(Analyze_Info_FromPrinter(&context_, list_.get(), 0), 0);
  EXPECT_THAT(list_.entries(), Contains(Pair("QVHardDisk", "True")));
}

// Getters fail when an allocation fails.
class FailingGetters : public QueryFaults {
 protected:
  void SetUp() override {
    QueryFaults::SetUp();
    ASSERT_EQ(analyze_common_create_all_xmldata(&context_), 0);
    g_getters_fail = true;
  }
};

TEST_F(FailingGetters, LeaveTheDefaultsOfAccessories) {
  EXPECT_EQ(Appended(z_Update_Prn_accessories),
            (Entries{{"QVHardDisk", "False"}, {"QVTotalMemSize", "0"}}));
}

TEST_F(FailingGetters, LeaveTheDefaultsOfFunctions) {
  EXPECT_EQ(Appended(z_Update_Prn_functions), (Entries{{"QVDupUnit", "False"},
                                                       {"QVUseJobAccount", "False"},
                                                       {"QVEnableTrustPrint", "False"},
                                                       {"QVUseSecuredPrint", "False"},
                                                       {"QVUseCSModeJobAccount", "mode1"},
                                                       {"QVUseCSModeSecured", "mode1"},
                                                       {"QVUseCSModeFCode", "mode1"},
                                                       {"QVUseUsrManagement", "False"}}));
}

TEST_F(FailingGetters, LeaveTheDefaultOfTheSpecId) {
  EXPECT_EQ(Appended(z_Update_Prn_specid), (Entries{{"QVSpecID", "0000"}}));
}

TEST_F(FailingGetters, LeaveTheDefaultOfThePlatformVersion) {
  EXPECT_EQ(Appended(z_Update_Prn_platformVer), (Entries{{"QVPlatformVersion", "0000"}}));
}

TEST_F(FailingGetters, LeaveTheDefaultsOfResolutions) {
  EXPECT_EQ(Appended(z_Update_Prn_resolutions), (Entries{{"QVEnableQuick", "False"},
                                                         {"QVEnableFine", "False"},
                                                         {"QVEnableSuperFine", "False"}}));
}

TEST_F(FailingGetters, SucceedAgainAfterwards) {
  g_getters_fail = false;
  EXPECT_EQ(Appended(z_Update_Prn_accessories),
            (Entries{{"QVHardDisk", "True"}, {"QVTotalMemSize", "512"}}));
}

TEST_F(QueryFaults, AnalyzerKeepsWhetherDocumentsAreCachedInThePpd) {
  PrintQueues::Get().Add("cached", "*QVAnlz_DriverName: \"RA-H2\"\n");
  for (const std::int32_t is_cached : {0, 1}) {
    g_is_ppd_cache = is_cached;
    const AnalyzerPtr analyzer(Analyze_Create(bidi_.get(), "cached", folder_.path().c_str()));
    ASSERT_NE(analyzer, nullptr);
    EXPECT_EQ(analyzer->is_ppd_cache, is_cached);
    EXPECT_EQ(Analyze_Info_FromPrinter(analyzer.get(), list_.get(), 0), is_cached != 0 ? -1 : 0);
  }
}

}  // namespace
}  // namespace ia_test
