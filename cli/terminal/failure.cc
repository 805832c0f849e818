#include "cli/terminal/failure.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

std::string g_verb;
bool g_fails_in_json = false;

// The steps of a verb, which exit statuses distinguish.
[[nodiscard]] const char* StepOf(ExitStatus status) {
  switch (status) {
    case ExitStatus::kUsage:
      return "command line";
    case ExitStatus::kQueue:
      return "queue";
    case ExitStatus::kCommunicationLibrary:
      return "communication library";
    case ExitStatus::kDevice:
      return "device";
    case ExitStatus::kDocuments:
      return "documents";
    case ExitStatus::kNotFound:
      return "search";
    case ExitStatus::kSnapshot:
      return "snapshot";
    default:
      return "output";
  }
}

[[nodiscard]] std::string JsonOf(ExitStatus status, const FailureParts& parts) {
  return DumpJsonLine({{"failure",
                        {{"step", StepOf(status)},
                         {"action", OrNull(parts.action)},
                         {"object", OrNull(parts.object)},
                         {"cause", parts.cause},
                         {"hint", OrNull(parts.hint)},
                         {"exit_status", static_cast<int>(status)}}}});
}

}  // namespace

std::string MessageOf(const FailureParts& parts) {
  std::string message = parts.action;
  if (!parts.object.empty()) message += (message.empty() ? "" : " ") + parts.object;
  if (!message.empty()) message += ": ";
  message += parts.cause;
  if (!parts.hint.empty()) message += "; " + parts.hint;
  return message;
}

void SetVerb(const std::string& verb, bool fails_in_json) {
  g_verb = verb;
  g_fails_in_json = fails_in_json;
}

const std::string& VerbName() { return g_verb; }

void ReportFailure(ExitStatus status, const FailureParts& parts) {
  if (!g_fails_in_json) return ReportError(MessageOf(parts));
  std::cerr << JsonOf(status, parts) << std::flush;
}

void ReportError(std::string_view message) {
  std::cerr << "info-analyze: error: " << Printable(message) << '\n';
}

void ReportWarning(std::string_view message) {
  if (IsQuiet()) return;
  std::cerr << "info-analyze: warning: " << Printable(message) << '\n';
}

}  // namespace ia::cli
