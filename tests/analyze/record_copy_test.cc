#include "analyze/record_copy.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ia_test {
namespace {

// On most machines there is padding after the last field.
struct Record {
  const char* text;
  std::int32_t number;
};
constexpr std::size_t kEnd = offsetof(Record, number) + sizeof(std::int32_t);

using Bytes = std::array<unsigned char, 64>;

// The bytes of a caller's buffer after the library copied `size` bytes of a record to it.
Bytes After(std::size_t size) {
  alignas(Record) Bytes bytes;
  bytes.fill(0xAA);
  const Record record = {"text", 7};
  EXPECT_EQ(ia::CopyRecord(record, record.number, reinterpret_cast<Record*>(bytes.data()), size),
            1);
  return bytes;
}

TEST(RecordCopy, FillsTheCallersRecord) {
  Record target = {nullptr, 0};
  const Record record = {"text", 7};
  EXPECT_EQ(ia::CopyRecord(record, record.number, &target, sizeof target), 1);
  EXPECT_STREQ(target.text, "text");
  EXPECT_EQ(target.number, 7);
}

TEST(RecordCopy, WritesNothingBeyondWhatTheCallerKnows) {
  const Bytes whole = After(kEnd);
  for (std::size_t size = 0; size <= kEnd; ++size) {
    const Bytes bytes = After(size);
    EXPECT_EQ(std::memcmp(bytes.data(), whole.data(), size), 0) << size;
    for (std::size_t i = size; i < bytes.size(); ++i) EXPECT_EQ(bytes[i], 0xAA) << size << " " << i;
  }
}

TEST(RecordCopy, FillsFieldsThatTheLibraryDoesNotKnowWithZeros) {
  for (std::size_t size = kEnd; size <= 60; ++size) {
    const Bytes bytes = After(size);
    for (std::size_t i = kEnd; i < size; ++i) EXPECT_EQ(bytes[i], 0) << size << " " << i;
    EXPECT_EQ(bytes[size], 0xAA) << size;
  }
}

TEST(RecordCopy, RefusesNull) {
  const Record record = {"text", 7};
  EXPECT_EQ(ia::CopyRecord<Record>(record, record.number, nullptr, sizeof record), 0);
}

}  // namespace
}  // namespace ia_test
