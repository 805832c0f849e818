#ifndef INFO_ANALYZE_CLI_PRINTER_QUEUE_NAME_H_
#define INFO_ANALYZE_CLI_PRINTER_QUEUE_NAME_H_

#include <string>

namespace ia::cli {

// Throws a Failure for a name that CUPS refuses. Such a name could also lead out of a folder.
void RequireQueueName(const std::string& queue);

// CUPS ignores the case of names.
[[nodiscard]] bool IsSameQueue(const std::string& left, const std::string& right);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_QUEUE_NAME_H_
