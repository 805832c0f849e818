// Which bytes are accepted as a document.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>

#include "info_analyze/communication_library.h"
#include "tests/commlib/documents.h"

namespace ia_test {
namespace {

using std::string_literals::operator""s;

// Text around the outermost element.

struct Bytes {
  const char* what;
  std::string bytes;
};

void PrintTo(const Bytes& bytes, std::ostream* out) { *out << bytes.what; }

std::string Name(const testing::TestParamInfo<Bytes>& info) { return info.param.what; }

class AcceptedFormTest : public testing::TestWithParam<Bytes> {};

TEST_P(AcceptedFormTest, IsReadAsADocument) {
  const Reader reader = Read(GetParam().bytes);
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(GetLong(reader, "a"), 1);
}

const std::string kPlain = DocumentOf("<long key=\"a\">1</long>");

INSTANTIATE_TEST_SUITE_P(
    DocumentTest, AcceptedFormTest,
    testing::Values(
        Bytes{"Plain", kPlain},
        Bytes{"SingleQuotes", "<document version='1'><long key='a'>1</long></document>"},
        Bytes{
            "OtherAttributes",
            "<document other=\"x\" version=\"1\"><long key=\"a\" other=\"x\">1</long></document>"},
        Bytes{"ByteOrderMark", "\xEF\xBB\xBF" + kPlain},
        Bytes{"Declaration", "<?xml version=\"1.0\"?>" + kPlain},
        Bytes{"DeclaredEncoding", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>" + kPlain},
        Bytes{"DeclaredEncodingInLowerCase", "<?xml version=\"1.0\" encoding=\"utf-8\"?>" + kPlain},
        Bytes{
            "CarriageReturns",
            "<?xml version=\"1.0\"?>\r\n<document version=\"1\">\r\n\t<long key=\"a\">1</long>\r\n"
            "</document>\r\n"},
        Bytes{"CommentsAndInstructions",
              "<!-- a --><?b c?><document version=\"1\"><!-- d --><long key=\"a\">1</long><?e?>"
              "</document><!-- f --><?g h?>"},
        Bytes{"BlanksAround", "\n " + kPlain + "\n\n"}),
    Name);

class RefusedFormTest : public testing::TestWithParam<Bytes> {};

TEST_P(RefusedFormTest, GivesNoReader) { EXPECT_EQ(Read(GetParam().bytes), nullptr); }

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
        Bytes{"OtherElementAfter", "<document version=\"1\"/><a/>"},
        Bytes{"TextBefore", "x<document version=\"1\"/>"},
        Bytes{"TextAfter", "<document version=\"1\"/>x"},
        Bytes{"BracketAfter", "<document version=\"1\"/><"},
        Bytes{"ReferenceAfter", "<document version=\"1\"/>&#32;"},
        Bytes{"CharacterDataSectionAfter", "<document version=\"1\"/><![CDATA[ ]]>"},
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
        Bytes{"DeclarationAfterBlank", " <?xml version=\"1.0\"?><document version=\"1\"/>"},
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
        Bytes{"NulAfter", DocumentOf("") + "\0"s},
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
        Bytes{"DocumentTypeAfter", "<document version=\"1\"/><!DOCTYPE document>"},
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

TEST(DocumentTest, NullNegativeAndZeroLengthsAreNoDocument) {
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

TEST(DocumentTest, ElementsMayNestSixtyFourDeep) {
  const Reader reader = Read(Nested("dict", 62, "<long key=\"a\">7</long>"));
  ASSERT_NE(reader, nullptr);
  for (int i = 0; i < 62; ++i) ASSERT_TRUE(OpenDict(reader, "d"));
  EXPECT_EQ(GetLong(reader, "a"), 7);
}

TEST(DocumentTest, ElementsSixtyFiveDeepAreRefused) {
  EXPECT_NE(Read(Nested("dict", 63)), nullptr);
  EXPECT_EQ(Read(Nested("dict", 64)), nullptr);
  EXPECT_EQ(Read(Nested("dict", 63, "<long key=\"a\">7</long>")), nullptr);
}

TEST(DocumentTest, DepthOfIgnoredElementsCounts) {
  EXPECT_NE(Read(Nested("other", 63)), nullptr);
  EXPECT_EQ(Read(Nested("other", 64)), nullptr);
}

TEST(DocumentTest, TextInTheDeepestElementIsRead) {
  EXPECT_NE(Read(Nested("string", 63, "text &amp; more")), nullptr);
}

}  // namespace
}  // namespace ia_test
