#include "analyze/option_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <array>
#include <cstring>

#include "tests/support/option_lists.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

char* CopyOf(const void* datum) { return strdup(static_cast<const char*>(datum)); }
char* NoText(const void*) { return nullptr; }

// Leaks and double releases show under the address sanitizer.
ia::OptionRows<3> NewRows() {
  return ia::OptionRows(std::to_array<OptionSetter>({
      {"QVCopied", nullptr, CopyOf, "copied", "default"},
      {"QVNone", nullptr, NoText, "unused", "default"},
      {"QVPlain", nullptr, nullptr, nullptr, "default"},
  }));
}

TEST(OptionRows, RunTheirGetters) {
  ia::OptionRows<3> rows = NewRows();
  rows.RunGetters();
  EXPECT_STREQ(rows[0].value, "copied");
  EXPECT_EQ(rows[1].value, nullptr);
  EXPECT_EQ(rows[2].value, nullptr);
}

TEST(OptionRows, ApplyInOrderWithValuesAndDefaults) {
  ia::OptionRows<3> rows = NewRows();
  rows.RunGetters();
  CallersList list;
  EXPECT_EQ(rows.Apply({list.get(), true}), 0);
  EXPECT_THAT(list.entries(), ElementsAre(Entry("QVCopied", "copied"), Entry("QVNone", "default"),
                                          Entry("QVPlain", "default")));
}

TEST(OptionRows, WithoutDefaultsApplyOnlyTheirValues) {
  ia::OptionRows<3> rows = NewRows();
  rows.RunGetters();
  CallersList list;
  EXPECT_EQ(rows.Apply({list.get(), false}), 0);
  EXPECT_THAT(list.entries(), ElementsAre(Entry("QVCopied", "copied")));
}

TEST(OptionRows, HaveNoValuesOnceApplied) {
  ia::OptionRows<3> rows = NewRows();
  rows.RunGetters();
  CallersList list;
  EXPECT_EQ(rows.Apply({list.get(), true}), 0);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(rows[i].value, nullptr);
  EXPECT_EQ(rows.Apply({list.get(), true}), 0);
  EXPECT_EQ(list.entries()[0], Entry("QVCopied", "default"));
}

TEST(OptionRows, ReleaseValuesThatAreNotApplied) {
  ia::OptionRows<3> rows = NewRows();
  rows.RunGetters();
  rows.RunGetters();
  rows[2].value = strdup("set by hand");
}

TEST(OptionRows, GiveTheirRowsToOthers) {
  ia::OptionRows<3> rows = NewRows();
  EXPECT_EQ(rows.Data(), &rows[0]);
  EXPECT_EQ(rows.Data() + 2, &rows[2]);
  rows.Data()[1].value = strdup("given");
  CallersList list;
  EXPECT_EQ(rows.Apply({list.get(), true}), 0);
  EXPECT_EQ(list.entries()[1], Entry("QVNone", "given"));
}

}  // namespace
}  // namespace ia_test
