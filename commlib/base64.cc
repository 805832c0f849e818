#include "commlib/base64.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "commlib/xml_text.h"

namespace commlib {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';
constexpr std::uint8_t kNoDigit = 64;

constexpr auto kDigitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values[static_cast<unsigned char>(kDigits[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

constexpr std::uint8_t DigitValue(char c) { return kDigitValues[static_cast<unsigned char>(c)]; }

// The first three bytes as one number; missing ones count as zero.
std::uint32_t Join(std::string_view bytes) {
  std::uint32_t group = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u);
  }
  return group;
}

}  // namespace

std::string EncodeBase64(std::string_view bytes) {
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  while (!bytes.empty()) {
    const std::size_t length = std::min<std::size_t>(bytes.size(), 3);
    const std::uint32_t group = Join(bytes);
    for (std::size_t i = 0; i < 4; ++i) {
      out += i <= length ? kDigits[group >> (18 - 6 * i) & 63] : kPadding;
    }
    bytes.remove_prefix(length);
  }
  return out;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  std::string out;
  out.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  int bit_count = 0;
  std::size_t digits = 0;
  std::size_t padding = 0;
  for (const char c : text) {
    if (IsXmlSpace(c)) continue;
    ++digits;
    if (c == kPadding) {
      ++padding;
      continue;
    }
    const std::uint8_t value = DigitValue(c);
    if (value == kNoDigit || padding > 0) return std::nullopt;
    bits = bits << 6 | value;
    bit_count += 6;
    if (bit_count >= 8) {
      bit_count -= 8;
      out += static_cast<char>(bits >> bit_count & 0xFF);
    }
  }
  const std::uint32_t unused_bits = bits & ((1u << bit_count) - 1);
  if (digits % 4 != 0 || padding > 2 || unused_bits != 0) return std::nullopt;
  return out;
}

}  // namespace commlib
