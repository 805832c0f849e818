#include "analyze/document_keys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::StrEq;

constexpr std::int32_t kDocument = IA_DOCUMENT_FINISHER_LIST;

// Descriptors ------------------------------------------------------------------------------------

TEST(KeyDescriptors, DescribeANumber) {
  std::int32_t number = 0;
  const XmlKeyDescriptor key = ia::LongKey(ia::Input::kSpecVersion, number);
  EXPECT_EQ(key.document, IA_DOCUMENT_SPECID);
  EXPECT_STREQ(key.key, "version");
  EXPECT_EQ(key.type, IA_KEY_LONG);
  EXPECT_EQ(key.destination, &number);
}

TEST(KeyDescriptors, DescribeATextInUtf8) {
  char* text = nullptr;
  const XmlKeyDescriptor key = ia::TextKey(ia::Input::kDeviceName, text);
  EXPECT_EQ(key.document, IA_DOCUMENT_DEVICENAME);
  EXPECT_STREQ(key.key, "devicename");
  EXPECT_EQ(key.type, IA_KEY_STRING);
  EXPECT_EQ(key.destination, &text);
  ASSERT_NE(key.encoding, nullptr);
  EXPECT_STREQ(*key.encoding, "UTF-8");
}

// Arrays and items -------------------------------------------------------------------------------

class DocumentKeys : public ListUpdates {};

using DocumentArrays = DocumentKeys;

TEST_F(DocumentArrays, AreEmptyAtFirst) {
  ia::LongArray<3> numbers(ia::Input::kBinAlias);
  ia::TextArray<3> texts(ia::Input::kFunctions);
  EXPECT_EQ(numbers.Count(), 0);
  EXPECT_THAT(numbers.Elements(), IsEmpty());
  EXPECT_THAT(std::vector<std::int32_t>(numbers.Data(), numbers.Data() + 3), Each(0));
  EXPECT_EQ(texts.Count(), 0);
  EXPECT_THAT(std::vector<char*>(texts.Data(), texts.Data() + 3), Each(IsNull()));
}

TEST_F(DocumentArrays, HoldTheElementsOfAnItem) {
  Load(kDocument, {NumberArray("alias", {4, -5}), TextArray("func", {"a", "b"})});
  ia::LongArray<3> numbers(ia::Input::kBinAlias);
  ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0, {numbers.Key()}), 0);
  EXPECT_EQ(numbers.Count(), 2);
  EXPECT_THAT(numbers.Elements(), ElementsAre(4, -5));
  ia::TextArray<3> texts(ia::Input::kFunctions);
  ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 1, {texts.Key()}), 0);
  EXPECT_THAT(texts.Elements(), ElementsAre(StrEq("a"), StrEq("b")));
}

TEST_F(DocumentArrays, HoldNoMoreThanTheirCapacity) {
  for (const std::size_t count : {2U, 3U, 4U, 1000U}) {
    Load(kDocument,
         {NumberArray("alias", Numbers(count, 7)) + TextArray("func", Texts(count, "word"))});
    ia::LongArray<3> numbers(ia::Input::kBinAlias);
    ia::TextArray<3> texts(ia::Input::kFunctions);
    ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0, {numbers.Key(), texts.Key()}), 0);
    EXPECT_EQ(numbers.Count(), count < 3 ? 2 : 3);
    EXPECT_THAT(numbers.Elements(), Each(7));
    EXPECT_EQ(texts.Count(), count < 3 ? 2 : 3);
    EXPECT_THAT(texts.Elements(), Each(StrEq("word")));
  }
}

TEST_F(DocumentArrays, AreEmptyForAnItemWithoutThem) {
  Load(kDocument, {NumberArray("alias", {4, 5}), "", NumberArray("alias", {})});
  for (const std::int32_t item : {1, 2}) {
    ia::LongArray<3> numbers(ia::Input::kBinAlias);
    ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0, {numbers.Key()}), 0);
    ASSERT_EQ(ia::ReadListItem(&context_, kDocument, item, {numbers.Key()}), 0);
    EXPECT_EQ(numbers.Count(), 0);
    EXPECT_THAT(numbers.Elements(), IsEmpty());
  }
}

TEST_F(DocumentArrays, CountIsFollowedByWhoHoldsItsAddress) {
  Load(kDocument, {NumberArray("alias", {4, 5})});
  ia::LongArray<3> numbers(ia::Input::kBinAlias);
  const std::int32_t& count = numbers.Count();
  ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0, {numbers.Key()}), 0);
  EXPECT_EQ(count, 2);
}

TEST_F(DocumentArrays, TextsAreReleasedOnClearing) {
  Load(kDocument, {TextArray("func", {"a", std::nullopt, "c"})});
  ia::TextArray<3> texts(ia::Input::kFunctions);
  for (int round = 0; round < 3; ++round) {
    ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0, {texts.Key()}), 0);
    EXPECT_THAT(texts.Elements(), ElementsAre(StrEq("a"), IsNull(), StrEq("c")));
    texts.Clear();
    EXPECT_THAT(std::vector<char*>(texts.Data(), texts.Data() + 3), Each(IsNull()));
  }
}

TEST_F(DocumentKeys, ItemIsReadByItsIndexAndKeys) {
  Load(kDocument, {Number("type", 1) + Text("name", "first"), Number("type", 2)});
  std::int32_t type = 0;
  char* name = nullptr;
  ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 1,
                             {ia::LongKey(ia::Input::kFinisherType, type),
                              ia::TextKey(ia::Input::kFinisherName, name)}),
            0);
  EXPECT_EQ(type, 2);
  EXPECT_EQ(name, nullptr);
  ASSERT_EQ(ia::ReadListItem(&context_, kDocument, 0,
                             {ia::LongKey(ia::Input::kFinisherType, type),
                              ia::TextKey(ia::Input::kFinisherName, name)}),
            0);
  EXPECT_EQ(type, 1);
  EXPECT_STREQ(name, "first");
  std::free(name);
}

TEST_F(DocumentKeys, ItemOfADocumentThatIsNotLoadedFails) {
  std::int32_t type = 7;
  EXPECT_EQ(
      ia::ReadListItem(&context_, kDocument, 0, {ia::LongKey(ia::Input::kFinisherType, type)}), -1);
  EXPECT_EQ(type, 7);
}

}  // namespace
}  // namespace ia_test
