// Getters that turn one number or text into the text of an option.
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "info_analyze/option_setter.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// Longest of the formats below, with its NUL: "-2147483648".
constexpr std::size_t kNumberSize = 12;

template <class Number>
char* FormatNumber(const char* format, const void* datum) noexcept {
  if (datum == nullptr) return nullptr;
  char text[kNumberSize];
  std::snprintf(text, sizeof text, format, *static_cast<const Number*>(datum));
  return Duplicate(text).release();
}

}  // namespace
}  // namespace ia

char* zGetBoolString(const void* datum) noexcept {
  if (datum == nullptr) return nullptr;
  return ia::Duplicate(*static_cast<const int32_t*>(datum) != 0 ? "True" : "False").release();
}

char* zGetBinaryString(const void* datum) noexcept {
  return ia::FormatNumber<int32_t>("%d", datum);
}

char* zGetSpecIDString(const void* datum) noexcept {
  return ia::FormatNumber<uint32_t>("%04X", datum);
}

char* zGetHexString(const void* datum) noexcept {
  return ia::FormatNumber<uint32_t>("%04X", datum);
}

char* zGetString(const void* datum) noexcept {
  const char* const text = datum != nullptr ? *static_cast<const char* const*>(datum) : nullptr;
  return text != nullptr ? ia::Duplicate(text).release() : nullptr;
}

void zFuncStrFree(char** texts, int32_t count) noexcept {
  if (texts == nullptr) return;
  for (int32_t i = 0; i < count; ++i) {
    std::free(texts[i]);
    texts[i] = nullptr;
  }
}
