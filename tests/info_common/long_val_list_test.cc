#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <ios>
#include <memory>
#include <sstream>
#include <vector>

#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::IsNull;
using testing::NotNull;
using testing::Values;

struct ListDeleter {
  void operator()(LongValList* head) const { info_common_long_val_list_free(head); }
};
using List = std::unique_ptr<LongValList, ListDeleter>;
using Numbers = std::vector<int32_t>;

Numbers NumbersOf(const List& list) {
  Numbers numbers;
  for (const LongValList* node = list.get(); node != nullptr; node = node->next) {
    numbers.push_back(node->value);
  }
  return numbers;
}

void Add(List* list, int32_t value) {
  list->reset(info_common_long_val_list_add(list->release(), value));
}

List Convert(const char* text) {
  return List(info_common_convert_hex_string_to_long_val_list(text));
}

TEST(LongValListFree, NullIsNothingToDo) { info_common_long_val_list_free(nullptr); }

TEST(LongValListAdd, EmptyListGetsItsFirstNode) {
  List list;
  Add(&list, 5);
  EXPECT_EQ(NumbersOf(list), Numbers{5});
}

TEST(LongValListAdd, KeepsTheListAscendingBySignedValue) {
  List list;
  for (const int32_t value : {0, INT_MAX, -1, 7, INT_MIN, 1, -7}) Add(&list, value);
  EXPECT_EQ(NumbersOf(list), (Numbers{INT_MIN, -7, -1, 0, 1, 7, INT_MAX}));
}

TEST(LongValListAdd, EqualNumberComesAfterTheOnesBeforeIt) {
  List list;
  for (const int32_t value : {5, 5, 9}) Add(&list, value);
  const LongValList* first = list.get();
  const LongValList* second = first->next;
  const LongValList* last = second->next;
  Add(&list, 5);
  ASSERT_EQ(NumbersOf(list), (Numbers{5, 5, 5, 9}));
  EXPECT_EQ(list.get(), first);
  EXPECT_EQ(first->next, second);
  EXPECT_NE(second->next, last);
  EXPECT_EQ(second->next->next, last);
}

RC_GTEST_PROP(LongValListProperty, IsTheSortedSequenceOfWhatWasAdded, ()) {
  Numbers numbers = *rc::gen::arbitrary<Numbers>();
  List list;
  for (const int32_t value : numbers) Add(&list, value);
  std::sort(numbers.begin(), numbers.end());
  RC_ASSERT(NumbersOf(list) == numbers);
}

struct HexRow : NamedRow {
  const char* text;
  Numbers numbers;
};

class HexText : public testing::TestWithParam<HexRow> {};

TEST_P(HexText, BecomesAnAscendingList) {
  const auto text = ExactText(GetParam().text);
  EXPECT_EQ(NumbersOf(Convert(text.get())), GetParam().numbers);
  EXPECT_STREQ(text.get(), GetParam().text) << "the function changed the caller's text";
}

INSTANTIATE_TEST_SUITE_P(
    Texts, HexText,
    Rows<HexRow>({{"DuplicatesAndEmptyItems", ",,1F,0A,,0a", {10, 10, 31}},
                  {"OneItem", "7", {7}},
                  {"TrailingComma", "7,", {7}},
                  {"EmptyText", "", {}},
                  {"OneComma", ",", {}},
                  {"OnlyCommas", ",,,", {}},
                  {"Descending", "3,2,1", {1, 2, 3}},
                  {"BothCases", "ff,FF", {255, 255}},
                  {"PrefixAccepted", "0x10,0X1f", {16, 31}},
                  {"PrefixWithoutDigitsIsZero", "0x", {0}},
                  {"PrefixBeforeOtherTextIsZero", "0xg", {0}},
                  {"LeadingWhiteSpace", " 1,\t2,\n3,\v4,\f5,\r6", {1, 2, 3, 4, 5, 6}},
                  {"TrailingBlank", "1 ,2 ", {1, 2}},
                  {"OnlyABlankIsZero", " ", {0}},
                  {"TextIsZero", "xyz", {0}},
                  {"DigitsBeforeText", "12g4", {0x12}},
                  {"BytesAbove127AreText", "\xC3\xA4,1", {0, 1}},
                  {"PlusSign", "+5", {5}},
                  {"MinusSign", "-1,1,-a", {-10, -1, 1}},
                  {"SignedPrefix", "-0x10,+0x10", {-16, 16}},
                  {"SignApartFromTheDigitsIsZero", "- 1", {0}},
                  {"TwoSignsAreZero", "--1", {0}},
                  {"LeadingZeros", "00000000000000001", {1}},
                  {"OtherSeparatorsEndTheNumber", "1;2,3_4~5", {1, 3}}}),
    RowName<HexRow>);

INSTANTIATE_TEST_SUITE_P(
    Limits, HexText,
    Rows<HexRow>({{"HighestNumber", "7fffffff", {INT_MAX}},
                  {"OneAboveIsTheHighest", "80000000", {INT_MAX}},
                  {"AllBitsAreTheHighest", "ffffffff", {INT_MAX}},
                  {"ThirtyThreeBitsAreTheHighest", "100000001", {INT_MAX}},
                  {"SixtyFourBitsAreTheHighest", "7fffffffffffffff", {INT_MAX}},
                  {"BeyondSixtyFourBitsIsTheHighest", "123456789abcdef0123456789", {INT_MAX}},
                  {"LowestNumber", "-80000000", {INT_MIN}},
                  {"OneBelowIsTheLowest", "-80000001", {INT_MIN}},
                  {"MinusAllBitsIsTheLowest", "-ffffffff", {INT_MIN}},
                  {"MinusThirtyThreeBitsIsTheLowest", "-100000001", {INT_MIN}},
                  {"BelowSixtyFourBitsIsTheLowest", "-123456789abcdef0123456789", {INT_MIN}}}),
    RowName<HexRow>);

TEST(HexTextNull, GivesNoList) { EXPECT_THAT(Convert(nullptr), IsNull()); }

TEST(HexTextWithoutItem, IsTheNullList) { EXPECT_THAT(Convert(",,"), IsNull()); }

TEST(HexTextWithZero, IsAListAnyway) { EXPECT_THAT(Convert("0"), NotNull()); }

RC_GTEST_PROP(HexTextProperty, EveryWrittenNumberIsReadBack, ()) {
  Numbers numbers = *rc::gen::arbitrary<Numbers>();
  std::ostringstream text;
  text << std::hex;
  for (const int32_t number : numbers) {
    const auto magnitude = number < 0 ? -static_cast<int64_t>(number) : number;
    text << (number < 0 ? "-" : "") << magnitude << ",";
  }
  std::sort(numbers.begin(), numbers.end());
  RC_ASSERT(NumbersOf(Convert(text.str().c_str())) == numbers);
}

}  // namespace
}  // namespace ia_test
