#include "info_common/option_table_builder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "tests/info_common/ppd_model.h"
#include "tests/info_common/ppd_test.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::Pair;

std::string OptionLines(const Entries& entries) {
  std::string ppd;
  for (const auto& [key, value] : entries) ppd += "*QV" + key + ": " + value + "\n";
  return ppd;
}

Entries InReverse(Entries entries) {
  for (Entry& entry : entries) entry.first = "QV" + entry.first;
  std::reverse(entries.begin(), entries.end());
  return entries;
}

// Shapes of PPDs that are hard on whatever finds known keys quickly.
class LargePpd : public PpdTest {};

TEST_F(LargePpd, TensOfThousandsOfDifferentKeys) {
  Entries entries;
  for (int i = 0; i < 40'000; ++i) entries.emplace_back(std::to_string(100'000 + i), "v");
  EXPECT_EQ(ReadPpd(OptionLines(entries)), InReverse(entries));
}

TEST_F(LargePpd, DescendingKeys) {
  Entries entries;
  for (int i = 0; i < 10'000; ++i) entries.emplace_back(std::to_string(900'000 - i), "v");
  EXPECT_EQ(ReadPpd(OptionLines(entries)), InReverse(entries));
}

TEST_F(LargePpd, OneKeyTensOfThousandsOfTimes) {
  Entries entries;
  for (int i = 0; i < 40'000; ++i) entries.emplace_back("Same", std::to_string(i));
  EXPECT_THAT(ReadPpd(OptionLines(entries)), ElementsAre(Pair("QVSame", "39999")));
}

TEST_F(LargePpd, EveryKeyExtendsTheOneBefore) {
  Entries entries;
  for (std::size_t length = 1; length <= 252; ++length) {
    entries.emplace_back(std::string(length, 'a'), std::to_string(length));
  }
  EXPECT_EQ(ReadPpd(OptionLines(entries)), InReverse(entries));
}

TEST_F(LargePpd, EveryKeyBeginsTheOneBefore) {
  Entries entries;
  for (std::size_t length = 252; length >= 1; --length) {
    entries.emplace_back(std::string(length, 'a'), std::to_string(length));
  }
  EXPECT_THAT(ReadPpd(OptionLines(entries)),
              ElementsAre(Pair("QV" + std::string(252, 'a'), "252")));
}

Entries AllCasesOf(const std::string& word) {
  Entries entries;
  for (unsigned capitals = 0; capitals < 1u << word.size(); ++capitals) {
    std::string key = word;
    for (std::size_t i = 0; i < key.size(); ++i) {
      if ((capitals >> i & 1) != 0) key[i] = static_cast<char>(key[i] - 'a' + 'A');
    }
    entries.emplace_back(key, std::to_string(capitals));
  }
  return entries;
}

TEST_F(LargePpd, AllCasesOfOneWordAreEntriesOfTheirOwn) {
  const Entries entries = AllCasesOf("finisher");
  EXPECT_EQ(ReadPpd(OptionLines(entries)), InReverse(entries));
}

TEST_F(LargePpd, OneOfAllCasesAgainChangesThemAll) {
  Entries entries = AllCasesOf("finisher");
  const std::string ppd = OptionLines(entries) + "*QVfiniSHER: new\n";
  for (Entry& entry : entries) entry.second = "new";
  EXPECT_EQ(ReadPpd(ppd), InReverse(entries));
}

TEST_F(LargePpd, PrefixOfALongerKeyChangesAllItsCaseVariants) {
  Entries entries = AllCasesOf("fini");
  entries.erase(entries.begin());
  entries.emplace_back("finisher", "long");
  const std::string ppd = OptionLines(entries) + "*QVfini: new\n";
  for (Entry& entry : entries) {
    if (entry.first != "finisher") entry.second = "new";
  }
  EXPECT_EQ(ReadPpd(ppd), InReverse(entries));
}

// More keys than one PPD of the reader's property has, and nothing but option lines.
RC_GTEST_PROP(LargePpdProperty, AnyKeysGiveTheTableOfThePlainRules, ()) {
  const std::string bytes =
      *rc::gen::element<std::string>("aA", "abAB", "aAzZ@[`{", "\x80\xC4\xE4 a");
  const auto key =
      rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, 6), [bytes](std::size_t length) {
        return rc::gen::container<std::string>(length, rc::gen::elementOf(bytes));
      });
  const auto count = *rc::gen::inRange<std::size_t>(0, 600);
  const auto entries = *rc::gen::container<Entries>(
      count, rc::gen::pair(key, rc::gen::element<std::string>("1", "2", "3", "")));
  const std::string ppd = OptionLines(entries);
  RC_ASSERT(ReadPpd(ppd) == EntriesOfPpd(ppd));
}

// Without a file and without lines.
RC_GTEST_PROP(OptionTableBuilderProperty, AnyEntriesGiveTheTableOfThePlainRules, ()) {
  const std::string bytes =
      *rc::gen::element<std::string>("aA", "abAB", "aAzZ@[`{", "\x01\x80\xC4\xE4 a");
  const auto key = rc::gen::container<std::string>(rc::gen::elementOf(bytes));
  const auto entries = *rc::gen::container<Entries>(
      rc::gen::pair(key, rc::gen::element<std::string>("1", "2", "3", "")));
  ia::OptionTableBuilder builder;
  TableModel model;
  for (const auto& [entry_key, value] : entries) {
    RC_ASSERT(builder.Put(entry_key, value));
    model.AddFront(entry_key, value);
  }
  const Table table(builder.Take());
  RC_ASSERT(EntriesOf(table.get()) == model.entries());
}

// Longer than those of PPD lines.
TEST(OptionTableBuilder, KeysOfAnyLengthFollowTheRules) {
  const std::string longest(1000, 'k');
  ia::OptionTableBuilder builder;
  TableModel model;
  for (const std::string& key : {std::string("K"), std::string("k"), longest, longest + "x",
                                 std::string("kk"), longest, std::string("K")}) {
    const std::string value = std::to_string(model.entries().size()) + "v";
    EXPECT_TRUE(builder.Put(key, value));
    model.AddFront(key, value);
  }
  const Table table(builder.Take());
  EXPECT_EQ(EntriesOf(table.get()), model.entries());
}

}  // namespace
}  // namespace ia_test
