#ifndef INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_

#include <cstdint>
#include <string>

namespace ia::cli {

// The contents of a document (IA_DOCUMENT_...) without what identifies the printer's owner: the
// device's name and the ids of fax lines. Throws a Failure for contents that are not in the format
// of the reference communication library, because their private values cannot be found.
[[nodiscard]] std::string Redact(std::int32_t document, const std::string& contents);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
