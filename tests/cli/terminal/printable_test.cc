#include "cli/terminal/printable.h"

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

TEST(Printable, KeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(Printable("\xff\xfe\xe9"), "\xff\xfe\xe9");
  EXPECT_EQ(Printable("\xc2"), "\xc2");
  EXPECT_EQ(Printable("\x9b"), "\x9b");
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
  EXPECT_EQ(Printable("\xc2\xc2\x9b"), "\xc2\\xc2\\x9b");
  EXPECT_EQ(Printable("\xc2\x1b"), "\xc2\\x1b");
}

}  // namespace
