#include "info_common/key_index.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <list>
#include <string>
#include <vector>

namespace ia_test {
namespace {

using ia::KeyIndex;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Result = KeyIndex::Result;

class KeyIndexTest : public testing::Test {
 protected:
  Result Add(const std::string& key) {
    keys_.push_back(key);
    nodes_.push_back({.key = keys_.back().data(), .value = nullptr, .next = nullptr});
    return index_.Add(nodes_.back());
  }

  std::vector<std::string> VariantsOf(const std::string& key) const {
    std::vector<std::string> variants;
    index_.ForEachVariant(key, [&](const OptTable& node) { variants.emplace_back(node.key); });
    return variants;
  }

 private:
  std::list<std::string> keys_;
  std::list<OptTable> nodes_;
  KeyIndex index_;
};

TEST_F(KeyIndexTest, AddsAKeyUnlessItIsAPrefixOfOne) {
  EXPECT_EQ(Add("QVFinisher"), Result::kAdded);
  EXPECT_EQ(Add("QVFin"), Result::kIsPrefix);
  EXPECT_EQ(Add("QVFinisher"), Result::kIsPrefix);
  EXPECT_EQ(Add(""), Result::kIsPrefix);
  EXPECT_EQ(Add("QVfin"), Result::kAdded);
  EXPECT_EQ(Add("QVFinishers"), Result::kAdded);
  EXPECT_EQ(Add("QVFinisher"), Result::kIsPrefix);
}

TEST_F(KeyIndexTest, EmptyKeyIsAddedFirstOnly) {
  EXPECT_EQ(Add(""), Result::kAdded);
  EXPECT_EQ(Add("a"), Result::kAdded);
  EXPECT_EQ(Add(""), Result::kIsPrefix);
  EXPECT_THAT(VariantsOf(""), ElementsAre(""));
}

TEST_F(KeyIndexTest, FindsTheKeysThatDifferInCaseOnly) {
  for (const char* key : {"abc", "aBc", "abcd", "abC", "ab@", "ab`"}) {
    EXPECT_EQ(Add(key), Result::kAdded) << key;
  }
  EXPECT_THAT(VariantsOf("ABC"), UnorderedElementsAre("abc", "aBc", "abC"));
  EXPECT_THAT(VariantsOf("ab@"), ElementsAre("ab@"));
  EXPECT_THAT(VariantsOf("ab"), IsEmpty());
}

TEST_F(KeyIndexTest, FindsAllKeysAfterItHasGrown) {
  for (int i = 0; i < 5000; ++i) {
    ASSERT_EQ(Add("key" + std::to_string(i)), Result::kAdded) << i;
    ASSERT_EQ(Add("KEY" + std::to_string(i)), Result::kAdded) << i;
  }
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_THAT(VariantsOf("Key" + number), UnorderedElementsAre("key" + number, "KEY" + number));
  }
}

// A path of the tree has one branch for each bit of the longest key.
TEST_F(KeyIndexTest, HasPathsOfAllBitsOfAKey) {
  const std::string longest(IA_PPD_TEXT_SIZE - 1, '\xFF');
  for (std::size_t bit = 0; bit < 8 * longest.size(); ++bit) {
    std::string key = longest;
    key[bit / 8] = static_cast<char>(key[bit / 8] ^ 0x80 >> bit % 8);
    ASSERT_EQ(Add(key), Result::kAdded) << bit;
  }
  EXPECT_EQ(Add(longest), Result::kAdded);
  EXPECT_EQ(Add(longest.substr(1)), Result::kIsPrefix);
}

TEST_F(KeyIndexTest, RefusesALongerKeyThanPpdLinesHave) {
  EXPECT_EQ(Add(std::string(IA_PPD_TEXT_SIZE - 1, 'a')), Result::kAdded);
  EXPECT_EQ(Add(std::string(IA_PPD_TEXT_SIZE, 'a')), Result::kFailed);
}

}  // namespace
}  // namespace ia_test
