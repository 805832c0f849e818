#ifndef INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_

#include "cli/printer/session.h"

namespace ia::cli {

// The location of the command line, completed from its snapshot where it names one. Throws when an
// option is missing or the snapshot is damaged.
[[nodiscard]] PrinterLocation Locate(const PrinterLocation& given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
