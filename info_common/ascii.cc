#include "info_common/ascii.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace ia {
namespace {

constexpr char kMark = '_';

bool SameLetter(char left, char right) noexcept {
  return left == right || ToLower(left) == ToLower(right);
}

}  // namespace

int CompareIgnoringCase(std::string_view left, std::string_view right) noexcept {
  const auto [l, r] =
      std::mismatch(left.begin(), left.end(), right.begin(), right.end(), SameLetter);
  if (l == left.end() || r == right.end()) return (l != left.end()) - (r != right.end());
  return static_cast<unsigned char>(ToLower(*l)) - static_cast<unsigned char>(ToLower(*r));
}

bool HasPrefixIgnoringCase(std::string_view text, std::string_view prefix) noexcept {
  return text.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), text.begin(), SameLetter);
}

// First searches for an underscore, which most needles have and most texts do not. Then compares
// from the end, where flag keys differ more often than at the start.
std::size_t FindIgnoringCase(std::string_view text, std::string_view needle,
                             std::size_t from) noexcept {
  if (text.size() < needle.size()) return text.npos;
  const auto mark = std::ranges::find(needle, kMark);
  const auto before = static_cast<std::size_t>(mark - needle.begin());
  const std::size_t last = text.size() - needle.size();
  if (mark == needle.end()) {
    while (from <= last && !HasPrefixIgnoringCase(RestOf(text, from), needle)) ++from;
    return from <= last ? from : text.npos;
  }
  const std::string_view marks(text.data(), last + before + 1);
  for (std::size_t at = marks.find(kMark, from + before); at != text.npos;
       at = marks.find(kMark, at + 1)) {
    const std::string_view piece(text.data() + at - before, needle.size());
    if (std::equal(needle.rbegin(), needle.rend(), piece.rbegin(), SameLetter)) return at - before;
  }
  return text.npos;
}

std::int32_t ParseInt32(const char* text, int base) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto number = std::strtol(text, nullptr, base);
  return static_cast<std::int32_t>(
      std::clamp<decltype(number)>(number, Limits::min(), Limits::max()));
}

}  // namespace ia
