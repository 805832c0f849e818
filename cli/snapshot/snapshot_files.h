// Snapshots on disk: a folder, or an archive of what that folder would have.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FILES_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FILES_H_

#include <string>
#include <string_view>

#include "cli/snapshot/snapshot_list.h"

namespace ia::cli {

inline constexpr std::string_view kArchiveSuffix = ".tar.gz";

// Whether a path ends with that, or with its short form ".tgz".
[[nodiscard]] bool IsArchiveName(std::string_view path);

// Writes a new archive for the name of an archive, else a new folder. Throws a Failure, and leaves
// nothing, when it cannot be written whole.
void WriteSnapshot(const Snapshot& snapshot, const std::string& path);

// Reads and checks a folder or an archive; throws a Failure that names what is damaged.
[[nodiscard]] Snapshot ReadSnapshot(const std::string& path);

[[nodiscard]] bool IsFolder(const std::string& path);

// Writes the files into an existing folder; throws a std::system_error.
void WriteFiles(const Files& files, const std::string& folder);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_FILES_H_
