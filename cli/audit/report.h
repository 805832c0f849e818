// The lines of an audit.
#ifndef INFO_ANALYZE_CLI_AUDIT_REPORT_H_
#define INFO_ANALYZE_CLI_AUDIT_REPORT_H_

#include <cstddef>
#include <string>

#include "cli/audit/judgement.h"
#include "cli/terminal/failure.h"

namespace ia::cli {

// How many queues are what. One that differs and has unknown options counts as both.
struct AuditSummary {
  std::size_t queues = 0;
  std::size_t right = 0;
  std::size_t differ = 0;
  std::size_t unknown = 0;  // judged, but not all of their options
  std::size_t differ_and_unknown = 0;
  std::size_t not_applicable = 0;
  std::size_t failed = 0;

  void Add(const Judgement& judgement);
  [[nodiscard]] ExitStatus Status() const;
};

// "office  3 differ  QVFinisher None -> STFINT1, ...". With equal options, each option has a line
// of its own.
[[nodiscard]] std::string TextOf(const Judgement& judgement, bool with_equal);
[[nodiscard]] std::string TextOf(const AuditSummary& summary);

// Of a queue that is not judged: the reason, and what to do.
[[nodiscard]] std::string WhyNotJudged(const Judgement& judgement);

// A line for each option that differs and for each change: "office: QVFinisher None -> STFINT1".
[[nodiscard]] std::string LogOf(const Judgement& judgement);

// One JSON object in one line.
[[nodiscard]] std::string JsonOf(const Judgement& judgement, bool with_equal);
[[nodiscard]] std::string JsonOf(const AuditSummary& summary);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_AUDIT_REPORT_H_
