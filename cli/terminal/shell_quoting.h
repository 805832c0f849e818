#ifndef INFO_ANALYZE_CLI_TERMINAL_SHELL_QUOTING_H_
#define INFO_ANALYZE_CLI_TERMINAL_SHELL_QUOTING_H_

#include <string>
#include <string_view>

namespace ia::cli {

// The text as one word of a POSIX shell: plain words as they are, all others in single quotes.
[[nodiscard]] std::string QuoteForShell(std::string_view word);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_SHELL_QUOTING_H_
