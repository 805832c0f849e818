#ifndef INFO_ANALYZE_CLI_PRINTER_QUEUE_FACTS_H_
#define INFO_ANALYZE_CLI_PRINTER_QUEUE_FACTS_H_

#include <string>
#include <string_view>

#include "cli/printer/cups_server.h"
#include "cli/printer/session.h"

namespace ia::cli {

// What CUPS knows of the location's queue, without user and password in the device URI: from its
// CUPS root, or from the CUPS server of the environment. Takes a few seconds at most; a server that
// does not answer knows nothing.
[[nodiscard]] QueueAttributes FactsOf(const PrinterLocation& location);

// The facts in a printers.conf.
[[nodiscard]] QueueAttributes FactsIn(std::string_view printers_conf, std::string_view queue);

[[nodiscard]] std::string WithoutCredentials(const std::string& device_uri);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_QUEUE_FACTS_H_
