#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "info_analyze/option_setter.h"

namespace ia_test {
namespace {

using testing::Each;
using testing::IsNull;
using testing::Values;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::string Got(OptionGetter getter, const void* datum) {
  char* text = getter(datum);
  std::string copy = text != nullptr ? text : "(null)";
  free(text);
  return copy;
}

struct NumberRow {
  std::int32_t number;
  const char* boolean;
  const char* decimal;
  const char* hexadecimal;
};

class NumberGetters : public testing::TestWithParam<NumberRow> {};

TEST_P(NumberGetters, WriteTheNumberInTheirWay) {
  EXPECT_EQ(Got(zGetBoolString, &GetParam().number), GetParam().boolean);
  EXPECT_EQ(Got(zGetBinaryString, &GetParam().number), GetParam().decimal);
  EXPECT_EQ(Got(zGetSpecIDString, &GetParam().number), GetParam().hexadecimal);
  EXPECT_EQ(Got(zGetHexString, &GetParam().number), GetParam().hexadecimal);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, NumberGetters,
    Values(NumberRow{0, "False", "0", "0000"}, NumberRow{1, "True", "1", "0001"},
           NumberRow{-1, "True", "-1", "FFFFFFFF"}, NumberRow{2, "True", "2", "0002"},
           NumberRow{0x123, "True", "291", "0123"}, NumberRow{512, "True", "512", "0200"},
           NumberRow{0xABCD, "True", "43981", "ABCD"}, NumberRow{0xFFFF, "True", "65535", "FFFF"},
           NumberRow{0x10000, "True", "65536", "10000"},
           NumberRow{-512, "True", "-512", "FFFFFE00"},
           NumberRow{kHighest, "True", "2147483647", "7FFFFFFF"},
           NumberRow{kLowest, "True", "-2147483648", "80000000"}));

TEST(Getters, AnswerNullForNull) {
  for (const OptionGetter getter :
       {&zGetBoolString, &zGetBinaryString, &zGetSpecIDString, &zGetHexString, &zGetString}) {
    EXPECT_EQ(getter(nullptr), nullptr);
  }
}

TEST(StringGetter, CopiesTheText) {
  char text[] = "mode4";
  char* datum = text;
  char* copy = zGetString(&datum);
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy, text);
  EXPECT_STREQ(copy, "mode4");
  free(copy);
}

TEST(StringGetter, CopiesEmptyAndLongTexts) {
  std::string long_text(100 * 1024, 'z');
  char empty[] = "";
  char* datum = long_text.data();
  EXPECT_EQ(Got(zGetString, &datum), long_text);
  datum = empty;
  EXPECT_EQ(Got(zGetString, &datum), "");
}

TEST(StringGetter, AnswersNullForANullText) {
  char* datum = nullptr;
  EXPECT_EQ(zGetString(&datum), nullptr);
}

TEST(FuncStrFree, FreesAndEmptiesTheArray) {
  std::array<char*, 4> texts = {strdup("a"), nullptr, strdup(""), strdup("b")};
  zFuncStrFree(texts.data(), 4);
  EXPECT_THAT(texts, Each(IsNull()));
}

TEST(FuncStrFree, LeavesWhatIsBeyondTheLength) {
  std::array<char*, 2> texts = {strdup("a"), strdup("b")};
  zFuncStrFree(texts.data(), 1);
  EXPECT_EQ(texts[0], nullptr);
  EXPECT_STREQ(texts[1], "b");
  free(texts[1]);
}

TEST(FuncStrFree, DoesNothingForALengthBelowOne) {
  char text[] = "not to be freed";
  char* texts[] = {text};
  for (const std::int32_t length : {0, -1, kLowest}) zFuncStrFree(texts, length);
  EXPECT_EQ(texts[0], text);
}

TEST(FuncStrFree, IgnoresNull) { zFuncStrFree(nullptr, 3); }

}  // namespace
}  // namespace ia_test
