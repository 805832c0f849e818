// What a snapshot has, whether it is a folder or an archive: copies of a printer's PPD and
// documents, and a list of them with checksums.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_LIST_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_LIST_H_

#include <string>
#include <vector>

#include "cli/snapshot/archive.h"

namespace ia::cli {

struct Snapshot {
  std::string date;  // UTC, ISO 8601; texts that are empty are unknown
  std::string queue;
  std::string device_uri;  // without user and password
  std::string model_code;
  std::string tool_version;
  std::string library_version;
  bool is_redacted = false;
  Files files;  // such as "device-info/Specid.xml"; without the list
};

inline constexpr const char* kSnapshotListName = "snapshot.json";

// Names of the files.
[[nodiscard]] std::string SnapshotPpdName(const std::string& queue);
[[nodiscard]] std::string SnapshotDocumentName(const std::string& file_name);

// The names that a snapshot of the list can have, beside that of the list. Throws a Failure for
// what is no list.
[[nodiscard]] std::vector<std::string> ExpectedNames(const std::string& list,
                                                     const std::string& snapshot_name);

// All files, the list included.
[[nodiscard]] Files FilesOf(const Snapshot& snapshot);

// Checks all files against the list; throws a Failure that names what is damaged.
[[nodiscard]] Snapshot CheckedSnapshot(const Files& files, const std::string& snapshot_name);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_LIST_H_
