#ifndef INFO_ANALYZE_CLI_AUDIT_TARGETS_H_
#define INFO_ANALYZE_CLI_AUDIT_TARGETS_H_

#include <string>
#include <vector>

#include "cli/audit/judge.h"

namespace ia::cli {

// The permanent queues of the scope's CUPS root, or of the CUPS server, which is noted in the
// scope; with names, those queues in this order. Throws a Failure when there is no list of queues.
[[nodiscard]] std::vector<Target> FindLiveTargets(AuditScope& scope,
                                                  const std::vector<std::string>& names);

// Saved printers: snapshots, or folders that have snapshots; with names, those of these queues.
// Throws a Failure for a path or a queue without a snapshot.
[[nodiscard]] std::vector<Target> FindSavedTargets(const std::vector<std::string>& paths,
                                                   const std::vector<std::string>& names);

// The live targets, each with the snapshot of its queue.
[[nodiscard]] std::vector<Target> PairWithSnapshots(std::vector<Target> live,
                                                    const std::vector<Target>& saved);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_AUDIT_TARGETS_H_
