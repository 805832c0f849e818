// A printer in one folder: copies of its PPD and documents, and a list of them with checksums.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FOLDER_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FOLDER_H_

#include <map>
#include <string>

namespace ia::cli {

struct Snapshot {
  std::string queue;
  bool is_redacted = false;
  std::map<std::string, std::string> files;  // contents by name, such as "device-info/Specid.xml"
};

// Names of the files in the folder.
[[nodiscard]] std::string SnapshotPpdName(const std::string& queue);
[[nodiscard]] std::string SnapshotDocumentName(const std::string& file_name);

// Writes a new folder; throws a Failure, and leaves nothing, when it cannot be written whole.
void WriteSnapshot(const Snapshot& snapshot, const std::string& folder);

// Reads the list of a folder and checks each file against it; throws a Failure that names what is
// damaged.
[[nodiscard]] Snapshot ReadSnapshot(const std::string& folder);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FOLDER_H_
