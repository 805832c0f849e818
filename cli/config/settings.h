// What need not be on each command line: the settings of the configuration files and the
// environment.
#ifndef INFO_ANALYZE_CLI_CONFIG_SETTINGS_H_
#define INFO_ANALYZE_CLI_CONFIG_SETTINGS_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/printer/session.h"

namespace ia::cli {

// How to give a setting: an option, an environment variable, or a key of a configuration file.
struct SettingNames {
  const char* option;
  const char* variable;
  const char* key;
};

inline constexpr SettingNames kDriverFolder = {
    .option = "--driver-folder", .variable = "INFO_ANALYZE_DRIVER_FOLDER", .key = "driver-folder"};
inline constexpr SettingNames kDeviceInfo = {
    .option = "--device-info", .variable = "INFO_ANALYZE_DEVICE_INFO", .key = "device-info"};
inline constexpr SettingNames kTimeout = {
    .option = "--timeout", .variable = "INFO_ANALYZE_TIMEOUT", .key = "timeout"};

struct SettingValue {
  std::string text;
  std::string source;  // path of a configuration file, environment variable or option
};

// A driver folder for some models.
struct ModelFolder {
  std::string models;  // a model code, or the prefix of some with a "*" after it
  std::string folder;
  std::string source;  // path of a configuration file
};

enum class FileState { kRead, kMissing, kUnreadable };

struct SettingsFile {
  std::string path;
  FileState state;
};

struct Settings {
  std::optional<SettingValue> driver_folder;
  std::vector<ModelFolder> model_folders;  // they win over driver_folder
  std::optional<SettingValue> device_info;
  std::optional<SettingValue> timeout;  // a number of seconds that is possible
  std::vector<SettingsFile> files;      // in the order in which they were read
};

// Where settings are; a later place wins.
struct SettingsPlaces {
  std::string system_file;
  std::string user_file;    // empty: none
  std::string config_file;  // if not empty, it replaces the two others
  std::function<const char*(const char* name)> variable;  // null: not set
};

// Throws a Failure for what is wrong in a file or variable, and for a config_file that cannot be
// read. Warns of other files that exist and cannot be read.
[[nodiscard]] Settings ReadSettings(const SettingsPlaces& places);

// The settings of this process, read at the first call. The option --config names the file; empty:
// those of the system and the user.
[[nodiscard]] const Settings& CurrentSettings(const std::string& config_file);

// The one whose models include the code and are given by the most characters; null: none.
[[nodiscard]] const ModelFolder* FindModelFolder(const Settings& settings, const std::string& code);

// The option of the command line, else the setting, else the default.
[[nodiscard]] int TimeoutOf(const PrinterLocation& given, const Settings& settings);

// "set INFO_ANALYZE_DEVICE_INFO, or write device-info into FILE".
[[nodiscard]] std::string WaysToGive(const SettingNames& names, const Settings& settings);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CONFIG_SETTINGS_H_
