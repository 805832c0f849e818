#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

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
