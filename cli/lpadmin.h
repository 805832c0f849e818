#ifndef INFO_ANALYZE_CLI_LPADMIN_H_
#define INFO_ANALYZE_CLI_LPADMIN_H_

#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

// The word as a POSIX shell takes it for one: plain words as they are, others in single quotes.
[[nodiscard]] std::string QuoteForShell(std::string_view word);

// Whether lpadmin takes the text for one word of an option: it parses blanks, quotes, backslashes
// and braces on its own, behind the shell's back.
[[nodiscard]] bool IsPlainOptionWord(std::string_view word);

struct DefaultChoice {
  std::string keyword;
  std::string value;
};

// "lpadmin -p QUEUE -o KEYWORD=VALUE ...". All words must be plain option words.
[[nodiscard]] std::string LpadminLine(const std::string& queue,
                                      const std::vector<DefaultChoice>& choices);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_LPADMIN_H_
