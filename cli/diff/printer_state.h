// What a printer reports, for comparison with a second one.
#ifndef INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_
#define INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_

#include <array>
#include <string>
#include <vector>

#include "cli/explain/printer_options.h"
#include "cli/printer/session.h"

namespace ia::cli {

inline constexpr std::array<const char*, 4> kListNames = {"finishers", "bins", "trays",
                                                          "fax lines"};

struct PrinterState {
  std::string queue;
  std::string model_code;  // empty: none
  std::array<std::string, kListNames.size()> list_counts;
  std::vector<PrinterOption> options;
};

// Queries in a process of its own, because libcups keeps the first CUPS root that it is given.
// Throws a Verdict when that process fails, after it has reported why.
[[nodiscard]] PrinterState QueryInOwnProcess(const PrinterLocation& given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_
