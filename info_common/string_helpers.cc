#include "info_analyze/string_helpers.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "info_common/owned.h"

namespace ia {
namespace {

constexpr std::size_t kFirstWorkSize = 128;

// Formats into a temporary buffer first, so that an argument may be the destination.
std::int32_t Format(char* destination, const char* format, std::va_list arguments) noexcept {
  if (destination == nullptr || format == nullptr) return -1;
  CString work;
  for (std::size_t size = kFirstWorkSize;; size *= 2) {
    work.reset(static_cast<char*>(std::malloc(size)));
    if (!work) return -1;
    std::va_list pass;
    va_copy(pass, arguments);
    const int length = std::vsnprintf(work.get(), size, format, pass);
    va_end(pass);
    if (length < 0) return -1;  // what cannot be encoded once never can
    if (static_cast<std::size_t>(length) < size) {
      std::memmove(destination, work.get(), static_cast<std::size_t>(length) + 1);
      return length;
    }
  }
}

char* Copy(char* destination, const char* source) noexcept {
  if (destination == nullptr || source == nullptr) return destination;
  std::memmove(destination, source, std::strlen(source) + 1);
  return destination;
}

char* Append(char* destination, const char* source) noexcept {
  if (destination == nullptr || source == nullptr) return destination;
  Copy(destination + std::strlen(destination), source);
  return destination;
}

}  // namespace
}  // namespace ia

int32_t util_sprintf(char* destination, const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  const int32_t length = ia::Format(destination, format, arguments);
  va_end(arguments);
  return length;
}

int32_t tb_util_sprintf(char* destination, const char* format, ...) noexcept {
  std::va_list arguments;
  va_start(arguments, format);
  const int32_t length = ia::Format(destination, format, arguments);
  va_end(arguments);
  return length;
}

char* util_strcpy(char* destination, const char* source) noexcept {
  return ia::Copy(destination, source);
}

char* tb_util_strcpy(char* destination, const char* source) noexcept {
  return ia::Copy(destination, source);
}

char* util_strcat(char* destination, const char* source) noexcept {
  return ia::Append(destination, source);
}

char* tb_util_strcat(char* destination, const char* source) noexcept {
  return ia::Append(destination, source);
}
