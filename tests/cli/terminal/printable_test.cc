#include "cli/terminal/printable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using ia::cli::Printable;

TEST(Printable, KeepsPrintableAscii) {
  std::string ascii;
  for (char c = 0x20; c < 0x7F; ++c) ascii += c;
  EXPECT_EQ(Printable(ascii), ascii);
}

TEST(Printable, EscapesEveryByteBelowBlank) {
  EXPECT_EQ(Printable(std::string_view("\0", 1)), "\\x00");
  EXPECT_EQ(Printable("\x01"), "\\x01");
  EXPECT_EQ(Printable("\n\r\t"), "\\x0a\\x0d\\x09");
  EXPECT_EQ(Printable("\x1b[31m"), "\\x1b[31m");
  EXPECT_EQ(Printable("\x1f"), "\\x1f");
}

TEST(Printable, EscapesDelete) {
  EXPECT_EQ(Printable("a\x7f"
                      "b"),
            "a\\x7fb");
}

TEST(Printable, KeepsTextInUtf8) {
  EXPECT_EQ(Printable("Büro 机 \xf0\x9f\x96\xa8"), "Büro 机 \xf0\x9f\x96\xa8");
}

TEST(Printable, EscapesBytesThatAreNotUtf8) {
  EXPECT_EQ(Printable("\xff\xfe\xe9"), "\\xff\\xfe\\xe9");
  EXPECT_EQ(Printable("\xc2"), "\\xc2");
  EXPECT_EQ(Printable("\x9b"), "\\x9b");
  EXPECT_EQ(Printable("\xe6\x9c!"), "\\xe6\\x9c!");
  EXPECT_EQ(Printable("\xc0\xaf"), "\\xc0\\xaf") << "longer than needed";
  EXPECT_EQ(Printable("\xed\xa0\x80"), "\\xed\\xa0\\x80") << "surrogate";
  EXPECT_EQ(Printable("\xf4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80") << "beyond U+10FFFF";
}

TEST(Printable, EscapesWhatReordersOrHidesText) {
  EXPECT_EQ(Printable("a\u202Eb"), "a\\xe2\\x80\\xaeb");
  for (const char* hidden : {"\u00AD", "\u061C", "\u180E", "\u200B", "\u200F", "\u2028", "\u202A",
                             "\u2060", "\u2069", "\uFEFF", "\uFFF9", "\U000E0041"}) {
    EXPECT_THAT(Printable(hidden), testing::StartsWith("\\x")) << hidden;
  }
  EXPECT_EQ(Printable("\u2010\u2030\u2070"), "\u2010\u2030\u2070");
}

TEST(Printable, EscapesControlsOfTheUpperHalf) {
  EXPECT_EQ(Printable("\xc2\x80"), "\\xc2\\x80");
  EXPECT_EQ(Printable("\xc2\x9b"
                      "31m"),
            "\\xc2\\x9b31m");
  EXPECT_EQ(Printable("\xc2\x9f"), "\\xc2\\x9f");
}

TEST(Printable, KeepsTheFirstCharacterAfterTheControlsOfTheUpperHalf) {
  EXPECT_EQ(Printable("\xc2\xa0"), "\xc2\xa0");
}

TEST(Printable, EscapesAControlAfterALoneLeadByte) {
  EXPECT_EQ(Printable("\xc2\xc2\x9b"), "\\xc2\\xc2\\x9b");
  EXPECT_EQ(Printable("\xc2\x1b"), "\\xc2\\x1b");
}

}  // namespace
