#ifndef INFO_ANALYZE_CLI_PRINTER_LPADMIN_H_
#define INFO_ANALYZE_CLI_PRINTER_LPADMIN_H_

#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

// Whether lpadmin reads the text as one word of an option: it parses blanks, quotes, backslashes
// and braces itself, after the shell.
[[nodiscard]] bool IsPlainOptionWord(std::string_view word);

struct DefaultChoice {
  std::string keyword;
  std::string value;
};

// "lpadmin -p QUEUE -o KEYWORD=VALUE ...". All words must be plain option words.
[[nodiscard]] std::string LpadminLine(const std::string& queue,
                                      const std::vector<DefaultChoice>& choices);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_LPADMIN_H_
