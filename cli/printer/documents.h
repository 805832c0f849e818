#ifndef INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_
#define INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_

#include <optional>
#include <string>
#include <vector>

#include "info_analyze/info_analyze.h"

namespace ia::cli {

// Why the library cannot load a file as a document; nothing when it is a readable regular file of
// an accepted size, whose contents are not checked here.
[[nodiscard]] std::optional<std::string> FindFileFault(const std::string& path);

// One sentence for each document that a query could not load: its file and the reason.
[[nodiscard]] std::vector<std::string> ExplainMissingDocuments(const AnalyzeContext& analyzer);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_
