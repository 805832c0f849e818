// The verb "audit": compares the PPD's defaults of many queues with what their devices have.
#ifndef INFO_ANALYZE_CLI_AUDIT_AUDIT_H_
#define INFO_ANALYZE_CLI_AUDIT_AUDIT_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/audit/judge.h"

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineAudit(CLI::App& verb);

struct AuditPlan {
  AuditScope scope;
  std::vector<Target> targets;
  int jobs = 1;      // processes
  std::string host;  // of the CUPS server; empty: that of the environment
};

// Completes the plan from the settings; throws a CLI::RequiredError when neither they nor the
// command line have a folder that is needed.
void UseSettings(AuditPlan& plan, bool needs_documents);

// Says when live queues of different devices have the same document directory: each would get the
// values of one device.
[[nodiscard]] std::optional<FailureParts> FaultOfDocuments(const AuditPlan& plan);

// Judges the targets in worker processes, and calls with each judgement, in the order of the
// targets and in this process. Shows its progress.
void JudgeAll(const AuditPlan& plan, const std::function<void(const Judgement&)>& use);

// Adds the options that audit and apply share.
void AddAuditOptions(CLI::App& verb, AuditPlan& plan, std::vector<std::string>& queues);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_AUDIT_AUDIT_H_
