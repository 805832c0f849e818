// Files in a tar archive compressed by gzip.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_ARCHIVE_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_ARCHIVE_H_

#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ia::cli {

using Files = std::map<std::string, std::string>;  // contents by path

inline constexpr std::size_t kMaxArchiveSize = std::size_t{16} << 20;
inline constexpr std::size_t kMaxUnpackedSize = std::size_t{64} << 20;
inline constexpr std::size_t kMaxArchivedFiles = 11;  // snapshot.json, a PPD and nine documents
inline constexpr std::size_t kMaxArchivedPath = 255;

// Why an archive is refused.
class ArchiveFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Each throws an ArchiveFault for what exceeds the limits above. Unpack() also does for bytes that
// are no archive, and for anything in it but regular files, each with one relative path.
[[nodiscard]] std::string Pack(const Files& files);
[[nodiscard]] Files Unpack(std::string_view bytes);

// The second step of Unpack(), after decompression.
[[nodiscard]] Files UnpackTar(std::string_view bytes);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_ARCHIVE_H_
