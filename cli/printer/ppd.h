// The PPD of a queue as its users see it: the options that it offers and their choices. The library
// reads the rest of it.
#ifndef INFO_ANALYZE_CLI_PRINTER_PPD_H_
#define INFO_ANALYZE_CLI_PRINTER_PPD_H_

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

struct PpdChoice {
  std::string name;
  std::string text;  // for people; empty: none
};

struct PpdOption {
  std::string text;  // for people; empty: none
  std::vector<PpdChoice> choices;
  std::optional<std::string> default_choice;

  [[nodiscard]] bool HasChoice(std::string_view name) const;
};

// By keyword, without its asterisk.
using PpdOptions = std::map<std::string, PpdOption, std::less<>>;

[[nodiscard]] PpdOptions ParsePpdOptions(std::string_view ppd);

// Calls with each line, without its line end.
template <class Use>
void ForEachLine(std::string_view text, Use use) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    use(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_PPD_H_
