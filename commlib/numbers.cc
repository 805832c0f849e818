#include "commlib/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "commlib/xml_text.h"

namespace commlib {
namespace {

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsXmlSpace(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsXmlSpace(text.back())) text.remove_suffix(1);
  return text;
}

template <class Number>
std::optional<Number> ParseWhole(std::string_view text) {
  text = Trim(text);
  Number value{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

template <class Number>
std::string FormatNumber(Number value) {
  std::array<char, 32> digits;  // the longest double, "-2.2250738585072014e-308", takes 24
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  return std::string(digits.data(), end);
}

}  // namespace

std::optional<std::int32_t> ParseLong(std::string_view text) {
  return ParseWhole<std::int32_t>(text);
}

std::optional<double> ParseDouble(std::string_view text) {
  const auto value = ParseWhole<double>(text);
  if (!value || !std::isfinite(*value)) return std::nullopt;
  return value;
}

std::string FormatLong(std::int32_t value) { return FormatNumber(value); }

std::optional<std::string> FormatDouble(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  return FormatNumber(value);
}

}  // namespace commlib
