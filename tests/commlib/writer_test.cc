#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

using std::string_literals::operator""s;

constexpr std::string_view kEmptyDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<document version=\"1\">\n</document>\n";
constexpr std::size_t kMaxBytes = std::size_t{16} << 20;

std::int32_t SetText(const Writer& writer, const char* key, const char* text) {
  return qvxmlwrapSet_String(writer.get(), key, text, AddressWord("UTF-8"), 0);
}

TEST(WriterTest, DocumentHasOneValueOnALineAndShowsItsDepth) {
  Writer writer = NewWriter();
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "hd", 1), 0);
  EXPECT_EQ(qvxmlwrapSet_Double(writer.get(), "factor", 0.5), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "list", 0), 0);
  EXPECT_EQ(qvxmlwrapSet_String(writer.get(), "name", "Tray 1", 0, 0), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "alias"), 0);
  EXPECT_EQ(qvxmlwrapSet_LongToArray(writer.get(), -3), 0);
  EXPECT_EQ(qvxmlwrapSet_DoubleToArray(writer.get(), 1.25), 0);
  EXPECT_EQ(qvxmlwrapSet_StringToArray(writer.get(), "x", 0, 0), 0);
  EXPECT_EQ(qvxmlwrapSet_BinaryToArray(writer.get(), "fo", 2), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), nullptr, 0), 0);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "icon", "foo", 3), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  EXPECT_EQ(Finish(std::move(writer)),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<document version=\"1\">\n"
            "  <long key=\"hd\">1</long>\n"
            "  <double key=\"factor\">0.5</double>\n"
            "  <dict key=\"list\">\n"
            "    <string key=\"name\">Tray 1</string>\n"
            "    <array key=\"alias\">\n"
            "      <long>-3</long>\n"
            "      <double>1.25</double>\n"
            "      <string>x</string>\n"
            "      <binary>Zm8=</binary>\n"
            "      <dict>\n"
            "        <binary key=\"icon\">Zm9v</binary>\n"
            "      </dict>\n"
            "    </array>\n"
            "  </dict>\n"
            "</document>\n");
}

TEST(WriterTest, MarkupAndLineEndsAreWrittenAsReferences) {
  Writer writer = NewWriter();
  EXPECT_EQ(SetText(writer, "a<\"&'\n", " <&>\"'\r\n\t "), 0);
  EXPECT_EQ(
      Finish(std::move(writer)),
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<document version=\"1\">\n"
      "  <string key=\"a&lt;&quot;&amp;'&#10;\"> &lt;&amp;&gt;&quot;'&#13;&#10;&#9; </string>\n"
      "</document>\n");
}

TEST(WriterTest, NothingWrittenIsADocument) {
  EXPECT_EQ(Finish(NewWriter()), kEmptyDocument);
  EXPECT_NE(Read(kEmptyDocument), nullptr);
}

TEST(WriterTest, OpenLevelsAreClosedAtTheEnd) {
  Writer writer = NewWriter();
  qvxmlwrapSet_OpenDict(writer.get(), "list", 0);
  qvxmlwrapSet_OpenArray(writer.get(), "alias");
  qvxmlwrapSet_LongToArray(writer.get(), 5);
  const Reader reader = Read(Finish(std::move(writer)));
  ASSERT_TRUE(OpenDict(reader, "list"));
  ASSERT_TRUE(OpenArray(reader, "alias"));
  EXPECT_EQ(LongAt(reader, 0), 5);
}

// What a writer leaves to its caller at the end.

TEST(WriterTest, DocumentIsGivenWithItsLengthAndATerminatingNul) {
  char* text = nullptr;
  std::int32_t length = -1;
  EXPECT_EQ(qvxmlwrapSet_Destroy(qvxmlwrapSet_New(), AddressWord(&text), AddressWord(&length), 0),
            0);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(length, static_cast<std::int32_t>(kEmptyDocument.size()));
  EXPECT_EQ(text[length], '\0');
  std::free(text);
}

TEST(WriterTest, EitherPartOfTheResultMayBeLeftOut) {
  char* text = nullptr;
  std::int32_t length = -1;
  EXPECT_EQ(qvxmlwrapSet_Destroy(qvxmlwrapSet_New(), AddressWord(&text), 0, 0), 0);
  EXPECT_EQ(TakeText(text), kEmptyDocument);
  EXPECT_EQ(qvxmlwrapSet_Destroy(qvxmlwrapSet_New(), 0, AddressWord(&length), 0), 0);
  EXPECT_EQ(length, static_cast<std::int32_t>(kEmptyDocument.size()));
  EXPECT_EQ(qvxmlwrapSet_Destroy(qvxmlwrapSet_New(), 0, 0, 0), 0);
}

// Refusals. Each leaves the document as if the call had not been made.

TEST(WriterTest, ValuesWithKeyAreRefusedInAnArray) {
  Writer writer = NewWriter();
  qvxmlwrapSet_OpenArray(writer.get(), "a");
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "b", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_Double(writer.get(), "b", 1), -1);
  EXPECT_EQ(SetText(writer, "b", "x"), -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "b", "x", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "b"), -1);
  qvxmlwrapSet_CloseArray(writer.get());
  EXPECT_EQ(CountElements(Read(Finish(std::move(writer))), "a"), 0);
}

TEST(WriterTest, ElementsAreRefusedInADictionary) {
  Writer writer = NewWriter();
  EXPECT_EQ(qvxmlwrapSet_LongToArray(writer.get(), 1), -1);
  EXPECT_EQ(qvxmlwrapSet_DoubleToArray(writer.get(), 1), -1);
  EXPECT_EQ(qvxmlwrapSet_StringToArray(writer.get(), "x", 0, 0), -1);
  EXPECT_EQ(qvxmlwrapSet_BinaryToArray(writer.get(), "x", 1), -1);
  EXPECT_EQ(Finish(std::move(writer)), kEmptyDocument);
}

const char* const kRefusedKeys[] = {nullptr, "",     "\x01",         "a\x1B",
                                    "\xFF",  "\xC3", "\xED\xA0\x80", "\xEF\xBF\xBF"};

TEST(WriterTest, KeysThatNoDocumentCanHaveAreRefused) {
  for (const char* key : kRefusedKeys) {
    SCOPED_TRACE(testing::PrintToString(key));
    Writer writer = NewWriter();
    EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), key, 1), -1);
    EXPECT_EQ(qvxmlwrapSet_Double(writer.get(), key, 1), -1);
    EXPECT_EQ(SetText(writer, key, "x"), -1);
    EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), key, "x", 1), -1);
    EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), key, 0), -1);
    EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), key), -1);
    EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), -1) << "a failed open adds no level";
    EXPECT_EQ(Finish(std::move(writer)), kEmptyDocument);
  }
}

const char* const kRefusedTexts[] = {
    nullptr, "\x01",     "a\x1F",        "\x0B",         "\x80",
    "\xC3",  "\xC0\xAF", "\xED\xBF\xBF", "\xEF\xBF\xBE", "\xF4\x90\x80\x80"};

TEST(WriterTest, TextsThatNoDocumentCanHoldAreRefused) {
  for (const char* text : kRefusedTexts) {
    SCOPED_TRACE(testing::PrintToString(text));
    Writer writer = NewWriter();
    EXPECT_EQ(SetText(writer, "a", text), -1);
    EXPECT_EQ(SetText(writer, "a", "x"), 0) << "the key is still free";
    EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "b"), 0);
    EXPECT_EQ(qvxmlwrapSet_StringToArray(writer.get(), text, 0, 0), -1);
    const Reader reader = Read(Finish(std::move(writer)));
    EXPECT_EQ(GetString(reader, "a"), "x");
    EXPECT_EQ(CountElements(reader, "b"), 0);
  }
}

TEST(WriterTest, TextInAnUnsupportedEncodingIsRefused) {
  Writer writer = NewWriter();
  for (const char* encoding : {"", "UTF8", "UTF-16", "ISO-8859-1"}) {
    EXPECT_EQ(qvxmlwrapSet_String(writer.get(), "a", "x", AddressWord(encoding), 0), -1);
  }
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "b"), 0);
  EXPECT_EQ(qvxmlwrapSet_StringToArray(writer.get(), "x", AddressWord("UTF-16"), 0), -1);
  EXPECT_EQ(qvxmlwrapSet_StringToArray(writer.get(), "x", AddressWord("utf-8"), 0), 0);
  EXPECT_EQ(CountElements(Read(Finish(std::move(writer))), "b"), 1);
}

TEST(WriterTest, NumbersThatAreNotFiniteAreRefused) {
  Writer writer = NewWriter();
  for (const double value :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(qvxmlwrapSet_Double(writer.get(), "a", value), -1);
  }
  EXPECT_EQ(Finish(std::move(writer)), kEmptyDocument);
}

TEST(WriterTest, BytesNeedALengthOfZeroOrMoreAndAnAddressUnlessThereAreNone) {
  Writer writer = NewWriter();
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", "x", -1), -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", "x", std::numeric_limits<std::int32_t>::min()),
            -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", nullptr, 1), -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", nullptr, 0), 0);
  EXPECT_EQ(GetBinary(Read(Finish(std::move(writer))), "a"), "");
}

TEST(WriterTest, SecondValueOfAKindUnderOneKeyIsRefused) {
  Writer writer = NewWriter();
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "a", 1), 0);
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "a", 2), -1);
  EXPECT_EQ(SetText(writer, "a", "other type"), 0);
  EXPECT_EQ(SetText(writer, "a", "again"), -1);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "a"), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "a"), -1);
  const Reader reader = Read(Finish(std::move(writer)));
  EXPECT_EQ(GetLong(reader, "a"), 1);
  EXPECT_EQ(GetString(reader, "a"), "other type");
}

TEST(WriterTest, DictionariesMayRepeatAKeyAndHaveKeysOfTheirOwn) {
  Writer writer = NewWriter();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "list", 0), 0);
    EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "id", i), 0);
    EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  }
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "id", 9), 0);
  EXPECT_EQ(CountDicts(Read(Finish(std::move(writer))), "list"), 3);
}

TEST(WriterTest, OutermostDictionaryCannotBeClosed) {
  Writer writer = NewWriter();
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), -1);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), -1);
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "a", 1), 0);
  EXPECT_EQ(GetLong(Read(Finish(std::move(writer))), "a"), 1);
}

TEST(WriterTest, ClosingTheOtherTypeChangesNothing) {
  Writer writer = NewWriter();
  qvxmlwrapSet_OpenDict(writer.get(), "d", 0);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), -1);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "e"), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), -1);
  EXPECT_EQ(qvxmlwrapSet_LongToArray(writer.get(), 1), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), -1);
}

TEST(WriterTest, ArrayIsNotOpenedInAnArray) {
  Writer writer = NewWriter();
  qvxmlwrapSet_OpenArray(writer.get(), "a");
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "b"), -1);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_CloseArray(writer.get()), -1);
}

TEST(WriterTest, NothingIsWrittenBeyondTheDepthThatAReaderAccepts) {
  Writer writer = NewWriter();
  for (int i = 0; i < 63; ++i) ASSERT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "d", 0), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "d", 0), -1);
  EXPECT_EQ(qvxmlwrapSet_OpenArray(writer.get(), "a"), -1);
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "b", 1), -1);
  EXPECT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "b", 1), 0);
  const Reader reader = Read(Finish(std::move(writer)));
  ASSERT_NE(reader, nullptr);
  for (int i = 0; i < 62; ++i) ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(GetLong(reader, "b"), 1);
}

TEST(WriterTest, NothingIsWrittenBeyondTheSizeThatAReaderAccepts) {
  Writer writer = NewWriter();
  ASSERT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "c", 0), 0);
  ASSERT_EQ(qvxmlwrapSet_CloseDict(writer.get()), 0);
  // Open levels count with their end tags.
  ASSERT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "d", 0), 0);
  const std::string_view around = "    <string key=\"a\"></string>\n";
  const std::string_view levels = "  <dict key=\"c\">\n  </dict>\n  <dict key=\"d\">\n  </dict>\n";
  const std::size_t free_bytes = kMaxBytes - kEmptyDocument.size() - levels.size() - around.size();
  EXPECT_EQ(SetText(writer, "a", std::string(kMaxBytes + 1, 'x').c_str()), -1);
  EXPECT_EQ(SetText(writer, "a", std::string(free_bytes + 1, 'x').c_str()), -1);
  EXPECT_EQ(SetText(writer, "a", std::string(free_bytes, 'x').c_str()), 0);
  EXPECT_EQ(qvxmlwrapSet_OpenDict(writer.get(), "e", 0), -1);
  EXPECT_EQ(qvxmlwrapSet_Long(writer.get(), "b", 1), -1);
  const std::string document = Finish(std::move(writer));
  EXPECT_EQ(document.size(), kMaxBytes);
  const Reader reader = Read(document);
  ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(GetString(reader, "a").value_or("").size(), free_bytes);
}

TEST(WriterTest, BytesThatDoNotFitAreRefused) {
  Writer writer = NewWriter();
  const std::string bytes(kMaxBytes + 1, 'x');
  EXPECT_EQ(
      qvxmlwrapSet_Binary(writer.get(), "a", bytes.data(), static_cast<std::int32_t>(bytes.size())),
      -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", bytes.data(), 13 * 1024 * 1024), -1);
  EXPECT_EQ(qvxmlwrapSet_Binary(writer.get(), "a", bytes.data(), 12 * 1024 * 1024 - 1024), 0);
  EXPECT_NE(Read(Finish(std::move(writer))), nullptr);
}

}  // namespace
}  // namespace ia_test
