#include "info_common/ascii.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "info_analyze/option_list.h"
#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/ppd_test.h"
#include "tests/info_common/table_model.h"
#include "tests/support/turkish_locale.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::StrEq;

TEST(ContainsIgnoringCase, FindsEachLetterInBothCases) {
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    const std::string small = {'1', letter, '2'};
    const std::string capital = {'1', static_cast<char>(letter - 'a' + 'A'), '2'};
    EXPECT_TRUE(ia::ContainsIgnoringCase(capital, std::string_view(small).substr(1, 1))) << letter;
    EXPECT_TRUE(ia::ContainsIgnoringCase(small, std::string_view(capital).substr(1, 1))) << letter;
    EXPECT_TRUE(ia::ContainsIgnoringCase(capital, small)) << letter;
  }
}

TEST(ContainsIgnoringCase, BytesThatAreNoLettersHaveNoCase) {
  for (const auto& [byte, other] : {std::pair{'@', '`'}, {'[', '{'}, {'_', '\x7F'}}) {
    EXPECT_FALSE(ia::ContainsIgnoringCase(std::string(1, byte), std::string(1, other))) << byte;
    EXPECT_FALSE(ia::ContainsIgnoringCase(std::string(1, other), std::string(1, byte))) << byte;
  }
}

TEST(ContainsIgnoringCase, FindsWhatBeginsInsideAnAttempt) {
  EXPECT_TRUE(ia::ContainsIgnoringCase("a__x", "_X"));
  EXPECT_TRUE(ia::ContainsIgnoringCase("___y_", "_Y"));
  EXPECT_TRUE(ia::ContainsIgnoringCase("q1q1q2", "Q1Q2"));
}

TEST(ContainsIgnoringCase, LooksNoFurtherThanTheText) {
  const std::string_view text = "ab_cd";
  EXPECT_FALSE(ia::ContainsIgnoringCase(text.substr(0, 3), "_cd"));
  EXPECT_FALSE(ia::ContainsIgnoringCase(text.substr(0, 4), "_cd"));
  EXPECT_TRUE(ia::ContainsIgnoringCase(text, "_CD"));
}

class InTurkish : public PpdTest {
 protected:
  void SetUp() override {
    if (!locale_.IsInForce()) GTEST_SKIP() << kNoTurkishLocale;
  }

 private:
  const TurkishLocale locale_;
};

TEST_F(InTurkish, KeysCompareAsEverywhere) {
  const Table table = MakeTable({{"QVFinisher", "1"}, {"\xC4", "2"}});
  EXPECT_THAT(OwnedText(info_common_optlist_getvalue(table.get(), "QVFINISHER")).get(), StrEq("1"));
  EXPECT_THAT(OwnedText(info_common_optlist_getvalue(table.get(), "\xE4")).get(),
              testing::IsNull());
  info_common_optlist_changevalue(table.get(), "qvfinisher", "3");
  info_common_optlist_changevalue(table.get(), "\xE4", "4");
  EXPECT_THAT(EntriesOf(table.get()), ElementsAre(Pair("QVFinisher", "3"), Pair("\xC4", "2")));

  OptTable* cursor = table.get();
  char* key = nullptr;
  char* value = nullptr;
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "FINI", &key, &value), 1);
  EXPECT_EQ(z_get_key_value_from_option_list(&cursor, "\xE4", &key, &value), 0);
}

TEST_F(InTurkish, PpdsAreReadAsEverywhere) {
  EXPECT_THAT(ReadPpd("*QVfini: 1\n*QVFINI: 2\n*QVfini: 3\n"
                      "*QV\xC4: 1\n*QV\xE4: 2\n*QV\xC4: 3\n"
                      "*OpenUI *QVSpecID\n*DEFAULTQV 1A/\n*default 2B/\n*QVSpecID 3C/\n*CloseUI\n"),
              ElementsAre(Pair("QVValueListSpecID", "3C"), Pair("QV\xE4", "2"), Pair("QV\xC4", "3"),
                          Pair("QVFINI", "3"), Pair("QVfini", "3")));
}

TEST_F(InTurkish, FlagKeysAreMadeAsEverywhere) {
  const Table table = MakeTable({{"FINI_3", "1"}});
  EXPECT_THAT(OwnedText(z_create_flag_key_fom_option_list(table.get(), nullptr, "fini")).get(),
              StrEq("fini_4"));
}

}  // namespace
}  // namespace ia_test
