#include "info_analyze/option_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/table_model.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::Pair;
using testing::StrEq;

OwnedText GetValue(const OptTable* head, const char* key) {
  return OwnedText(info_common_optlist_getvalue(head, key));
}

// The front insertion over a table that frees itself.
void AddFront(Table* table, const char* key, const char* value) {
  OptTable* head = table->release();
  info_common_optlist_additem_front(&head, key, value);
  table->reset(head);
}

TEST(OptionTableDestroy, NullIsNothingToDo) { info_common_optlist_destroy(nullptr); }

TEST(OptionTableDestroy, ReleasesEveryNodeAndText) {
  info_common_optlist_destroy(MakeTable({{"A", "1"}, {"B", ""}, {"C", "3"}}).release());
}

TEST(OptionTableDestroy, ReleasesALongTable) {
  info_common_optlist_destroy(MakeTable(Entries(200'000, Entry("A", "1"))).release());
}

struct FindRow : NamedRow {
  const char* key;
  int expected;  // place of the node, or -1
};

class OptionTableFind : public testing::TestWithParam<FindRow> {
 protected:
  const Table table_ = MakeTable({{"QVFin", "0"}, {"QVFinisher", "1"}, {"qvfin", "2"}, {"", "3"}});
};

TEST_P(OptionTableFind, AnswersTheFirstKeyThatBeginsWithTheWantedOne) {
  const OptTable* node = info_common_optlist_find(table_.get(), GetParam().key);
  const OptTable* expected = table_.get();
  for (int i = 0; i < GetParam().expected; ++i) expected = expected->next;
  EXPECT_EQ(node, GetParam().expected < 0 ? nullptr : expected);
}

INSTANTIATE_TEST_SUITE_P(Keys, OptionTableFind,
                         Rows<FindRow>({{"WholeKey", "QVFin", 0},
                                        {"OneByte", "Q", 0},
                                        {"LongerKeyAfterItsPrefix", "QVFini", 1},
                                        {"WholeLongerKey", "QVFinisher", 1},
                                        {"OtherCase", "qv", 2},
                                        {"MixedCase", "Qv", -1},
                                        {"LongerThanEveryKey", "QVFinisherX", -1},
                                        {"MiddleOfAKey", "VFin", -1},
                                        {"EmptyKeyFitsEveryEntry", "", 0}}),
                         RowName<FindRow>);

TEST(OptionTableFindNull, EntryWithoutAKeyIsNoEntry) {
  const Table table(NewNode(nullptr, "1", NewNode("A", "2", nullptr)));
  EXPECT_EQ(info_common_optlist_find(table.get(), ""), table->next);
  EXPECT_THAT(GetValue(table.get(), "A").get(), StrEq("2"));
  info_common_optlist_changevalue(table.get(), "A", "3");
  info_common_optlist_additem_back(table.get(), "B", "4");
  EXPECT_THAT(GetValue(table.get(), "A").get(), StrEq("3"));
  EXPECT_THAT(GetValue(table.get(), "B").get(), StrEq("4"));
  EXPECT_THAT(table->value, StrEq("1"));
}

TEST(OptionTableFindNull, NullTableOrKeyFindsNothing) {
  const Table table = MakeTable({{"A", "1"}});
  EXPECT_THAT(info_common_optlist_find(nullptr, "A"), IsNull());
  EXPECT_THAT(info_common_optlist_find(nullptr, ""), IsNull());
  EXPECT_THAT(info_common_optlist_find(table.get(), nullptr), IsNull());
  EXPECT_THAT(info_common_optlist_find(nullptr, nullptr), IsNull());
}

TEST(OptionTableFind, ComparesBytesAbove127AsTheyAre) {
  const Table table = MakeTable({{"\xE4", "1"}, {"\xC4", "2"}});
  EXPECT_STREQ(info_common_optlist_find(table.get(), "\xC4")->value, "2");
}

TEST(OptionTableGetValue, IgnoresCase) {
  const Table table = MakeTable({{"QVFoo", "1"}});
  EXPECT_STREQ(GetValue(table.get(), "qvfOO").get(), "1");
}

TEST(OptionTableGetValue, NeedsTheWholeKey) {
  const Table table = MakeTable({{"QVFoo", "1"}});
  EXPECT_THAT(GetValue(table.get(), "QVFo"), IsNull());
  EXPECT_THAT(GetValue(table.get(), "QVFooo"), IsNull());
  EXPECT_THAT(GetValue(table.get(), ""), IsNull());
}

TEST(OptionTableGetValue, TakesTheFirstOfTwoKeysThatDifferInCase) {
  const Table table = MakeTable({{"qvfoo", "first"}, {"QVFoo", "second"}});
  EXPECT_STREQ(GetValue(table.get(), "QVFoo").get(), "first");
}

TEST(OptionTableGetValue, DoesNotFoldBytesAroundOrAboveTheLetters) {
  const Table table = MakeTable({{"@[\xC4", "1"}});
  EXPECT_THAT(GetValue(table.get(), "`{\xC4"), IsNull());
  EXPECT_THAT(GetValue(table.get(), "@[\xE4"), IsNull());
}

TEST(OptionTableGetValue, FindsTheEmptyKeyAndTheEmptyValue) {
  const Table table = MakeTable({{"", ""}});
  EXPECT_STREQ(GetValue(table.get(), "").get(), "");
}

TEST(OptionTableGetValue, GivesACopyOfItsOwn) {
  const Table table = MakeTable({{"A", "1"}});
  const OwnedText copy = GetValue(table.get(), "A");
  *copy = 'x';
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
}

TEST(OptionTableGetValue, NullTableOrKeyHasNone) {
  const Table table = MakeTable({{"A", "1"}});
  EXPECT_THAT(GetValue(nullptr, "A"), IsNull());
  EXPECT_THAT(GetValue(table.get(), nullptr), IsNull());
}

TEST(OptionTableChangeValue, ChangesEveryKeyThatEqualsIgnoringCase) {
  const Table table = MakeTable({{"QVFoo", "1"}, {"QVFooBar", "2"}, {"qvfoo", "3"}, {"QVFo", "4"}});
  info_common_optlist_changevalue(table.get(), "QVFOO", "new");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVFoo", "new"), Pair("QVFooBar", "2"),
                                                  Pair("qvfoo", "new"), Pair("QVFo", "4")));
}

TEST(OptionTableChangeValue, UnknownKeyChangesNothing) {
  const Table table = MakeTable({{"QVFoo", "1"}});
  info_common_optlist_changevalue(table.get(), "QVBar", "new");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVFoo", "1")));
}

TEST(OptionTableChangeValue, NullArgumentDoesNothing) {
  const Table table = MakeTable({{"A", "1"}});
  info_common_optlist_changevalue(nullptr, "A", "2");
  info_common_optlist_changevalue(table.get(), nullptr, "2");
  info_common_optlist_changevalue(table.get(), "A", nullptr);
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
}

TEST(OptionTableChangeValue, TakesTheValueOfTheSameEntry) {
  const Table table = MakeTable({{"A", "same"}});
  info_common_optlist_changevalue(table.get(), "A", table->value);
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "same")));
}

TEST(OptionTableChangeValue, CopiesTheValue) {
  const Table table = MakeTable({{"A", "1"}});
  char value[] = "2";
  info_common_optlist_changevalue(table.get(), "A", value);
  value[0] = 'x';
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "2")));
}

TEST(OptionTableAddFront, StartsATable) {
  Table table;
  AddFront(&table, "A", "1");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
}

TEST(OptionTableAddFront, PutsANewKeyFirst) {
  Table table = MakeTable({{"A", "1"}});
  AddFront(&table, "B", "2");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("B", "2"), Pair("A", "1")));
}

TEST(OptionTableAddFront, CopiesBothTexts) {
  Table table;
  char key[] = "A";
  char value[] = "1";
  AddFront(&table, key, value);
  key[0] = value[0] = 'x';
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
}

TEST(OptionTableAddFront, NullArgumentDoesNothing) {
  Table table = MakeTable({{"A", "1"}});
  info_common_optlist_additem_front(nullptr, "B", "2");
  AddFront(&table, nullptr, "2");
  AddFront(&table, "B", nullptr);
  AddFront(&table, "A", nullptr);
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
  Table empty;
  AddFront(&empty, nullptr, nullptr);
  EXPECT_THAT(empty, IsNull());
}

TEST(OptionTableAddBack, PutsANewKeyLast) {
  const Table table = MakeTable({{"A", "1"}, {"B", "2"}});
  info_common_optlist_additem_back(table.get(), "C", "3");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1"), Pair("B", "2"), Pair("C", "3")));
}

TEST(OptionTableAddBack, CopiesBothTexts) {
  const Table table = MakeTable({{"A", "1"}});
  char key[] = "B";
  char value[] = "2";
  info_common_optlist_additem_back(table.get(), key, value);
  key[0] = value[0] = 'x';
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1"), Pair("B", "2")));
}

TEST(OptionTableAddBack, NullArgumentDoesNothing) {
  const Table table = MakeTable({{"A", "1"}});
  info_common_optlist_additem_back(nullptr, "B", "2");
  info_common_optlist_additem_back(table.get(), nullptr, "2");
  info_common_optlist_additem_back(table.get(), "B", nullptr);
  info_common_optlist_additem_back(table.get(), "A", nullptr);
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("A", "1")));
}

// What both insertions do with a key that the table may know.
struct KnownKeyRow : NamedRow {
  Entries before;
  const char* key;
  Entries after;
};

class OptionTableAddKnownKey : public testing::TestWithParam<KnownKeyRow> {};

TEST_P(OptionTableAddKnownKey, AtTheFront) {
  Table table = MakeTable(GetParam().before);
  AddFront(&table, GetParam().key, "new");
  EXPECT_EQ(EntriesOf(table.get()), GetParam().after);
}

TEST_P(OptionTableAddKnownKey, AtTheBack) {
  const Table table = MakeTable(GetParam().before);
  info_common_optlist_additem_back(table.get(), GetParam().key, "new");
  EXPECT_EQ(EntriesOf(table.get()), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, OptionTableAddKnownKey,
    Rows<KnownKeyRow>(
        {{"SameKeyChangesItsValue",
          {{"QVA", "1"}, {"QVFoo", "2"}, {"QVB", "3"}},
          "QVFoo",
          {{"QVA", "1"}, {"QVFoo", "new"}, {"QVB", "3"}}},
         {"PrefixOfAKeyIsNeitherAddedNorChanged",
          {{"QVFinisher", "1"}},
          "QVFin",
          {{"QVFinisher", "1"}}},
         {"SameKeyAfterALongerOne",
          {{"QVFinisher", "1"}, {"QVFin", "2"}},
          "QVFin",
          {{"QVFinisher", "1"}, {"QVFin", "new"}}},
         {"PrefixOfOneKeyChangesItsOwnCaseVariant",
          {{"QVFooBar", "1"}, {"qvfoo", "2"}},
          "QVFoo",
          {{"QVFooBar", "1"}, {"qvfoo", "new"}}},
         {"SameKeyChangesItsCaseVariantsToo",
          {{"QVFoo", "1"}, {"qvfoo", "2"}, {"QVFOO", "3"}},
          "qvfoo",
          {{"QVFoo", "new"}, {"qvfoo", "new"}, {"QVFOO", "new"}}},
         {"EmptyKeyIsAPrefixOfEveryKey", {{"A", "1"}}, "", {{"A", "1"}}},
         {"EmptyKeyChangesAnEmptyKey", {{"A", "1"}, {"", "2"}}, "", {{"A", "1"}, {"", "new"}}}}),
    RowName<KnownKeyRow>);

TEST(OptionTableAddNewKey, KeyThatDiffersInCaseOnlyIsASecondEntry) {
  Table table = MakeTable({{"QVFoo", "1"}});
  AddFront(&table, "qvfoo", "2");
  info_common_optlist_additem_back(table.get(), "QVFOO", "3");
  EXPECT_THAT(EntriesOf(table.get()),
              ElementsAre(Pair("qvfoo", "2"), Pair("QVFoo", "1"), Pair("QVFOO", "3")));
}

TEST(OptionTableAddNewKey, KeyThatExtendsAnotherIsANewEntry) {
  Table table = MakeTable({{"QVFin", "1"}});
  AddFront(&table, "QVFinisher", "2");
  info_common_optlist_additem_back(table.get(), "QVFinish", "ignored, begins QVFinisher");
  info_common_optlist_additem_back(table.get(), "QVFinal", "3");
  EXPECT_THAT(EntriesOf(table.get()),
              ElementsAre(Pair("QVFinisher", "2"), Pair("QVFin", "1"), Pair("QVFinal", "3")));
}

struct Insertion {
  bool at_front;
  std::string key;
  std::string value;
};

std::ostream& operator<<(std::ostream& out, const Insertion& insertion) {
  return out << (insertion.at_front ? "front " : "back ") << insertion.key << "="
             << insertion.value;
}

// Few letters in both cases, so that prefixes and case variants are common.
rc::Gen<std::string> ShortKey() {
  return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, 5), [](std::size_t length) {
    return rc::gen::container<std::string>(length, rc::gen::element('a', 'A', 'b', 'B'));
  });
}

rc::Gen<Insertion> AnyInsertion() {
  return rc::gen::construct<Insertion>(rc::gen::arbitrary<bool>(), ShortKey(),
                                       rc::gen::element<std::string>("0", "1", "2", "3", ""));
}

RC_GTEST_PROP(OptionTableProperty, InsertionsKeepTheOrderAndContentsOfThePlainRule, ()) {
  const auto insertions = *rc::gen::container<std::vector<Insertion>>(AnyInsertion());
  TableModel model;
  Table table;
  for (const auto& [at_front, key, value] : insertions) {
    if (at_front) {
      model.AddFront(key, value);
      AddFront(&table, key.c_str(), value.c_str());
    } else {
      model.AddBack(key, value);
      info_common_optlist_additem_back(table.get(), key.c_str(), value.c_str());
    }
    RC_ASSERT(EntriesOf(table.get()) == model.entries());
  }
}

RC_GTEST_PROP(OptionTableProperty, LookupsAnswerTheFirstEntryThatFits, ()) {
  Entries entries = *rc::gen::container<Entries>(
      rc::gen::pair(ShortKey(), rc::gen::element<std::string>("0", "1", "2")));
  const TableModel model(entries);
  const Table table = MakeTable(entries);
  const std::string key = *ShortKey();

  std::vector<const OptTable*> nodes;
  for (const OptTable* node = table.get(); node != nullptr; node = node->next) {
    nodes.push_back(node);
  }
  const OptTable* found = info_common_optlist_find(table.get(), key.c_str());
  const int place = model.Find(key);
  RC_ASSERT(found == (place < 0 ? nullptr : nodes[static_cast<std::size_t>(place)]));

  const OwnedText value = GetValue(table.get(), key.c_str());
  const int equal = model.FindEqual(key);
  RC_ASSERT((value == nullptr) == (equal < 0));
  if (equal >= 0) RC_ASSERT(value.get() == entries[static_cast<std::size_t>(equal)].second);
}

RC_GTEST_PROP(OptionTableProperty, ChangesReachEveryEqualKey, ()) {
  const Entries entries = *rc::gen::container<Entries>(
      rc::gen::pair(ShortKey(), rc::gen::element<std::string>("0", "1", "2")));
  const std::string key = *ShortKey();
  TableModel model(entries);
  const Table table = MakeTable(entries);
  model.ChangeValue(key, "new");
  info_common_optlist_changevalue(table.get(), key.c_str(), "new");
  RC_ASSERT(EntriesOf(table.get()) == model.entries());
}

}  // namespace
}  // namespace ia_test
