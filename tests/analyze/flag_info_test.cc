#include "info_analyze/flag_info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/table_model.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using testing::Pair;
using testing::StrEq;

struct StoreDeleter {
  void operator()(FlagInfo* store) const { zflaginfo_term(store); }
};
using Store = std::unique_ptr<FlagInfo, StoreDeleter>;

Store NewStore(int32_t capacity = 1024) { return Store(zflaginfo_init("key", capacity)); }

Entries FlagsOf(const Store& store) {
  Entries flags;
  for (int32_t i = 0; i < store->count; ++i) {
    flags.emplace_back(store->entries[i].name, store->entries[i].value);
  }
  return flags;
}

Store StoreOf(const char* text) {
  Store store = NewStore();
  EXPECT_EQ(zflaginfo_get(text, store.get()), 0);
  return store;
}

TEST(FlagInfoInit, MakesAnEmptyStoreOfZeroFilledPairs) {
  const Store store = NewStore(1024);
  ASSERT_THAT(store, NotNull());
  EXPECT_EQ(store->count, 0);
  EXPECT_EQ(store->capacity, 1024);
  for (int32_t i = 0; i < store->capacity; ++i) {
    EXPECT_THAT(store->entries[i].name, IsNull());
    EXPECT_THAT(store->entries[i].value, IsNull());
  }
}

TEST(FlagInfoInit, KeyMayBeEmpty) { EXPECT_THAT(Store(zflaginfo_init("", 1)), NotNull()); }

TEST(FlagInfoInit, NullKeyIsRefused) { EXPECT_THAT(zflaginfo_init(nullptr, 1024), IsNull()); }

TEST(FlagInfoInit, NegativeCapacityIsRefused) {
  EXPECT_THAT(zflaginfo_init("key", -1), IsNull());
  EXPECT_THAT(zflaginfo_init("key", INT_MIN), IsNull());
}

TEST(FlagInfoTerm, NullIsNothingToDo) { zflaginfo_term(nullptr); }

TEST(FlagInfoTerm, ReleasesPairsWithMissingTexts) {
  const Store store = StoreOf("A:1,B:2");
  free(store->entries[0].name);
  store->entries[0].name = nullptr;
  free(store->entries[1].value);
  store->entries[1].value = nullptr;
}

TEST(FlagInfoFind, ComparesTheWholeNameAndItsCase) {
  const Store store = StoreOf("AB:1,A:2,\xC3\xA4:3");
  EXPECT_EQ(zflaginfo_find(store.get(), "AB"), &store->entries[0]);
  EXPECT_EQ(zflaginfo_find(store.get(), "A"), &store->entries[1]);
  EXPECT_EQ(zflaginfo_find(store.get(), "\xC3\xA4"), &store->entries[2]);
  for (const char* unknown : {"a", "ab", "B", "ABC", "", "A ", "\xC3"}) {
    EXPECT_THAT(zflaginfo_find(store.get(), unknown), IsNull()) << unknown;
  }
}

TEST(FlagInfoFind, PrefixOfANameDoesNotMatch) {
  const Store shorter = StoreOf("A:1");
  EXPECT_THAT(zflaginfo_find(shorter.get(), "AB"), IsNull());
  const Store longer = StoreOf("AB:1");
  EXPECT_THAT(zflaginfo_find(longer.get(), "A"), IsNull());
}

TEST(FlagInfoFind, NullArgumentFindsNothing) {
  const Store store = StoreOf("A:1");
  EXPECT_THAT(zflaginfo_find(nullptr, "A"), IsNull());
  EXPECT_THAT(zflaginfo_find(store.get(), nullptr), IsNull());
}

TEST(FlagInfoFind, EmptyStoreHasNone) {
  EXPECT_THAT(zflaginfo_find(NewStore().get(), "A"), IsNull());
}

TEST(FlagInfoFind, CountBelowOneHidesThePairs) {
  const Store store = StoreOf("A:1");
  for (const int32_t count : {0, -1, INT_MIN}) {
    store->count = count;
    EXPECT_THAT(zflaginfo_find(store.get(), "A"), IsNull()) << count;
  }
  store->count = 1;
}

TEST(FlagInfoFind, PairWithoutANameIsSkipped) {
  const Store store = StoreOf("A:1,B:2");
  free(store->entries[0].name);
  store->entries[0].name = nullptr;
  EXPECT_THAT(zflaginfo_find(store.get(), "A"), IsNull());
  EXPECT_EQ(zflaginfo_find(store.get(), "B"), &store->entries[1]);
}

struct TextRow : NamedRow {
  const char* text;
  Entries flags;
};

class FlagText : public testing::TestWithParam<TextRow> {};

TEST_P(FlagText, BecomesPairs) {
  const auto text = ExactText(GetParam().text);
  EXPECT_EQ(FlagsOf(StoreOf(text.get())), GetParam().flags);
  EXPECT_STREQ(text.get(), GetParam().text) << "the function changed the caller's text";
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FlagText,
    Rows<TextRow>(
        {{"TwoPairs", "A:1,B:2", {{"A", "1"}, {"B", "2"}}},
         {"SameNameKeepsTheLaterValue", "A:1,,A:3", {{"A", "3"}}},
         {"SameNameKeepsItsPlace", "A:1,B:2,A:3", {{"A", "3"}, {"B", "2"}}},
         {"NoColon", "A", {{"A", ""}}},
         {"ColonAtTheEnd", "A:", {{"A", ""}}},
         {"LeadingColons", "::A:1", {{"A", "1"}}},
         {"FurtherColonsStayInTheValue", "A:1:2", {{"A", "1:2"}}},
         {"SecondColonAtOnce", "A::1", {{"A", ":1"}}},
         {"ColonsAtTheEndOfTheValue", "A:1::", {{"A", "1::"}}},
         {"LeadingCommas", ",,A:1", {{"A", "1"}}},
         {"TrailingCommas", "A:1,,", {{"A", "1"}}},
         {"EmptyText", "", {}},
         {"OnlyCommas", ",,,", {}},
         {"OneColon", ":", {}},
         {"OnlyColonsAreSkipped", "A:1,::,B:2", {{"A", "1"}, {"B", "2"}}},
         {"OnlyColonsFirst", ":::,A:1", {{"A", "1"}}},
         {"LaterEmptyValueReplacesToo", "A:1,A", {{"A", ""}}},
         {"CasesAreSeparateNames", "A:1,a:2", {{"A", "1"}, {"a", "2"}}},
         {"PrefixesAreSeparateNames", "AB:1,A:2,ABC:3", {{"AB", "1"}, {"A", "2"}, {"ABC", "3"}}},
         {"BlanksAreKept", " A : 1 , B", {{" A ", " 1 "}, {" B", ""}}},
         {"UnderscoreAndSemicolonAreOrdinary", "A_B:1;C:2", {{"A_B", "1;C:2"}}},
         {"BytesAbove127", "\xC3\xA4:\xFF", {{"\xC3\xA4", "\xFF"}}}}),
    RowName<TextRow>);

TEST(FlagTexts, AddUp) {
  const Store store = StoreOf("A:1,B:2");
  EXPECT_EQ(zflaginfo_get("B:3,C:4", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1"), Pair("B", "3"), Pair("C", "4")));
}

TEST(FlagTexts, NullArgumentIsRefused) {
  const Store store = StoreOf("A:1");
  EXPECT_EQ(zflaginfo_get(nullptr, store.get()), -1);
  EXPECT_EQ(zflaginfo_get("A:2", nullptr), -1);
  EXPECT_EQ(zflaginfo_get(nullptr, nullptr), -1);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1")));
}

TEST(FlagTexts, BeyondTheCapacityAreLeftOut) {
  const Store store = NewStore(2);
  EXPECT_EQ(zflaginfo_get("A:1,B:2,C:3", store.get()), 0);
  EXPECT_EQ(zflaginfo_get("D:4", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1"), Pair("B", "2")));
}

TEST(FlagTexts, KnownNameOfAFullStoreGetsItsNewValue) {
  const Store store = NewStore(2);
  EXPECT_EQ(zflaginfo_get("A:1,B:2,C:3,A:4", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "4"), Pair("B", "2")));
}

TEST(FlagTexts, FillTheUsualCapacityToTheLastPair) {
  const Store store = NewStore(1024);
  std::string text;
  for (int i = 0; i < 1025; ++i) text += "N" + std::to_string(i) + ":" + std::to_string(i) + ",";
  EXPECT_EQ(zflaginfo_get(text.c_str(), store.get()), 0);
  EXPECT_EQ(store->count, 1024);
  EXPECT_THAT(zflaginfo_find(store.get(), "N1023"), NotNull());
  EXPECT_THAT(zflaginfo_find(store.get(), "N1024"), IsNull());
}

TEST(FlagTexts, OfAStoreWithoutCapacityAreLeftOut) {
  const Store store = NewStore(0);
  ASSERT_THAT(store, NotNull());
  EXPECT_EQ(zflaginfo_get("A:1", store.get()), 0);
  EXPECT_EQ(store->count, 0);
}

std::string_view TakeItem(std::string_view* text, char separator) {
  const std::string_view item = text->substr(0, text->find(separator));
  text->remove_prefix(std::min(item.size() + 1, text->size()));
  return item;
}

Entries FlagsOfText(std::string_view text) {
  Entries flags;
  while (!text.empty()) {
    std::string_view item = TakeItem(&text, ',');
    item.remove_prefix(std::min(item.find_first_not_of(':'), item.size()));
    if (item.empty()) continue;
    const std::string name(TakeItem(&item, ':'));
    const auto known = std::find_if(flags.begin(), flags.end(),
                                    [&](const Entry& flag) { return flag.first == name; });
    if (known == flags.end()) {
      flags.emplace_back(name, item);
    } else {
      known->second = item;
    }
  }
  return flags;
}

RC_GTEST_PROP(FlagTextProperty, AnyTextGivesThePairsOfThePlainRules, ()) {
  const std::string text =
      *rc::gen::container<std::string>(rc::gen::element('A', 'a', 'B', ':', ':', ',', ',', ' '));
  RC_ASSERT(FlagsOf(StoreOf(ExactText(text).get())) == FlagsOfText(text));
}

TEST(FlagsOfTable, EntriesOfTheKeyAddUpInTableOrder) {
  const Table table = MakeTable(
      {{"Flags", "A:1,B:2"}, {"Other", "A:9,X:9"}, {"Flags", "B:3,C:4"}, {"flags", "A:8"}});
  const Store store = NewStore();
  EXPECT_EQ(zflaginfo_getflags(table.get(), "Flags", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1"), Pair("B", "3"), Pair("C", "4")));
}

TEST(FlagsOfTable, KeysThatBeginWithTheKeyCount) {
  const Table table = MakeTable({{"FlagsMore", "A:1"}, {"Flag", "B:2"}});
  const Store store = NewStore();
  EXPECT_EQ(zflaginfo_getflags(table.get(), "Flags", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1")));
}

TEST(FlagsOfTable, NoEntryIsNoFailure) {
  const Table table = MakeTable({{"Other", "A:1"}});
  const Store store = NewStore();
  EXPECT_EQ(zflaginfo_getflags(table.get(), "Flags", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), IsEmpty());
}

TEST(FlagsOfTable, EntryWithoutAValueIsSkipped) {
  const Table table(NewNode("Flags", nullptr, NewNode("Flags", "A:1", nullptr)));
  const Store store = NewStore();
  EXPECT_EQ(zflaginfo_getflags(table.get(), "Flags", store.get()), 0);
  EXPECT_THAT(FlagsOf(store), ElementsAre(Pair("A", "1")));
}

TEST(FlagsOfTable, NullArgumentIsRefused) {
  const Table table = MakeTable({{"Flags", "A:1"}});
  const Store store = NewStore();
  EXPECT_EQ(zflaginfo_getflags(nullptr, "Flags", store.get()), -1);
  EXPECT_EQ(zflaginfo_getflags(table.get(), nullptr, store.get()), -1);
  EXPECT_EQ(zflaginfo_getflags(table.get(), "Flags", nullptr), -1);
  EXPECT_THAT(FlagsOf(store), IsEmpty());
}

}  // namespace
}  // namespace ia_test
