#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

using std::nullopt;
using std::string_literals::operator""s;

constexpr std::int32_t kUntouched = 4711;

TEST(ReaderTest, ValuesOfTheOutermostDictionaryAreFoundByKey) {
  const Reader reader = ReadContent(
      "<long key=\"hd\">1</long><double key=\"factor\">0.5</double>"
      "<string key=\"name\">Tray 1</string><binary key=\"icon\">AP8=</binary>");
  EXPECT_EQ(GetLong(reader, "hd"), 1);
  EXPECT_EQ(GetDouble(reader, "factor"), 0.5);
  EXPECT_EQ(GetString(reader, "name"), "Tray 1");
  EXPECT_EQ(GetBinary(reader, "icon"), "\x00\xFF"s);
}

TEST(ReaderTest, DocumentMayBeReleasedAfterParsing) {
  auto bytes = std::make_unique<std::string>(DocumentOf("<string key=\"name\">kept</string>"));
  const Reader reader = Read(*bytes);
  bytes->assign(bytes->size(), 'x');
  bytes.reset();
  EXPECT_EQ(GetString(reader, "name"), "kept");
}

// Keys.

TEST(ReaderTest, AbsentValuesLeaveTheirDestinationsAsTheyWere) {
  const Reader reader = ReadContent("<array key=\"empty\"/>");
  std::int32_t number = kUntouched;
  double factor = 47.11;
  char text_before[] = "before";
  char* text = text_before;
  void* data = text_before;
  std::int32_t length = kUntouched;
  EXPECT_EQ(qvxmlwrapGet_Long(reader.get(), "a", &number, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Double(reader.get(), "a", &factor, 1.0), 0);
  EXPECT_EQ(qvxmlwrapGet_String(reader.get(), "a", &text, nullptr, "UTF-8", 0), 0);
  EXPECT_EQ(qvxmlwrapGet_Binary(reader.get(), "a", &data, &length), 0);
  OpenArray(reader, "empty");
  EXPECT_EQ(qvxmlwrapGet_LongFromArray(reader.get(), 0, &number, 0), 0);
  EXPECT_EQ(qvxmlwrapGet_DoubleFromArray(reader.get(), 0, &factor, 1.0), 0);
  EXPECT_EQ(qvxmlwrapGet_StringFromArray(reader.get(), 0, &text, nullptr, "UTF-8", 0), 0);
  EXPECT_EQ(qvxmlwrapGet_BinaryFromArray(reader.get(), 0, &data, &length), 0);
  EXPECT_EQ(number, kUntouched);
  EXPECT_EQ(factor, 47.11);
  EXPECT_EQ(text, text_before);
  EXPECT_EQ(data, text_before);
  EXPECT_EQ(length, kUntouched);
}

TEST(ReaderTest, FirstOfSeveralEqualKeysCounts) {
  const Reader reader = ReadContent(
      "<long key=\"a\">1</long><long key=\"a\">2</long>"
      "<string key=\"b\">one</string><string key=\"b\">two</string>"
      "<array key=\"c\"><long>1</long></array><array key=\"c\"><long>1</long><long>2</long></array>"
      "<long key=\"d\">none</long><long key=\"d\">2</long>");
  EXPECT_EQ(GetLong(reader, "a"), 1);
  EXPECT_EQ(GetString(reader, "b"), "one");
  EXPECT_EQ(CountElements(reader, "c"), 1);
  EXPECT_EQ(GetLong(reader, "d"), nullopt) << "the first one is not a number";
}

TEST(ReaderTest, ValueOfADifferentTypeIsMissing) {
  const Reader reader = ReadContent(
      "<long key=\"long\">1</long><double key=\"double\">1</double>"
      "<string key=\"string\">1</string><binary key=\"binary\">AAAA</binary>"
      "<dict key=\"dict\"/><array key=\"array\"/>");
  for (const char* key : {"double", "string", "binary", "dict", "array"}) {
    EXPECT_EQ(GetLong(reader, key), nullopt) << key;
  }
  for (const char* key : {"long", "string", "binary", "dict", "array"}) {
    EXPECT_EQ(GetDouble(reader, key), nullopt) << key;
  }
  for (const char* key : {"long", "double", "binary", "dict", "array"}) {
    EXPECT_EQ(GetString(reader, key), nullopt) << key;
  }
  for (const char* key : {"long", "double", "string", "dict", "array"}) {
    EXPECT_EQ(GetBinary(reader, key), nullopt) << key;
  }
  for (const char* key : {"long", "double", "string", "binary", "array"}) {
    EXPECT_EQ(CountDicts(reader, key), nullopt) << key;
    EXPECT_FALSE(OpenDict(reader, key)) << key;
    CloseDict(reader);
  }
  for (const char* key : {"long", "double", "string", "binary", "dict"}) {
    EXPECT_EQ(CountElements(reader, key), nullopt) << key;
    EXPECT_FALSE(OpenArray(reader, key)) << key;
    CloseArray(reader);
  }
}

TEST(ReaderTest, TypesUnderOneKeyDoNotHideEachOther) {
  const Reader reader = ReadContent(
      "<string key=\"a\">one</string><dict key=\"a\"/><long key=\"a\">2</long><dict key=\"a\"/>");
  EXPECT_EQ(GetLong(reader, "a"), 2);
  EXPECT_EQ(GetString(reader, "a"), "one");
  EXPECT_EQ(CountDicts(reader, "a"), 2);
}

TEST(ReaderTest, KeysAreExact) {
  const Reader reader = ReadContent(
      "<long key=\"type\">1</long><long key=\" b \">2</long>"
      "<long key=\"&lt;&#x20AC;&#10;\">3</long>");
  for (const char* key : {"Type", "typ", "types", " type", "b"}) {
    EXPECT_EQ(GetLong(reader, key), nullopt) << key;
  }
  EXPECT_EQ(GetLong(reader, " b "), 2);
  EXPECT_EQ(GetLong(reader, "<\u20AC\n"), 3);
}

TEST(ReaderTest, ValuesWithoutKeyAreIgnoredInADictionary) {
  const Reader reader = ReadContent("<long>1</long><long key=\"\">2</long><dict/><dict key=\"\"/>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, ""), nullopt);
  EXPECT_EQ(CountDicts(reader, ""), nullopt);
  EXPECT_FALSE(OpenDict(reader, ""));
}

TEST(ReaderTest, UnknownElementsAndTextBetweenValuesAreIgnored) {
  const Reader reader = ReadContent(
      "text<integer key=\"a\">1</integer><Long key=\"a\">2</Long><x:long key=\"a\">3</x:long>"
      "<other><long key=\"a\">4</long></other>text<![CDATA[text]]><long key=\"a\">5</long>");
  EXPECT_EQ(GetLong(reader, "a"), 5);
}

TEST(ReaderTest, ValuesOfAnInnerDictionaryAreNotThoseOfTheOuterOne) {
  const Reader reader =
      ReadContent("<dict key=\"d\"><long key=\"a\">1</long></dict><long key=\"b\">2</long>");
  EXPECT_EQ(GetLong(reader, "a"), nullopt);
  ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(GetLong(reader, "a"), 1);
  EXPECT_EQ(GetLong(reader, "b"), nullopt);
}

// Lists.

TEST(ReaderTest, RepeatedDictionariesAreTheItemsOfAList) {
  const Reader reader = ReadContent(
      "<dict key=\"list\"><long key=\"id\">10</long></dict>"
      "<dict key=\"other\"><long key=\"id\">20</long></dict>"
      "<long key=\"list\">5</long>"
      "<dict key=\"list\"><long key=\"id\">11</long></dict>"
      "<dict key=\"list\"/>");
  EXPECT_EQ(CountDicts(reader, "list"), 3);
  EXPECT_EQ(CountDicts(reader, "other"), 1);
  const std::vector<std::optional<std::int32_t>> ids = {10, 11, nullopt};
  for (const std::int32_t index : {0, 1, 2, 1, 0}) {
    ASSERT_TRUE(OpenDict(reader, "list", index));
    EXPECT_EQ(GetLong(reader, "id"), ids[static_cast<std::size_t>(index)]);
    EXPECT_EQ(CloseDict(reader), 0);
  }
}

TEST(ReaderTest, ItemsBeforeTheFirstAndAfterTheLastAreMissing) {
  const Reader reader = ReadContent("<dict key=\"list\"/><dict key=\"list\"/>");
  for (const std::int32_t index : {-1, 2, 3, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_FALSE(OpenDict(reader, "list", index)) << index;
    EXPECT_EQ(CloseDict(reader), 0);
  }
}

TEST(ReaderTest, CountOfAnAbsentListIsNotStored) {
  const Reader reader = ReadContent("<dict key=\"list\"/>");
  std::int32_t count = kUntouched;
  EXPECT_EQ(qvxmlwrapGet_DictCount(reader.get(), "other", &count), 0);
  EXPECT_EQ(qvxmlwrapGet_ArrayCount(reader.get(), "other", &count), 0);
  EXPECT_EQ(count, kUntouched);
}

TEST(ReaderTest, LongListsAreReadInAnyOrderWithoutDelay) {
  constexpr std::int32_t kItems = 100'000;
  std::string content = "<dict key=\"inner\">";
  for (std::int32_t i = 0; i < kItems; ++i) {
    content += "<dict key=\"list\"><long key=\"id\">" + std::to_string(i) + "</long></dict>";
  }
  const Reader reader = ReadContent(content + "</dict>");
  ASSERT_NE(reader, nullptr);
  const auto start = std::chrono::steady_clock::now();
  for (std::int32_t i = 0; i < kItems; ++i) {
    // From the end, and from outside the list: nothing remembers where the last item was.
    ASSERT_TRUE(OpenDict(reader, "inner"));
    ASSERT_EQ(CountDicts(reader, "list"), kItems);
    ASSERT_TRUE(OpenDict(reader, "list", kItems - 1 - i));
    ASSERT_EQ(GetLong(reader, "id"), kItems - 1 - i);
    ASSERT_EQ(CloseDict(reader), 0);
    ASSERT_EQ(CloseDict(reader), 0);
  }
  // Walking the list for each item would take minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

// Arrays.

TEST(ReaderTest, ElementsOfAnArrayAreReadByPosition) {
  const Reader reader = ReadContent(
      "<array key=\"a\"><long>5</long><double>2.5</double><string>text</string>"
      "<binary>Zm9v</binary></array>");
  EXPECT_EQ(CountElements(reader, "a"), 4);
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 0), 5);
  EXPECT_EQ(DoubleAt(reader, 1), 2.5);
  EXPECT_EQ(StringAt(reader, 2), "text");
  EXPECT_EQ(BinaryAt(reader, 3), "foo");
  EXPECT_EQ(CloseArray(reader), 0);
}

TEST(ReaderTest, ElementOfADifferentTypeOrOutsideTheArrayIsMissing) {
  const Reader reader = ReadContent("<array key=\"a\"><long>5</long><string>6</string></array>");
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 1), nullopt);
  EXPECT_EQ(DoubleAt(reader, 0), nullopt);
  EXPECT_EQ(StringAt(reader, 0), nullopt);
  EXPECT_EQ(BinaryAt(reader, 0), nullopt);
  for (const std::int32_t index : {-1, 2, std::numeric_limits<std::int32_t>::max(),
                                   std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(LongAt(reader, index), nullopt) << index;
    EXPECT_EQ(StringAt(reader, index), nullopt) << index;
  }
}

TEST(ReaderTest, EmptyArrayIsThereAndHasNoElements) {
  const Reader reader = ReadContent("<array key=\"a\"> <!-- none --> </array>");
  EXPECT_EQ(CountElements(reader, "a"), 0);
  EXPECT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 0), nullopt);
}

TEST(ReaderTest, KeysOfElementsAreIgnored) {
  const Reader reader =
      ReadContent("<array key=\"a\"><long key=\"z\">1</long><long key=\"b\">2</long></array>");
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 0), 1);
  EXPECT_EQ(LongAt(reader, 1), 2);
  EXPECT_EQ(GetLong(reader, "z"), nullopt);
}

TEST(ReaderTest, IgnoredElementsTakeNoPositionInAnArray) {
  const Reader reader = ReadContent(
      "<array key=\"a\">text<other>1</other><long>2</long><array><long>3</long></array>"
      "<array key=\"b\"/><long>4</long></array>");
  EXPECT_EQ(CountElements(reader, "a"), 2);
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 0), 2);
  EXPECT_EQ(LongAt(reader, 1), 4);
}

TEST(ReaderTest, UnreadableElementKeepsItsPosition) {
  const Reader reader = ReadContent("<array key=\"a\"><long>x</long><long>4</long></array>");
  EXPECT_EQ(CountElements(reader, "a"), 2);
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_EQ(LongAt(reader, 0), nullopt);
  EXPECT_EQ(LongAt(reader, 1), 4);
}

TEST(ReaderTest, DictionaryInAnArrayIsEnteredByPosition) {
  const Reader reader = ReadContent(
      "<array key=\"a\"><long>0</long><dict><long key=\"b\">1</long></dict>"
      "<dict key=\"x\"><long key=\"b\">2</long><array key=\"c\"><long>3</long></array></dict>"
      "</array>");
  ASSERT_TRUE(OpenArray(reader, "a"));
  ASSERT_TRUE(OpenDict(reader, nullptr, 1));
  EXPECT_EQ(GetLong(reader, "b"), 1);
  EXPECT_EQ(CloseDict(reader), 0);
  ASSERT_TRUE(OpenDict(reader, "anything", 2));
  EXPECT_EQ(GetLong(reader, "b"), 2);
  ASSERT_TRUE(OpenArray(reader, "c"));
  EXPECT_EQ(LongAt(reader, 0), 3);
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_FALSE(OpenDict(reader, "x", 0)) << "a number";
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_FALSE(OpenDict(reader, "x", 3));
}

// The position of the reader.

TEST(ReaderTest, FailedOpenIsALevelThatIsEmptyAndHasToBeClosed) {
  const Reader reader = ReadContent("<long key=\"a\">1</long><dict key=\"d\"/>");
  EXPECT_FALSE(OpenDict(reader, "none"));
  EXPECT_EQ(GetLong(reader, "a"), nullopt);
  EXPECT_EQ(CountDicts(reader, "d"), nullopt);
  EXPECT_FALSE(OpenDict(reader, "d"));
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_FALSE(OpenArray(reader, "none"));
  EXPECT_EQ(LongAt(reader, 0), nullopt);
  EXPECT_FALSE(OpenDict(reader, nullptr, 0));
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

TEST(ReaderTest, OpenWithANullKeyIsAFailedOpen) {
  const Reader reader = ReadContent("<long key=\"a\">1</long>");
  EXPECT_FALSE(OpenDict(reader, nullptr));
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_FALSE(OpenArray(reader, nullptr));
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

TEST(ReaderTest, OutermostDictionaryCannotBeClosed) {
  const Reader reader = ReadContent("<long key=\"a\">1</long>");
  EXPECT_EQ(CloseDict(reader), -1);
  EXPECT_EQ(CloseArray(reader), -1);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

TEST(ReaderTest, ClosingTheOtherTypeChangesNothing) {
  const Reader reader = ReadContent(
      "<dict key=\"d\"><long key=\"a\">1</long><array key=\"e\"><long>2</long></array></dict>");
  ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(CloseArray(reader), -1);
  EXPECT_EQ(GetLong(reader, "a"), 1);
  ASSERT_TRUE(OpenArray(reader, "e"));
  EXPECT_EQ(CloseDict(reader), -1);
  EXPECT_EQ(LongAt(reader, 0), 2);
  EXPECT_FALSE(OpenDict(reader, "none"));
  EXPECT_EQ(CloseArray(reader), -1);
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(CloseDict(reader), -1);
}

TEST(ReaderTest, ArrayIsNotOpenedInAnArray) {
  const Reader reader = ReadContent("<array key=\"a\"><array key=\"a\"/></array>");
  ASSERT_TRUE(OpenArray(reader, "a"));
  EXPECT_FALSE(OpenArray(reader, "a"));
  EXPECT_EQ(CountElements(reader, "a"), nullopt);
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(CloseArray(reader), -1);
}

TEST(ReaderTest, AnyNumberOfFailedOpensIsBalancedByAsManyCloses) {
  const Reader reader = ReadContent("<long key=\"a\">1</long>");
  constexpr int kOpens = 1'000'000;
  for (int i = 0; i < kOpens; ++i) ASSERT_FALSE(OpenDict(reader, "none"));
  EXPECT_EQ(GetLong(reader, "a"), nullopt);
  for (int i = 0; i < kOpens; ++i) ASSERT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(GetLong(reader, "a"), 1);
  EXPECT_EQ(CloseDict(reader), -1);
}

TEST(ReaderTest, TypeOfAFailedOpenIsKnownFor127LevelsAndOnlyCountedBeyond) {
  const Reader reader = ReadContent("");
  for (int i = 0; i < 127; ++i) OpenDict(reader, "none");
  EXPECT_EQ(CloseArray(reader), -1);
  OpenDict(reader, "none");
  EXPECT_EQ(CloseArray(reader), 0);
  EXPECT_EQ(CloseArray(reader), -1);
  for (int i = 0; i < 127; ++i) EXPECT_EQ(CloseDict(reader), 0);
  EXPECT_EQ(CloseDict(reader), -1);
}

TEST(ReaderTest, MayBeReleasedWithOpenLevels) {
  Reader reader = ReadContent("<dict key=\"d\"><array key=\"e\"/></dict>");
  OpenDict(reader, "d");
  OpenArray(reader, "e");
  EXPECT_EQ(qvxmlwrapGet_Destroy(reader.release()), 0);
}

TEST(ReaderTest, ReadersAreIndependent) {
  const Reader first = ReadContent("<dict key=\"d\"><long key=\"a\">1</long></dict>");
  const Reader second = ReadContent("<dict key=\"d\"><long key=\"a\">2</long></dict>");
  OpenDict(first, "d");
  EXPECT_EQ(GetLong(second, "a"), nullopt);
  OpenDict(second, "d");
  EXPECT_EQ(GetLong(first, "a"), 1);
  EXPECT_EQ(GetLong(second, "a"), 2);
}

}  // namespace
}  // namespace ia_test
