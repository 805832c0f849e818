#include "cli/failure.h"

#include <iostream>

#include "cli/manners.h"
#include "cli/printable.h"

namespace ia::cli {

void ReportError(std::string_view message) {
  std::cerr << "info-analyze: error: " << Printable(message) << '\n';
}

void ReportWarning(std::string_view message) {
  if (IsQuiet()) return;
  std::cerr << "info-analyze: warning: " << Printable(message) << '\n';
}

}  // namespace ia::cli
