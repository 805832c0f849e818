#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
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

// What stands around the outermost element.

class AcceptedFormTest : public testing::TestWithParam<const char*> {};

TEST_P(AcceptedFormTest, IsReadAsADocument) {
  const Reader reader = Read(GetParam());
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

INSTANTIATE_TEST_SUITE_P(
    ReaderTest, AcceptedFormTest,
    testing::Values(
        "<document version=\"1\"><long key=\"a\">1</long></document>",
        "<document version='1'><long key='a'>1</long></document>",
        "<document other=\"x\" version=\"1\"><long key=\"a\" other=\"x\">1</long></document>",
        "\xEF\xBB\xBF<document version=\"1\"><long key=\"a\">1</long></document>",
        "<?xml version=\"1.0\"?><document version=\"1\"><long key=\"a\">1</long></document>",
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<document version=\"1\">\r\n"
        "\t<long key=\"a\">1</long>\r\n</document>\r\n",
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
        "<document version=\"1\"><long key=\"a\">1</long></document>",
        "<!-- a --><?b c?><document version=\"1\"><!-- d --><long key=\"a\">1</long></document>"
        "<!-- e --><?f g?>",
        "\n <document version=\"1\"><long key=\"a\">1</long></document>\n\n"));

struct Bytes {
  const char* what;
  std::string bytes;
};

void PrintTo(const Bytes& bytes, std::ostream* out) { *out << bytes.what; }

class RefusedFormTest : public testing::TestWithParam<Bytes> {};

TEST_P(RefusedFormTest, GivesNoReader) { EXPECT_EQ(Read(GetParam().bytes), nullptr); }

std::string Name(const testing::TestParamInfo<Bytes>& info) { return info.param.what; }

INSTANTIATE_TEST_SUITE_P(
    Markup, RefusedFormTest,
    testing::Values(
        Bytes{"Nothing", ""}, Bytes{"Blanks", " \n\t"}, Bytes{"Text", "document"},
        Bytes{"JustAComment", "<!-- document -->"},
        Bytes{"JustADeclaration", "<?xml version=\"1.0\"?>"},
        Bytes{"OtherRoot", "<documents version=\"1\"/>"},
        Bytes{"RootInOtherCase", "<Document version=\"1\"/>"},
        Bytes{"RootWithPrefix", "<x:document version=\"1\"/>"}, Bytes{"NoVersion", "<document/>"},
        Bytes{"EmptyVersion", "<document version=\"\"/>"},
        Bytes{"LaterVersion", "<document version=\"2\"/>"},
        Bytes{"LongerVersion", "<document version=\"1.0\"/>"},
        Bytes{"TwoRoots", "<document version=\"1\"/><document version=\"1\"/>"},
        Bytes{"OtherElementBefore", "<a/><document version=\"1\"/>"},
        Bytes{"OtherElementBehind", "<document version=\"1\"/><a/>"},
        Bytes{"TextBefore", "x<document version=\"1\"/>"},
        Bytes{"TextBehind", "<document version=\"1\"/>x"},
        Bytes{"BracketBehind", "<document version=\"1\"/><"},
        Bytes{"ReferenceBehind", "<document version=\"1\"/>&#32;"},
        Bytes{"CharacterDataSectionBehind", "<document version=\"1\"/><![CDATA[ ]]>"},
        Bytes{"SecondByteOrderMark", "\xEF\xBB\xBF\xEF\xBB\xBF<document version=\"1\"/>"},
        Bytes{"NotClosed", "<document version=\"1\">"},
        Bytes{"ClosedWithOtherName", "<document version=\"1\"></dokument>"},
        Bytes{"ClosedTwice", "<document version=\"1\"/></document>"},
        Bytes{"Crossed", DocumentOf("<dict key=\"a\"><array key=\"b\"></dict></array>")},
        Bytes{"AttributeWithoutQuotes", "<document version=1/>"},
        Bytes{"AttributeWithoutValue", "<document version/>"},
        Bytes{"AttributesWithoutBlank", DocumentOf("<long key=\"a\"b=\"c\">1</long>")},
        Bytes{"CommentNotClosed", DocumentOf("<!-- ") + "x"},
        Bytes{"CharacterDataSectionNotClosed", DocumentOf("<![CDATA[")},
        Bytes{"DeclarationBehindBlank", " <?xml version=\"1.0\"?><document version=\"1\"/>"},
        Bytes{"DeclarationTwice",
              "<?xml version=\"1.0\"?><?xml version=\"1.0\"?><document version=\"1\"/>"},
        Bytes{"DeclarationInside", DocumentOf("<?xml version=\"1.0\"?>")}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    Encoding, RefusedFormTest,
    testing::Values(
        Bytes{"Utf16Declared",
              "<?xml version=\"1.0\" encoding=\"UTF-16\"?><document version=\"1\"/>"},
        Bytes{"Latin1Declared",
              "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><document version=\"1\"/>"},
        Bytes{"Utf16", "\xFF\xFE<\0/\0"s},
        Bytes{"LoneContinuation", DocumentOf("<string key=\"a\">\x80</string>")},
        Bytes{"LastContinuation", DocumentOf("<string key=\"a\">\xBF</string>")},
        Bytes{"LeadByteAlone", DocumentOf("<string key=\"a\">\xC3</string>")},
        Bytes{"LeadByteAtTheEnd", DocumentOf("") + "\xE2\x82"},
        Bytes{"OverlongSlash", DocumentOf("<string key=\"a\">\xC0\xAF</string>")},
        Bytes{"OverlongNul", DocumentOf("<string key=\"a\">\xE0\x80\x80</string>")},
        Bytes{"Surrogate", DocumentOf("<string key=\"a\">\xED\xA0\x80</string>")},
        Bytes{"BeyondUnicode", DocumentOf("<string key=\"a\">\xF4\x90\x80\x80</string>")},
        Bytes{"FiveBytes", DocumentOf("<string key=\"a\">\xF8\x88\x80\x80\x80</string>")},
        Bytes{"ByteFF", DocumentOf("<string key=\"a\">\xFF</string>")},
        Bytes{"Nul", DocumentOf("<string key=\"a\">x\0y</string>"s)},
        Bytes{"NulBehind", DocumentOf("") + "\0"s},
        Bytes{"ControlCharacter", DocumentOf("<string key=\"a\">\x01</string>")},
        Bytes{"Escape", DocumentOf("<string key=\"a\x1B\">x</string>")},
        Bytes{"NoncharacterFFFE", DocumentOf("<string key=\"a\">\xEF\xBF\xBE</string>")},
        Bytes{"NoncharacterFFFF", DocumentOf("<!-- \xEF\xBF\xBF -->")}),
    Name);

INSTANTIATE_TEST_SUITE_P(
    References, RefusedFormTest,
    testing::Values(
        Bytes{"DocumentType", "<!DOCTYPE document><document version=\"1\"/>"},
        Bytes{"ExternalDocumentType",
              "<!DOCTYPE document SYSTEM \"file:///etc/passwd\"><document version=\"1\"/>"},
        Bytes{"InternalEntities",
              "<!DOCTYPE document [<!ENTITY a \"b\"><!ENTITY c \"&a;&a;&a;&a;\">]>"
              "<document version=\"1\"><string key=\"a\">&c;</string></document>"},
        Bytes{"DocumentTypeBehind", "<document version=\"1\"/><!DOCTYPE document>"},
        Bytes{"DocumentTypeInside", DocumentOf("<!DOCTYPE document>")},
        Bytes{"UnknownEntity", DocumentOf("<string key=\"a\">&nbsp;</string>")},
        Bytes{"UnknownEntityInKey", DocumentOf("<string key=\"&nbsp;\">a</string>")},
        Bytes{"UnknownEntityInIgnoredElement", DocumentOf("<a><b>&nbsp;</b></a>")},
        Bytes{"UnknownEntityInIgnoredAttribute", DocumentOf("<a b=\"&nbsp;\"/>")},
        Bytes{"EntityInOtherCase", DocumentOf("<string key=\"a\">&AMP;</string>")},
        Bytes{"EmptyReference", DocumentOf("<string key=\"a\">&;</string>")},
        Bytes{"Ampersand", DocumentOf("<string key=\"a\">Q & A</string>")},
        Bytes{"AmpersandAtTheEnd", DocumentOf("<string key=\"a\">Q&</string>")},
        Bytes{"UnfinishedReference", DocumentOf("<string key=\"a\">&amp</string>")},
        Bytes{"CharacterNul", DocumentOf("<string key=\"a\">&#0;</string>")},
        Bytes{"ControlCharacterNumber", DocumentOf("<string key=\"a\">&#x1B;</string>")},
        Bytes{"SurrogateNumber", DocumentOf("<string key=\"a\">&#xD800;</string>")},
        Bytes{"SurrogatePair", DocumentOf("<string key=\"a\">&#xD83D;&#xDE00;</string>")},
        Bytes{"NumberBeyondUnicode", DocumentOf("<string key=\"a\">&#x110000;</string>")},
        Bytes{"NumberBeyond32Bits", DocumentOf("<string key=\"a\">&#4294967361;</string>")},
        Bytes{"NoNumber", DocumentOf("<string key=\"a\">&#;</string>")},
        Bytes{"NoHexNumber", DocumentOf("<string key=\"a\">&#x;</string>")},
        Bytes{"UpperCaseHexMark", DocumentOf("<string key=\"a\">&#X41;</string>")},
        Bytes{"NegativeNumber", DocumentOf("<string key=\"a\">&#-65;</string>")},
        Bytes{"NumberWithBlank", DocumentOf("<string key=\"a\">&# 65;</string>")},
        Bytes{"NumberWithLetter", DocumentOf("<string key=\"a\">&#65x;</string>")}),
    Name);

TEST(ReaderTest, NullNegativeAndZeroLengthsAreNoDocument) {
  const std::string document = DocumentOf("");
  EXPECT_EQ(qvxmlwrapGet_New(nullptr, 10), nullptr);
  EXPECT_EQ(qvxmlwrapGet_New(document.data(), 0), nullptr);
  EXPECT_EQ(qvxmlwrapGet_New(document.data(), -1), nullptr);
  EXPECT_EQ(qvxmlwrapGet_New(document.data(), std::numeric_limits<std::int32_t>::min()), nullptr);
}

// Elements within elements.

std::string Nested(std::string_view element_name, int levels, std::string_view innermost = "") {
  const std::string name(element_name);
  std::string open;
  std::string close;
  for (int i = 0; i < levels; ++i) {
    open += "<" + name + " key=\"d\">";
    close += "</" + name + ">";
  }
  return DocumentOf(open + std::string(innermost) + close);
}

TEST(ReaderTest, ElementsMayStandSixtyFourDeep) {
  const Reader reader = Read(Nested("dict", 62, "<long key=\"a\">7</long>"));
  ASSERT_NE(reader, nullptr);
  for (int i = 0; i < 62; ++i) ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(GetLong(reader, "a"), 7);
}

TEST(ReaderTest, ElementsSixtyFiveDeepAreRefused) {
  EXPECT_NE(Read(Nested("dict", 63)), nullptr);
  EXPECT_EQ(Read(Nested("dict", 64)), nullptr);
  EXPECT_EQ(Read(Nested("dict", 63, "<long key=\"a\">7</long>")), nullptr);
}

TEST(ReaderTest, DepthOfIgnoredElementsCounts) {
  EXPECT_NE(Read(Nested("other", 63)), nullptr);
  EXPECT_EQ(Read(Nested("other", 64)), nullptr);
}

TEST(ReaderTest, TextInTheDeepestElementIsRead) {
  EXPECT_NE(Read(Nested("string", 63, "text &amp; more")), nullptr);
}

// Numbers.

struct LongCase {
  const char* text;
  std::optional<std::int32_t> value;
};

class LongTest : public testing::TestWithParam<LongCase> {};

TEST_P(LongTest, IsAWholeDecimalNumberOf32BitsOrNotThere) {
  const std::string text = GetParam().text;
  const Reader reader = ReadContent("<long key=\"a\">" + text + "</long><array key=\"b\"><long>" +
                                    text + "</long></array>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, "a"), GetParam().value);
  OpenArray(reader, "b");
  EXPECT_EQ(LongAt(reader, 0), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    ReaderTest, LongTest,
    testing::Values(LongCase{"0", 0}, LongCase{"1", 1}, LongCase{"-1", -1}, LongCase{"-0", 0},
                    LongCase{"007", 7}, LongCase{" \n12\t ", 12}, LongCase{"&#49;2", 12},
                    LongCase{"<![CDATA[12]]>", 12}, LongCase{"1<!-- and -->2", 12},
                    LongCase{"2147483647", 2147483647},
                    LongCase{"-2147483648", std::numeric_limits<std::int32_t>::min()},
                    LongCase{"2147483648", nullopt}, LongCase{"-2147483649", nullopt},
                    LongCase{"4294967297", nullopt}, LongCase{"99999999999999999999", nullopt},
                    LongCase{"", nullopt}, LongCase{" ", nullopt}, LongCase{"+1", nullopt},
                    LongCase{"-", nullopt}, LongCase{"--1", nullopt}, LongCase{"- 1", nullopt},
                    LongCase{"1 2", nullopt}, LongCase{"1.0", nullopt}, LongCase{"1e3", nullopt},
                    LongCase{"0x10", nullopt}, LongCase{"12a", nullopt}, LongCase{"one", nullopt},
                    LongCase{"\xD9\xA1", nullopt},
                    LongCase{"\xC2\xA0"
                             "1",
                             nullopt}));

struct DoubleCase {
  const char* text;
  std::optional<double> value;
};

class DoubleTest : public testing::TestWithParam<DoubleCase> {};

TEST_P(DoubleTest, IsAFiniteDecimalNumberOrNotThere) {
  const std::string text = GetParam().text;
  const Reader reader =
      ReadContent("<double key=\"a\">" + text + "</double><array key=\"b\"><double>" + text +
                  "</double></array>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetDouble(reader, "a"), GetParam().value);
  OpenArray(reader, "b");
  EXPECT_EQ(DoubleAt(reader, 0), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    ReaderTest, DoubleTest,
    testing::Values(
        DoubleCase{"0", 0.0}, DoubleCase{"1", 1.0}, DoubleCase{"-1.5", -1.5},
        DoubleCase{"1e3", 1000.0}, DoubleCase{"1E-3", 0.001}, DoubleCase{" \n2.5\t ", 2.5},
        DoubleCase{"5e-324", 5e-324}, DoubleCase{"1.7976931348623157e308", 1.7976931348623157e308},
        DoubleCase{"1e309", nullopt}, DoubleCase{"-1e309", nullopt}, DoubleCase{"inf", nullopt},
        DoubleCase{"-inf", nullopt}, DoubleCase{"INFINITY", nullopt}, DoubleCase{"nan", nullopt},
        DoubleCase{"", nullopt}, DoubleCase{"+1", nullopt}, DoubleCase{"1,5", nullopt},
        DoubleCase{"0x1p3", nullopt}, DoubleCase{"1.5.5", nullopt}, DoubleCase{"1 2", nullopt},
        DoubleCase{"e3", nullopt}, DoubleCase{"one", nullopt}));

// Texts and bytes.

struct TextCase {
  const char* content;
  std::optional<std::string> value;
};

class StringTest : public testing::TestWithParam<TextCase> {};

TEST_P(StringTest, IsTheCharacterDataOfTheElement) {
  const std::string content = GetParam().content;
  const Reader reader =
      ReadContent("<string key=\"a\">" + content + "</string><array key=\"b\"><string>" + content +
                  "</string></array>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetString(reader, "a"), GetParam().value);
  OpenArray(reader, "b");
  EXPECT_EQ(StringAt(reader, 0), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    ReaderTest, StringTest,
    testing::Values(TextCase{"", ""}, TextCase{" ", " "}, TextCase{"\n\t ", "\n\t "},
                    TextCase{"  two  ", "  two  "}, TextCase{"a\r\nb\rc\nd", "a\nb\nc\nd"},
                    TextCase{"&#13;&#10;&#9;&#xa;", "\r\n\t\n"},
                    TextCase{"&lt;&gt;&amp;&quot;&apos;", "<>&\"'"}, TextCase{"&amp;lt;", "&lt;"},
                    TextCase{"&#38;#38;", "&#38;"}, TextCase{"&#0065;&#x0042;", "AB"},
                    TextCase{"&#233;&#x20AC;&#128512;", "\u00E9\u20AC\U0001F600"},
                    TextCase{"\u00E9\u20AC\U0001F600", "\u00E9\u20AC\U0001F600"},
                    TextCase{"&#xFFFD;&#x10FFFF;", "\uFFFD\U0010FFFF"},
                    TextCase{"<![CDATA[<&amp;>]]>", "<&amp;>"},
                    TextCase{" <![CDATA[ a ]]> ", "  a  "}, TextCase{"a<!-- b -->c", "ac"},
                    TextCase{"a<?b c?>d", "ad"}, TextCase{"a<b>c</b>d", "ad"},
                    TextCase{"\"'", "\"'"}));

class BinaryTest : public testing::TestWithParam<TextCase> {};

TEST_P(BinaryTest, IsCanonicalBase64OrNotThere) {
  const std::string content = GetParam().content;
  const Reader reader =
      ReadContent("<binary key=\"a\">" + content + "</binary><array key=\"b\"><binary>" + content +
                  "</binary></array>");
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetBinary(reader, "a"), GetParam().value);
  OpenArray(reader, "b");
  EXPECT_EQ(BinaryAt(reader, 0), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    ReaderTest, BinaryTest,
    testing::Values(TextCase{"", ""}, TextCase{" \n ", ""}, TextCase{"Zg==", "f"},
                    TextCase{"Zm8=", "fo"}, TextCase{"Zm9v", "foo"}, TextCase{"Zm9vYg==", "foob"},
                    TextCase{"Zm9vYmE=", "fooba"}, TextCase{"Zm9vYmFy", "foobar"},
                    TextCase{"+/+/", "\xFB\xFF\xBF"}, TextCase{"AAAA", "\0\0\0"s},
                    TextCase{"\n  Zm9v\n  YmFy\n", "foobar"}, TextCase{"Z g\t=\n=", "f"},
                    TextCase{"Z", nullopt}, TextCase{"Zg", nullopt}, TextCase{"Zm8", nullopt},
                    TextCase{"Zg=", nullopt}, TextCase{"Zg===", nullopt}, TextCase{"=", nullopt},
                    TextCase{"====", nullopt}, TextCase{"A===", nullopt}, TextCase{"Zg=w", nullopt},
                    TextCase{"Z=g=", nullopt}, TextCase{"Zg==Zg==", nullopt},
                    TextCase{"Zh==", nullopt}, TextCase{"Zm9=", nullopt}, TextCase{"Zm-_", nullopt},
                    TextCase{"Zm9.", nullopt}, TextCase{"Zm\u00E9", nullopt}));

TEST(ReaderTest, EmptyBytesAreABlockOfLengthZero) {
  const Reader reader = ReadContent("<binary key=\"a\"/>");
  void* data = nullptr;
  std::int32_t length = kUntouched;
  EXPECT_NE(qvxmlwrapGet_Binary(reader.get(), "a", &data, &length), 0);
  EXPECT_NE(data, nullptr);
  EXPECT_EQ(length, 0);
  std::free(data);
}

TEST(ReaderTest, EncodingMayBeUtf8InAnyCaseOrLeftOut) {
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

TEST(ReaderTest, TextInAnotherEncodingIsNotThere) {
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

TEST(ReaderTest, UnusedWordsChangeNothing) {
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
  EXPECT_EQ(GetLong(reader, "d"), nullopt) << "the first is no number";
}

TEST(ReaderTest, ValueOfAnotherKindIsNotThere) {
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

TEST(ReaderTest, KindsUnderOneKeyDoNotHideEachOther) {
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

TEST(ReaderTest, ItemsBeforeTheFirstAndBehindTheLastAreNotThere) {
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

TEST(ReaderTest, ElementOfAnotherKindOrOutsideTheArrayIsNotThere) {
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

// Where the reader stands.

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

TEST(ReaderTest, ClosingTheOtherKindChangesNothing) {
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

TEST(ReaderTest, KindOfAFailedOpenIsKnownFor127LevelsAndOnlyCountedBeyond) {
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

TEST(ReaderTest, ReadersStandEachOnTheirOwn) {
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
