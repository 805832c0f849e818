#include "cli/terminal/failure.h"

#include <iostream>
#include <string>
#include <string_view>

#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {

std::string MessageOf(const FailureParts& parts) {
  std::string message = parts.object;
  if (!message.empty()) message += ": ";
  message += parts.cause;
  if (!parts.hint.empty()) message += "; " + parts.hint;
  return message;
}

void ReportError(std::string_view message) {
  std::cerr << "info-analyze: error: " << Printable(message) << '\n';
}

void ReportWarning(std::string_view message) {
  if (IsQuiet()) return;
  std::cerr << "info-analyze: warning: " << Printable(message) << '\n';
}

}  // namespace ia::cli
