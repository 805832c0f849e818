#include "cli/terminal/shell_quoting.h"

#include <string>
#include <string_view>

namespace ia::cli {
namespace {

constexpr std::string_view kPlainForShell =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.,:/=+-@%";

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

}  // namespace ia::cli
