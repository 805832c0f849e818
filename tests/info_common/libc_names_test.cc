#include "info_analyze/libc_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using namespace std::string_literals;
using testing::IsNull;

struct CopyRow : NamedRow {
  const char* source;
  std::size_t size;
  std::size_t result;
  const char* written;  // null: nothing
};

class Strlcpy : public testing::TestWithParam<CopyRow> {};

TEST_P(Strlcpy, GivesTheNumberOfBytesCopied) {
  const auto& row = GetParam();
  const auto source = ExactText(row.source);
  GuardedBuffer buffer(16);
  EXPECT_EQ(info_strlcpy(buffer.data(), source.get(), row.size), row.result);
  if (row.written != nullptr) {
    EXPECT_EQ(buffer.text(), row.written);
  }
  EXPECT_TRUE(buffer.IsUntouchedFrom(row.written == nullptr ? 0 : row.result + 1));
}

INSTANTIATE_TEST_SUITE_P(Sizes, Strlcpy,
                         Rows<CopyRow>({{"CutToTheSize", "abcdef", 4, 3, "abc"},
                                        {"SizeTwo", "abcdef", 2, 1, "a"},
                                        {"SizeOneWritesNothing", "abcdef", 1, 0, nullptr},
                                        {"SizeZeroGivesTheLengthAndWritesNothing", "abcdef", 0, 6,
                                         nullptr},
                                        {"OneByteTooSmall", "abcdef", 6, 5, "abcde"},
                                        {"Exact", "abcdef", 7, 6, "abcdef"},
                                        {"Larger", "abcdef", 8, 6, "abcdef"},
                                        {"HugeSize", "abcdef", SIZE_MAX, 6, "abcdef"},
                                        {"EmptySource", "", 10, 0, nullptr},
                                        {"EmptySourceSizeZero", "", 0, 0, nullptr},
                                        {"EmptySourceSizeOne", "", 1, 0, nullptr},
                                        {"OneByte", "a", 2, 1, "a"},
                                        {"BytesAbove127", "\xC3\xA4\xFF", 3, 2, "\xC3\xA4"}}),
                         RowName<CopyRow>);

TEST(StrlcpyNull, GivesZeroAndWritesNothing) {
  GuardedBuffer buffer(16);
  EXPECT_EQ(info_strlcpy(nullptr, "abc", 16), 0u);
  EXPECT_EQ(info_strlcpy(nullptr, "abc", 0), 0u);
  EXPECT_EQ(info_strlcpy(buffer.data(), nullptr, 16), 0u);
  EXPECT_EQ(info_strlcpy(buffer.data(), nullptr, 0), 0u);
  EXPECT_EQ(info_strlcpy(nullptr, nullptr, 16), 0u);
  EXPECT_TRUE(buffer.IsUntouchedFrom(0));
}

TEST(StrlcpyBound, ReadsNoFurtherThanItCopies) {
  const auto unterminated = ExactBytes("abc");
  GuardedBuffer buffer(16);
  EXPECT_EQ(info_strlcpy(buffer.data(), unterminated.get(), 4), 3u);
  EXPECT_EQ(buffer.text(), "abc");
}

struct AppendRow : NamedRow {
  const char* destination;
  const char* source;
  std::size_t size;
  std::size_t result;
  const char* text;
};

class Strlcat : public testing::TestWithParam<AppendRow> {};

TEST_P(Strlcat, GivesTheLengthAfterwards) {
  const auto& row = GetParam();
  const auto source = ExactText(row.source);
  GuardedBuffer buffer(16, row.destination + "\0"s);
  EXPECT_EQ(info_strlcat(buffer.data(), source.get(), row.size), row.result);
  EXPECT_EQ(buffer.text(), row.text);
  EXPECT_TRUE(buffer.IsUntouchedFrom(std::max(std::string_view(row.text).size() + 1,
                                              std::string_view(row.destination).size() + 2)));
}

INSTANTIATE_TEST_SUITE_P(Sizes, Strlcat,
                         Rows<AppendRow>({{"Fits", "abc", "def", 16, 6, "abcdef"},
                                          {"Exact", "abc", "def", 7, 6, "abcdef"},
                                          {"OneByteTooSmall", "abc", "def", 6, 5, "abcde"},
                                          {"RoomForOneByte", "abc", "def", 5, 4, "abcd"},
                                          {"Full", "abc", "def", 4, 3, "abc"},
                                          {"LongerThanTheSize", "abc", "def", 3, 3, "abc"},
                                          {"MuchLongerThanTheSize", "abc", "def", 1, 3, "abc"},
                                          {"SizeZero", "abc", "def", 0, 3, "abc"},
                                          {"EmptySource", "abc", "", 16, 3, "abc"},
                                          {"EmptyDestination", "", "def", 16, 3, "def"},
                                          {"EmptyDestinationSizeTwo", "", "def", 2, 1, "d"},
                                          {"EmptyDestinationSizeOne", "", "def", 1, 0, ""},
                                          {"EmptyDestinationSizeZero", "", "def", 0, 0, ""},
                                          {"BothEmpty", "", "", 16, 0, ""},
                                          {"HugeSize", "abc", "def", SIZE_MAX, 6, "abcdef"},
                                          {"BytesAbove127", "\xC3", "\xA4\xFF", 3, 2, "\xC3\xA4"}}),
                         RowName<AppendRow>);

TEST(StrlcatNull, GivesZeroAndWritesNothing) {
  GuardedBuffer buffer(16, "abc");
  EXPECT_EQ(info_strlcat(nullptr, "def", 16), 0u);
  EXPECT_EQ(info_strlcat(buffer.data(), nullptr, 16), 0u);
  EXPECT_EQ(info_strlcat(nullptr, nullptr, 16), 0u);
  EXPECT_EQ(buffer.text(), "abc");
}

// The texts are in memory that cannot be written to.
TEST(StrlcatReadOnly, NothingIsWrittenWhereNothingIsAppended) {
  static const char kText[] = "abc";
  char* const text = const_cast<char*>(kText);
  EXPECT_EQ(info_strlcat(text, "", sizeof kText), 3u);
  EXPECT_EQ(info_strlcat(text, "", 16), 3u);
  EXPECT_EQ(info_strlcat(text, "def", sizeof kText), 3u);
  EXPECT_EQ(info_strlcat(text, "def", 3), 3u);
}

struct SearchRow : NamedRow {
  std::string haystack;
  const char* needle;
  std::int32_t length;
  int place;  // -1: not found
};

class Strnstr : public testing::TestWithParam<SearchRow> {};

TEST_P(Strnstr, SearchesTheFirstBytes) {
  const auto& row = GetParam();
  const auto haystack = ExactBytes(row.haystack);
  const auto needle = ExactText(row.needle);
  const char* expected = row.place < 0 ? nullptr : haystack.get() + row.place;
  EXPECT_EQ(info_strnstr(haystack.get(), needle.get(), row.length), expected);
}

INSTANTIATE_TEST_SUITE_P(Haystacks, Strnstr,
                         Rows<SearchRow>({{"AtTheStart", "abcde", "ab", 5, 0},
                                          {"InTheMiddle", "abcde", "cd", 5, 2},
                                          {"AtTheEnd", "abcde", "de", 5, 3},
                                          {"Whole", "abcde", "abcde", 5, 0},
                                          {"Missing", "abcde", "xy", 5, -1},
                                          {"FirstOfTwo", "abab", "ab", 4, 0},
                                          {"AfterAFalseStart", "aaab", "aab", 4, 1},
                                          {"OtherCase", "abcde", "AB", 5, -1},
                                          {"AfterANul", "ab\0de"s, "de", 5, 3},
                                          {"OnlyAPrefixOfTheNeedleBeforeANul", "ab\0de"s, "abd", 5,
                                           -1},
                                          {"EndsBeforeTheMatch", "abcde", "de", 3, -1},
                                          {"EndsInTheMatch", "abcde", "de", 4, -1},
                                          {"NeedleLongerThanTheLength", "abcde", "abc", 2, -1},
                                          {"NeedleLongerThanTheHaystack", "abc", "abcd", 3, -1},
                                          {"LengthOne", "a", "a", 1, 0},
                                          {"LengthZero", "abc", "a", 0, -1},
                                          {"LengthZeroEmptyNeedle", "abc", "", 0, -1},
                                          {"NegativeLength", "abc", "a", -1, -1},
                                          {"NegativeLengthEmptyNeedle", "abc", "", -1, -1},
                                          {"LowestLength", "abc", "a", INT_MIN, -1},
                                          {"EmptyNeedle", "abc", "", 3, 0},
                                          {"EmptyNeedleLengthOne", "abc", "", 1, 0},
                                          {"BytesAbove127", "a\xC3\xA4\xFF", "\xA4\xFF", 4, 2}}),
                         RowName<SearchRow>);

TEST(StrnstrNull, FindsNothing) {
  EXPECT_THAT(info_strnstr(nullptr, "a", 3), IsNull());
  EXPECT_THAT(info_strnstr(nullptr, "", 3), IsNull());
  EXPECT_THAT(info_strnstr("abc", nullptr, 3), IsNull());
  EXPECT_THAT(info_strnstr(nullptr, nullptr, 3), IsNull());
}

RC_GTEST_PROP(StrnstrProperty, FindsWhatAPlainSearchFinds, ()) {
  const auto bytes = rc::gen::container<std::string>(rc::gen::element('a', 'b', '\0', '\xFF'));
  const auto letters = rc::gen::container<std::string>(rc::gen::element('a', 'b', '\xFF'));
  const std::string haystack = *bytes;
  const std::string needle = (*letters).substr(0, 4);
  const auto length = *rc::gen::inRange<std::size_t>(0, haystack.size() + 1);
  const auto place = std::string_view(haystack).substr(0, length).find(needle);

  const auto block = ExactBytes(std::string_view(haystack).substr(0, length));
  const char* found = info_strnstr(block.get(), needle.c_str(), static_cast<std::int32_t>(length));
  RC_ASSERT(found == (length == 0 || place == std::string::npos ? nullptr : block.get() + place));
}

}  // namespace
}  // namespace ia_test
