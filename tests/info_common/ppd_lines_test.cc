#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/named_row.h"
#include "tests/info_common/ppd_model.h"

namespace ia_test {
namespace {

using namespace std::string_literals;

ParsedLine Outcome(std::int32_t result, const GuardedBuffer& key, const GuardedBuffer& value) {
  EXPECT_TRUE(key.WallsStand());
  EXPECT_TRUE(value.WallsStand());
  if (result < 1) return {result, "", ""};
  return {result, std::string(key.text()), std::string(value.text())};
}

ParsedLine ReadOptionLine(std::string_view line, std::int32_t size = 256) {
  const auto source = ExactText(line);
  const auto capacity = static_cast<std::size_t>(std::clamp(size, 0, 4096));
  GuardedBuffer key(capacity);
  GuardedBuffer value(capacity);
  const auto result =
      info_common_optlist_getoptkeyandvalue(source.get(), key.data(), value.data(), size);
  return Outcome(result, key, value);
}

ParsedLine ReadUiValueLine(std::string_view line) {
  const auto source = ExactText(line);
  GuardedBuffer key(256);
  GuardedBuffer value(256);
  const auto result =
      info_common_optlist_qvuivalue_getoptkeyandvalue(source.get(), key.data(), value.data());
  return Outcome(result, key, value);
}

ParsedLine Parsed(const std::string& key, const std::string& value) {
  return {static_cast<std::int32_t>(value.size()) + 1, key, value};
}

const ParsedLine kRefused{-1, "", ""};

struct LineRow : NamedRow {
  std::string line;
  std::string key;
  std::string value;
};

class OptionLine : public testing::TestWithParam<LineRow> {};

TEST_P(OptionLine, GivesKeyAndValue) {
  EXPECT_EQ(ReadOptionLine(GetParam().line), Parsed(GetParam().key, GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, OptionLine,
    Rows<LineRow>({{"QuotedValue", "QVAnlz_DriverName: \"RA-H2\"", "QVAnlz_DriverName", "RA-H2"},
                   {"BareValue", "QVFoo: bar", "QVFoo", "bar"},
                   {"OnlyAKey", "QVFoo", "QVFoo", ""},
                   {"EmptyQuotes", "QVFoo:   \"\"", "QVFoo", ""},
                   {"BlanksInsideStay", "QVFoo: \"a b\"c", "QVFoo", "a b"},
                   {"TextAfterTheQuoteIsDropped", "QVFoo: \"a\" \"b\"", "QVFoo", "a"},
                   {"OpenQuoteRunsToTheEnd", "QVFoo: \"a b c", "QVFoo", "a b c"},
                   {"TrailingBlanksStay", "QVFoo: bar  ", "QVFoo", "bar  "},
                   {"EmptyLine", "", "", ""},
                   {"EmptyKey", ": x", "", "x"},
                   {"OnlyAColon", ":", "", ""},
                   {"BytesAbove127", "QV\xC3\x84\xFF: \"\x80\xFE\"", "QV\xC3\x84\xFF", "\x80\xFE"},
                   {"OtherControlBytesAreNoBlanks", "QV\v\f: \v\fx", "QV\v\f", "\v\fx"},
                   {"SlashAndStarAreOrdinary", "QV*Foo/x: *a/b", "QV*Foo/x", "*a/b"},
                   {"PercentIsNoFormat", "QV%s%n: %d%n", "QV%s%n", "%d%n"}}),
    RowName<LineRow>);

INSTANTIATE_TEST_SUITE_P(KeyEnds, OptionLine,
                         Rows<LineRow>({{"AtABlank", "QVFoo bar", "QVFoo", "bar"},
                                        {"AtATab", "QVFoo\tbar", "QVFoo", "bar"},
                                        {"AtACarriageReturn", "QVFoo\rbar", "QVFoo", "bar"},
                                        {"AtALineFeed", "QVFoo\nbar", "QVFoo", "bar"},
                                        {"AtNoOtherByte", "Q~V;F(o=o:bar", "Q~V;F(o=o", "bar"},
                                        {"AtAQuote", "QVFoo\"bar", "QVFoo", "bar"},
                                        {"AtAColon", "QVFoo:bar", "QVFoo", "bar"},
                                        {"AtANul", "QVFoo\0:bar"s, "QVFoo", ""}}),
                         RowName<LineRow>);

INSTANTIATE_TEST_SUITE_P(ValueEnds, OptionLine,
                         Rows<LineRow>({{"AtACarriageReturn", "QVFoo:bar\rx", "QVFoo", "bar"},
                                        {"AtATab", "QVFoo:bar\tx", "QVFoo", "bar"},
                                        {"AtAQuote", "QVFoo:bar\"x", "QVFoo", "bar"},
                                        {"AtALineFeed", "QVFoo:bar\nx", "QVFoo", "bar"},
                                        {"AtNoOtherByte", "QVFoo:b~a;r(x)", "QVFoo", "b~a;r(x)"},
                                        {"AtANul", "QVFoo:bar\0x"s, "QVFoo", "bar"},
                                        {"NotAtABlank", "QVFoo:bar x", "QVFoo", "bar x"},
                                        {"NotAtAColon", "QVFoo:bar:x", "QVFoo", "bar:x"},
                                        {"AtOnceAtACarriageReturn", "QVFoo:\rx", "QVFoo", ""},
                                        {"AtOnceAtALineFeed", "QVFoo:\nx", "QVFoo", ""},
                                        {"AtOnceAtATabAfterTheQuote", "QVFoo:\"\tx", "QVFoo", ""}}),
                         RowName<LineRow>);

// After the byte that ends the key: blanks, colons, blanks, quotes; each run once, in this order.
INSTANTIATE_TEST_SUITE_P(
    Skipping, OptionLine,
    Rows<LineRow>({{"AllFourRuns", "QVFoo: \t :: \t \"\"bar", "QVFoo", "bar"},
                   {"NoOtherByte", "QVFoo:~bar", "QVFoo", "~bar"},
                   {"BlanksThenColons", "QVFoo \t ::bar", "QVFoo", "bar"},
                   {"ColonsThenBlanks", "QVFoo::: \t bar", "QVFoo", "bar"},
                   {"QuotesOnly", "QVFoo:\"\"\"bar", "QVFoo", "bar"},
                   {"QuoteEndsTheKeyThenColon", "QVFoo\":bar", "QVFoo", "bar"},
                   {"SecondRunOfColonsIsValue", "QVFoo : : bar", "QVFoo", ": bar"},
                   {"BlankAfterQuotesIsValue", "QVFoo:\" bar\"", "QVFoo", " bar"},
                   {"ColonAfterQuotesIsValue", "QVFoo:\":bar\"", "QVFoo", ":bar"},
                   {"QuoteAfterABlankAfterQuotesEnds", "QVFoo:\" \"bar", "QVFoo", " "},
                   {"OnlyOneEndingByteIsPassed", "QVFoo\r\nbar", "QVFoo", ""},
                   {"CarriageReturnThenColon", "QVFoo\r: \"bar\"", "QVFoo", "bar"},
                   {"QuotesThenTheEnd", "QVFoo:\"\"", "QVFoo", ""},
                   {"BlanksThenTheEnd", "QVFoo: \t ", "QVFoo", ""},
                   {"ColonsThenTheEnd", "QVFoo:::", "QVFoo", ""}}),
    RowName<LineRow>);

struct LimitRow : NamedRow {
  std::size_t key_length;
  std::size_t value_length;
  bool accepted;
};

std::string Fill(std::size_t length, char byte) { return std::string(length, byte); }

class OptionLineLimit : public testing::TestWithParam<LimitRow> {};

TEST_P(OptionLineLimit, HoldsForTextsThatRunToTheEnd) {
  const std::string key = Fill(GetParam().key_length, 'k');
  const std::string value = Fill(GetParam().value_length, 'v');
  const ParsedLine expected = GetParam().accepted ? Parsed(key, value) : kRefused;
  EXPECT_EQ(ReadOptionLine(key + ":" + value), expected);
}

TEST_P(OptionLineLimit, HoldsForQuotedTexts) {
  const std::string key = Fill(GetParam().key_length, 'k');
  const std::string value = Fill(GetParam().value_length, 'v');
  const ParsedLine expected = GetParam().accepted ? Parsed(key, value) : kRefused;
  EXPECT_EQ(ReadOptionLine(key + ": \"" + value + "\" and more"), expected);
}

INSTANTIATE_TEST_SUITE_P(Lengths, OptionLineLimit,
                         Rows<LimitRow>({{"Key253", 253, 1, true},
                                         {"Key254", 254, 1, true},
                                         {"Key255", 255, 1, false},
                                         {"Key256", 256, 1, false},
                                         {"Key5000", 5000, 1, false},
                                         {"Value253", 1, 253, true},
                                         {"Value254", 1, 254, true},
                                         {"Value255", 1, 255, false},
                                         {"Value256", 1, 256, false},
                                         {"Value5000", 1, 5000, false},
                                         {"Both254", 254, 254, true},
                                         {"Both255", 255, 255, false}}),
                         RowName<LimitRow>);

TEST(OptionLineLimitOfABareKey, Is254BytesToo) {
  EXPECT_EQ(ReadOptionLine(Fill(254, 'k')), Parsed(Fill(254, 'k'), ""));
  EXPECT_EQ(ReadOptionLine(Fill(255, 'k')), kRefused);
  EXPECT_EQ(ReadOptionLine(Fill(256, 'k')), kRefused);
}

struct SizeRow : NamedRow {
  std::int32_t size;
  std::string line;
  ParsedLine expected;
};

class OptionLineBufferSize : public testing::TestWithParam<SizeRow> {};

TEST_P(OptionLineBufferSize, LeavesRoomForSizeMinusTwoBytes) {
  EXPECT_EQ(ReadOptionLine(GetParam().line, GetParam().size), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Sizes, OptionLineBufferSize,
                         Rows<SizeRow>({{"LowestSize", INT_MIN, "a:b", kRefused},
                                        {"LowestSizeEmptyLine", INT_MIN, "", kRefused},
                                        {"MinusOne", -1, "a:b", kRefused},
                                        {"MinusOneEmptyLine", -1, "", kRefused},
                                        {"Zero", 0, "a:b", kRefused},
                                        {"ZeroEmptyLine", 0, "", kRefused},
                                        {"One", 1, "a:b", kRefused},
                                        {"OneEmptyLine", 1, "", kRefused},
                                        {"OneEmptyTexts", 1, ":", kRefused},
                                        {"TwoEmptyLine", 2, "", Parsed("", "")},
                                        {"TwoEmptyTexts", 2, ": \"\"", Parsed("", "")},
                                        {"TwoKey", 2, "a", kRefused},
                                        {"TwoValue", 2, ":b", kRefused},
                                        {"ThreeBoth", 3, "a:b", Parsed("a", "b")},
                                        {"ThreeLongKey", 3, "aa:b", kRefused},
                                        {"ThreeLongValue", 3, "a:bb", kRefused},
                                        {"FourBoth", 4, "aa:bb", Parsed("aa", "bb")},
                                        {"HighestSize", INT_MAX, "aa:bb", Parsed("aa", "bb")}}),
                         RowName<SizeRow>);

TEST(OptionLineNull, AnyNullPointerIsRefused) {
  char buffer[256];
  EXPECT_EQ(info_common_optlist_getoptkeyandvalue(nullptr, buffer, buffer, 256), -1);
  EXPECT_EQ(info_common_optlist_getoptkeyandvalue("a", nullptr, buffer, 256), -1);
  EXPECT_EQ(info_common_optlist_getoptkeyandvalue("a", buffer, nullptr, 256), -1);
}

class UiValueLine : public testing::TestWithParam<LineRow> {};

TEST_P(UiValueLine, GivesKeyAndValue) {
  EXPECT_EQ(ReadUiValueLine(GetParam().line), Parsed(GetParam().key, GetParam().value));
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, UiValueLine,
    Rows<LineRow>({{"Usual", " *QVColorMode(mono)", "QVColorMode", "mono"},
                   {"EmptyLine", "", "", ""},
                   {"OnlyAKey", " *QVFoo", "QVFoo", ""},
                   {"EmptyKey", "(x)", "", "x"},
                   {"EmptyValue", "QVFoo()", "QVFoo", ""},
                   {"NothingAfterTheParenthesis", "QVFoo(", "QVFoo", ""},
                   {"BlanksTabsAndStarsVanishAnywhere", "\t* Q *V\tF o*o \t*(x)", "QVFoo", "x"},
                   {"ValueKeepsThem", "QVFoo( *a\tb )", "QVFoo", " *a\tb "},
                   {"OpenParenthesisInTheValue", "QVFoo((a)", "QVFoo", "(a"},
                   {"MissingClosingParenthesis", "QVFoo(bar", "QVFoo", "bar"},
                   {"TextAfterTheValueIsDropped", "QVFoo(a)b(c)", "QVFoo", "a"},
                   {"ColonsAndQuotesAreOrdinary", "QV:\"Foo(\"a:b\")", "QV:\"Foo", "\"a:b\""},
                   {"ClosingParenthesisInTheKey", "QV)Foo(a)", "QV)Foo", "a"},
                   {"OtherControlBytesStay", "QV\v\f(\v\f)", "QV\v\f", "\v\f"},
                   {"BytesAbove127", "QV\x80\xFF(\xC3\xA4)", "QV\x80\xFF", "\xC3\xA4"},
                   {"OnlyBlanksTabsAndStars", " \t* ", "", ""}}),
    RowName<LineRow>);

INSTANTIATE_TEST_SUITE_P(KeyEnds, UiValueLine,
                         Rows<LineRow>({{"AtAParenthesis", "QVFoo(bar)", "QVFoo", "bar"},
                                        {"AtACarriageReturn", "QVFoo\rbar)", "QVFoo", "bar"},
                                        {"AtALineFeed", "QVFoo\nbar)", "QVFoo", "bar"},
                                        {"AtNoOtherByte", "Q~V:F\"oo(bar)", "Q~V:F\"oo", "bar"},
                                        {"AtANul", "QVFoo\0(bar)"s, "QVFoo", ""},
                                        {"OnlyOneEndingByteIsPassed", "QVFoo\r\nbar)", "QVFoo", ""},
                                        {"LineFeedThenParenthesis", "QVFoo\n(bar)", "QVFoo",
                                         "(bar"}}),
                         RowName<LineRow>);

INSTANTIATE_TEST_SUITE_P(ValueEnds, UiValueLine,
                         Rows<LineRow>({{"AtAParenthesis", "QVFoo(bar)x", "QVFoo", "bar"},
                                        {"AtACarriageReturn", "QVFoo(bar\rx)", "QVFoo", "bar"},
                                        {"AtALineFeed", "QVFoo(bar\nx)", "QVFoo", "bar"},
                                        {"AtNoOtherByte", "QVFoo(b~a\tr(x)", "QVFoo", "b~a\tr(x"},
                                        {"AtANul", "QVFoo(bar\0x)"s, "QVFoo", "bar"},
                                        {"AtOnceAtACarriageReturn", "QVFoo(\rx)", "QVFoo", ""},
                                        {"AtOnceAtALineFeed", "QVFoo(\nx)", "QVFoo", ""}}),
                         RowName<LineRow>);

class UiValueLineLimit : public testing::TestWithParam<LimitRow> {};

TEST_P(UiValueLineLimit, Holds) {
  const std::string key = Fill(GetParam().key_length, 'k');
  const std::string value = Fill(GetParam().value_length, 'v');
  const ParsedLine expected = GetParam().accepted ? Parsed(key, value) : kRefused;
  EXPECT_EQ(ReadUiValueLine(key + "(" + value + ")"), expected);
  EXPECT_EQ(ReadUiValueLine(key + "(" + value), expected);
}

TEST_P(UiValueLineLimit, CountsNoDroppedBytes) {
  const std::string key = Fill(GetParam().key_length, 'k');
  const std::string value = Fill(GetParam().value_length, 'v');
  const ParsedLine expected = GetParam().accepted ? Parsed(key, value) : kRefused;
  EXPECT_EQ(ReadUiValueLine(Fill(300, ' ') + key + Fill(300, '*') + "(" + value + ")"), expected);
}

INSTANTIATE_TEST_SUITE_P(Lengths, UiValueLineLimit,
                         Rows<LimitRow>({{"Key253", 253, 1, true},
                                         {"Key254", 254, 1, true},
                                         {"Key255", 255, 1, false},
                                         {"Key256", 256, 1, false},
                                         {"Key5000", 5000, 1, false},
                                         {"Value253", 1, 253, true},
                                         {"Value254", 1, 254, true},
                                         {"Value255", 1, 255, false},
                                         {"Value256", 1, 256, false},
                                         {"Value5000", 1, 5000, false},
                                         {"Both254", 254, 254, true},
                                         {"Both255", 255, 255, false}}),
                         RowName<LimitRow>);

TEST(UiValueLineLimitOfABareKey, Is254BytesToo) {
  EXPECT_EQ(ReadUiValueLine(Fill(254, 'k')), Parsed(Fill(254, 'k'), ""));
  EXPECT_EQ(ReadUiValueLine(Fill(255, 'k')), kRefused);
  EXPECT_EQ(ReadUiValueLine(Fill(256, 'k')), kRefused);
}

TEST(UiValueLineNull, AnyNullPointerIsRefused) {
  char buffer[256];
  EXPECT_EQ(info_common_optlist_qvuivalue_getoptkeyandvalue(nullptr, buffer, buffer), -1);
  EXPECT_EQ(info_common_optlist_qvuivalue_getoptkeyandvalue("a", nullptr, buffer), -1);
  EXPECT_EQ(info_common_optlist_qvuivalue_getoptkeyandvalue("a", buffer, nullptr), -1);
}

// Every prefix of a line is a line of its own; none is read past its end.
struct PrefixRow : NamedRow {
  std::string line;
};

class LinePrefixes : public testing::TestWithParam<PrefixRow> {};

TEST_P(LinePrefixes, AreParsedByTheSameRules) {
  for (std::size_t length = 0; length <= GetParam().line.size(); ++length) {
    const std::string prefix = GetParam().line.substr(0, length);
    EXPECT_EQ(ReadOptionLine(prefix), ParseOptionLine(prefix, 256)) << prefix;
    EXPECT_EQ(ReadOptionLine(prefix, 8), ParseOptionLine(prefix, 8)) << prefix;
    EXPECT_EQ(ReadUiValueLine(prefix), ParseUiValueLine(prefix)) << prefix;
  }
}

INSTANTIATE_TEST_SUITE_P(Lines, LinePrefixes,
                         Rows<PrefixRow>({{"Option", "QVFoo \t:: \t\"\"a b\" c\t\r\n"},
                                          {"UiValue", " *QV Foo\t(a b) c\r\n"},
                                          {"BytesAbove127", "QV\xFF\x80:\xC3\xA4(\xFE)\n"},
                                          {"LongOption", Fill(258, 'k') + ":" + Fill(258, 'v')},
                                          {"LongUiValue",
                                           Fill(250, 'k') + "(" + Fill(258, 'v') + ")"}}),
                         RowName<PrefixRow>);

rc::Gen<std::string> LineOf(const std::string& alphabet) {
  const auto byte = rc::gen::elementOf(alphabet);
  const auto run = rc::gen::map(
      rc::gen::tuple(byte, rc::gen::weightedOneOf<int>(
                               {{30, rc::gen::inRange(1, 3)}, {1, rc::gen::inRange(250, 258)}})),
      [](const std::tuple<char, int>& drawn) {
        return Fill(static_cast<std::size_t>(std::get<1>(drawn)), std::get<0>(drawn));
      });
  return rc::gen::map(rc::gen::container<std::vector<std::string>>(run),
                      [](const std::vector<std::string>& runs) {
                        std::string line;
                        for (const std::string& part : runs) line += part;
                        return line;
                      });
}

RC_GTEST_PROP(OptionLineProperty, AnyLineIsSplitByThePlainRules, ()) {
  const std::string line = *LineOf("QV \t\r\n\":a\x80\0"s);
  const auto size = *rc::gen::weightedOneOf<std::int32_t>(
      {{3, rc::gen::just(256)}, {2, rc::gen::inRange(-2, 300)}});
  RC_ASSERT(ReadOptionLine(line, size) == ParseOptionLine(line, size));
}

RC_GTEST_PROP(UiValueLineProperty, AnyLineIsSplitByThePlainRules, ()) {
  const std::string line = *LineOf("QV \t\r\n*()a\x80\0"s);
  RC_ASSERT(ReadUiValueLine(line) == ParseUiValueLine(line));
}

}  // namespace
}  // namespace ia_test
