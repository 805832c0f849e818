#include "cli/terminal/shell_quoting.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ia::cli::QuoteForShell;

TEST(QuoteForShell, LeavesPlainWordsAsTheyAre) {
  EXPECT_EQ(QuoteForShell("QVSrcOption=Cas34,PaperDeck"), "QVSrcOption=Cas34,PaperDeck");
  EXPECT_EQ(QuoteForShell("a_b.c:/+-@%9"), "a_b.c:/+-@%9");
}

TEST(QuoteForShell, QuotesOtherWords) {
  EXPECT_EQ(QuoteForShell(""), "''");
  EXPECT_EQ(QuoteForShell("two words"), "'two words'");
  EXPECT_EQ(QuoteForShell("it's"), "'it'\\''s'");
  for (const std::string byte : {"$", "`", ";", "&", "|", "<",  ">",  "(",  ")", "*",
                                 "?", "[", "#", "~", "!", "\\", "\"", "\n", "{", "\xff"}) {
    EXPECT_EQ(QuoteForShell("a" + byte), "'a" + byte + "'");
  }
}

}  // namespace
