#include "cli/provenance/raw_values.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/printer/handles.h"
#include "cli/provenance/provenance.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kEncoding = "UTF-8";

// A place in a document.
struct Place {
  BidiContext* bidi;
  QvXmlReader* reader;
};

[[nodiscard]] std::optional<Json> ReadNumber(Place place, const char* key) {
  std::int32_t number = 0;
  if (Bidi_qvxmlwrapGet_Long(place.bidi, place.reader, key, &number, 0) == 0) return std::nullopt;
  return number;
}

[[nodiscard]] std::optional<Json> ReadText(Place place, const char* key) {
  char* text = nullptr;
  const bool found =
      Bidi_qvxmlwrapGet_String(place.bidi, place.reader, key, &text, nullptr, kEncoding, 0) != 0;
  const TextPtr owned(text);
  if (!found || text == nullptr) return std::nullopt;
  return Json(text);
}

[[nodiscard]] Json ReadElement(Place place, std::int32_t type, std::int32_t index) {
  if (type == IA_KEY_LONG_ELEMENTS) {
    std::int32_t number = 0;
    const bool found =
        Bidi_qvxmlwrapGet_LongFromArray(place.bidi, place.reader, index, &number, 0) != 0;
    return found ? Json(number) : Json(nullptr);
  }
  char* text = nullptr;
  const bool found = Bidi_qvxmlwrapGet_StringFromArray(place.bidi, place.reader, index, &text,
                                                       nullptr, kEncoding, 0) != 0;
  const TextPtr owned(text);
  return found && text != nullptr ? Json(text) : Json(nullptr);
}

// Elements of a different type are null.
[[nodiscard]] std::optional<Json> ReadArray(Place place, const InputKey& input) {
  std::int32_t count = 0;
  if (Bidi_qvxmlwrapGet_ArrayCount(place.bidi, place.reader, input.key, &count) == 0) {
    return std::nullopt;
  }
  Json elements = Json::array();
  Bidi_qvxmlwrapGet_OpenArray(place.bidi, place.reader, input.key);
  for (std::int32_t i = 0; i < count; ++i) {
    elements.push_back(ReadElement(place, input.type, i));
  }
  Bidi_qvxmlwrapGet_CloseArray(place.bidi, place.reader);
  return elements;
}

[[nodiscard]] std::optional<Json> ReadValue(Place place, const InputKey& input) {
  switch (input.type) {
    case IA_KEY_LONG:
      return ReadNumber(place, input.key);
    case IA_KEY_STRING:
      return ReadText(place, input.key);
    default:
      return ReadArray(place, input);
  }
}

[[nodiscard]] bool HasDouble(Place place, const char* key) {
  double number = 0;
  return Bidi_qvxmlwrapGet_Double(place.bidi, place.reader, key, &number, 0) != 0;
}

[[nodiscard]] bool HasBinary(Place place, const char* key) {
  void* data = nullptr;
  std::int32_t length = 0;
  const bool found = Bidi_qvxmlwrapGet_Binary(place.bidi, place.reader, key, &data, &length) != 0;
  std::free(data);
  return found;
}

[[nodiscard]] bool HasContainer(Place place, const char* key) {
  std::int32_t count = 0;
  return Bidi_qvxmlwrapGet_ArrayCount(place.bidi, place.reader, key, &count) != 0 ||
         (Bidi_qvxmlwrapGet_DictCount(place.bidi, place.reader, key, &count) != 0 && count > 0);
}

// Whether the key has a value of any type.
[[nodiscard]] bool HasKey(Place place, const char* key) {
  return ReadNumber(place, key) || ReadText(place, key) || HasDouble(place, key) ||
         HasBinary(place, key) || HasContainer(place, key);
}

[[nodiscard]] RawValue ReadAt(Place place, const InputKey& input, std::int32_t item) {
  RawValue raw = {.input = &input, .item = item, .key = input.key};
  if (const std::optional<Json> value = ReadValue(place, input)) {
    raw.state = RawState::kPresent;
    raw.value = *value;
  } else if (HasKey(place, input.key)) {
    raw.state = RawState::kWrongType;
  }
  return raw;
}

[[nodiscard]] std::vector<RawValue> ReadItems(Place place, const InputKey& input,
                                              std::int32_t count) {
  std::vector<RawValue> values;
  for (std::int32_t item = 0; item < count; ++item) {
    Bidi_qvxmlwrapGet_OpenDict(place.bidi, place.reader, "list", item);
    values.push_back(ReadAt(place, input, item));
    Bidi_qvxmlwrapGet_CloseDict(place.bidi, place.reader);
  }
  return values;
}

// Several lines of the PPD make one flag text, a value list is one line.
[[nodiscard]] std::vector<RawValue> ReadPpdLines(const AnalyzeContext& analyzer,
                                                 const InputKey& input) {
  const bool has_several = input.type == IA_KEY_STRING_ELEMENTS;
  std::vector<RawValue> values;
  for (const OptTable* node = analyzer.ppd_options; node != nullptr; node = node->next) {
    const std::string_view key = node->key;
    if (has_several ? !key.starts_with(input.key) : key != input.key) continue;
    values.push_back(
        {.input = &input, .key = node->key, .state = RawState::kPresent, .value = node->value});
  }
  if (values.empty()) values.push_back({.input = &input, .key = input.key});
  return values;
}

[[nodiscard]] std::string FormatValue(const RawValue& raw) {
  switch (raw.state) {
    case RawState::kPresent:
      return " = " + raw.value.dump(-1, ' ', false, Json::error_handler_t::replace);
    case RawState::kMissing:
      return " is missing";
    case RawState::kWrongType:
      return " has the wrong type";
    case RawState::kNoDocument:
      break;
  }
  return " cannot be read: the document is not loaded";
}

[[nodiscard]] const char* NameOf(RawState state) {
  switch (state) {
    case RawState::kPresent:
      return "present";
    case RawState::kMissing:
      return "missing";
    case RawState::kWrongType:
      return "wrong type";
    case RawState::kNoDocument:
      break;
  }
  return "no document";
}

}  // namespace

std::vector<RawValue> ReadRawValues(const AnalyzeContext& analyzer, const InputKey& input) {
  if (input.document == IA_INPUT_OF_PPD) return ReadPpdLines(analyzer, input);
  const XmlData& document = analyzer.documents[input.document];
  if (document.xml == nullptr) {
    return {{.input = &input, .key = input.key, .state = RawState::kNoDocument}};
  }
  const Place place = {analyzer.bidi, document.xml};
  if (input.type == IA_KEY_DICTIONARY) {
    const RawState state = document.count > 0 ? RawState::kPresent : RawState::kMissing;
    return {{.input = &input, .key = input.key, .state = state, .value = document.count}};
  }
  if (input.in_list != 0) return ReadItems(place, input, document.count);
  return {ReadAt(place, input, -1)};
}

bool IsIn(const std::vector<RawValue>& values, const RawValue& raw) {
  return std::ranges::any_of(values, [&](const RawValue& other) {
    return other.input == raw.input && other.item == raw.item;
  });
}

std::string FormatRawValue(const RawValue& raw) {
  if (raw.input->document == IA_INPUT_OF_PPD) return "PPD " + raw.key + FormatValue(raw);
  const std::string document = Analyze_Provenance_GetDocumentName(raw.input->document);
  if (raw.input->type == IA_KEY_DICTIONARY && raw.state != RawState::kNoDocument) {
    return document + " number of items = " + raw.value.dump();
  }
  const std::string item = raw.item >= 0 ? " list[" + std::to_string(raw.item) + "]" : "";
  return document + item + " " + raw.key + FormatValue(raw);
}

Json ToJson(const RawValue& raw) {
  return {{"document", DocumentJson(*raw.input)},
          {"item", raw.item >= 0 ? Json(raw.item) : Json(nullptr)},
          {"key", raw.key},
          {"state", NameOf(raw.state)},
          {"value", raw.is_present() ? raw.value : Json(nullptr)}};
}

}  // namespace ia::cli
