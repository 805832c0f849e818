// The text forms of numbers.
#ifndef INFO_ANALYZE_COMMLIB_NUMBERS_H_
#define INFO_ANALYZE_COMMLIB_NUMBERS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace commlib {

// Blanks around a number are passed over; anything else that is no part of it makes it no number.
[[nodiscard]] std::optional<std::int32_t> ParseLong(std::string_view text);
[[nodiscard]] std::optional<double> ParseDouble(std::string_view text);

[[nodiscard]] std::string FormatLong(std::int32_t value);

// The shortest text that reads back as the same number; nothing for infinities and NaN.
[[nodiscard]] std::optional<std::string> FormatDouble(double value);

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_NUMBERS_H_
