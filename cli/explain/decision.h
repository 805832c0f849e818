// Which of the values that an option depends on decided it, and what would have changed it.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_DECISION_H_
#define INFO_ANALYZE_CLI_EXPLAIN_DECISION_H_

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/explain/explanation.h"
#include "cli/provenance/raw_values.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {

// A value that the option would have if the device reported something else.
struct RejectedValue {
  std::optional<std::string> value;    // none: the option would not be set
  RawValue raw;                        // what the device reports
  nlohmann::ordered_json replacement;  // what it would have to report; null: nothing
};

struct Decision {
  // False when there are too many values, or when the communication library does not read the
  // reference format: then nothing below is known.
  bool is_known = false;

  // Values without which the option would be different. Where several would each do, the first of
  // them.
  std::vector<RawValue> needed;

  // Further values that would change the option if they were different. Changing a value that is
  // in neither list does not change the option.
  std::vector<RawValue> unmatched;

  // Documents whose list, which the update handler reads, has no items.
  std::vector<std::string> empty_lists;

  // Different values, each with the first change that gives it.
  std::vector<RejectedValue> rejected;
};

// The decisions of explained options, in their order.
[[nodiscard]] std::vector<Decision> FindDecisions(AnalyzeContext& analyzer,
                                                  const std::vector<Explanation>& explanations);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_DECISION_H_
