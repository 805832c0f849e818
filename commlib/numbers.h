// The text forms of numbers.
#ifndef INFO_ANALYZE_COMMLIB_NUMBERS_H_
#define INFO_ANALYZE_COMMLIB_NUMBERS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace commlib {

// Ignores blanks around a number. Nullopt when the text contains anything else.
[[nodiscard]] std::optional<std::int32_t> ParseLong(std::string_view text);
[[nodiscard]] std::optional<double> ParseDouble(std::string_view text);

[[nodiscard]] std::string FormatLong(std::int32_t value);

// The shortest text that reads back as the same number; nullopt for infinities and NaN.
[[nodiscard]] std::optional<std::string> FormatDouble(double value);

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_NUMBERS_H_
