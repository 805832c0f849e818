#include "cli/printer/lpadmin.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/shell_quoting.h"

namespace ia::cli {
namespace {

constexpr std::string_view kParsedByLpadmin = "\"'\\{}";

}  // namespace

bool IsPlainOptionWord(std::string_view word) {
  return !word.empty() && std::ranges::all_of(word, [](char byte) {
    return byte > ' ' && byte < 0x7F && kParsedByLpadmin.find(byte) == std::string_view::npos;
  });
}

std::string LpadminLine(const std::string& queue, const std::vector<DefaultChoice>& choices) {
  std::string line = "lpadmin -p " + QuoteForShell(queue);
  for (const DefaultChoice& choice : choices) {
    line += " -o " + QuoteForShell(choice.keyword + "=" + choice.value);
  }
  return line;
}

}  // namespace ia::cli
