#ifndef INFO_ANALYZE_CLI_SNAPSHOT_CHECKSUM_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_CHECKSUM_H_

#include <string>
#include <string_view>

namespace ia::cli {

// SHA-256 (FIPS 180-4), in lower-case hexadecimal, as sha256sum prints it.
[[nodiscard]] std::string Sha256(std::string_view bytes);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_CHECKSUM_H_
