// What an update handler would set if the device reported something else.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_EXPERIMENT_H_
#define INFO_ANALYZE_CLI_EXPLAIN_EXPERIMENT_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"
#include "info_analyze/analyzer.h"

namespace ia::cli {

// By keyword.
using OptionValues = std::map<std::string, std::string>;

// Replacements of values, by their index; null: missing.
using Changes = std::map<std::size_t, nlohmann::ordered_json>;

// Runs an update handler with documents that hold changed values. The communication library parses
// them, and they have the format of the reference library.
class Experiment {
 public:
  // The analyser must outlive the experiment, and has its own documents after each run.
  Experiment(AnalyzeContext& analyzer, std::int32_t update);

  // All values of documents that the update handler reads.
  [[nodiscard]] const std::vector<RawValue>& values() const { return values_; }

  // The loaded documents whose list, which the update handler reads, has no items.
  [[nodiscard]] std::vector<std::string> FindEmptyLists() const;

  // Whether documents with the values as they are give what the printer's own documents give.
  // False for a communication library that parses a different format.
  [[nodiscard]] bool IsFaithful();

  // None when the communication library does not parse the documents, such as those with texts of
  // the PPD that are not UTF-8.
  [[nodiscard]] std::optional<OptionValues> Run(const Changes& changes);

 private:
  [[nodiscard]] OptionValues RunHandler();
  [[nodiscard]] std::int32_t CountItems(std::int32_t document, const Changes& changes) const;
  [[nodiscard]] std::string Write(std::int32_t document, std::int32_t count,
                                  const Changes& changes) const;

  AnalyzeContext& analyzer_;
  std::int32_t update_;
  InputSet inputs_;  // of loaded documents
  std::vector<RawValue> values_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_EXPERIMENT_H_
