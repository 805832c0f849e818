#include "cli/config/settings.h"

#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <exception>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/nearest.h"

namespace ia::cli {
namespace {

constexpr std::size_t kMaxFileSize = std::size_t{1} << 20;
constexpr const char* kModelSection = "driver-folders";

// The first characters of a text, enough to find it by.
[[nodiscard]] std::string Clipped(std::string_view text) {
  constexpr std::size_t kMaxLength = 100;
  if (text.size() <= kMaxLength) return std::string(text);
  return std::string(text.substr(0, kMaxLength)) + "...";
}

[[nodiscard]] std::string Quoted(std::string_view text) { return "\"" + Clipped(text) + "\""; }

[[nodiscard]] std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\v\f";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// Nothing, or why the text is no timeout.
[[nodiscard]] std::optional<std::string> FaultOfTimeout(std::string_view text) {
  int seconds = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool is_number = error == std::errc() && end == text.data() + text.size();
  if (is_number && seconds >= 1 && seconds <= kMaxTimeout) return std::nullopt;
  return Quoted(text) + " is not a number of seconds from 1 to " + std::to_string(kMaxTimeout);
}

// Nothing, or why the text is no folder. A shell would replace the "~".
[[nodiscard]] std::optional<std::string> FaultOfFolder(std::string_view text) {
  if (!text.starts_with('~')) return std::nullopt;
  return Quoted(text) + " begins with \"~\", which is not replaced; write the path in full";
}

[[nodiscard]] std::optional<std::string> FaultOf(std::string_view key, std::string_view text) {
  return key == kTimeout.key ? FaultOfTimeout(text) : FaultOfFolder(text);
}

// The format --------------------------------------------------------------------------------------

[[noreturn]] void FailForFile(const std::string& path, const std::string& cause,
                              const std::string& hint = "see CONFIGURATION in info-analyze(1)") {
  throw Failure(ExitStatus::kUsage,
                {.object = "configuration file " + path, .cause = cause, .hint = hint});
}

// Why the parser would not read the value as it is written; empty: it would. Its releases differ
// in escape sequences and in comments within quotes, and some drop what they do not understand.
[[nodiscard]] std::string FaultOfValue(std::string_view value) {
  if (value.empty() || value.front() == '#') return "has no value";
  if (value.front() == '[') return "has a list as its value";
  const char quote = value.front();
  if (quote != '"' && quote != '\'' && quote != '`') return "";
  const std::size_t end = value.find(quote, 1);
  if (end == std::string_view::npos) return "has a quoted value without an end";
  const std::string_view inside = value.substr(1, end - 1);
  if (inside.find('#') != std::string_view::npos) {
    return "has a value with \"#\", which begins a comment even in quotes";
  }
  if (inside.find('\\') != std::string_view::npos && quote == '"') {
    return "has a value with a backslash, which needs single quotes";
  }
  const std::string_view rest = Trimmed(value.substr(end + 1));
  return rest.empty() || rest.front() == '#' ? "" : "has text after its quoted value";
}

[[nodiscard]] std::string FaultOfLine(std::string_view line) {
  if (line.empty() || line.front() == '#' || line.front() == ';') return "";
  if (line.find('\0') != std::string_view::npos) return "has a NUL byte";
  if (line.front() == '[' && line.back() == ']') return "";
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return "is neither KEY = VALUE nor [SECTION]";
  return FaultOfValue(Trimmed(line.substr(equals + 1)));
}

// The parser takes some malformed lines for keys with the value "true" and skips short ones.
void RequireWellFormed(const std::string& path, std::string_view text) {
  std::size_t number = 0;
  for (std::size_t start = 0; start < text.size(); ++number) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const std::string_view line = Trimmed(text.substr(start, end - start));
    const std::string fault = FaultOfLine(line);
    if (!fault.empty()) {
      FailForFile(path, "line " + std::to_string(number + 1) + ", " + Quoted(line) + ", " + fault);
    }
    start = end + 1;
  }
}

[[nodiscard]] std::vector<CLI::ConfigItem> Parse(const std::string& path, const std::string& text) {
  RequireWellFormed(path, text);
  CLI::ConfigTOML parser;
  parser.parentSeparator('\0');  // which no line has: model codes may contain periods
  std::istringstream stream(text);
  try {
    return parser.from_config(stream);
  } catch (const std::exception& error) {
    FailForFile(path, Clipped(error.what()));
  }
}

// The settings of a file --------------------------------------------------------------------------

// What one file sets.
struct FileSettings {
  std::optional<SettingValue> driver_folder;
  std::vector<ModelFolder> model_folders;
  std::optional<SettingValue> device_info;
  std::optional<SettingValue> timeout;
};

[[noreturn]] void FailForUnknown(const std::string& path, const std::string& what,
                                 const std::string& word, const std::vector<std::string>& known) {
  const std::optional<std::string> nearest = FindNearest(word, known);
  FailForFile(path, "unknown " + what + " " + Clipped(word) +
                        (nearest ? " (did you mean " + *nearest + "?)" : ""));
}

// The one value of the key.
[[nodiscard]] std::string ValueOf(const CLI::ConfigItem& item, const std::string& path) {
  if (item.inputs.size() != 1) {
    FailForFile(path, "the key " + Clipped(item.name) + " has more than one value",
                "write it once, with quotes around a value that has blanks or commas");
  }
  if (item.inputs.front().empty()) {
    FailForFile(path, "the key " + Clipped(item.name) + " has no value");
  }
  return item.inputs.front();
}

[[noreturn]] void FailForSecond(const std::string& path, const std::string& key) {
  FailForFile(path, "the key " + Clipped(key) + " is in the file twice", "remove one of them");
}

void TakeKey(const CLI::ConfigItem& item, const std::string& path, FileSettings& found) {
  const auto setting = [&]() -> std::optional<SettingValue>& {
    if (item.name == kDriverFolder.key) return found.driver_folder;
    if (item.name == kDeviceInfo.key) return found.device_info;
    if (item.name == kTimeout.key) return found.timeout;
    FailForUnknown(path, "key", item.name, {kDriverFolder.key, kDeviceInfo.key, kTimeout.key});
  };
  std::optional<SettingValue>& value = setting();
  if (value) FailForSecond(path, item.name);
  value = SettingValue{.text = ValueOf(item, path), .source = path};
  if (const auto fault = FaultOf(item.name, value->text)) {
    FailForFile(path, "the key " + item.name + ": " + *fault);
  }
}

void TakeModel(const CLI::ConfigItem& item, const std::string& path, FileSettings& found) {
  const std::size_t star = item.name.find('*');
  if (item.name.empty() || (star != std::string::npos && star + 1 != item.name.size())) {
    FailForFile(path, "the key " + Quoted(item.name) + " of [" + kModelSection +
                          "] is no model code with or without a \"*\" at its end");
  }
  if (std::ranges::find(found.model_folders, item.name, &ModelFolder::models) !=
      found.model_folders.end()) {
    FailForSecond(path, item.name);
  }
  found.model_folders.push_back(
      {.models = item.name, .folder = ValueOf(item, path), .source = path});
  if (const auto fault = FaultOfFolder(found.model_folders.back().folder)) {
    FailForFile(path, "the key " + Clipped(item.name) + ": " + *fault);
  }
}

[[nodiscard]] FileSettings SettingsIn(const std::string& path, const std::string& text) {
  FileSettings found;
  for (const CLI::ConfigItem& item : Parse(path, text)) {
    const bool is_of_models = !item.parents.empty() && item.parents.front() == kModelSection;
    if (!item.parents.empty() && !is_of_models) {
      FailForUnknown(path, "section", item.parents.front(), {kModelSection});
    }
    if (is_of_models && item.inputs.empty()) continue;  // the section's start or end
    is_of_models ? TakeModel(item, path, found) : TakeKey(item, path, found);
  }
  return found;
}

// All places --------------------------------------------------------------------------------------

// A file's driver folder is for all models, those of earlier files included.
void Override(Settings& settings, FileSettings found) {
  if (found.driver_folder) {
    settings.driver_folder = std::move(found.driver_folder);
    settings.model_folders.clear();
  }
  for (ModelFolder& folder : found.model_folders) {
    std::erase_if(settings.model_folders,
                  [&](const ModelFolder& earlier) { return earlier.models == folder.models; });
    settings.model_folders.push_back(std::move(folder));
  }
  if (found.device_info) settings.device_info = std::move(found.device_info);
  if (found.timeout) settings.timeout = std::move(found.timeout);
}

void ReadFile(const std::string& path, Settings& settings) {
  const std::string text = ReadRegularFile(path, kMaxFileSize);
  settings.files.push_back({.path = path, .state = FileState::kRead});
  Override(settings, SettingsIn(path, text));
}

// A file that the command line does not name.
void ReadUsualFile(const std::string& path, Settings& settings) {
  try {
    ReadFile(path, settings);
  } catch (const FileFault& fault) {
    const bool is_missing = fault.error() == ENOENT || fault.error() == ENOTDIR;
    settings.files.push_back(
        {.path = path, .state = is_missing ? FileState::kMissing : FileState::kUnreadable});
    if (is_missing) return;
    ReportWarning("cannot read configuration file " + path + ": " + fault.what() +
                  "; its settings are ignored");
  }
}

void ReadNamedFile(const std::string& path, Settings& settings) {
  try {
    ReadFile(path, settings);
  } catch (const FileFault& fault) {
    throw Failure(ExitStatus::kUsage, {.action = "cannot read",
                                       .object = "configuration file " + path,
                                       .cause = fault.what(),
                                       .hint = "correct --config"});
  }
}

// Null as well for one that is empty; throws a Failure for one that is wrong.
[[nodiscard]] std::optional<SettingValue> Variable(const SettingNames& names,
                                                   const SettingsPlaces& places) {
  const char* const text = places.variable(names.variable);
  if (text == nullptr || *text == '\0') return std::nullopt;
  if (const auto fault = FaultOf(names.key, text)) {
    throw Failure(
        ExitStatus::kUsage,
        {.object = std::string("environment variable ") + names.variable, .cause = *fault});
  }
  return SettingValue{.text = text, .source = names.variable};
}

void ReadVariables(const SettingsPlaces& places, Settings& settings) {
  Override(settings, {.driver_folder = Variable(kDriverFolder, places),
                      .model_folders = {},
                      .device_info = Variable(kDeviceInfo, places),
                      .timeout = Variable(kTimeout, places)});
}

// Null for a program that has more rights than its user.
[[nodiscard]] const char* GetVariable(const char* name) { return secure_getenv(name); }

[[nodiscard]] std::string UserFile() {
  const auto folder_of = [](const char* variable) -> std::string {
    const char* const folder = GetVariable(variable);
    return folder != nullptr && *folder == '/' ? folder : "";
  };
  std::string folder = folder_of("XDG_CONFIG_HOME");
  if (folder.empty() && !folder_of("HOME").empty()) folder = folder_of("HOME") + "/.config";
  return folder.empty() ? "" : folder + "/info-analyze.conf";
}

}  // namespace

Settings ReadSettings(const SettingsPlaces& places) {
  Settings settings;
  if (!places.config_file.empty()) {
    ReadNamedFile(places.config_file, settings);
  } else {
    ReadUsualFile(places.system_file, settings);
    if (!places.user_file.empty()) ReadUsualFile(places.user_file, settings);
  }
  ReadVariables(places, settings);
  return settings;
}

const Settings& CurrentSettings(const std::string& config_file) {
  static const Settings settings = ReadSettings({.system_file = IA_TOOL_CONFIG_FILE,
                                                 .user_file = UserFile(),
                                                 .config_file = config_file,
                                                 .variable = GetVariable});
  return settings;
}

const ModelFolder* FindModelFolder(const Settings& settings, const std::string& code) {
  if (code.empty()) return nullptr;
  const ModelFolder* best = nullptr;
  for (const ModelFolder& folder : settings.model_folders) {
    const bool is_prefix = folder.models.ends_with('*');
    const std::string_view models = folder.models;
    const bool includes =
        is_prefix ? code.starts_with(models.substr(0, models.size() - 1)) : code == models;
    if (!includes) continue;
    if (!is_prefix) return &folder;  // none is longer
    if (best == nullptr || models.size() > best->models.size()) best = &folder;
  }
  return best;
}

int TimeoutOf(const PrinterLocation& given, const Settings& settings) {
  return given.has_timeout || !settings.timeout ? given.timeout : std::stoi(settings.timeout->text);
}

std::string WaysToGive(const SettingNames& names, const Settings& settings) {
  const std::string file = settings.files.empty() ? IA_TOOL_CONFIG_FILE : settings.files[0].path;
  return std::string("set ") + names.variable + ", or write " + names.key + " into " + file;
}

}  // namespace ia::cli
