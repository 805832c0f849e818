// The lines of a PPD that name the default choice of an option, "*DefaultKEYWORD: CHOICE".
#ifndef INFO_ANALYZE_CLI_APPLY_PPD_DEFAULTS_H_
#define INFO_ANALYZE_CLI_APPLY_PPD_DEFAULTS_H_

#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

// What the lines of an option say, without the blanks around it. Most PPDs have one line of each;
// libcups takes the last one.
[[nodiscard]] std::vector<std::string> DefaultTexts(std::string_view ppd, std::string_view keyword);

// Whether a line of a PPD can have the text: it has no line end, and no other control than tabs.
[[nodiscard]] bool IsOneLine(std::string_view text);

// The PPD with these texts in the option's lines, one for each, and every other byte as it is.
[[nodiscard]] std::string WithDefaultTexts(std::string_view ppd, std::string_view keyword,
                                           const std::vector<std::string>& texts);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_APPLY_PPD_DEFAULTS_H_
