#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

struct FunctionVersionOptions {
  PrinterLocation location;
  std::string format = "text";
  std::string version;
};

// Hexadecimal after "0x", else decimal.
[[nodiscard]] std::uint32_t ParseVersion(const std::string& text) {
  std::string_view digits = text;
  const bool is_hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (is_hexadecimal) digits.remove_prefix(2);
  std::uint32_t version = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), version,
                                            is_hexadecimal ? 16 : 10);
  if (error == std::errc() && end == digits.data() + digits.size()) return version;
  throw Failure(ExitStatus::kUsage,
                {.object = "\"" + text + "\"", .cause = "not a function version of 32 bits"});
}

void ShowFlags(const FunctionVersionOptions& options) {
  const std::uint32_t version = ParseVersion(options.version);
  const PrinterLocation location = Locate(options.location);
  const Session session = OpenSession(location);
  const OptionListPtr flags = StartOptionList();
  const int32_t result =
      Analyze_Info_FromFunctionVersion(session.analyzer.get(), version, flags.get());
  if (result != 0) {
    throw Failure(
        ExitStatus::kOther,
        "cannot determine the flags of the function version: result " + std::to_string(result));
  }
  const Answer answer = {session.analyzer->driver_name, flags->next};
  WriteAnswer(FindFormatter(options.format)(answer));
}

}  // namespace

void DefineFunctionVersion(CLI::App& verb) {
  const auto options = std::make_shared<FunctionVersionOptions>();
  AddQueueOptions(verb, options->location);
  AddFormatOption(verb, options->format);
  verb.add_option("version", options->version,
                  "Function version, hexadecimal (0x310) or decimal (784)")
      ->type_name("VERSION")
      ->required();
  verb.footer(
      "Examples:\n"
      "  info-analyze function-version 0x310 --queue office --driver-folder /usr/lib/driver");
  verb.callback([options] { ShowFlags(*options); });
}

}  // namespace ia::cli
