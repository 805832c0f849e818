#ifndef INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_

#include "cli/config/patterns.h"
#include "cli/printer/session.h"

namespace ia::cli {

// What replaces the patterns in the settings of a queue, from CUPS.
[[nodiscard]] QueueWords WordsOf(const PrinterLocation& location);

// The location of the command line, completed from its snapshot where it names one, and from the
// settings. Throws when an option is missing or the snapshot is damaged.
[[nodiscard]] PrinterLocation Locate(const PrinterLocation& given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
