// What the device reports and neither the PPD's lists nor the rules know.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_UNKNOWN_VALUES_H_
#define INFO_ANALYZE_CLI_EXPLAIN_UNKNOWN_VALUES_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/provenance/raw_values.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {

struct UnknownValue {
  RawValue raw;
  std::string lists;               // of the PPD that could have it: "QVAnlz_FinisherName"
  nlohmann::ordered_json nearest;  // known value; null: there is none
};

// The unknown units, trays and media, each value once and at most 100 of each. A unit or tray that
// gives an option its value is known, whatever its name or alias.
[[nodiscard]] std::vector<UnknownValue> FindUnknownValues(AnalyzeContext& analyzer);

// "Tray_list.xml list[2] alias = [99]: not in QVAnlz_InputTray; the nearest known value is 101".
[[nodiscard]] std::string Describe(const UnknownValue& unknown);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_UNKNOWN_VALUES_H_
