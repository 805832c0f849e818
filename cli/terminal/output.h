// The formats in which verbs give their answers.
#ifndef INFO_ANALYZE_CLI_TERMINAL_OUTPUT_H_
#define INFO_ANALYZE_CLI_TERMINAL_OUTPUT_H_

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "info_analyze/option_list.h"

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

struct Answer {
  const char* driver_name;    // null when the PPD has none
  const OptionList* options;  // without the list's first, empty node
};

using Formatter = std::string (*)(const Answer& answer);

// One line for each option, "KEYWORD=VALUE", with control characters made visible.
[[nodiscard]] std::string FormatText(const Answer& answer);

// The text; null for an empty one.
[[nodiscard]] nlohmann::ordered_json OrNull(const std::string& text);

// One JSON object in ASCII, with its keys in a fixed order; bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string FormatJson(const Answer& answer);

// The object in that form, with the version of the formats and the verb before its members.
[[nodiscard]] std::string DumpJson(const nlohmann::ordered_json& members);

// The same in one line.
[[nodiscard]] std::string DumpJsonLine(const nlohmann::ordered_json& members);

[[nodiscard]] std::vector<std::string> FormatNames();

// Adds the option that chooses one of them; its present value is the default.
void AddFormatOption(CLI::App& verb, std::string& format);

// The formatter of a name of FormatNames().
[[nodiscard]] Formatter FindFormatter(const std::string& name);

// Writes to standard output; throws a Failure when not all of the text got there.
void WriteAnswer(const std::string& text);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_OUTPUT_H_
