#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"
#include "tests/support/option_lists.h"
#include "tests/support/recording_library.h"

namespace ia_test {
namespace {

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// The value that two handlers report for a device's number, and a PPD with these lists.
class ValueLists : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(bidi_, nullptr);
    context_.bidi = bidi_.get();
  }
  void TearDown() override { OptionList_Terminate(&context_.ppd_options); }

  void SetPpd(const Entries& entries) {
    OptionList_Terminate(&context_.ppd_options);
    context_.ppd_options = NewTable(entries);
  }

  std::string SpecId(std::int32_t number) { return Report(z_Update_Prn_specid, number); }
  std::string PlatformVersion(std::int32_t number) {
    return Report(z_Update_Prn_platformVer, number);
  }

 private:
  std::string Report(decltype(&z_Update_Prn_specid) handler, std::int32_t number) {
    CallersList list;
    context_.documents[IA_DOCUMENT_SPECID].xml =
        recording_.Open({.longs = {{"version", number}, {"platform_version", number}},
                         .strings = {{"platform_name", "NCPP"}}});
    EXPECT_EQ(handler(&context_, list.get()), 0);
    EXPECT_EQ(list.entries().size(), 1U);
    return list.entries().empty() ? "" : list.entries()[0].second;
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
};

struct ValueListRow {
  const char* name;
  const char* list;
  std::int32_t number;
  const char* text;
};

void PrintTo(const ValueListRow& row, std::ostream* out) { *out << row.name; }

class ValueListRule : public ValueLists, public testing::WithParamInterface<ValueListRow> {};

TEST_P(ValueListRule, FitsTheSpecId) {
  SetPpd({{"QVValueListPlatformVersion", "7777"}, {"QVValueListSpecID", GetParam().list}});
  EXPECT_EQ(SpecId(GetParam().number), GetParam().text);
}

TEST_P(ValueListRule, FitsThePlatformVersion) {
  SetPpd({{"QVValueListSpecID", "7777"}, {"QVValueListPlatformVersion", GetParam().list}});
  EXPECT_EQ(PlatformVersion(GetParam().number), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Lists, ValueListRule,
    testing::Values(ValueListRow{"BelowTheFirst", "0150,0200", 0x123, "0150"},
                    ValueListRow{"JustBelowTheFirst", "0150,0200", 0x14F, "0150"},
                    ValueListRow{"EqualToTheFirst", "0150,0200", 0x150, "0150"},
                    ValueListRow{"JustAboveTheFirst", "0150,0200", 0x151, "0150"},
                    ValueListRow{"Between", "0100,0120,0200", 0x123, "0120"},
                    ValueListRow{"EqualToTheMiddle", "0100,0120,0200", 0x120, "0120"},
                    ValueListRow{"JustBelowTheMiddle", "0100,0120,0200", 0x11F, "0100"},
                    ValueListRow{"JustBelowTheLast", "0100,0120,0200", 0x1FF, "0120"},
                    ValueListRow{"EqualToTheLast", "0100,0120,0200", 0x200, "0200"},
                    ValueListRow{"AboveTheLast", "0100,0120,0200", 0x201, "0200"},
                    ValueListRow{"FarAboveTheLast", "0100,0120,0200", kHighest, "0200"},
                    ValueListRow{"NegativeBelowTheFirst", "0100,0120", -1, "0100"},
                    ValueListRow{"LowestBelowTheFirst", "0100,0120", kLowest, "0100"},
                    ValueListRow{"ZeroBelowTheFirst", "0100,0120", 0, "0100"},
                    ValueListRow{"OneValueBelow", "0120", 5, "0120"},
                    ValueListRow{"OneValueEqual", "0120", 0x120, "0120"},
                    ValueListRow{"OneValueAbove", "0120", 0x500, "0120"},
                    ValueListRow{"Unsorted", "0200,0100,0120", 0x123, "0120"},
                    ValueListRow{"UnsortedBelowTheFirst", "0200,0100,0120", 1, "0100"},
                    ValueListRow{"DuplicatesEqual", "0100,0120,0120,0200", 0x120, "0120"},
                    ValueListRow{"DuplicatesBetween", "0100,0120,0120,0200", 0x130, "0120"},
                    ValueListRow{"DuplicatesOfTheFirst", "0100,0100", 0x50, "0100"},
                    ValueListRow{"LettersInEitherCase", "00aF,00Bf", 0xB0, "00AF"},
                    ValueListRow{"Prefixed", "0x100,0X120", 0x123, "0120"},
                    ValueListRow{"WithBlanks", " 0100, 0120", 0x123, "0120"},
                    ValueListRow{"WithEmptyItems", ",,0100,,0120,", 0x123, "0120"},
                    ValueListRow{"TextCountsAsZero", "xyz,0120", 0x10, "0000"},
                    ValueListRow{"NegativeItems", "-5,0120", -3, "FFFFFFFB"},
                    ValueListRow{"NegativeItemEqual", "-5,0120", -5, "FFFFFFFB"},
                    ValueListRow{"ItemBeyond32Bits", "0100,FFFFFFFF", kHighest, "7FFFFFFF"},
                    ValueListRow{"ItemBelow32Bits", "-FFFFFFFFF,0100", kLowest, "80000000"},
                    ValueListRow{"MoreDigitsThanFour", "12345,23456", 0x12346, "12345"},
                    ValueListRow{"EmptyList", "", 0x123, "0123"},
                    ValueListRow{"OnlyCommas", ",,,", 0x123, "0123"},
                    ValueListRow{"EmptyListAndNegative", "", -1, "FFFFFFFF"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(ValueLists, MissingListKeepsTheNumber) {
  SetPpd({{"QVAnlz_DriverName", "RA-H2"}});
  EXPECT_EQ(SpecId(0x123), "0123");
  EXPECT_EQ(PlatformVersion(0x123), "0123");
}

TEST_F(ValueLists, MissingTableKeepsTheNumber) {
  EXPECT_EQ(SpecId(0x123), "0123");
  EXPECT_EQ(PlatformVersion(0x123), "0123");
}

TEST_F(ValueLists, ExtremeNumbersAreKeptWithoutList) {
  EXPECT_EQ(SpecId(kHighest), "7FFFFFFF");
  EXPECT_EQ(SpecId(kLowest), "80000000");
  EXPECT_EQ(PlatformVersion(kHighest), "7FFFFFFF");
  EXPECT_EQ(PlatformVersion(kLowest), "80000000");
}

TEST_F(ValueLists, KeyIsFoundInEitherCase) {
  SetPpd({{"qvvaluelistspecid", "0100"}, {"QVVALUELISTPLATFORMVERSION", "0200"}});
  EXPECT_EQ(SpecId(0x123), "0100");
  EXPECT_EQ(PlatformVersion(0x123), "0200");
}

TEST_F(ValueLists, KeyIsFoundWholeOnly) {
  SetPpd({{"QVValueListSpecID2", "0100"}, {"QVValueListPlatformVersionX", "0100"}});
  EXPECT_EQ(SpecId(0x123), "0123");
  EXPECT_EQ(PlatformVersion(0x123), "0123");
}

TEST_F(ValueLists, StayInTheTable) {
  SetPpd({{"QVValueListSpecID", "0100,0200"}});
  EXPECT_EQ(SpecId(0x123), "0100");
  EXPECT_EQ(SpecId(0x223), "0200");
}

}  // namespace
}  // namespace ia_test
