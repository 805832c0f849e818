// What a printer reports, for comparison with a second one.
#ifndef INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_
#define INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_

#include <array>
#include <string>
#include <vector>

#include "cli/printer/session.h"

namespace ia::cli {

struct StateOption {
  std::string keyword;
  std::string value;
  std::string keyword_text;  // the PPD's words for people; empty: none
  std::string value_text;
  std::string missing_data;  // what the value depends on and is missing or unknown
  bool is_choice;            // the PPD offers the value
};

inline constexpr std::array<const char*, 4> kListNames = {"finishers", "bins", "trays",
                                                          "fax lines"};

struct PrinterState {
  std::string queue;
  std::string model_code;  // empty: none
  std::array<std::string, kListNames.size()> list_counts;
  std::vector<StateOption> options;
};

// Queries in a process of its own, because libcups keeps the first CUPS root that it is given.
// Throws a Verdict when that process fails, after it has reported why.
[[nodiscard]] PrinterState QueryInOwnProcess(const PrinterLocation& given);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DIFF_PRINTER_STATE_H_
