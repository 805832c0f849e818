// The PPDs of the benchmarks, read by the library and by the plain rules.
#include "bench/driver_ppd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/info_common/ppd_model.h"
#include "tests/info_common/ppd_test.h"

namespace ia_test {
namespace {

class DriverPpd : public PpdTest {
 protected:
  static std::string Text(std::int64_t entries) {
    return ia_bench::FunctionVersionFlags() + ia_bench::DriverEntries(entries);
  }
};

TEST_F(DriverPpd, GivesTheTableOfThePlainRules) {
  for (const std::int64_t entries : {300, 3000}) {
    const std::string text = Text(entries);
    EXPECT_EQ(ReadPpd(text), EntriesOfPpd(text)) << entries;
  }
}

// The plain walk of the library takes over from the model, which is too slow here.
TEST_F(DriverPpd, OfTensOfThousandsOfEntriesGivesTheTableOfPlainInsertions) {
  const std::string text = ia_bench::DriverEntries(30'000);
  OptTable* head = nullptr;
  for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
    char key[IA_PPD_TEXT_SIZE];
    char value[IA_PPD_TEXT_SIZE];
    const bool is_ui_value = text.compare(at, 2, "*%") == 0;
    const int32_t length =
        is_ui_value
            ? info_common_optlist_qvuivalue_getoptkeyandvalue(text.c_str() + at + 12, key, value)
            : info_common_optlist_getoptkeyandvalue(text.c_str() + at + 1, key, value, sizeof key);
    ASSERT_GT(length, 0);
    info_common_optlist_additem_front(&head, key, value);
  }
  const Table table(head);
  EXPECT_EQ(ReadPpd(text), EntriesOf(table.get()));
}

int CountOf(const std::string& text, const std::string& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// In percent of the lines, so that the benchmarks measure what they say.
TEST_F(DriverPpd, HasRepeatsPrefixesCaseVariantsAndUiValues) {
  const std::string text = ia_bench::DriverEntries(10'000);
  Entries entries = ReadPpd(text);
  EXPECT_NEAR(CountOf(text, "*%QVUIValue:"), 1000, 100);
  EXPECT_NEAR(static_cast<double>(entries.size()), 9800, 40);  // without repeats and prefixes
  const auto in_lower_case = [](Entry& entry) {
    std::ranges::transform(entry.first, entry.first.begin(),
                           [](char letter) { return letter | ('a' - 'A'); });
  };
  std::ranges::for_each(entries, in_lower_case);
  std::ranges::sort(entries);
  const auto variants = std::ranges::unique(
      entries, [](const Entry& a, const Entry& b) { return a.first == b.first; });
  EXPECT_NEAR(static_cast<double>(variants.size()), 100, 40);
}

TEST_F(DriverPpd, HasFortyTwoFlagKeysOfTheVersion) {
  const std::string text = ia_bench::FunctionVersionFlags();
  EXPECT_EQ(CountOf(text, "*QVAnlz_FuncVer_"), 48);
  EXPECT_EQ(CountOf(text, "_400: "), 6);
}

}  // namespace
}  // namespace ia_test
