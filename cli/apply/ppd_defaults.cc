#include "cli/apply/ppd_defaults.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/printer/ppd.h"

namespace ia::cli {
namespace {

constexpr std::string_view kBlanks = " \t";

// The text of a line of the option, as a part of the line; its data() is null for another line.
[[nodiscard]] std::string_view TextIn(std::string_view line, std::string_view keyword) {
  constexpr std::string_view kStart = "*Default";
  if (!line.starts_with(kStart)) return {};
  std::string_view rest = line.substr(kStart.size());
  if (!rest.starts_with(keyword)) return {};
  rest.remove_prefix(keyword.size());
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  if (!rest.starts_with(':')) return {};
  rest.remove_prefix(1);
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  return rest.substr(0, rest.find_last_not_of(kBlanks) + 1);
}

}  // namespace

std::vector<std::string> DefaultTexts(std::string_view ppd, std::string_view keyword) {
  std::vector<std::string> texts;
  ForEachLine(ppd, [&](std::string_view line) {
    const std::string_view text = TextIn(line, keyword);
    if (text.data() != nullptr) texts.emplace_back(text);
  });
  return texts;
}

bool IsOneLine(std::string_view text) {
  return std::ranges::none_of(
      text, [](char byte) { return (byte >= 0 && byte < ' ' && byte != '\t') || byte == 0x7F; });
}

std::string WithDefaultTexts(std::string_view ppd, std::string_view keyword,
                             const std::vector<std::string>& texts) {
  std::string changed;
  const char* copied = ppd.data();  // all before it is in the changed text
  std::size_t next = 0;
  ForEachLine(ppd, [&](std::string_view line) {
    const std::string_view text = TextIn(line, keyword);
    if (text.data() == nullptr || next == texts.size()) return;
    changed.append(copied, text.data()).append(texts[next++]);
    copied = text.data() + text.size();
  });
  return changed.append(copied, ppd.data() + ppd.size());
}

}  // namespace ia::cli
