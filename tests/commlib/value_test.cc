// How the text of an element becomes a value.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

using std::nullopt;
using std::string_literals::operator""s;

// Numbers.

struct LongRow {
  const char* text;
  std::optional<std::int32_t> value;
};

const LongRow kLongRows[] = {
    {"0", 0},
    {"1", 1},
    {"-1", -1},
    {"-0", 0},
    {"007", 7},
    {" \n12\t ", 12},
    {"&#49;2", 12},
    {"<![CDATA[12]]>", 12},
    {"1<!-- and -->2", 12},
    {"2147483647", 2147483647},
    {"-2147483648", std::numeric_limits<std::int32_t>::min()},
    {"2147483648", nullopt},
    {"-2147483649", nullopt},
    {"4294967297", nullopt},
    {"99999999999999999999", nullopt},
    {"", nullopt},
    {" ", nullopt},
    {"+1", nullopt},
    {"-", nullopt},
    {"--1", nullopt},
    {"- 1", nullopt},
    {"1 2", nullopt},
    {"1.0", nullopt},
    {"1e3", nullopt},
    {"0x10", nullopt},
    {"12a", nullopt},
    {"one", nullopt},
    {"\u0661", nullopt},
    {"\u00A01", nullopt},
};

TEST(ValueTest, LongIsAWholeDecimalNumberOf32BitsOrMissing) {
  for (const LongRow& row : kLongRows) {
    SCOPED_TRACE(row.text);
    const std::string text = row.text;
    const Reader reader = ReadContent("<long key=\"a\">" + text + "</long><array key=\"b\"><long>" +
                                      text + "</long></array>");
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(GetLong(reader, "a"), row.value);
    OpenArray(reader, "b");
    EXPECT_EQ(LongAt(reader, 0), row.value);
  }
}

struct DoubleRow {
  const char* text;
  std::optional<double> value;
};

const DoubleRow kDoubleRows[] = {
    {"0", 0.0},
    {"1", 1.0},
    {"-1.5", -1.5},
    {"1e3", 1000.0},
    {"1E-3", 0.001},
    {" \n2.5\t ", 2.5},
    {"5e-324", 5e-324},
    {"1.7976931348623157e308", 1.7976931348623157e308},
    {"1e309", nullopt},
    {"-1e309", nullopt},
    {"inf", nullopt},
    {"-inf", nullopt},
    {"INFINITY", nullopt},
    {"nan", nullopt},
    {"", nullopt},
    {"+1", nullopt},
    {"1,5", nullopt},
    {"0x1p3", nullopt},
    {"1.5.5", nullopt},
    {"1 2", nullopt},
    {"e3", nullopt},
    {"one", nullopt},
};

TEST(ValueTest, DoubleIsAFiniteDecimalNumberOrMissing) {
  for (const DoubleRow& row : kDoubleRows) {
    SCOPED_TRACE(row.text);
    const std::string text = row.text;
    const Reader reader =
        ReadContent("<double key=\"a\">" + text + "</double><array key=\"b\"><double>" + text +
                    "</double></array>");
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(GetDouble(reader, "a"), row.value);
    OpenArray(reader, "b");
    EXPECT_EQ(DoubleAt(reader, 0), row.value);
  }
}

// Texts and bytes.

struct TextRow {
  const char* content;
  std::optional<std::string> value;
};

const TextRow kStringRows[] = {
    {"", ""},
    {" ", " "},
    {"\n\t ", "\n\t "},
    {"  two  ", "  two  "},
    {"a\r\nb\rc\nd", "a\nb\nc\nd"},
    {"&#13;&#10;&#9;&#xa;", "\r\n\t\n"},
    {"&lt;&gt;&amp;&quot;&apos;", "<>&\"'"},
    {"&amp;lt;", "&lt;"},
    {"&#38;#38;", "&#38;"},
    {"&#0065;&#x0042;", "AB"},
    {"&#233;&#x20AC;&#128512;", "\u00E9\u20AC\U0001F600"},
    {"\u00E9\u20AC\U0001F600", "\u00E9\u20AC\U0001F600"},
    {"&#xFFFD;&#x10FFFF;", "\uFFFD\U0010FFFF"},
    {"<![CDATA[<&amp;>]]>", "<&amp;>"},
    {" <![CDATA[ a ]]> ", "  a  "},
    {"a<!-- b -->c", "ac"},
    {"a<?b c?>d", "ad"},
    {"a<b>c</b>d", "ad"},
    {"\"'", "\"'"},
};

TEST(ValueTest, StringIsTheCharacterDataOfTheElement) {
  for (const TextRow& row : kStringRows) {
    SCOPED_TRACE(row.content);
    const std::string content = row.content;
    const Reader reader =
        ReadContent("<string key=\"a\">" + content + "</string><array key=\"b\"><string>" +
                    content + "</string></array>");
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(GetString(reader, "a"), row.value);
    OpenArray(reader, "b");
    EXPECT_EQ(StringAt(reader, 0), row.value);
  }
}

const TextRow kBinaryRows[] = {
    {"", ""},
    {" \n ", ""},
    {"Zg==", "f"},
    {"Zm8=", "fo"},
    {"Zm9v", "foo"},
    {"Zm9vYg==", "foob"},
    {"Zm9vYmE=", "fooba"},
    {"Zm9vYmFy", "foobar"},
    {"+/+/", "\xFB\xFF\xBF"},
    {"AAAA", "\0\0\0"s},
    {"\n  Zm9v\n  YmFy\n", "foobar"},
    {"Z g\t=\n=", "f"},
    {"Z", nullopt},
    {"Zg", nullopt},
    {"Zm8", nullopt},
    {"Zg=", nullopt},
    {"Zg===", nullopt},
    {"=", nullopt},
    {"====", nullopt},
    {"A===", nullopt},
    {"Zg=w", nullopt},
    {"Z=g=", nullopt},
    {"Zg==Zg==", nullopt},
    {"Zh==", nullopt},
    {"Zm9=", nullopt},
    {"Zm-_", nullopt},
    {"Zm9.", nullopt},
    {"Zm\u00E9", nullopt},
};

TEST(ValueTest, BinaryIsCanonicalBase64OrMissing) {
  for (const TextRow& row : kBinaryRows) {
    SCOPED_TRACE(row.content);
    const std::string content = row.content;
    const Reader reader =
        ReadContent("<binary key=\"a\">" + content + "</binary><array key=\"b\"><binary>" +
                    content + "</binary></array>");
    ASSERT_NE(reader, nullptr);
    EXPECT_EQ(GetBinary(reader, "a"), row.value);
    OpenArray(reader, "b");
    EXPECT_EQ(BinaryAt(reader, 0), row.value);
  }
}

TEST(ValueTest, EmptyBytesAreABlockOfLengthZero) {
  const Reader reader = ReadContent("<binary key=\"a\"/>");
  void* data = nullptr;
  std::int32_t length = -1;
  EXPECT_NE(qvxmlwrapGet_Binary(reader.get(), "a", &data, &length), 0);
  EXPECT_NE(data, nullptr);
  EXPECT_EQ(length, 0);
  std::free(data);
}

TEST(ValueTest, EncodingMayBeUtf8InAnyCaseOrLeftOut) {
  const Reader reader =
      ReadContent("<string key=\"a\">x</string><array key=\"b\"><string>y</string></array>");
  for (const char* encoding : {"UTF-8", "utf-8", "Utf-8", static_cast<const char*>(nullptr)}) {
    char* text = nullptr;
    EXPECT_NE(qvxmlwrapGet_String(reader.get(), "a", &text, nullptr, encoding, 0), 0);
    EXPECT_EQ(TakeText(text), "x");
  }
  OpenArray(reader, "b");
  for (const char* encoding : {"UTF-8", "utf-8", "Utf-8", static_cast<const char*>(nullptr)}) {
    char* text = nullptr;
    EXPECT_NE(qvxmlwrapGet_StringFromArray(reader.get(), 0, &text, nullptr, encoding, 0), 0);
    EXPECT_EQ(TakeText(text), "y");
  }
}

TEST(ValueTest, TextInAnUnsupportedEncodingIsMissing) {
  const Reader reader =
      ReadContent("<string key=\"a\">x</string><array key=\"b\"><string>y</string></array>");
  char* text = nullptr;
  for (const char* encoding : {"", "UTF8", "UTF-16", "UTF-8 ", "ISO-8859-1"}) {
    EXPECT_EQ(qvxmlwrapGet_String(reader.get(), "a", &text, nullptr, encoding, 0), 0);
  }
  OpenArray(reader, "b");
  for (const char* encoding : {"", "UTF8", "UTF-16", "UTF-8 ", "ISO-8859-1"}) {
    EXPECT_EQ(qvxmlwrapGet_StringFromArray(reader.get(), 0, &text, nullptr, encoding, 0), 0);
  }
  EXPECT_EQ(text, nullptr);
}

TEST(ValueTest, UnusedWordsChangeNothing) {
  const Reader reader = ReadContent(
      "<long key=\"a\">1</long><double key=\"b\">2</double><string key=\"c\">3</string>");
  std::int32_t number = 0;
  double factor = 0;
  char* text = nullptr;
  int auxiliary = 5;
  EXPECT_NE(qvxmlwrapGet_Long(reader.get(), "a", &number, -1), 0);
  EXPECT_NE(qvxmlwrapGet_Double(reader.get(), "b", &factor, 9.0), 0);
  EXPECT_NE(qvxmlwrapGet_String(reader.get(), "c", &text, &auxiliary, "UTF-8", -1), 0);
  EXPECT_EQ(number, 1);
  EXPECT_EQ(factor, 2.0);
  EXPECT_EQ(TakeText(text), "3");
  EXPECT_EQ(auxiliary, 5);
}

}  // namespace
}  // namespace ia_test
