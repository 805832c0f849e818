#ifndef INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_DOCUMENT_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_DOCUMENT_H_

#include <cstdint>
#include <string>

#include "cli/snapshot/secrets.h"

namespace ia::cli {

// Both are for one of the documents IA_DOCUMENT_..., and throw a Failure for contents that are not
// in the format of the reference communication library.
void AddSecretsOfDocument(std::int32_t document, const std::string& contents, Secrets& secrets);

// Leaves the values that a rule of the library reads as they are, except the device's name, and
// leaves out comments, binary values and the ids of fax lines.
[[nodiscard]] std::string RedactedDocument(std::int32_t document, const std::string& contents,
                                           Secrets& secrets);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_REDACTED_DOCUMENT_H_
