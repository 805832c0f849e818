#include "cli/provenance/provenance.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

[[nodiscard]] std::vector<InputKey> ReadInputs() {
  std::vector<InputKey> inputs;
  InputKey input = {};
  while (Analyze_Provenance_GetInput(static_cast<std::int32_t>(inputs.size()), &input,
                                     sizeof input) != 0) {
    inputs.push_back(input);
  }
  return inputs;
}

[[nodiscard]] const std::vector<InputKey>& AllInputs() {
  static const std::vector<InputKey> inputs = ReadInputs();
  return inputs;
}

[[nodiscard]] Option WithInputs(const OptionSource& source, std::int32_t update,
                                std::int32_t number) {
  Option option = {source, {}};
  for (std::int32_t i = 0; i < source.input_count; ++i) {
    option.inputs.insert(FindInput(Analyze_Provenance_GetOptionInput(update, number, i)));
  }
  return option;
}

[[nodiscard]] Update WithOptions(const UpdateSource& source, std::int32_t number) {
  Update update = {source, {}};
  OptionSource option = {};
  for (std::int32_t i = 0; Analyze_Provenance_GetOption(number, i, &option, sizeof option) != 0;
       ++i) {
    update.options.push_back(WithInputs(option, number, i));
  }
  return update;
}

[[nodiscard]] std::vector<Update> ReadUpdates() {
  std::vector<Update> updates;
  UpdateSource update = {};
  for (std::int32_t i = 0; Analyze_Provenance_GetUpdate(i, &update, sizeof update) != 0; ++i) {
    updates.push_back(WithOptions(update, i));
  }
  return updates;
}

[[nodiscard]] std::optional<Row> ReadRow(std::int32_t family, std::int32_t number) {
  Row row = {};
  if (Analyze_Provenance_GetModelRow(family, number, &row, sizeof(ModelRow)) == 0) return {};
  for (std::int32_t i = 0; i < row.input_count; ++i) {
    row.inputs.insert(FindInput(Analyze_Provenance_GetModelRowInput(family, number, i)));
  }
  return row;
}

[[nodiscard]] const Option* FindOptionOfFamily(std::int32_t family) {
  for (const Update& update : UpdateHandlers()) {
    const auto hit = std::ranges::find(update.options, family, &Option::family);
    if (hit != update.options.end()) return &*hit;
  }
  return nullptr;
}

}  // namespace

const std::vector<Update>& UpdateHandlers() {
  static const std::vector<Update> updates = ReadUpdates();
  return updates;
}

const InputKey* FindInput(std::int32_t number) {
  const std::vector<InputKey>& inputs = AllInputs();
  if (number < 0 || number >= static_cast<std::int32_t>(inputs.size())) return nullptr;
  return &inputs[static_cast<std::size_t>(number)];
}

std::vector<const InputKey*> FlagInputs() {
  std::vector<const InputKey*> inputs;
  for (const InputKey& input : AllInputs()) {
    if (input.document == IA_INPUT_OF_PPD && input.type == IA_KEY_STRING_ELEMENTS) {
      inputs.push_back(&input);
    }
  }
  return inputs;
}

std::string Describe(const InputKey& input) {
  if (input.document == IA_INPUT_OF_PPD) return std::string("PPD ") + input.key;
  const std::string document = Analyze_Provenance_GetDocumentName(input.document);
  if (input.type == IA_KEY_DICTIONARY) return document + " number of items";
  return document + (input.in_list != 0 ? " list[] " : " ") + input.key;
}

Json DocumentJson(const InputKey& input) {
  if (input.document == IA_INPUT_OF_PPD) return nullptr;
  return Analyze_Provenance_GetDocumentName(input.document);
}

Json ToJson(const InputKey& input) {
  return {{"document", DocumentJson(input)}, {"in_list", input.in_list != 0}, {"key", input.key}};
}

std::string OptionOfFamily(std::int32_t family) {
  const Option* const option = FindOptionOfFamily(family);
  return option != nullptr && option->keyword != nullptr ? option->keyword : "(media types)";
}

std::vector<Row> RowsOf(std::int32_t family) {
  std::vector<Row> rows;
  while (const auto row = ReadRow(family, static_cast<std::int32_t>(rows.size()))) {
    rows.push_back(*row);
  }
  if (const auto others = ReadRow(family, IA_OTHER_MODELS)) rows.push_back(*others);
  return rows;
}

Row FindRow(std::int32_t family, const char* model_code) {
  const auto row = ReadRow(family, Analyze_Provenance_FindModelRow(family, model_code));
  if (!row) throw std::bad_optional_access();  // every code has one, if only that of other models
  return *row;
}

InputSet InputsOf(const Option& option, const char* model_code) {
  InputSet inputs = option.inputs;
  if (option.family == IA_FAMILY_NONE) return inputs;
  const Row row = FindRow(option.family, model_code);
  inputs.insert(row.inputs.begin(), row.inputs.end());
  return inputs;
}

InputSet InputsOfModel(const char* model_code) {
  InputSet inputs;
  for (const Update& update : UpdateHandlers()) {
    for (const Option& option : update.options) {
      inputs.merge(InputsOf(option, model_code));
    }
  }
  return inputs;
}

std::string PatternOf(const ModelRow& row) {
  if (*row.code == '\0') return "(other models)";
  return row.whole_code != 0 ? row.code : std::string(row.code) + "*";
}

}  // namespace ia::cli
