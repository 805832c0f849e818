// The results differ from those of the usual functions of these names, and the components of the
// driver package depend on that.
#include "info_analyze/libc_names.h"

#include <string.h>

#include <cstdint>
#include <cstring>

size_t info_strlcpy(char* destination, const char* source, size_t size) noexcept {
  if (destination == nullptr || source == nullptr || size == 1) return 0;
  if (size == 0) return std::strlen(source);
  const std::size_t length = strnlen(source, size - 1);
  if (length == 0) return 0;
  std::memmove(destination, source, length);
  destination[length] = '\0';
  return length;
}

size_t info_strlcat(char* destination, const char* source, size_t size) noexcept {
  if (destination == nullptr || source == nullptr) return 0;
  const std::size_t length = std::strlen(destination);
  if (length >= size || size - length == 1 || *source == '\0') return length;
  const std::size_t added = strnlen(source, size - length - 1);
  std::memmove(destination + length, source, added);
  destination[length + added] = '\0';
  return length + added;
}

char* info_strnstr(const char* haystack, const char* needle, int32_t length) noexcept {
  if (haystack == nullptr || needle == nullptr || length < 1) return nullptr;
  return static_cast<char*>(
      memmem(haystack, static_cast<std::size_t>(length), needle, std::strlen(needle)));
}
