#ifndef INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_

#include <string>

namespace ia::cli {

// The document, by its file's name, without what tells whose printer it is: the device's name and
// the ids of fax lines. Throws a Failure for a document in another format than that of the
// reference communication library, in which nothing could be found to be left out.
[[nodiscard]] std::string Redact(const std::string& file_name, const std::string& document);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_REDACTION_H_
