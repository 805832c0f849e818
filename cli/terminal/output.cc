#include "cli/terminal/output.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/terminal/failure.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

// Raised when a reader of the old output would misread the new one.
constexpr int kSchemaVersion = 1;
constexpr int kIndent = 2;
constexpr int kOneLine = -1;

struct Format {
  const char* name;
  Formatter formatter;
};

constexpr auto kFormats = std::to_array<Format>({
    {"text", FormatText},
    {"json", FormatJson},
});

[[nodiscard]] Json ToJson(const OptionList* options) {
  Json list = Json::array();
  for (const OptionList* node = options; node != nullptr; node = node->next) {
    list.push_back({{"keyword", node->key}, {"value", node->value}});
  }
  return list;
}

void UseGivenNames(Json& value) {
  if (value.is_string()) value = WithGivenNames(value.get<std::string>());
  if (!value.is_structured()) return;
  for (Json& item : value) UseGivenNames(item);
}

[[nodiscard]] std::string Dump(const Json& members, int indent) {
  Json document;
  document["schema_version"] = kSchemaVersion;
  document["verb"] = VerbName().empty() ? Json() : Json(VerbName());
  document.update(members);
  UseGivenNames(document);
  return document.dump(indent, ' ', true, Json::error_handler_t::replace) + "\n";
}

}  // namespace

Json OrNull(const std::string& text) { return text.empty() ? Json() : Json(text); }

std::string FormatText(const Answer& answer) {
  std::string text;
  for (const OptionList* node = answer.options; node != nullptr; node = node->next) {
    text += Printable(node->key) + "=" + Printable(node->value) + "\n";
  }
  return text;
}

std::string FormatJson(const Answer& answer) {
  return DumpJson({{"driver_name", answer.driver_name ? Json(answer.driver_name) : Json(nullptr)},
                   {"options", ToJson(answer.options)}});
}

std::string DumpJson(const Json& members) { return Dump(members, kIndent); }

std::string DumpJsonLine(const Json& members) { return Dump(members, kOneLine); }

std::vector<std::string> FormatNames() {
  std::vector<std::string> names;
  names.reserve(kFormats.size());
  for (const Format& format : kFormats) names.emplace_back(format.name);
  return names;
}

void AddFormatOption(CLI::App& verb, std::string& format) {
  verb.add_option("--format", format, "Format of the answer")
      ->check(CLI::IsMember(FormatNames()))
      ->type_name("FORMAT")
      ->capture_default_str();
}

Formatter FindFormatter(const std::string& name) {
  const auto row = std::ranges::find(kFormats, name, &Format::name);
  return row != kFormats.end() ? row->formatter : nullptr;
}

void WriteAnswer(const std::string& text) {
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (written && std::fflush(stdout) == 0) return;
  if (errno == EPIPE) throw ReaderHasEnded();
  throw Failure(ExitStatus::kOther, {.object = "standard output", .cause = std::strerror(errno)});
}

}  // namespace ia::cli
