// The options of a printer, each with what its PPD says of it and whether the device's answers are
// enough to trust it.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_PRINTER_OPTIONS_H_
#define INFO_ANALYZE_CLI_EXPLAIN_PRINTER_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "cli/printer/ppd.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {

struct PrinterOption {
  std::string keyword;
  std::string value;
  std::string keyword_text;                   // the PPD's words for people; empty: none
  std::string value_text;                     //
  std::optional<std::string> default_choice;  // of the PPD
  std::string missing_data;  // what the value depends on and is missing or unknown; empty: nothing
  bool is_in_ppd = false;
  bool is_choice = false;  // the PPD offers the value
};

// The options of a list that the analyser's query has made, in its order.
[[nodiscard]] std::vector<PrinterOption> OptionsOf(AnalyzeContext& analyzer,
                                                   const OptionList* options,
                                                   const PpdOptions& ppd);

// The options of the PPD that the model's update handlers would set, but not without a document
// that is missing. Their values are empty.
[[nodiscard]] std::vector<PrinterOption> OptionsWithoutDocument(
    const AnalyzeContext& analyzer, const std::vector<PrinterOption>& options,
    const PpdOptions& ppd);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_PRINTER_OPTIONS_H_
