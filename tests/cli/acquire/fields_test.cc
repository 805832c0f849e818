#include "cli/acquire/fields.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace {

using ia::cli::AppendField;
using ia::cli::CleanText;
using ia::cli::Fields;
using ia::cli::ParseCapacity;
using ia::cli::ParseFields;

TEST(Fields, AreSeparatedBySemicolons) {
  EXPECT_EQ(ParseFields("type=stitcher;unit=sheets;index=2;"),
            (Fields{{"type", "stitcher"}, {"unit", "sheets"}, {"index", "2"}}));
}

TEST(Fields, TheLastMayLackItsSemicolon) {
  EXPECT_EQ(ParseFields("type=stitcher;name=A"), (Fields{{"type", "stitcher"}, {"name", "A"}}));
}

TEST(Fields, BlanksAndNulsAroundThemAreNoPartOfThem) {
  EXPECT_EQ(ParseFields(std::string_view(" type = folder ;\tname=Tray 1 \0\0;", 33)),
            (Fields{{"type", "folder"}, {"name", "Tray 1"}}));
}

TEST(Fields, NamesAreInLowerCase) {
  EXPECT_EQ(ParseFields("MaxCapacity=5;NAME=A"), (Fields{{"maxcapacity", "5"}, {"name", "A"}}));
}

TEST(Fields, TheFirstOfOneNameCounts) {
  EXPECT_EQ(ParseFields("name=A;Name=B"), (Fields{{"name", "A"}}));
}

TEST(Fields, TextWithoutANameIsIgnored) {
  EXPECT_EQ(ParseFields(";;=x; =y;word;a=1;"), (Fields{{"a", "1"}}));
  EXPECT_EQ(ParseFields(""), Fields());
}

TEST(Fields, BackslashesEscapeBlanksAndSeparators) {
  EXPECT_EQ(ParseFields(R"(name=Tray\ 1\;2\\3\=4;a=b)"),
            (Fields{{"name", R"(Tray 1;2\3=4)"}, {"a", "b"}}));
  EXPECT_EQ(ParseFields(R"(name=C:\x\)"), (Fields{{"name", R"(C:\x\)"}}));
}

TEST(Fields, NamesHaveNoEscapes) {
  EXPECT_EQ(ParseFields(R"(type=a;maxcap\;ity=100;na\=me=b;)"),
            (Fields{{"type", "a"}, {"ity", "100"}, {R"(na\)", "me=b"}}));
}

TEST(Fields, ValuesAreCleanText) {
  EXPECT_EQ(ParseFields("name=a\x1B[2Jb\xFF;"), (Fields{{"name", "a [2Jb\uFFFD"}}));
}

TEST(AppendField, WritesWhatParseFieldsReads) {
  std::string text;
  AppendField("name", R"(a;b=c \d)", text);
  AppendField("type", "", text);
  EXPECT_EQ(ParseFields(text), (Fields{{"name", R"(a;b=c \d)"}, {"type", ""}}));
}

TEST(Capacity, IsAWholeNumberFromZero) {
  EXPECT_EQ(ParseCapacity("0"), 0);
  EXPECT_EQ(ParseCapacity("2147483647"), 2147483647);
}

TEST(Capacity, IsUnknownForTheSpecialNumbersOfTheMib) {
  for (const char* const text : {"-1", "-2", "-3", "-4"}) {
    EXPECT_EQ(ParseCapacity(text), std::nullopt) << text;
  }
}

TEST(Capacity, IsUnknownForAnythingElse) {
  for (const char* const text : {"", " 5", "5 ", "+5", "5x", "5.0", "2147483648", "0x10"}) {
    EXPECT_EQ(ParseCapacity(text), std::nullopt) << text;
  }
}

TEST(CleanText, KeepsUtf8) {
  EXPECT_EQ(CleanText("Kassette \u00E4 \U0001F5A8"), "Kassette \u00E4 \U0001F5A8");
}

TEST(CleanText, ReplacesWhatXmlOrUtf8DoNotAllow) {
  EXPECT_EQ(CleanText("a\x01"
                      "b\x7F"
                      "c\nd"),
            "a b c d");
  EXPECT_EQ(CleanText("a\xC3"
                      "b"),
            "a\uFFFD"
            "b");
  EXPECT_EQ(CleanText("a\xEF\xBF\xBE\xEF\xBF\xBF"), "a\uFFFD\uFFFD");
  EXPECT_EQ(CleanText("a\xED\xA0\x80").substr(0, 4), "a\uFFFD");
}

TEST(CleanText, HasNoBlanksAtItsEnds) {
  EXPECT_EQ(CleanText(std::string_view(" a b\0", 5)), "a b");
  EXPECT_EQ(CleanText(" \t"), "");
}

}  // namespace
