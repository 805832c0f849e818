#include <gtest/gtest.h>

#include <cstdint>

#include "info_analyze/option_table.h"

namespace {

TEST(PpdCache, ReadAlwaysFailsAndWritesNothing) {
  char byte = 'x';
  void* data = &byte;
  int32_t length = 42;
  EXPECT_EQ(info_common_read_data_from_ppd("queue", "key", &data, &length), -1);
  EXPECT_EQ(data, &byte);
  EXPECT_EQ(length, 42);
  EXPECT_EQ(info_common_read_data_from_ppd(nullptr, nullptr, nullptr, nullptr), -1);
}

TEST(PpdCache, WriteAlwaysFails) {
  EXPECT_EQ(info_common_write_data_for_ppd("queue", "key", "data", 4), -1);
  EXPECT_EQ(info_common_write_data_for_ppd(nullptr, nullptr, nullptr, -1), -1);
}

TEST(PpdCache, NothingExists) {
  EXPECT_EQ(info_common_exist_data_from_ppd("queue", "key"), 0);
  EXPECT_EQ(info_common_exist_data_from_ppd(nullptr, nullptr), 0);
}

TEST(PpdCache, ThereIsNone) { EXPECT_EQ(info_common_is_ppd_cache(), 0); }

}  // namespace
