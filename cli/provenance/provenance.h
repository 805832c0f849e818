// The library's tables, in the words of the tool.
#ifndef INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_
#define INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "info_analyze/provenance.h"

namespace ia::cli {

[[nodiscard]] std::vector<const UpdateSource*> UpdateHandlers();

[[nodiscard]] std::vector<const InputKey*> InputsOf(std::uint64_t inputs);

// The PPD's flag texts, in the order of the library's inputs.
[[nodiscard]] std::vector<const InputKey*> FlagInputs();

// "Finisher_list.xml list[] name", "Specid.xml version", "PPD QVAnlz_SrcOption".
[[nodiscard]] std::string Describe(const InputKey& input);
[[nodiscard]] nlohmann::ordered_json ToJson(const InputKey& input);

// The file name of the input's document; null for an input of the PPD.
[[nodiscard]] nlohmann::ordered_json DocumentJson(const InputKey& input);

// The option that a family decides: its keyword, or "(media types)" for those that the PPD names.
[[nodiscard]] std::string OptionOfFamily(std::int32_t family);

// The row that a model code, which may be null, selects for a family.
[[nodiscard]] ModelRow FindModelRow(std::int32_t family, const char* model_code);

// What is read for any option of a model.
[[nodiscard]] std::uint64_t InputsOfModel(const char* model_code);

// "RA-P9*", "RA-Z5" for a whole code, "(other models)".
[[nodiscard]] std::string PatternOf(const ModelRow& row);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PROVENANCE_PROVENANCE_H_
