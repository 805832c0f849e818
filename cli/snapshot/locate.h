#ifndef INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_

#include <string>

#include "cli/printer/session.h"

namespace ia::cli {

struct SnapshotLocation {
  PrinterLocation location;
  std::string device_uri;  // empty: unknown
};

// The location with the queue, PPD and documents of its snapshot. Throws when that is damaged.
[[nodiscard]] SnapshotLocation LocateFiles(const PrinterLocation& given);

// The location of the command line, completed from its snapshot where it names one, and from the
// settings. Throws when an option is missing or the snapshot is damaged.
[[nodiscard]] PrinterLocation Locate(const PrinterLocation& given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_LOCATE_H_
