#ifndef INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_
#define INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_

#include <string>

#include "cli/printer/handles.h"

namespace ia::cli {

// The printer's options, after an empty first node. Reports missing documents on standard error,
// and throws a Failure when the query fails.
[[nodiscard]] OptionListPtr QueryPrinter(AnalyzeContext& analyzer, const std::string& queue);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_
