#ifndef INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_PPD_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_PPD_H_

#include <string>
#include <string_view>

#include "cli/snapshot/secrets.h"

namespace ia::cli {

void AddSecretsOfPpd(std::string_view ppd, Secrets& secrets);

// Leaves what the library reads, keywords and choices as they are.
[[nodiscard]] std::string RedactedPpd(std::string_view ppd, Secrets& secrets);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_PPD_H_
