#ifndef INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_
#define INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "info_analyze/info_analyze.h"

namespace ia::cli {

// "Accessories.xml", by the document's index.
[[nodiscard]] const char* DocumentFileName(std::int32_t document);

// What is wrong with a file that the library cannot load as a document, as far as the file alone
// tells; nothing when it is a readable regular file of a fitting size.
[[nodiscard]] std::optional<std::string> FindFileFault(const std::string& path);

// One sentence for each document that a query could not load: its file, and what is wrong there.
[[nodiscard]] std::vector<std::string> ExplainMissingDocuments(const AnalyzeContext& analyzer);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_DOCUMENTS_H_
