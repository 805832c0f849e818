#include "cli/printer/ppd.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace ia::cli {
namespace {

constexpr std::string_view kBlanks = " \t";

[[nodiscard]] std::string_view Trim(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// "*Keyword choice/Text: value", with every part but the keyword perhaps empty.
struct PpdLine {
  std::string_view keyword;
  std::string_view choice;
  std::string_view text;
  std::string_view value;
};

[[nodiscard]] PpdLine ParseLine(std::string_view line) {
  if (!line.starts_with('*') || line.starts_with("*%")) return {};
  line.remove_prefix(1);
  const std::size_t colon = std::min(line.find(':'), line.size());
  const std::string_view head = line.substr(0, colon);
  const std::size_t blank = std::min(head.find_first_of(kBlanks), head.size());
  const std::string_view rest = Trim(head.substr(blank));
  const std::size_t slash = std::min(rest.find('/'), rest.size());
  return {.keyword = head.substr(0, blank),
          .choice = rest.substr(0, slash),
          .text = rest.substr(std::min(slash + 1, rest.size())),
          .value = Trim(line.substr(std::min(colon + 1, line.size())))};
}

[[nodiscard]] std::string_view WithoutAsterisk(std::string_view keyword) {
  return keyword.starts_with('*') ? keyword.substr(1) : keyword;
}

// Without quotes, and without the text for people after it, as libcups reads a default choice.
[[nodiscard]] std::string_view ChoiceIn(std::string_view value) {
  if (value.starts_with('"')) value = value.substr(1, value.find('"', 1) - 1);
  return value.substr(0, value.find_first_of("/:"));
}

// Follows the blocks of options from line to line.
class OptionReader {
 public:
  void Read(const PpdLine& line) {
    if (line.keyword == "OpenUI" || line.keyword == "JCLOpenUI") {
      open_ = WithoutAsterisk(line.choice);
      options_[open_].text = line.text;
    } else if (line.keyword == "CloseUI" || line.keyword == "JCLCloseUI") {
      open_.clear();
    } else if (!open_.empty() && line.keyword == open_ && !line.choice.empty()) {
      options_[open_].choices.push_back({std::string(line.choice), std::string(line.text)});
    } else if (!open_.empty() && line.keyword == "Default" + open_) {
      options_[open_].default_choice = ChoiceIn(line.value);
    }
  }
  [[nodiscard]] PpdOptions Take() { return std::move(options_); }

 private:
  std::string open_;  // keyword of the block; empty: between blocks
  PpdOptions options_;
};

}  // namespace

bool PpdOption::HasChoice(std::string_view name) const {
  return std::ranges::find(choices, name, &PpdChoice::name) != choices.end();
}

PpdOptions ParsePpdOptions(std::string_view ppd) {
  OptionReader reader;
  ForEachLine(ppd, [&](std::string_view line) { reader.Read(ParseLine(line)); });
  return reader.Take();
}

}  // namespace ia::cli
