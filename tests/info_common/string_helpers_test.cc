#include "info_analyze/string_helpers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <string>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::IsNull;

// Each function under both of its names.
struct SprintfRow : NamedRow {
  std::int32_t (*sprintf)(char*, const char*, ...) noexcept;
};
struct CopyRow : NamedRow {
  char* (*copy)(char*, const char*) noexcept;
};

class UtilSprintf : public testing::TestWithParam<SprintfRow> {
 protected:
  template <class... Arguments>
  std::int32_t Sprintf(char* destination, const char* format, Arguments... arguments) {
    return GetParam().sprintf(destination, format, arguments...);
  }
};

INSTANTIATE_TEST_SUITE_P(Names, UtilSprintf,
                         Rows<SprintfRow>({{"util", util_sprintf}, {"tb_util", tb_util_sprintf}}),
                         RowName<SprintfRow>);

TEST_P(UtilSprintf, WritesTheTextAndItsNulAndGivesTheLength) {
  GuardedBuffer buffer(32);
  EXPECT_EQ(Sprintf(buffer.data(), "%s-%d-%04x-%c%%", "text", -7, 0xabu, 'z'), 15);
  EXPECT_EQ(buffer.text(), "text--7-00ab-z%");
}

TEST_P(UtilSprintf, EmptyResultIsOneNul) {
  GuardedBuffer buffer(4);
  EXPECT_EQ(Sprintf(buffer.data(), "%s", ""), 0);
  EXPECT_EQ(buffer.text(), "");
  EXPECT_TRUE(buffer.IsUntouchedFrom(1));
}

TEST_P(UtilSprintf, EmptyFormatIsOneNul) {
  GuardedBuffer buffer(4);
  EXPECT_EQ(Sprintf(buffer.data(), ""), 0);
  EXPECT_EQ(buffer.text(), "");
  EXPECT_TRUE(buffer.IsUntouchedFrom(1));
}

TEST_P(UtilSprintf, WritesNothingAfterTheNulWhateverTheLength) {
  for (const std::size_t length :
       {1, 2, 126, 127, 128, 129, 254, 255, 256, 257, 511, 512, 1000, 4095, 4096, 100'000}) {
    const std::string text(length, 'x');
    GuardedBuffer buffer(length + 1);
    EXPECT_EQ(Sprintf(buffer.data(), "%s", text.c_str()), static_cast<std::int32_t>(length));
    EXPECT_EQ(buffer.text(), text) << length;
    EXPECT_TRUE(buffer.WallsStand()) << length;
  }
}

TEST_P(UtilSprintf, ArgumentsAreReadAgainForALongText) {
  const std::string text(300, 'x');
  GuardedBuffer buffer(400);
  EXPECT_EQ(Sprintf(buffer.data(), "%d%s%d%.1f", 1, text.c_str(), 2, 3.5), 305);
  EXPECT_EQ(buffer.text(), "1" + text + "23.5");
}

TEST_P(UtilSprintf, NulAmongTheTextIsCopied) {
  GuardedBuffer buffer(8);
  EXPECT_EQ(Sprintf(buffer.data(), "a%cb", '\0'), 3);
  EXPECT_EQ(buffer.bytes().substr(0, 4), std::string_view("a\0b\0", 4));
  EXPECT_TRUE(buffer.IsUntouchedFrom(4));
}

TEST_P(UtilSprintf, ArgumentMayBeTheDestination) {
  GuardedBuffer buffer(64, "one");
  EXPECT_EQ(Sprintf(buffer.data(), "%s,%s,%s", buffer.data(), "two", buffer.data()), 11);
  EXPECT_EQ(buffer.text(), "one,two,one");
}

TEST_P(UtilSprintf, LongArgumentMayBeTheDestination) {
  const std::string text(200, 'x');
  GuardedBuffer buffer(402, text);
  EXPECT_EQ(Sprintf(buffer.data(), "%s,%s", buffer.data(), buffer.data()), 401);
  EXPECT_EQ(buffer.text(), text + "," + text);
  EXPECT_TRUE(buffer.WallsStand());
}

TEST_P(UtilSprintf, ArgumentMayLieInsideTheDestination) {
  GuardedBuffer buffer(64, "abcdef");
  EXPECT_EQ(Sprintf(buffer.data(), "x%s", buffer.data() + 3), 4);
  EXPECT_EQ(buffer.text(), "xdef");
}

TEST_P(UtilSprintf, FormatMayBeTheDestination) {
  GuardedBuffer buffer(64, "%d%%");
  EXPECT_EQ(Sprintf(buffer.data(), buffer.data(), 42), 3);
  EXPECT_EQ(buffer.text(), "42%");
}

TEST_P(UtilSprintf, NullDestinationIsRefused) { EXPECT_EQ(Sprintf(nullptr, "%d", 1), -1); }

TEST_P(UtilSprintf, NullFormatIsRefusedAndNothingWritten) {
  GuardedBuffer buffer(8);
  EXPECT_EQ(Sprintf(buffer.data(), nullptr), -1);
  EXPECT_TRUE(buffer.IsUntouchedFrom(0));
}

// The C locale has no such character, so no size of buffer would do.
TEST_P(UtilSprintf, TextThatCannotBeFormattedIsRefusedAndNothingWritten) {
  GuardedBuffer buffer(8);
  EXPECT_EQ(Sprintf(buffer.data(), "%ls", L"\x20AC"), -1);
  EXPECT_EQ(Sprintf(buffer.data(), "%lc", static_cast<std::wint_t>(0x20AC)), -1);
  EXPECT_TRUE(buffer.IsUntouchedFrom(0));
}

TEST_P(UtilSprintf, WidthBeyondAnIntIsRefusedAndNothingWritten) {
  GuardedBuffer buffer(8);
  EXPECT_EQ(Sprintf(buffer.data(), "%2147483648d", 1), -1);
  EXPECT_TRUE(buffer.IsUntouchedFrom(0));
}

class UtilStrcpy : public testing::TestWithParam<CopyRow> {};

INSTANTIATE_TEST_SUITE_P(Names, UtilStrcpy,
                         Rows<CopyRow>({{"util", util_strcpy}, {"tb_util", tb_util_strcpy}}),
                         RowName<CopyRow>);

TEST_P(UtilStrcpy, CopiesTheTextAndItsNul) {
  for (const char* text : {"", "a", "text", "\xC3\xA4"}) {
    const auto source = ExactText(text);
    GuardedBuffer buffer(8);
    EXPECT_EQ(GetParam().copy(buffer.data(), source.get()), buffer.data());
    EXPECT_EQ(buffer.text(), text);
    EXPECT_TRUE(buffer.IsUntouchedFrom(buffer.text().size() + 1));
  }
}

TEST_P(UtilStrcpy, NullArgumentGivesTheDestinationUnchanged) {
  GuardedBuffer buffer(8, "text");
  EXPECT_EQ(GetParam().copy(buffer.data(), nullptr), buffer.data());
  EXPECT_EQ(buffer.text(), "text");
  EXPECT_THAT(GetParam().copy(nullptr, "text"), IsNull());
  EXPECT_THAT(GetParam().copy(nullptr, nullptr), IsNull());
}

TEST_P(UtilStrcpy, OverlapTowardsTheFront) {
  GuardedBuffer buffer(16, "abcdefgh");
  EXPECT_EQ(GetParam().copy(buffer.data(), buffer.data() + 2), buffer.data());
  EXPECT_EQ(buffer.text(), "cdefgh");
}

TEST_P(UtilStrcpy, OverlapTowardsTheBack) {
  GuardedBuffer buffer(11, "abcdefgh");
  EXPECT_EQ(GetParam().copy(buffer.data() + 2, buffer.data()), buffer.data() + 2);
  EXPECT_EQ(buffer.text(), "ababcdefgh");
  EXPECT_TRUE(buffer.WallsStand());
}

TEST_P(UtilStrcpy, OntoItself) {
  GuardedBuffer buffer(8, "text");
  EXPECT_EQ(GetParam().copy(buffer.data(), buffer.data()), buffer.data());
  EXPECT_EQ(buffer.text(), "text");
}

class UtilStrcat : public testing::TestWithParam<CopyRow> {};

INSTANTIATE_TEST_SUITE_P(Names, UtilStrcat,
                         Rows<CopyRow>({{"util", util_strcat}, {"tb_util", tb_util_strcat}}),
                         RowName<CopyRow>);

TEST_P(UtilStrcat, AppendsTheTextAndItsNul) {
  for (const char* text : {"", "a", "text", "\xC3\xA4"}) {
    const auto source = ExactText(text);
    GuardedBuffer buffer(16, "begin");
    EXPECT_EQ(GetParam().copy(buffer.data(), source.get()), buffer.data());
    EXPECT_EQ(buffer.text(), std::string("begin") + text);
    EXPECT_TRUE(buffer.IsUntouchedFrom(buffer.text().size() + 1));
  }
}

TEST_P(UtilStrcat, AppendsToAnEmptyText) {
  GuardedBuffer buffer(5, std::string_view("\0", 1));
  EXPECT_EQ(GetParam().copy(buffer.data(), "text"), buffer.data());
  EXPECT_EQ(buffer.text(), "text");
  EXPECT_TRUE(buffer.WallsStand());
}

TEST_P(UtilStrcat, NullArgumentGivesTheDestinationUnchanged) {
  GuardedBuffer buffer(8, "text");
  EXPECT_EQ(GetParam().copy(buffer.data(), nullptr), buffer.data());
  EXPECT_EQ(buffer.text(), "text");
  EXPECT_THAT(GetParam().copy(nullptr, "text"), IsNull());
  EXPECT_THAT(GetParam().copy(nullptr, nullptr), IsNull());
}

TEST_P(UtilStrcat, TextAppendedToItself) {
  GuardedBuffer buffer(9, "abcd");
  EXPECT_EQ(GetParam().copy(buffer.data(), buffer.data()), buffer.data());
  EXPECT_EQ(buffer.text(), "abcdabcd");
  EXPECT_TRUE(buffer.WallsStand());
}

TEST_P(UtilStrcat, EndOfTheTextAppendedToIt) {
  GuardedBuffer buffer(7, "abcd");
  EXPECT_EQ(GetParam().copy(buffer.data(), buffer.data() + 2), buffer.data());
  EXPECT_EQ(buffer.text(), "abcdcd");
  EXPECT_TRUE(buffer.WallsStand());
}

}  // namespace
}  // namespace ia_test
