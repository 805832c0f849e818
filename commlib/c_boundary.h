// Helpers at the ABI boundary between C callers and C++ code.
#ifndef INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_
#define INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace commlib {

// Returns the result of the body, or the failure result when it throws, such as std::bad_alloc.
template <class Result, class Body>
[[nodiscard]] Result Guarded(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

// A NUL-terminated copy that the caller releases with free(); null when the allocation fails.
[[nodiscard]] inline char* DuplicateForCaller(std::string_view bytes) noexcept {
  char* const copy = static_cast<char*>(std::malloc(bytes.size() + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, bytes.data(), bytes.size());
  copy[bytes.size()] = '\0';
  return copy;
}

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_
