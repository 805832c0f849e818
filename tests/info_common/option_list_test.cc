#include "info_analyze/option_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/table_model.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsNull;
using testing::NotNull;
using testing::Pair;
using testing::StrEq;

char kOtherText[] = "untouched";

TEST(OptionListAdd, AppendsANewKey) {
  const Table list = MakeTable({{"A", "1"}, {"B", "2"}});
  OptionList_Add(list.get(), "C", "3");
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("A", "1"), Pair("B", "2"), Pair("C", "3")));
}

TEST(OptionListAdd, KnownKeyGetsTheNewValueInItsPlace) {
  const Table list = MakeTable({{"A", "1"}, {"B", "2"}});
  OptionList_Add(list.get(), "A", "3");
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("A", "3"), Pair("B", "2")));
}

TEST(OptionListAdd, KnownKeyChangesItsCaseVariantsToo) {
  const Table list = MakeTable({{"Key", "1"}, {"KEY", "2"}});
  OptionList_Add(list.get(), "Key", "3");
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("Key", "3"), Pair("KEY", "3")));
}

TEST(OptionListAdd, KeyInOtherCaseIsAnEntryOfItsOwn) {
  const Table list = MakeTable({{"Key", "1"}});
  OptionList_Add(list.get(), "kEY", "2");
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("Key", "1"), Pair("kEY", "2")));
}

TEST(OptionListAdd, PrefixOfAKeyDoesNothing) {
  const Table list = MakeTable({{"QVFinisher", "1"}});
  OptionList_Add(list.get(), "QVFin", "2");
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("QVFinisher", "1")));
}

TEST(OptionListAdd, NullArgumentDoesNothing) {
  const Table list = MakeTable({{"A", "1"}});
  OptionList_Add(nullptr, "A", "2");
  OptionList_Add(list.get(), nullptr, "2");
  OptionList_Add(list.get(), "A", nullptr);
  OptionList_Add(list.get(), "B", nullptr);
  EXPECT_THAT(EntriesOf(list.get()), ElementsAre(Pair("A", "1")));
}

TEST(OptionListGet, CopiesTheValueOfAKeyIgnoringCase) {
  const Table list = MakeTable({{"A", "1"}, {"Key", "2"}});
  char* value = nullptr;
  EXPECT_EQ(OptionList_Get(list.get(), "kEy", &value), 1);
  const OwnedText owned(value);
  EXPECT_THAT(value, StrEq("2"));
  EXPECT_NE(value, list->next->value);
}

TEST(OptionListGet, TakesTheFirstOfTwoCaseVariants) {
  const Table list = MakeTable({{"KEY", "first"}, {"Key", "second"}});
  char* value = nullptr;
  EXPECT_EQ(OptionList_Get(list.get(), "Key", &value), 1);
  EXPECT_THAT(OwnedText(value).get(), StrEq("first"));
}

TEST(OptionListGet, UnknownKeyGivesNull) {
  const Table list = MakeTable({{"Key", "1"}});
  for (const char* key : {"Ke", "Keys", "", "Other"}) {
    char* value = kOtherText;
    EXPECT_EQ(OptionList_Get(list.get(), key, &value), 0) << key;
    EXPECT_THAT(value, IsNull()) << key;
  }
}

TEST(OptionListGet, NullArgumentLeavesTheOutputUntouched) {
  const Table list = MakeTable({{"Key", "1"}});
  char* value = kOtherText;
  EXPECT_EQ(OptionList_Get(nullptr, "Key", &value), 0);
  EXPECT_EQ(OptionList_Get(list.get(), nullptr, &value), 0);
  EXPECT_EQ(value, kOtherText);
  EXPECT_EQ(OptionList_Get(list.get(), "Key", nullptr), 0);
}

TEST(OptionListTerminate, ReleasesTheListAndForgetsIt) {
  OptionList* list = MakeTable({{"A", "1"}, {"B", "2"}}).release();
  OptionList_Terminate(&list);
  EXPECT_THAT(list, IsNull());
}

TEST(OptionListTerminate, EmptyListStaysEmpty) {
  OptionList* list = nullptr;
  OptionList_Terminate(&list);
  EXPECT_THAT(list, IsNull());
}

TEST(OptionListTerminate, NullIsNothingToDo) { OptionList_Terminate(nullptr); }

struct SearchRow : NamedRow {
  const char* needle;
  std::vector<std::string> keys;
};

class OptionListSearch : public testing::TestWithParam<SearchRow> {
 protected:
  const Table list_ = MakeTable({{"QVFinisher", "0"},
                                 {"qvfin", "1"},
                                 {"XQVFIN", "2"},
                                 {"Other", "3"},
                                 {"", "4"},
                                 {"\xC4_\xFF", "5"},
                                 {"A_a_b-C", "6"}});
};

TEST_P(OptionListSearch, VisitsEveryKeyThatContainsTheNeedleInAnyCase) {
  OptTable* cursor = list_.get();
  std::vector<std::string> keys;
  char* key = kOtherText;
  char* value = kOtherText;
  while (z_get_key_value_from_option_list(&cursor, GetParam().needle, &key, &value) == 1) {
    keys.push_back(key);
  }
  EXPECT_EQ(keys, GetParam().keys);
  EXPECT_THAT(cursor, IsNull());
  EXPECT_THAT(key, IsNull());
  EXPECT_THAT(value, IsNull());
}

INSTANTIATE_TEST_SUITE_P(
    Needles, OptionListSearch,
    Rows<SearchRow>(
        {{"AtTheStart", "QVFin", {"QVFinisher", "qvfin", "XQVFIN"}},
         {"InTheMiddle", "FINI", {"QVFinisher"}},
         {"AtTheEnd", "SHER", {"QVFinisher"}},
         {"WholeKey", "OTHER", {"Other"}},
         {"LongerThanTheKey", "Others", {}},
         {"Nowhere", "QVFix", {}},
         {"Empty", "", {"QVFinisher", "qvfin", "XQVFIN", "Other", "", "\xC4_\xFF", "A_a_b-C"}},
         {"SignWithinLetters", "a_B-c", {"A_a_b-C"}},
         {"SignFirst", "_B", {"A_a_b-C"}},
         {"SignLast", "b-", {"A_a_b-C"}},
         {"SignAlone", "_", {"\xC4_\xFF", "A_a_b-C"}},
         {"SignWithOtherLettersBefore", "c_a", {}},
         {"SignWithOtherLettersAfter", "a_c", {}},
         {"SignEarlierThanInTheNeedle", "AAA_a", {}},
         {"SignBeforeTheKeysEnd", "-CC", {}},
         {"BytesAbove127", "\xFF", {"\xC4_\xFF"}},
         {"BytesAbove127HaveNoCase", "\xE4", {}},
         {"SignsBesideTheLettersHaveNoCase", "\x7F", {}}}),
    RowName<SearchRow>);

TEST(OptionListCursor, IsAfterTheMatchAndLendsItsTexts) {
  const Table list = MakeTable({{"A", "0"}, {"Key", "1"}, {"B", "2"}, {"Key2", "3"}});
  OptTable* cursor = list.get();
  char* key = nullptr;
  char* value = nullptr;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "key", &key, &value), 1);
  EXPECT_EQ(cursor, list->next->next);
  EXPECT_EQ(key, list->next->key);
  EXPECT_EQ(value, list->next->value);
}

TEST(OptionListCursor, StartsWhereTheCallerSetsIt) {
  const Table list = MakeTable({{"Key1", "1"}, {"Key2", "2"}});
  OptTable* cursor = list->next;
  char* key = nullptr;
  char* value = nullptr;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "Key", &key, &value), 1);
  EXPECT_THAT(value, StrEq("2"));
  EXPECT_THAT(cursor, IsNull());
}

TEST(OptionListCursor, EmptyCursorFindsNothing) {
  OptTable* cursor = nullptr;
  char* key = kOtherText;
  char* value = kOtherText;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "Key", &key, &value), 0);
  EXPECT_THAT(key, IsNull());
  EXPECT_THAT(value, IsNull());
}

TEST(OptionListCursor, NullArgumentLeavesTheOutputsUntouched) {
  const Table list = MakeTable({{"Key", "1"}});
  OptTable* cursor = list.get();
  char* key = kOtherText;
  char* value = kOtherText;
  EXPECT_EQ(z_get_key_value_from_option_list(nullptr, "Key", &key, &value), 0);
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, nullptr, &key, &value), 0);
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "Key", nullptr, &value), 0);
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "Key", &key, nullptr), 0);
  EXPECT_EQ(key, kOtherText);
  EXPECT_EQ(value, kOtherText);
  EXPECT_EQ(cursor, list.get());
}

TEST(OptionListCursor, MatchWithoutAValueIsPassedButNotFound) {
  const Table list(NewNode("Key1", nullptr, NewNode("Key2", "2", nullptr)));
  OptTable* cursor = list.get();
  char* key = nullptr;
  char* value = kOtherText;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "Key", &key, &value), 0);
  EXPECT_THAT(key, StrEq("Key1"));
  EXPECT_THAT(value, IsNull());
  EXPECT_EQ(cursor, list->next);
}

TEST(OptionListCursor, EntryWithoutAKeyIsSkipped) {
  const Table list(NewNode(nullptr, "1", NewNode("Key", "2", nullptr)));
  OptTable* cursor = list.get();
  char* key = nullptr;
  char* value = nullptr;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "", &key, &value), 1);
  EXPECT_THAT(value, StrEq("2"));
}

}  // namespace
}  // namespace ia_test
