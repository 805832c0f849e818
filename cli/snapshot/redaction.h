#ifndef INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_

#include "cli/printer/queue_facts.h"
#include "cli/snapshot/secrets.h"
#include "cli/snapshot/snapshot_list.h"

namespace ia::cli {

// Replaces what identifies the printer and its owner in all texts of a snapshot but those that
// decide the value of an option. Throws a Failure for a document that is not in the format of the
// reference communication library, because its private values cannot be found.
[[nodiscard]] Secrets Redact(Snapshot& snapshot, const QueueAttributes& facts);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
