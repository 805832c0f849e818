#ifndef INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_
#define INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_

#include <string>

#include "cli/printer/handles.h"

namespace ia::cli {

// The printer's options behind an empty first node. Documents that are missing are told on standard
// error; throws a Failure when the query fails for want of them.
[[nodiscard]] OptionListPtr AskPrinter(AnalyzeContext& analyzer, const std::string& queue);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_PRINTER_QUERY_H_
