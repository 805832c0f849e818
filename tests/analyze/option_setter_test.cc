#include "info_analyze/option_setter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/option_lists.h"
#include "tests/support/recording_library.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kPointer = sizeof(void*);
static_assert(std::is_standard_layout_v<OptionSetter>);
static_assert(offsetof(OptionSetter, keyword) == 0);
static_assert(offsetof(OptionSetter, value) == kPointer);
static_assert(offsetof(OptionSetter, getter) == 2 * kPointer);
static_assert(offsetof(OptionSetter, getter_arg) == 3 * kPointer);
static_assert(offsetof(OptionSetter, default_value) == 4 * kPointer);
static_assert(sizeof(OptionSetter) == 5 * kPointer);

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::vector<const void*> g_getter_arguments;

char* CopyingGetter(const void* datum) {
  g_getter_arguments.push_back(datum);
  return strdup(static_cast<const char*>(datum));
}

char* NullGetter(const void* datum) {
  g_getter_arguments.push_back(datum);
  return nullptr;
}

class OptionSetters : public testing::Test {
 protected:
  void SetUp() override { g_getter_arguments.clear(); }

  CallersList list_;
};

// zGetOptionString -------------------------------------------------------------------------------

class GettingOptions : public OptionSetters {};

TEST_F(GettingOptions, RunsTheGettersInOrder) {
  const char first[] = "first";
  const char second[] = "second";
  std::array rows = {OptionSetter{"A", nullptr, CopyingGetter, first, nullptr},
                     OptionSetter{nullptr, nullptr, CopyingGetter, second, nullptr}};
  EXPECT_EQ(zGetOptionString(rows.data(), 2), 0);
  EXPECT_THAT(g_getter_arguments, ElementsAre(first, second));
  EXPECT_STREQ(rows[0].value, "first");
  EXPECT_STREQ(rows[1].value, "second");
  for (const OptionSetter& row : rows) free(row.value);
}

TEST_F(GettingOptions, ReplacesAnOldValue) {
  OptionSetter row = {"A", strdup("old"), CopyingGetter, "new", nullptr};
  EXPECT_EQ(zGetOptionString(&row, 1), 0);
  EXPECT_STREQ(row.value, "new");
  free(row.value);
}

TEST_F(GettingOptions, KeepsTheValueWhenTheGetterAnswersNull) {
  char old[] = "old";
  std::array rows = {OptionSetter{"A", old, NullGetter, "x", "default"},
                     OptionSetter{"B", nullptr, NullGetter, nullptr, "default"}};
  EXPECT_EQ(zGetOptionString(rows.data(), 2), 0);
  EXPECT_EQ(rows[0].value, old);
  EXPECT_EQ(rows[1].value, nullptr);
  EXPECT_EQ(g_getter_arguments.size(), 2U);
}

TEST_F(GettingOptions, KeepsTheValueOfARowWithoutGetter) {
  char old[] = "old";
  OptionSetter row = {"A", old, nullptr, "x", "default"};
  EXPECT_EQ(zGetOptionString(&row, 1), 0);
  EXPECT_EQ(row.value, old);
}

TEST_F(GettingOptions, LeavesTheOtherFieldsAlone) {
  OptionSetter row = {"A", nullptr, CopyingGetter, "new", "default"};
  EXPECT_EQ(zGetOptionString(&row, 1), 0);
  EXPECT_STREQ(row.keyword, "A");
  EXPECT_EQ(row.getter, CopyingGetter);
  EXPECT_STREQ(static_cast<const char*>(row.getter_arg), "new");
  EXPECT_STREQ(row.default_value, "default");
  free(row.value);
}

TEST_F(GettingOptions, DoesNothingForACountBelowOne) {
  OptionSetter row = {"A", nullptr, CopyingGetter, "new", nullptr};
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(zGetOptionString(&row, count), 0) << count;
  }
  EXPECT_THAT(g_getter_arguments, IsEmpty());
}

TEST_F(GettingOptions, DoesNothingForNull) {
  EXPECT_EQ(zGetOptionString(nullptr, 0), 0);
  EXPECT_EQ(zGetOptionString(nullptr, 2), 0);
}

// zSetOptionList ---------------------------------------------------------------------------------

class SettingOptions : public OptionSetters {};

TEST_F(SettingOptions, AppendsValuesOrDefaultsInOrder) {
  std::array rows = {OptionSetter{"B", strdup("value"), nullptr, nullptr, "default"},
                     OptionSetter{"A", nullptr, nullptr, nullptr, "default"},
                     OptionSetter{"C", strdup(""), nullptr, nullptr, "default"},
                     OptionSetter{"D", nullptr, nullptr, nullptr, ""}};
  EXPECT_EQ(zSetOptionList(rows.data(), 4, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"B", "value"}, {"A", "default"}, {"C", ""}, {"D", ""}}));
}

TEST_F(SettingOptions, DoesNotRunGetters) {
  OptionSetter row = {"A", nullptr, CopyingGetter, "x", "default"};
  EXPECT_EQ(zSetOptionList(&row, 1, list_.get()), 0);
  EXPECT_THAT(g_getter_arguments, IsEmpty());
  EXPECT_EQ(list_.entries(), (Entries{{"A", "default"}}));
}

TEST_F(SettingOptions, AppendsNothingWithoutValueAndDefault) {
  std::array rows = {OptionSetter{"A", nullptr, nullptr, nullptr, nullptr},
                     OptionSetter{"B", nullptr, nullptr, nullptr, "default"}};
  EXPECT_EQ(zSetOptionList(rows.data(), 2, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"B", "default"}}));
}

TEST_F(SettingOptions, PassesOverARowWithoutKeyword) {
  std::array rows = {OptionSetter{nullptr, strdup("kept"), nullptr, nullptr, "default"},
                     OptionSetter{nullptr, nullptr, nullptr, nullptr, "default"},
                     OptionSetter{"B", nullptr, nullptr, nullptr, "default"}};
  EXPECT_EQ(zSetOptionList(rows.data(), 3, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"B", "default"}}));
  EXPECT_STREQ(rows[0].value, "kept");
  free(rows[0].value);
}

TEST_F(SettingOptions, ReleasesTheValueAndDoesNotClearItsField) {
  OptionSetter row = {"A", strdup("value"), nullptr, nullptr, nullptr};
  EXPECT_EQ(zSetOptionList(&row, 1, list_.get()), 0);
  EXPECT_NE(row.value, nullptr);
}

TEST_F(SettingOptions, LastOfTwoRowsWithOneKeywordWinsInTheFirstPlace) {
  std::array rows = {OptionSetter{"A", nullptr, nullptr, nullptr, "first"},
                     OptionSetter{"B", nullptr, nullptr, nullptr, "other"},
                     OptionSetter{"a", strdup("lower"), nullptr, nullptr, nullptr},
                     OptionSetter{"A", strdup("last"), nullptr, nullptr, nullptr}};
  EXPECT_EQ(zSetOptionList(rows.data(), 4, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"A", "last"}, {"B", "other"}, {"a", "last"}}));
}

TEST_F(SettingOptions, RefusesNullArguments) {
  OptionSetter row = {"A", nullptr, nullptr, nullptr, "default"};
  EXPECT_EQ(zSetOptionList(nullptr, 1, list_.get()), -1);
  EXPECT_EQ(zSetOptionList(nullptr, 0, list_.get()), -1);
  EXPECT_EQ(zSetOptionList(&row, 1, nullptr), -1);
  EXPECT_EQ(zSetOptionList(&row, 0, nullptr), -1);
  EXPECT_THAT(list_.entries(), IsEmpty());
}

TEST_F(SettingOptions, DoesNothingForACountBelowOne) {
  char value[] = "not to be freed";
  OptionSetter row = {"A", value, nullptr, nullptr, "default"};
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(zSetOptionList(&row, count, list_.get()), 0) << count;
  }
  EXPECT_THAT(list_.entries(), IsEmpty());
}

// zReadXMLandSetOptionList -----------------------------------------------------------------------

class ReadingAndSettingOptions : public OptionSetters {
 protected:
  void SetUp() override {
    OptionSetters::SetUp();
    ASSERT_NE(bidi_, nullptr);
    context_.bidi = bidi_.get();
    context_.documents[0].xml = recording_.Open({.longs = {{"number", 12}}});
  }

  RecordingLibrary library_;
  Recording& recording_ = library_.recording;
  BidiPtr bidi_{Bidi_Create(RecordingFolder().c_str())};
  AnalyzeContext context_ = {};
  std::int32_t number_ = 0;
  XmlKeyDescriptor key_ = {0, "number", IA_KEY_LONG, &number_, nullptr, nullptr, nullptr};
  OptionSetter row_ = {"Number", nullptr, zGetBinaryString, &number_, "default"};
};

TEST_F(ReadingAndSettingOptions, AppendsWhatItRead) {
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, &row_, 1, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"Number", "12"}}));
}

TEST_F(ReadingAndSettingOptions, AppendsTheDefaultWhenTheGetterAnswersNull) {
  row_.getter = NullGetter;
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, &row_, 1, list_.get()), 0);
  EXPECT_EQ(list_.entries(), (Entries{{"Number", "default"}}));
}

TEST_F(ReadingAndSettingOptions, ReadsNothingWithoutDescriptors) {
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 0, &row_, 1, list_.get()), 0);
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_EQ(list_.entries(), (Entries{{"Number", "0"}}));
}

TEST_F(ReadingAndSettingOptions, SetsNothingWithoutRows) {
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, &row_, 0, list_.get()), 0);
  EXPECT_EQ(number_, 12);
  EXPECT_THAT(list_.entries(), IsEmpty());
}

TEST_F(ReadingAndSettingOptions, RefusesNullArguments) {
  EXPECT_EQ(zReadXMLandSetOptionList(nullptr, &key_, 1, &row_, 1, list_.get()), -1);
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, &row_, 1, nullptr), -1);
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, nullptr, 1, &row_, 1, list_.get()), -1);
  EXPECT_THAT(recording_.calls, IsEmpty());
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, nullptr, 1, list_.get()), -1);
  EXPECT_THAT(list_.entries(), IsEmpty());
}

TEST_F(ReadingAndSettingOptions, AppendsNothingWhenReadingFails) {
  row_.getter = CopyingGetter;
  key_.document = 1;
  EXPECT_EQ(zReadXMLandSetOptionList(&context_, &key_, 1, &row_, 1, list_.get()), -1);
  EXPECT_THAT(g_getter_arguments, IsEmpty());
  EXPECT_THAT(list_.entries(), IsEmpty());
}

}  // namespace
}  // namespace ia_test
