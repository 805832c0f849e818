// The edge between C callers and C++ code.
#ifndef INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_
#define INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace commlib {

// What the body answers, or the failure answer when it throws, as it does when memory runs out.
template <class Result, class Body>
[[nodiscard]] Result Guarded(Result failure, Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return failure;
  }
}

// A copy that the caller releases with free(), with a NUL behind it; null when memory ran out.
[[nodiscard]] inline char* DuplicateForCaller(std::string_view bytes) noexcept {
  char* const copy = static_cast<char*>(std::malloc(bytes.size() + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, bytes.data(), bytes.size());
  copy[bytes.size()] = '\0';
  return copy;
}

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_C_BOUNDARY_H_
