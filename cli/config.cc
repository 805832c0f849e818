// The verb "config": which settings are in force, and from where.
#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct ConfigQuestion {
  PrinterLocation location;
  std::string format = "text";
};

// A setting, and what it is for the queue of the command line; empty: unknown.
struct Shown {
  const SettingNames* names;
  std::optional<SettingValue> value;
  std::string expanded;
};

struct Report {
  std::string queue;  // empty: none
  std::vector<Shown> settings;
};

[[nodiscard]] SettingValue TimeoutInForce(const PrinterLocation& given, const Settings& settings) {
  const std::string seconds = std::to_string(TimeoutOf(given, settings));
  if (given.has_timeout) return {.text = seconds, .source = kTimeout.option};
  return {.text = seconds, .source = settings.timeout ? settings.timeout->source : "default"};
}

// One row for each setting, those that no place sets included.
[[nodiscard]] Report ReportOn(const ConfigQuestion& question, const Settings& settings) {
  const SettingValue timeout = TimeoutInForce(question.location, settings);
  Report report = {
      .queue = question.location.queue,
      .settings = {{.names = &kDriverFolder, .value = settings.driver_folder, .expanded = ""},
                   {.names = &kDeviceInfo, .value = settings.device_info, .expanded = ""},
                   {.names = &kTimeout, .value = timeout, .expanded = ""}}};
  if (report.queue.empty()) return report;
  PrinterLocation location = question.location;
  location.timeout = TimeoutOf(location, settings);
  location.needs_driver = settings.driver_folder || !settings.model_folders.empty();
  location.needs_documents = settings.device_info.has_value();
  location = Complete(location, settings, WordsOf(location));
  report.settings[0].expanded = location.driver_folder;
  report.settings[1].expanded = location.device_info;
  report.settings[2].expanded = timeout.text;
  return report;
}

[[nodiscard]] std::string Line(const std::string& name, const std::string& value,
                               const std::string& note) {
  constexpr std::size_t kWidth = 15;
  return name + std::string(kWidth - name.size(), ' ') + Printable(value) +
         (note.empty() ? "" : "  (" + Printable(note) + ")") + "\n";
}

[[nodiscard]] std::string TextOf(const Shown& shown, const Settings& settings) {
  const std::string name = shown.names->key;
  const bool has_models = shown.names == &kDriverFolder && !settings.model_folders.empty();
  std::string text;
  if (shown.value) {
    text = Line(name, shown.value->text, shown.value->source);
  } else if (!has_models) {
    text = Line(name,
                "not set; pass " + std::string(shown.names->option) + ", " +
                    WaysToGive(*shown.names, settings),
                "");
  }
  for (const ModelFolder& folder : settings.model_folders) {
    if (has_models) text += Line(name, folder.folder, folder.models + " in " + folder.source);
  }
  return text;
}

[[nodiscard]] const char* NameOf(FileState state) {
  switch (state) {
    case FileState::kRead:
      return "read";
    case FileState::kMissing:
      return "missing";
    default:
      return "unreadable";
  }
}

[[nodiscard]] std::string FormatReport(const Report& report, const Settings& settings) {
  std::string text;
  for (const Shown& shown : report.settings) {
    text += TextOf(shown, settings);
    if (shown.names == &kTimeout || shown.expanded.empty()) continue;
    text += Line("  for queue", shown.expanded, report.queue);
  }
  for (const SettingsFile& file : settings.files) {
    text += Line("file", file.path, NameOf(file.state));
  }
  return text;
}

[[nodiscard]] std::string ReportJson(const Report& report, const Settings& settings) {
  Json values = Json::array();
  for (const Shown& shown : report.settings) {
    const SettingValue value = shown.value.value_or(SettingValue{.text = "", .source = ""});
    values.push_back({{"key", shown.names->key},
                      {"value", OrNull(value.text)},
                      {"source", OrNull(value.source)},
                      {"for_queue", OrNull(shown.expanded)}});
  }
  Json folders = Json::array();
  for (const ModelFolder& folder : settings.model_folders) {
    folders.push_back(
        {{"models", folder.models}, {"value", folder.folder}, {"source", folder.source}});
  }
  Json files = Json::array();
  for (const SettingsFile& file : settings.files) {
    files.push_back({{"path", file.path}, {"state", NameOf(file.state)}});
  }
  return DumpJson({{"queue", OrNull(report.queue)},
                   {"settings", values},
                   {"driver_folders", folders},
                   {"files", files}});
}

void ShowConfig(const ConfigQuestion& question) {
  const Settings& settings = CurrentSettings(question.location.config_file);
  const Report report = ReportOn(question, settings);
  WriteAnswer(question.format == "json" ? ReportJson(report, settings)
                                        : FormatReport(report, settings));
}

}  // namespace

void DefineConfig(CLI::App& verb) {
  const auto question = std::make_shared<ConfigQuestion>();
  AddCupsOptions(verb, question->location);
  AddFormatOption(verb, question->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze config\n"
      "  info-analyze config --queue office");
  verb.callback([question] { ShowConfig(*question); });
}

}  // namespace ia::cli
