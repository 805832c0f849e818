// Why each option of a query has its value.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_EXPLANATION_H_
#define INFO_ANALYZE_CLI_EXPLAIN_EXPLANATION_H_

#include <optional>
#include <string>
#include <vector>

#include "cli/printer/ppd.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/provenance.h"

namespace ia::cli {

enum class Origin {
  kDevice,   // the device reports the value, or what it follows from
  kPpd,      // the device reports nothing; the value is from the PPD's list of values
  kDefault,  // neither has a value
};

struct Explanation {
  std::string keyword;
  std::string value;
  Origin origin;
  const Update* update;
  const Option* option;
  std::optional<Row> row;  // of the model tables, where they decide
  std::vector<RawValue> raw_values;

  // What the device should have reported and has not, so that the value may differ from what the
  // printer has: "Finisher_list.xml name cannot be read: the document is not loaded". Empty when
  // all of it is present.
  std::string missing_data;
};

// Explains the options of a list that the analyser's query has made.
[[nodiscard]] std::vector<Explanation> Explain(AnalyzeContext& analyzer, const OptionList* options);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_EXPLANATION_H_
