#include "cli/provenance/provenance.h"

#include <nlohmann/json.hpp>

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t kMaxInputs = 64;  // bits of a set

[[nodiscard]] const OptionSource* FindOptionOfFamily(std::int32_t family) {
  for (const UpdateSource* const update : UpdateHandlers()) {
    for (std::int32_t i = 0; i < update->option_count; ++i) {
      if (update->options[i].family == family) return &update->options[i];
    }
  }
  return nullptr;
}

}  // namespace

std::vector<const UpdateSource*> UpdateHandlers() {
  std::vector<const UpdateSource*> updates;
  for (std::int32_t i = 0; const UpdateSource* const update = Analyze_Provenance_GetUpdate(i);
       ++i) {
    updates.push_back(update);
  }
  return updates;
}

std::vector<const InputKey*> InputsOf(std::uint64_t inputs) {
  std::vector<const InputKey*> keys;
  for (std::int32_t i = 0; i < kMaxInputs; ++i) {
    if ((inputs >> i & 1) == 0) continue;
    if (const InputKey* const key = Analyze_Provenance_GetInput(i)) keys.push_back(key);
  }
  return keys;
}

std::vector<const InputKey*> FlagInputs() {
  std::vector<const InputKey*> inputs = InputsOf(~std::uint64_t{0});
  std::erase_if(inputs, [](const InputKey* input) {
    return input->document != IA_INPUT_OF_PPD || input->type != IA_KEY_STRING_ELEMENTS;
  });
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
  const OptionSource* const option = FindOptionOfFamily(family);
  return option != nullptr && option->keyword != nullptr ? option->keyword : "(media types)";
}

ModelRow FindModelRow(std::int32_t family, const char* model_code) {
  ModelRow row = {.code = "", .whole_code = 0, .handler = nullptr, .inputs = 0};
  Analyze_Provenance_GetModelRow(family, Analyze_Provenance_FindModelRow(family, model_code), &row);
  return row;
}

std::uint64_t InputsOfModel(const char* model_code) {
  std::uint64_t inputs = 0;
  for (const UpdateSource* const update : UpdateHandlers()) {
    for (std::int32_t i = 0; i < update->option_count; ++i) {
      const OptionSource& option = update->options[i];
      inputs |= option.inputs;
      if (option.family == IA_FAMILY_NONE) continue;
      inputs |= FindModelRow(option.family, model_code).inputs;
    }
  }
  return inputs;
}

std::string PatternOf(const ModelRow& row) {
  if (*row.code == '\0') return "(other models)";
  return row.whole_code != 0 ? row.code : std::string(row.code) + "*";
}

}  // namespace ia::cli
