// Comparisons of texts. Case is that of the 26 ASCII letters: the locale of the process that loaded
// us (Turkish, say) must not change what a PPD keyword equals.
#ifndef INFO_COMMON_ASCII_H_
#define INFO_COMMON_ASCII_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ia {

[[nodiscard]] constexpr char ToLower(char letter) noexcept {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
}

// The rest of a text from a place in it, or its end.
[[nodiscard]] inline std::string_view RestOf(std::string_view text, std::size_t place) noexcept {
  return {text.data() + place, text.size() - place};
}

// Negative, zero or positive, as strcmp().
[[nodiscard]] int CompareIgnoringCase(std::string_view left, std::string_view right) noexcept;

[[nodiscard]] inline bool EqualsIgnoringCase(std::string_view left,
                                             std::string_view right) noexcept {
  return left.size() == right.size() && CompareIgnoringCase(left, right) == 0;
}

[[nodiscard]] bool HasPrefixIgnoringCase(std::string_view text, std::string_view prefix) noexcept;

// The first place of the needle, from the given one on; npos when there is none.
[[nodiscard]] std::size_t FindIgnoringCase(std::string_view text, std::string_view needle,
                                           std::size_t from = 0) noexcept;

[[nodiscard]] inline bool ContainsIgnoringCase(std::string_view text,
                                               std::string_view needle) noexcept {
  return FindIgnoringCase(text, needle) != std::string_view::npos;
}

// The number that text begins with, as strtol() reads it; the nearest one that fits 32 bits.
[[nodiscard]] std::int32_t ParseInt32(const char* text, int base) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_ASCII_H_
