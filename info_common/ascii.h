// Comparisons of texts. Case is that of the 26 ASCII letters: the locale of the process that loaded
// us (Turkish, say) must not change what a PPD keyword equals.
#ifndef INFO_COMMON_ASCII_H_
#define INFO_COMMON_ASCII_H_

#include <cstdint>
#include <string_view>

namespace ia {

[[nodiscard]] constexpr char ToLower(char letter) noexcept {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

// Negative, zero or positive, as strcmp().
[[nodiscard]] int CompareIgnoringCase(std::string_view left, std::string_view right) noexcept;

[[nodiscard]] inline bool EqualsIgnoringCase(std::string_view left,
                                             std::string_view right) noexcept {
  return left.size() == right.size() && CompareIgnoringCase(left, right) == 0;
}

[[nodiscard]] bool HasPrefixIgnoringCase(std::string_view text, std::string_view prefix) noexcept;

[[nodiscard]] bool ContainsIgnoringCase(std::string_view text, std::string_view needle) noexcept;

// The number that text begins with, as strtol() reads it; the nearest one that fits 32 bits.
[[nodiscard]] std::int32_t ParseInt32(const char* text, int base) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_ASCII_H_
