#include "cli/apply/ppd_defaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using ia::cli::DefaultTexts;
using ia::cli::IsOneLine;
using ia::cli::WithDefaultTexts;
using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::string>;

TEST(PpdDefaults, FindsTheLinesOfAnOptionAndNoOthers) {
  const std::string ppd =
      "*PPD-Adobe: \"4.3\"\n*DefaultQVFinisher: None\r\n*DefaultQVFinisherTray: A\n"
      " *DefaultQVFinisher: B\n*%DefaultQVFinisher: C\n*DefaultQVFinisher \t: \tD/text  \n"
      "*QVFinisher: E\n*DefaultQVFinisher:";
  EXPECT_THAT(DefaultTexts(ppd, "QVFinisher"), ElementsAre("None", "D/text", ""));
  EXPECT_THAT(DefaultTexts(ppd, "QVFinisherTray"), ElementsAre("A"));
  EXPECT_THAT(DefaultTexts(ppd, "QVPuncher"), IsEmpty());
  EXPECT_THAT(DefaultTexts("", "QVFinisher"), IsEmpty());
}

TEST(PpdDefaults, TextsAreOneLineWithoutControls) {
  for (const char* const text : {"", "None", "None\t/x", "\xe4\x80\xff"}) {
    EXPECT_TRUE(IsOneLine(text)) << text;
  }
  for (const char* const text : {"\n", "a\r", "\x1b[", "\x7f"})
    EXPECT_FALSE(IsOneLine(text)) << text;
  EXPECT_FALSE(IsOneLine(std::string(1, '\0')));
}

TEST(PpdDefaults, ChangesNothingButTheTexts) {
  const std::string ppd = "a\r\n*DefaultX:\t None \r\n\xe4\n*DefaultX: B\nend without a line end";
  EXPECT_EQ(WithDefaultTexts(ppd, "X", {"Staple", "C"}),
            "a\r\n*DefaultX:\t Staple \r\n\xe4\n*DefaultX: C\nend without a line end");
  EXPECT_EQ(WithDefaultTexts(ppd, "Y", {}), ppd);
  EXPECT_EQ(WithDefaultTexts("*DefaultX:", "X", {"A"}), "*DefaultX:A");
  EXPECT_EQ(WithDefaultTexts("*DefaultX:A", "X", {""}), "*DefaultX:");
}

// Texts of lines have no line ends and no blanks around them.
std::string RandomText(std::mt19937& random) {
  std::string text;
  for (auto left = random() % 6; left > 0; --left) text += static_cast<char>('0' + random() % 60);
  return text;
}

TEST(PpdDefaults, SettingTheOldTextsGivesTheOldBytes) {
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    std::string ppd;
    for (auto lines = random() % 8; lines > 0; --lines) {
      const char* const starts[] = {
          "*DefaultX:", "*DefaultX : ", "*Default", "*DefaultXY:", " ", ""};
      const char* const ends[] = {"\n", "\r\n", "\r", " \n", "", "\n\n"};
      ppd += starts[random() % 6] + RandomText(random) + ends[random() % 6];
    }
    const Texts before = DefaultTexts(ppd, "X");
    const std::string changed = WithDefaultTexts(ppd, "X", Texts(before.size(), "New"));
    ASSERT_EQ(DefaultTexts(changed, "X"), Texts(before.size(), "New")) << ppd;
    ASSERT_EQ(WithDefaultTexts(changed, "X", before), ppd);
  }
}

}  // namespace
