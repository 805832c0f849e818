#ifndef INFO_ANALYZE_CLI_ACQUIRE_SOURCE_TABLE_H_
#define INFO_ANALYZE_CLI_ACQUIRE_SOURCE_TABLE_H_

#include <string>
#include <vector>

#include "cli/acquire/acquired_documents.h"

namespace ia::cli {

// Each key of the nine documents, its value and where that comes from.
[[nodiscard]] std::string SourcesAsText(const std::vector<AcquiredDocument>& documents);
[[nodiscard]] std::string SourcesAsJson(const std::vector<AcquiredDocument>& documents);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_SOURCE_TABLE_H_
