#include "cli/explain/experiment.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/printer/handles.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

[[nodiscard]] std::string Escape(std::string_view text) {
  std::string escaped;
  for (const char byte : text) {
    switch (byte) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '\r':
        escaped += "&#13;";
        break;
      default:
        escaped += byte;
    }
  }
  return escaped;
}

[[nodiscard]] std::string Element(std::string_view name, std::string_view attribute,
                                  std::string_view content) {
  std::string element = "<";
  element.append(name).append(attribute).append(">").append(content);
  return element.append("</").append(name).append(">");
}

// A number or a text; what has a different type is a number that nothing reads.
[[nodiscard]] std::string WriteValue(const Json& value, std::string_view attribute) {
  if (value.is_string()) {
    return Element("string", attribute, Escape(value.get_ref<const std::string&>()));
  }
  if (value.is_number()) return Element("long", attribute, value.dump());
  return Element("double", attribute, "0");
}

[[nodiscard]] std::string WriteKey(std::string_view key, const Json& value) {
  const std::string attribute = " key=\"" + std::string(key) + "\"";
  if (!value.is_array()) return WriteValue(value, attribute);
  std::string elements;
  for (const Json& element : value) elements += WriteValue(element, "");
  return Element("array", attribute, elements);
}

// Replaces a document of an analyser while it lives.
class ReplacedDocument {
 public:
  ReplacedDocument(AnalyzeContext& analyzer, std::int32_t document, const std::string& xml,
                   std::int32_t count)
      : analyzer_(analyzer), document_(document), original_(analyzer.documents[document]) {
    analyzer_.documents[document_] = {
        Bidi_qvxmlwrapGet_New(analyzer_.bidi, xml.data(), static_cast<std::int32_t>(xml.size())),
        count};
  }
  ReplacedDocument(const ReplacedDocument&) = delete;
  ReplacedDocument& operator=(const ReplacedDocument&) = delete;
  ~ReplacedDocument() {
    Bidi_qvxmlwrapGet_Destroy(analyzer_.bidi, analyzer_.documents[document_].xml);
    analyzer_.documents[document_] = original_;
  }

  [[nodiscard]] bool IsParsed() const { return analyzer_.documents[document_].xml != nullptr; }

 private:
  AnalyzeContext& analyzer_;
  std::int32_t document_;
  XmlData original_;
};

[[nodiscard]] InputSet LoadedInputs(const AnalyzeContext& analyzer, const Update& update) {
  InputSet inputs;
  for (const Option& option : update.options) {
    inputs.merge(InputsOf(option, analyzer.driver_name));
  }
  std::erase_if(inputs, [&](const InputKey* input) {
    return input->document == IA_INPUT_OF_PPD || analyzer.documents[input->document].xml == nullptr;
  });
  return inputs;
}

[[nodiscard]] std::vector<RawValue> ReadAll(const AnalyzeContext& analyzer,
                                            const InputSet& inputs) {
  std::vector<RawValue> values;
  for (const InputKey* const input : inputs) {
    std::ranges::move(ReadRawValues(analyzer, *input), std::back_inserter(values));
  }
  return values;
}

}  // namespace

Experiment::Experiment(AnalyzeContext& analyzer, std::int32_t update)
    : analyzer_(analyzer),
      update_(update),
      inputs_(LoadedInputs(analyzer, UpdateHandlers()[static_cast<std::size_t>(update)])),
      values_(ReadAll(analyzer, inputs_)) {}

bool Experiment::IsFaithful() {
  Changes none;
  for (std::size_t i = 0; i < values_.size(); ++i) none[i] = values_[i].value;
  return Run(none) == RunHandler();
}

std::vector<std::string> Experiment::FindEmptyLists() const {
  std::set<std::int32_t> documents;
  for (const InputKey* const input : inputs_) {
    const bool is_empty = input->in_list != 0 && analyzer_.documents[input->document].count < 1;
    if (is_empty) documents.insert(input->document);
  }
  std::vector<std::string> names;
  std::ranges::transform(documents, std::back_inserter(names), Analyze_Provenance_GetDocumentName);
  return names;
}

std::optional<OptionValues> Experiment::Run(const Changes& changes) {
  std::set<std::int32_t> documents;
  for (const auto& [index, value] : changes) documents.insert(values_[index].input->document);
  std::vector<std::unique_ptr<ReplacedDocument>> replaced;
  for (const std::int32_t document : documents) {
    const std::int32_t count = CountItems(document, changes);
    replaced.push_back(std::make_unique<ReplacedDocument>(analyzer_, document,
                                                          Write(document, count, changes), count));
    if (!replaced.back()->IsParsed()) return std::nullopt;
  }
  return RunHandler();
}

OptionValues Experiment::RunHandler() {
  const OptionListPtr options = StartOptionList();
  Analyze_Provenance_RunUpdate(&analyzer_, update_, 1, options.get());
  OptionValues values;
  for (const OptionList* node = options->next; node != nullptr; node = node->next) {
    values[node->key] = node->value;
  }
  return values;
}

std::int32_t Experiment::CountItems(std::int32_t document, const Changes& changes) const {
  for (const auto& [index, value] : changes) {
    const InputKey& input = *values_[index].input;
    if (input.document != document || input.type != IA_KEY_DICTIONARY) continue;
    return value.is_number() ? value.get<std::int32_t>() : 0;
  }
  return analyzer_.documents[document].count;
}

std::string Experiment::Write(std::int32_t document, std::int32_t count,
                              const Changes& changes) const {
  std::string outermost;
  std::vector<std::string> items(static_cast<std::size_t>(count));
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const RawValue& raw = values_[i];
    if (raw.input->document != document || raw.input->type == IA_KEY_DICTIONARY) continue;
    const auto change = changes.find(i);
    const Json& value = change != changes.end() ? change->second : raw.value;
    if (value.is_null()) continue;
    if (raw.item >= count) continue;
    (raw.item < 0 ? outermost : items[static_cast<std::size_t>(raw.item)]) +=
        WriteKey(raw.key, value);
  }
  for (const std::string& item : items) outermost += Element("dict", " key=\"list\"", item);
  return Element("document", " version=\"1\"", outermost);
}

}  // namespace ia::cli
