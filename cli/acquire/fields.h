// Values of printer attributes that hold several fields, such as "type=stitcher;unit=sheets;".
#ifndef INFO_ANALYZE_CLI_ACQUIRE_FIELDS_H_
#define INFO_ANALYZE_CLI_ACQUIRE_FIELDS_H_

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace ia::cli {

// By name, in lower case.
using Fields = std::map<std::string, std::string, std::less<>>;

// The fields of a printer-input-tray, printer-output-tray or printer-finisher (PWG 5100.13,
// 5100.1). The last one may lack its semicolon. In a value, a backslash escapes a blank, a
// semicolon, an equals sign and a backslash; a name has no escapes. Blanks and NULs around
// names and values are no part of them. Of fields of one name the first counts; text without a name
// or an equals sign is ignored.
[[nodiscard]] Fields ParseFields(std::string_view text);

// The same form for fields that come from elsewhere, as one more field.
void AppendField(std::string_view name, std::string_view value, std::string& text);

// A number of sheets. Nothing for -1 (other), -2 (unknown), -3 (at least one; RFC 3805,
// section 2.2.4) and for what is not a whole number of 31 bits.
[[nodiscard]] std::optional<std::int32_t> ParseCapacity(std::string_view text);

// A text for documents and messages: UTF-8 in which U+FFFD replaces what is not valid and a blank
// each control character; without blanks at its ends.
[[nodiscard]] std::string CleanText(std::string_view bytes);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_FIELDS_H_
