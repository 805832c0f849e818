// Owned C memory: what a caller will free(), we hold in a unique_ptr that frees.
#ifndef INFO_COMMON_OWNED_H_
#define INFO_COMMON_OWNED_H_

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace ia {

struct FreeDeleter {
  void operator()(void* block) const noexcept { std::free(block); }
};
template <class T>
using CPtr = std::unique_ptr<T, FreeDeleter>;
using CString = CPtr<char[]>;

// Null when an allocation fails, as with everything that allocates here.
[[nodiscard]] inline CString NewText(std::size_t length) noexcept {
  return CString(static_cast<char*>(std::malloc(length + 1)));
}

[[nodiscard]] inline CString Duplicate(std::string_view text) noexcept {
  CString copy = NewText(text.size());
  if (copy) *std::copy(text.begin(), text.end(), copy.get()) = '\0';
  return copy;
}

// Null for null.
[[nodiscard]] inline CString CopyOf(const char* text) noexcept {
  if (text == nullptr) return nullptr;
  return Duplicate(text);
}

template <class T>
[[nodiscard]] CPtr<T> NewZeroed() noexcept {
  return CPtr<T>(static_cast<T*>(std::calloc(1, sizeof(T))));
}

template <class T>
[[nodiscard]] CPtr<T[]> NewZeroedArray(std::size_t count) noexcept {
  return CPtr<T[]>(static_cast<T*>(std::calloc(count, sizeof(T))));
}

// Keeps the elements that fit; further ones are not initialised. False, and the array unchanged,
// when an allocation fails.
template <class T>
[[nodiscard]] bool Resize(CPtr<T[]>& array, std::size_t count) noexcept {
  auto* const resized = static_cast<T*>(std::realloc(array.get(), count * sizeof(T)));
  if (resized == nullptr) return false;
  static_cast<void>(array.release());
  array.reset(resized);
  return true;
}

}  // namespace ia

#endif  // INFO_COMMON_OWNED_H_
