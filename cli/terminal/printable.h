#ifndef INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
#define INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_

#include <string>
#include <string_view>

namespace ia::cli {

// Copies a text so that a terminal shows all of it and obeys nothing in it: each byte of a control,
// of a character that hides or reorders text, or of what is not UTF-8 becomes "\x" and two
// lower-case hexadecimal digits.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
