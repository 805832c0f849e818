#ifndef INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
#define INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_

#include <string>
#include <string_view>

namespace ia::cli {

// Lets messages and answers have the name that the user gave for a path and for what is in it.
void SetGivenName(const std::string& path, const std::string& name);

// The text with given names in place of their paths.
[[nodiscard]] std::string WithGivenNames(std::string_view text);

// The text with lower-case ASCII letters.
[[nodiscard]] std::string LowerCase(std::string_view text);

// Copies a text, with given names, so that a terminal shows all of it and obeys nothing in it: each
// byte of a control, of a character that hides or reorders text, or of what is not UTF-8 becomes
// "\x" and two lower-case hexadecimal digits.
[[nodiscard]] std::string Printable(std::string_view given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_PRINTABLE_H_
