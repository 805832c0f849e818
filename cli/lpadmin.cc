#include "cli/lpadmin.h"

#include <algorithm>

namespace ia::cli {
namespace {

constexpr std::string_view kPlainForShell =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.,:/=+-@%";

constexpr std::string_view kParsedByLpadmin = "\"'\\{}";

}  // namespace

std::string QuoteForShell(std::string_view word) {
  if (!word.empty() && word.find_first_not_of(kPlainForShell) == std::string_view::npos) {
    return std::string(word);
  }
  std::string quoted = "'";
  for (const char byte : word) {
    if (byte == '\'') {
      quoted += "'\\''";
    } else {
      quoted += byte;
    }
  }
  return quoted + "'";
}

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
