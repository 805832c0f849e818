// The library's tables of update handlers and models, as the tool reads them.
#ifndef INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_
#define INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <vector>

#include "info_analyze/provenance.h"

namespace ia::cli {

// Inputs in the order of their numbers; they live as long as the process.
using InputSet = std::set<const InputKey*>;

struct Option : OptionSource {
  InputSet inputs;
};

struct Update : UpdateSource {
  std::vector<Option> options;
};

struct Row : ModelRow {
  InputSet inputs;
};

// In the order in which they run. They live as long as the process.
[[nodiscard]] const std::vector<Update>& UpdateHandlers();

// Null when there is no input of this number.
[[nodiscard]] const InputKey* FindInput(std::int32_t number);

// The PPD's flag texts, in the order of the library's inputs.
[[nodiscard]] std::vector<const InputKey*> FlagInputs();

// "Finisher_list.xml list[] name", "Specid.xml version", "PPD QVAnlz_SrcOption".
[[nodiscard]] std::string Describe(const InputKey& input);
[[nodiscard]] nlohmann::ordered_json ToJson(const InputKey& input);

// The file name of the input's document; null for an input of the PPD.
[[nodiscard]] nlohmann::ordered_json DocumentJson(const InputKey& input);

// The option that a family decides: its keyword, or "(media types)" for those that the PPD names.
[[nodiscard]] std::string OptionOfFamily(std::int32_t family);

// The rows of a family's table, and after them the row of other models.
[[nodiscard]] std::vector<Row> RowsOf(std::int32_t family);

// The row that a model code, which may be null, selects for a family.
[[nodiscard]] Row FindRow(std::int32_t family, const char* model_code);

// The inputs of an option for a model, whose code may be null.
[[nodiscard]] InputSet InputsOf(const Option& option, const char* model_code);

// The inputs of all options of a model.
[[nodiscard]] InputSet InputsOfModel(const char* model_code);

// "RA-P9*", "RA-Z5" for a whole code, "(other models)".
[[nodiscard]] std::string PatternOf(const ModelRow& row);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_
