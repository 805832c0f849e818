#ifndef INFO_ANALYZE_CLI_SNAPSHOT_TAKE_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_TAKE_H_

#include <string>

#include "cli/snapshot/snapshot_list.h"

namespace ia::cli {

// A printer as it is now.
struct PrinterFiles {
  std::string queue;
  std::string ppd;          // its text
  std::string device_info;  // the document directory
  std::string device_uri;   // without user and password; empty: unknown
  std::string model_code;   // empty: none
};

// A snapshot with the present date. Warns of each document that cannot be read, and throws a
// Failure when none can.
[[nodiscard]] Snapshot ComposeSnapshot(const PrinterFiles& printer);

// Whether documents are missing.
[[nodiscard]] bool IsPartial(const Snapshot& snapshot);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_TAKE_H_
