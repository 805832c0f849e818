#ifndef INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
#define INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_

#include <string>
#include <string_view>

namespace ia::cli {

// Copies a text so that a terminal obeys nothing in it: each byte of a control character becomes
// "\x" and two lower-case hexadecimal digits. All other bytes stay, whether or not they are UTF-8.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
