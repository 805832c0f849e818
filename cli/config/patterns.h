// Settings in which patterns such as {queue} are replaced for one printer.
#ifndef INFO_ANALYZE_CLI_CONFIG_PATTERNS_H_
#define INFO_ANALYZE_CLI_CONFIG_PATTERNS_H_

#include <functional>
#include <string>

#include "cli/config/settings.h"
#include "cli/printer/session.h"

namespace ia::cli {

// What replaces {queue}, {host} and {model}. The functions are called only where they are needed,
// each once at most; an empty text is unknown. They may throw a Failure.
struct QueueWords {
  std::string queue;
  std::function<std::string()> host;
  std::function<std::string()> model;
};

// The host of a device URI; empty for a device that is not on a network.
[[nodiscard]] std::string HostOfDeviceUri(const std::string& uri);

// The words of the location's queue, from CUPS; all empty without a queue.
[[nodiscard]] QueueWords WordsOf(const PrinterLocation& location);

// The text with its patterns replaced. Throws a Failure that names the setting when a word is
// unknown or would lead to a different folder: "." and "..", and words with a "/".
[[nodiscard]] std::string ReplacePatterns(const SettingValue& setting, const QueueWords& words);

// Throws a CLI::RequiredError when neither the command line nor a setting has the driver folder or
// the document directory that the verb needs.
void RequireLocation(const PrinterLocation& given, const Settings& settings);

// The setting that is in force for the document directory.
[[nodiscard]] SettingValue DeviceInfoOf(const PrinterLocation& given, const Settings& settings);

// The setting that is in force for the driver folder of a queue; throws a Failure when there is
// none for its model.
[[nodiscard]] SettingValue DriverFolderOf(const PrinterLocation& given, const Settings& settings,
                                          const QueueWords& words);

// The location with the driver folder, the document directory and the time limit that the verb
// needs, from the command line or else from the settings. The documents of a location with a
// snapshot stay as they are. Throws as the functions above do.
[[nodiscard]] PrinterLocation Complete(const PrinterLocation& given, const Settings& settings,
                                       const QueueWords& words);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CONFIG_PATTERNS_H_
