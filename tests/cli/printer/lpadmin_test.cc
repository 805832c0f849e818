#include "cli/printer/lpadmin.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using ia::cli::IsPlainOptionWord;
using ia::cli::LpadminLine;

TEST(PlainOptionWord, IsWhatLpadminDoesNotTakeApart) {
  for (const char* const word : {"None", "Cas34,PaperDeck", "0120", "$(x)", "a=b", "~"}) {
    EXPECT_TRUE(IsPlainOptionWord(word)) << word;
  }
  for (const char* const word : {"", "two words", "a\tb", "a\nb", "a\x1b", "a\x7f", "it's", "\"a",
                                 "a\\", "{a", "a}", "\xc3\xa9"}) {
    EXPECT_FALSE(IsPlainOptionWord(word)) << word;
  }
}

TEST(LpadminLine, NamesTheQueueAndEachOption) {
  EXPECT_EQ(LpadminLine("office", {{"QVDupUnit", "True"}, {"QVOdd", "a;b"}}),
            "lpadmin -p office -o QVDupUnit=True -o 'QVOdd=a;b'");
}

}  // namespace
