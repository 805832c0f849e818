// How the tool reports that a step failed: an exit status and a message on standard error.
#ifndef INFO_ANALYZE_CLI_TERMINAL_FAILURE_H_
#define INFO_ANALYZE_CLI_TERMINAL_FAILURE_H_

#include <exception>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ia::cli {

// The exit statuses are an interface: scripts branch on them and the manual page lists them.
enum class ExitStatus {
  kSuccess = 0,
  kOther = 1,
  kUsage = 2,
  kQueue = 3,
  kCommunicationLibrary = 4,
  kDocuments = 5,
  kNotFound = 6,
  kWarnings = 7,
  kFailures = 8,
  kSnapshot = 9,
  kDifferent = 10,
  kUnjudged = 11,
  kDifferentAndUnjudged = 12,
  kDevice = 13,
};

// The parts of a message: "ACTION OBJECT: CAUSE; HINT". Empty: none.
// NOLINTBEGIN(readability-redundant-member-init): without them GCC warns of parts that are left
// out.
struct FailureParts {
  std::string action = {};
  std::string object = {};
  std::string cause = {};
  std::string hint = {};
};
// NOLINTEND(readability-redundant-member-init)

[[nodiscard]] std::string MessageOf(const FailureParts& parts);

// Thrown by the step that fails; main() reports it and ends the process.
class Failure : public std::runtime_error {
 public:
  Failure(ExitStatus status, const FailureParts& parts)
      : std::runtime_error(MessageOf(parts)), status_(status), parts_(parts) {}
  Failure(ExitStatus status, const std::string& cause)
      : Failure(status, FailureParts{.cause = cause}) {}
  [[nodiscard]] ExitStatus status() const noexcept { return status_; }
  [[nodiscard]] const FailureParts& parts() const noexcept { return parts_; }

 private:
  ExitStatus status_;
  FailureParts parts_;
};

// Thrown by a verb whose answer is written and is not a success.
class Verdict : public std::exception {
 public:
  explicit Verdict(ExitStatus status) : status_(status) {}
  [[nodiscard]] ExitStatus status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

// Thrown when nobody reads standard output any more, as after head(1): main() ends as SIGPIPE would
// have, but after temporary files are removed.
class ReaderHasEnded : public std::exception {};

// The words of the command line that choose the verb, such as "queues cups", and whether failures
// are written as JSON.
void SetVerb(const std::string& verb, bool fails_in_json);
[[nodiscard]] const std::string& VerbName();

// Writes the failure that ends the verb to standard error: a line of text, or one of JSON.
void ReportFailure(ExitStatus status, const FailureParts& parts);

// Each writes one line to standard error.
void ReportError(std::string_view message);
void ReportWarning(std::string_view message);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_FAILURE_H_
