// The values of the devices' documents that some rule or some list of the PPD knows.
#ifndef INFO_ANALYZE_CLI_PROVENANCE_KNOWN_VALUES_H_
#define INFO_ANALYZE_CLI_PROVENANCE_KNOWN_VALUES_H_

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/provenance/raw_values.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {

// Numbers or texts for which an option may differ, those of the printer's PPD first. Those of an
// array are its elements.
[[nodiscard]] std::vector<nlohmann::ordered_json> KnownValues(const AnalyzeContext& analyzer,
                                                              const InputKey& input);

// Those of them that are in the PPD's lists.
[[nodiscard]] std::vector<nlohmann::ordered_json> ValuesInLists(const AnalyzeContext& analyzer,
                                                                const InputKey& input);

// The keywords of the PPD's lists in which the library looks up a value of an input:
// "QVAnlz_InputTray or QVAnlz_SrcOption"; empty when there are none.
[[nodiscard]] std::string ListsOf(const InputKey& input);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PROVENANCE_KNOWN_VALUES_H_
