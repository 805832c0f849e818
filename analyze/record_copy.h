// Records of the interface that may grow: each caller passes the size of the record that it knows.
#ifndef ANALYZE_RECORD_COPY_H_
#define ANALYZE_RECORD_COPY_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ia {

// Copies a record up to its last field into the caller's, which has `size` bytes. Further fields of
// the caller become zero, even one in the place of the tail padding of this version.
// Returns 1, or 0 for a null target.
template <class Record, class LastField>
[[nodiscard]] std::int32_t CopyRecord(const Record& record, const LastField& last_field,
                                      Record* target, std::size_t size) noexcept {
  if (target == nullptr) return 0;
  const std::size_t end =
      reinterpret_cast<std::uintptr_t>(&last_field + 1) - reinterpret_cast<std::uintptr_t>(&record);
  const std::size_t known = std::min(size, end);
  std::memcpy(target, &record, known);
  std::memset(reinterpret_cast<char*>(target) + known, 0, size - known);
  return 1;
}

}  // namespace ia

#endif  // ANALYZE_RECORD_COPY_H_
