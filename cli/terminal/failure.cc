#include "cli/terminal/failure.h"

#include <iostream>
#include <string_view>

#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {

void ReportError(std::string_view message) {
  std::cerr << "info-analyze: error: " << Printable(message) << '\n';
}

void ReportWarning(std::string_view message) {
  if (IsQuiet()) return;
  std::cerr << "info-analyze: warning: " << Printable(message) << '\n';
}

}  // namespace ia::cli
