#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "info_analyze/option_list.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/table_model.h"

namespace ia_test {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsNull;
using testing::Pair;
using testing::StartsWith;
using testing::StrEq;

char kOtherText[] = "untouched";

Table ListOfKeys(const std::vector<std::string>& keys) {
  Entries entries;
  for (const std::string& key : keys) entries.emplace_back(key, "value of " + key);
  return MakeTable(entries);
}

OwnedText NextKey(const OptTable* first, const OptTable* second, const char* base) {
  return OwnedText(z_create_flag_key_fom_option_list(first, second, base));
}

// Which keys the cursor stops at.
struct FlagValueRow : NamedRow {
  std::vector<std::string> keys;
  std::int32_t highest_index;
  std::vector<std::string> accepted;
  const char* base = "Base";
};

class FlagValue : public testing::TestWithParam<FlagValueRow> {};

TEST_P(FlagValue, IsTakenFromKeysUpToTheHighestIndex) {
  const Table list = ListOfKeys(GetParam().keys);
  OptTable* cursor = list.get();
  std::vector<std::string> values;
  char* value = kOtherText;
  while (OptionList_Get_FlagValue(&cursor, GetParam().base, GetParam().highest_index, &value) ==
         1) {
    values.push_back(value);
  }
  std::vector<std::string> expected;
  for (const std::string& key : GetParam().accepted) expected.push_back("value of " + key);
  EXPECT_EQ(values, expected);
  EXPECT_THAT(value, IsNull());
  EXPECT_THAT(cursor, IsNull());
}

INSTANTIATE_TEST_SUITE_P(
    Keys, FlagValue,
    Rows<FlagValueRow>(
        {{"BaseAlone", {"Base"}, 0, {"Base"}},
         {"BaseAloneWhateverTheLimit", {"Base"}, INT_MIN, {"Base"}},
         {"IndexAtTheLimit", {"Base_3"}, 3, {"Base_3"}},
         {"IndexAboveTheLimit", {"Base_4"}, 3, {}},
         {"IndexesInListOrder",
          {"Base_9", "Base", "Base_10", "Other", "Base_2", "Base_11", "Base_1"},
          10,
          {"Base_9", "Base", "Base_10", "Base_2", "Base_1"}},
         {"OtherCase", {"bASE_1", "BASE"}, 1, {"bASE_1", "BASE"}},
         {"IndexEndsAtTheNextUnderscore", {"Base_3_9", "Base_9_3"}, 3, {"Base_3_9"}},
         {"SuffixThatIsNoNumberCountsAsZero", {"Base_x"}, 0, {"Base_x"}},
         {"SuffixThatIsNoNumberIsAboveMinusOne", {"Base_x"}, -1, {}},
         {"MissingNumberCountsAsZero", {"Base_"}, 0, {"Base_"}},
         {"MissingNumberIsAboveMinusOne", {"Base_"}, -1, {}},
         {"TwoUnderscoresCountAsZero", {"Base__7"}, 0, {"Base__7"}},
         {"NumberBeforeText", {"Base_3x", "Base_4x"}, 3, {"Base_3x"}},
         {"HexadecimalIsZero", {"Base_0x7"}, 0, {"Base_0x7"}},
         {"BlanksAndPlusSign",
          {"Base_ 3", "Base_+3", "Base_ 4", "Base_+4"},
          3,
          {"Base_ 3", "Base_+3"}},
         {"NegativeIndexAtTheLimit", {"Base_-5"}, -5, {"Base_-5"}},
         {"NegativeIndexAboveTheLimit", {"Base_-5"}, -6, {}},
         {"AnyByteSeparates",
          {"BaseX3", "Base-3", "Base 3", "BaseX4"},
          3,
          {"BaseX3", "Base-3", "Base 3"}},
         {"SeparatingByteIsNoDigitOfTheIndex", {"Base73", "Base37"}, 3, {"Base73"}},
         {"BytesAbove127Separate",
          {"Base\xFF"
           "3",
           "Base\xFF"
           "4"},
          3,
          {"Base\xFF"
           "3"}},
         {"HighestIndexOfAll", {"Base_2147483647"}, INT_MAX, {"Base_2147483647"}},
         {"IndexBeyond32BitsIsTheHighest", {"Base_4294967297"}, INT_MAX, {"Base_4294967297"}},
         {"IndexBeyond32BitsIsNotCutToTheLimit", {"Base_4294967297"}, 1, {}},
         {"IndexBeyond64BitsIsNotCutToTheLimit", {"Base_18446744073709551617"}, INT_MAX - 1, {}},
         {"IndexBelow32BitsIsTheLowest", {"Base_-4294967297"}, INT_MIN, {"Base_-4294967297"}},
         {"NoMatch", {"Bas_1", "Bse"}, INT_MAX, {}},
         {"EmptyBaseFitsEveryKey", {"", "_1", "2", "_3", "A4"}, 2, {"", "_1", "2"}, ""}}),
    RowName<FlagValueRow>);

// The base is found anywhere in a key, but the index is read as if the base were the prefix.
INSTANTIATE_TEST_SUITE_P(
    BaseInTheMiddle, FlagValue,
    Rows<FlagValueRow>({{"IndexIsReadFromTheWrongPlace",
                         {"XQVAnlz_FuncVer_UI_1"},
                         0,
                         {"XQVAnlz_FuncVer_UI_1"},
                         "QVAnlz_FuncVer_UI"},
                        {"HighIndexIsNotSeen", {"XBase_9"}, 0, {"XBase_9"}},
                        {"DigitsBeforeTheBaseAreSeen", {"ABCDE7Base"}, 6, {}},
                        {"DigitsBeforeTheBaseAtTheLimit", {"ABCDE7Base"}, 7, {"ABCDE7Base"}},
                        {"BaseTwice", {"Base_Base_8"}, 0, {"Base_Base_8"}}}),
    RowName<FlagValueRow>);

TEST(FlagValueCursor, IsAfterTheAcceptedEntryAndLendsItsValue) {
  const Table list = ListOfKeys({"Base_7", "Other", "Base_1", "Last"});
  OptTable* cursor = list.get();
  char* value = nullptr;
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, "Base", 1, &value), 1);
  const OptTable* accepted = list->next->next;
  EXPECT_EQ(value, accepted->value);
  EXPECT_EQ(cursor, accepted->next);
}

TEST(FlagValueCursor, EmptyCursorFindsNothing) {
  OptTable* cursor = nullptr;
  char* value = kOtherText;
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, "Base", 1, &value), 0);
  EXPECT_THAT(value, IsNull());
}

TEST(FlagValueCursor, NullArgumentLeavesTheOutputUntouched) {
  const Table list = ListOfKeys({"Base"});
  OptTable* cursor = list.get();
  char* value = kOtherText;
  EXPECT_EQ(OptionList_Get_FlagValue(nullptr, "Base", 1, &value), 0);
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, nullptr, 1, &value), 0);
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, "Base", 1, nullptr), 0);
  EXPECT_EQ(value, kOtherText);
  EXPECT_EQ(cursor, list.get());
}

TEST(FlagValueCursor, EntryWithoutAValueEndsTheCallWithNone) {
  const Table list(NewNode("Base_1", nullptr, NewNode("Base_2", "2", nullptr)));
  OptTable* cursor = list.get();
  char* value = kOtherText;
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, "Base", 9, &value), 0);
  EXPECT_THAT(value, IsNull());
  EXPECT_EQ(OptionList_Get_FlagValue(&cursor, "Base", 9, &value), 1);
  EXPECT_THAT(value, StrEq("2"));
}

struct NextKeyRow : NamedRow {
  std::vector<std::string> first;
  std::vector<std::string> second;
  const char* key;
  const char* base = "Base";
};

class NextFlagKey : public testing::TestWithParam<NextKeyRow> {};

TEST_P(NextFlagKey, IsOnePastTheHighestIndex) {
  const Table first = ListOfKeys(GetParam().first);
  const Table second = ListOfKeys(GetParam().second);
  EXPECT_THAT(NextKey(first.get(), second.get(), GetParam().base).get(), StrEq(GetParam().key));
}

INSTANTIATE_TEST_SUITE_P(
    Indexes, NextFlagKey,
    Rows<NextKeyRow>({{"EmptyLists", {}, {}, "Base"},
                      {"OtherKeys", {"Other", "Bas"}, {"Bse"}, "Base"},
                      {"BaseInTheFirstList", {"Base"}, {}, "Base_1"},
                      {"BaseInTheSecondList", {}, {"Base"}, "Base_1"},
                      {"BaseInBothLists", {"Base"}, {"Base"}, "Base_1"},
                      {"OneIndex", {"Base", "Base_1"}, {}, "Base_2"},
                      {"IndexZero", {"Base_0"}, {}, "Base_1"},
                      {"IndexWithoutTheBaseAlone", {"Base_1"}, {}, "Base_2"},
                      {"Nine", {"Base_8"}, {}, "Base_9"},
                      {"Ten", {"Base_9"}, {}, "Base_10"},
                      {"NinetyNine", {"Base_98"}, {}, "Base_99"},
                      {"Hundred", {"Base_99"}, {}, "Base_100"},
                      {"Thousand", {"Base_999"}, {}, "Base_1000"},
                      {"Million", {"Base_999999"}, {}, "Base_1000000"},
                      {"HighestIndexOfAll", {"Base_2147483646"}, {}, "Base_2147483647"},
                      {"GapsAreNotFilled", {"Base", "Base_5", "Base_2"}, {}, "Base_6"},
                      {"HighestComesFirst", {"Base_7"}, {"Base_3", "Base"}, "Base_8"},
                      {"HighestComesLast", {"Base", "Base_3"}, {"Base_7"}, "Base_8"},
                      {"OtherCase", {"bASE_3"}, {}, "Base_4"},
                      {"OtherCaseAlone", {"BASE"}, {}, "Base_1"}}),
    RowName<NextKeyRow>);

INSTANTIATE_TEST_SUITE_P(
    Oddities, NextFlagKey,
    Rows<NextKeyRow>({{"NegativeIndexCountsAsNone", {"Base_-3"}, {}, "Base"},
                      {"NegativeIndexBesideTheBase", {"Base_-3", "Base"}, {}, "Base_1"},
                      {"SuffixThatIsNoNumberCountsAsZero", {"Base_x"}, {}, "Base_1"},
                      {"MissingNumberCountsAsZero", {"Base_"}, {}, "Base_1"},
                      {"HexadecimalCountsAsZero", {"Base_0x7"}, {}, "Base_1"},
                      {"BlankAndPlusSign", {"Base_ 7", "Base_+8"}, {}, "Base_9"},
                      {"NumberEndsAtTheNextUnderscore", {"Base_3_9"}, {}, "Base_4"},
                      {"TwoUnderscoresCountAsZero", {"Base__7"}, {}, "Base_1"},
                      {"UnderscoreNeedNotFollowTheBase", {"BaseMore_7"}, {}, "Base_8"},
                      {"LongerWordCountsAsTheBase", {"BaseMore"}, {}, "Base_1"},
                      {"OtherSeparatorIsNone", {"Base-7"}, {}, "Base_1"},
                      {"BaseAfterOtherText", {"XBase_4"}, {}, "Base_5"},
                      {"IndexBeforeTheBaseIsSeen", {"ABCD_6Base"}, {}, "Base_7"},
                      {"IndexBeforeThePlaceOfTheBaseIsNotSeen", {"A_3Base"}, {}, "Base_1"},
                      {"BaseWithUnderscores", {"A_1_B", "A_1_B_4"}, {}, "A_1_B_5", "A_1_B"},
                      {"EmptyBaseCountsEveryKey", {"A_5", "B"}, {}, "_6", ""},
                      {"EmptyBaseOfEmptyLists", {}, {}, "", ""},
                      {"PercentIsNoFormat", {"%s%n_1"}, {}, "%s%n_2", "%s%n"},
                      {"BytesAbove127HaveNoCase", {"\xC4_7"}, {}, "\xE4", "\xE4"}}),
    RowName<NextKeyRow>);

TEST(NextFlagKeyOfLongBase, HasRoomForAllOfIt) {
  const std::string base(5000, 'b');
  const Table list = ListOfKeys({base + "_99"});
  EXPECT_EQ(NextKey(list.get(), nullptr, base.c_str()).get(), base + "_100");
}

TEST(NextFlagKeyNull, ListsCountAsEmpty) {
  const Table list = ListOfKeys({"Base_1"});
  EXPECT_THAT(NextKey(nullptr, nullptr, "Base").get(), StrEq("Base"));
  EXPECT_THAT(NextKey(list.get(), nullptr, "Base").get(), StrEq("Base_2"));
  EXPECT_THAT(NextKey(nullptr, list.get(), "Base").get(), StrEq("Base_2"));
}

TEST(NextFlagKeyNull, EntryWithoutAKeyDoesNotCount) {
  const Table list(NewNode(nullptr, "1", NewNode("Base_1", "2", nullptr)));
  EXPECT_THAT(NextKey(list.get(), nullptr, "Base").get(), StrEq("Base_2"));
}

TEST(NextFlagKeyNull, BaseGivesNull) {
  const Table list = ListOfKeys({"Base_1"});
  EXPECT_THAT(NextKey(list.get(), list.get(), nullptr), IsNull());
}

// No number comes after these; whatever the answer, it is made without overflow.
TEST(NextFlagKeyBeyondAllNumbers, IsStillAKeyOfTheBaseOrNone) {
  for (const char* key : {"Base_2147483647", "Base_2147483648", "Base_99999999999999999999"}) {
    const Table list = ListOfKeys({key});
    const OwnedText next = NextKey(list.get(), list.get(), "Base");
    EXPECT_THAT(next.get(), AnyOf(IsNull(), StartsWith("Base"))) << key;
  }
}

struct SetRow : NamedRow {
  std::vector<std::string> source;
  const char* text;
  Entries before;
  Entries added;
};

class SetFlagValue : public testing::TestWithParam<SetRow> {};

TEST_P(SetFlagValue, AppendsEachItemUnderTheNextKey) {
  const Table source = ListOfKeys(GetParam().source);
  const Table target = MakeTable(GetParam().before);
  const auto text = ExactText(GetParam().text);
  Entries expected = GetParam().before;
  expected.insert(expected.end(), GetParam().added.begin(), GetParam().added.end());

  EXPECT_EQ(OptionList_Set_FlagValue(source.get(), "Base", text.get(), target.get()), 0);
  EXPECT_EQ(EntriesOf(target.get()), expected);
  EXPECT_STREQ(text.get(), GetParam().text) << "the function changed the caller's text";
}

const Entries kFirstNode = {{"", ""}};

INSTANTIATE_TEST_SUITE_P(
    Texts, SetFlagValue,
    Rows<SetRow>(
        {{"TwoItems", {"x"}, "A1,B2", kFirstNode, {{"Base", "A1"}, {"Base_1", "B2"}}},
         {"OneItem", {"x"}, "A1", kFirstNode, {{"Base", "A1"}}},
         {"BothSeparators",
          {"x"},
          "A1_B2,C3",
          kFirstNode,
          {{"Base", "A1"}, {"Base_1", "B2"}, {"Base_2", "C3"}}},
         {"EmptyItemsVanish", {"x"}, ",_A1,,_B2__", kFirstNode, {{"Base", "A1"}, {"Base_1", "B2"}}},
         {"EmptyText", {"x"}, "", kFirstNode, {}},
         {"OnlySeparators", {"x"}, ",_,", kFirstNode, {}},
         {"BlanksAndColonsBelongToTheItem", {"x"}, " A : 1 ", kFirstNode, {{"Base", " A : 1 "}}},
         {"NoOtherByteSeparates",
          {"x"},
          "A~1;2|3-4.5/6\t7",
          kFirstNode,
          {{"Base", "A~1;2|3-4.5/6\t7"}}},
         {"BytesAbove127", {"x"}, "\xC3\xA4", kFirstNode, {{"Base", "\xC3\xA4"}}},
         {"SameItemTwice", {"x"}, "A,A", kFirstNode, {{"Base", "A"}, {"Base_1", "A"}}},
         {"ElevenItems",
          {"x"},
          "a,b,c,d,e,f,g,h,i,j,k",
          kFirstNode,
          {{"Base", "a"},
           {"Base_1", "b"},
           {"Base_2", "c"},
           {"Base_3", "d"},
           {"Base_4", "e"},
           {"Base_5", "f"},
           {"Base_6", "g"},
           {"Base_7", "h"},
           {"Base_8", "i"},
           {"Base_9", "j"},
           {"Base_10", "k"}}}}),
    RowName<SetRow>);

INSTANTIATE_TEST_SUITE_P(
    TakenKeys, SetFlagValue,
    Rows<SetRow>(
        {{"OfTheSource", {"Base_4"}, "A,B", kFirstNode, {{"Base_5", "A"}, {"Base_6", "B"}}},
         {"OfTheTarget", {"x"}, "A,B", {{"Base_4", "t"}}, {{"Base_5", "A"}, {"Base_6", "B"}}},
         {"OfBoth", {"Base_6"}, "A,B", {{"Base_4", "t"}}, {{"Base_7", "A"}, {"Base_8", "B"}}},
         {"LongerWordInTheTarget", {"x"}, "A", {{"BaseMore", "t"}}, {{"Base_1", "A"}}},
         // The next key is the base alone, which is a prefix of a key in the target.
         {"NegativeIndexInTheTargetSwallowsAll", {"x"}, "A,B", {{"Base_-3", "t"}}, {}}}),
    RowName<SetRow>);

TEST(SetFlagValueInOneList, SourceMayBeTheTarget) {
  const Table list = MakeTable({{"Base", "0"}});
  EXPECT_EQ(OptionList_Set_FlagValue(list.get(), "Base", "A,B", list.get()), 0);
  EXPECT_THAT(EntriesOf(list.get()),
              ElementsAre(Pair("Base", "0"), Pair("Base_1", "A"), Pair("Base_2", "B")));
}

TEST(SetFlagValueInOneList, SourceStaysAsItIs) {
  const Table source = MakeTable({{"Base_3", "s"}});
  const Table target = MakeTable(kFirstNode);
  EXPECT_EQ(OptionList_Set_FlagValue(source.get(), "Base", "A", target.get()), 0);
  EXPECT_THAT(EntriesOf(source.get()), ElementsAre(Pair("Base_3", "s")));
}

TEST(SetFlagValueNull, AnyNullArgumentIsNothingToDo) {
  const Table source = MakeTable({{"x", "s"}});
  const Table target = MakeTable({{"y", "t"}});
  EXPECT_EQ(OptionList_Set_FlagValue(nullptr, "Base", "A", target.get()), 0);
  EXPECT_EQ(OptionList_Set_FlagValue(source.get(), nullptr, "A", target.get()), 0);
  EXPECT_EQ(OptionList_Set_FlagValue(source.get(), "Base", nullptr, target.get()), 0);
  EXPECT_EQ(OptionList_Set_FlagValue(source.get(), "Base", "A", nullptr), 0);
  EXPECT_THAT(EntriesOf(target.get()), ElementsAre(Pair("y", "t")));
}

struct SetArrayRow : NamedRow {
  const char* text;
  Entries added;
};

class SetArrayFlagValue : public testing::TestWithParam<SetArrayRow> {};

TEST_P(SetArrayFlagValue, AppendsEachItemWithItsOwnKey) {
  const Table target = MakeTable({{"first", "1"}});
  const auto text = ExactText(GetParam().text);
  Entries expected = {{"first", "1"}};
  expected.insert(expected.end(), GetParam().added.begin(), GetParam().added.end());

  EXPECT_EQ(OptionList_Set_ArrrayFlagValue(text.get(), target.get()), 0);
  EXPECT_EQ(EntriesOf(target.get()), expected);
  EXPECT_STREQ(text.get(), GetParam().text) << "the function changed the caller's text";
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SetArrayFlagValue,
    Rows<SetArrayRow>({{"UnderscoreSeparates", "K1:On_K2:Off", {{"K1", "On"}, {"K2", "Off"}}},
                       {"CommaSeparates", "K1:On,K2:Off", {{"K1", "On"}, {"K2", "Off"}}},
                       {"UnderscoreInAKeySplitsIt", "My_Key:On", {{"My", ""}, {"Key", "On"}}},
                       {"NoColonGivesAnEmptyValue", "K", {{"K", ""}}},
                       {"ColonAtTheEnd", "K:", {{"K", ""}}},
                       {"FurtherColonsStayInTheValue", "K:a:b", {{"K", "a:b"}}},
                       {"SecondColonAtOnce", "K::a", {{"K", ":a"}}},
                       {"LeadingColonsStayInTheKey", "::K:a", {{"::K", "a"}}},
                       {"LeadingColonsWithoutAValue", ":K", {{":K", ""}}},
                       {"OnlyColonsAreDropped", ":::", {}},
                       {"OtherBytesBeforeTheColonAreTheKey", "~:a", {{"~", "a"}}},
                       {"OnlyColonsAmongOthers", "A:1,:,B:2,::", {{"A", "1"}, {"B", "2"}}},
                       {"EmptyItemsVanish", ",_A:1__,B:2,", {{"A", "1"}, {"B", "2"}}},
                       {"EmptyText", "", {}},
                       {"OnlySeparators", "_,_", {}},
                       {"LastOfTwoEqualKeysWins", "A:1,B:2,A:3", {{"A", "3"}, {"B", "2"}}},
                       {"OtherCaseIsAKeyOfItsOwn", "A:1,a:2", {{"A", "1"}, {"a", "2"}}},
                       {"PrefixOfAKeyIsIgnored", "Long:1,Lo:2", {{"Long", "1"}}},
                       {"PrefixOfTheFirstNode", "fir:2", {}},
                       {"BlanksBelongToKeyAndValue", " A : 1 ", {{" A ", " 1 "}}},
                       {"BytesAbove127", "\xC3\xA4:\xFF", {{"\xC3\xA4", "\xFF"}}}}),
    RowName<SetArrayRow>);

TEST(SetArrayFlagValueNull, AnyNullArgumentIsNothingToDo) {
  const Table target = MakeTable({{"first", "1"}});
  EXPECT_EQ(OptionList_Set_ArrrayFlagValue(nullptr, target.get()), 0);
  EXPECT_EQ(OptionList_Set_ArrrayFlagValue("A:1", nullptr), 0);
  EXPECT_THAT(EntriesOf(target.get()), ElementsAre(Pair("first", "1")));
}

}  // namespace
}  // namespace ia_test
