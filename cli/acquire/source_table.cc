#include "cli/acquire/source_table.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/acquire/device_facts.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

using nlohmann::ordered_json;

constexpr std::string_view kOfProfile = "profile ";
constexpr std::string_view kNotReported = "the device does not report this";
constexpr std::size_t kKeyWidth = 32;
constexpr std::size_t kValueWidth = 18;

[[nodiscard]] std::string Padded(std::string text, std::size_t width) {
  text.resize(std::max(text.size() + 2, width), ' ');
  return text;
}

// Texts as they are, numbers, and arrays without quotes: [staple, punch].
[[nodiscard]] std::string ValueText(const ordered_json& value) {
  if (value.is_string()) return Printable(value.get<std::string>());
  if (!value.is_array()) return value.dump();
  std::string text = "[";
  for (const ordered_json& element : value) {
    text += (text.size() > 1 ? ", " : "") + ValueText(element);
  }
  return text + "]";
}

[[nodiscard]] std::string LinesOf(std::int32_t document, const Part& part,
                                  const std::string& indent) {
  std::string lines;
  for (const DocumentKey& key : kDocumentKeys) {
    if (key.document != document) continue;
    const auto known = part.known.find(key.name);
    const bool is_known = known != part.known.end();
    lines += Padded(indent + key.name, kKeyWidth) +
             Padded(is_known ? ValueText(known->second.value) : "-", kValueWidth) +
             std::string(is_known ? known->second.source : kNotReported) + "\n";
  }
  return lines;
}

[[nodiscard]] std::string LinesOf(const AcquiredDocument& document) {
  std::string lines = Analyze_Provenance_GetDocumentName(document.document);
  if (!document.left_out.empty()) lines += "  (left out: " + Printable(document.left_out) + ")";
  lines += "\n";
  if (!IsList(document.document)) {
    return lines + LinesOf(document.document, document.parts.front(), "  ");
  }
  for (std::size_t i = 0; i < document.parts.size(); ++i) {
    lines += "  list[" + std::to_string(i) + "]: " + Printable(document.parts[i].name) + "\n" +
             LinesOf(document.document, document.parts[i], "    ");
  }
  return lines;
}

[[nodiscard]] ordered_json KeyJson(const DocumentKey& key, const Part& part,
                                   const ordered_json& item) {
  ordered_json json = {{"item", item}, {"part", part.name}, {"key", key.name}};
  const auto known = part.known.find(key.name);
  if (known == part.known.end()) {
    json["value"] = nullptr;
    json["origin"] = "not reported";
    json["source"] = nullptr;
    return json;
  }
  const std::string& source = known->second.source;
  const bool is_of_profile = source.starts_with(kOfProfile);
  json["value"] = known->second.value;
  json["origin"] = is_of_profile ? "profile" : "attribute";
  json["source"] = is_of_profile ? source.substr(kOfProfile.size()) : source;
  return json;
}

[[nodiscard]] ordered_json DocumentJson(const AcquiredDocument& document) {
  ordered_json keys = ordered_json::array();
  for (std::size_t i = 0; i < document.parts.size(); ++i) {
    for (const DocumentKey& key : kDocumentKeys) {
      if (key.document != document.document) continue;
      keys.push_back(KeyJson(key, document.parts[i],
                             IsList(document.document) ? ordered_json(i) : ordered_json()));
    }
  }
  return {{"document", Analyze_Provenance_GetDocumentName(document.document)},
          {"left_out", OrNull(document.left_out)},
          {"keys", keys}};
}

}  // namespace

std::string SourcesAsText(const std::vector<AcquiredDocument>& documents) {
  std::string text;
  for (const AcquiredDocument& document : documents) text += LinesOf(document);
  return text;
}

std::string SourcesAsJson(const std::vector<AcquiredDocument>& documents) {
  ordered_json all = ordered_json::array();
  for (const AcquiredDocument& document : documents) all.push_back(DocumentJson(document));
  return DumpJson({{"documents", all}});
}

}  // namespace ia::cli
