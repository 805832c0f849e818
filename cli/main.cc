// info-analyze: the library's answers on the command line.

#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "cli/calibration/calibration.h"
#include "cli/diff/diff.h"
#include "cli/doctor/doctor.h"
#include "cli/explain/explain.h"
#include "cli/snapshot/snapshot.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/temporary_folder.h"
#include "cli/terminal/terminal.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

struct Verb {
  const char* name;
  const char* description;
  void (*define)(CLI::App& verb);
};

constexpr auto kVerbs = std::to_array<Verb>({
    {"calibration", "Print calibration settings, default data and curves", DefineCalibration},
    {"completion", "Print a completion script for a shell", DefineCompletion},
    {"diff", "Compare two printers, or a printer with its snapshot", DefineDiff},
    {"doctor", "Find out what is wrong with a printer's set-up, and what to fix first",
     DefineDoctor},
    {"explain", "Explain why each option of a printer has its value", DefineExplain},
    {"function-version", "Print the flags that a driver function version selects",
     DefineFunctionVersion},
    {"models", "List the handlers that decide the options of each driver model", DefineModels},
    {"query", "Print the PPD options of a printer", DefineQuery},
    {"queues", "List print queues, or find the one that serves a device", DefineQueues},
    {"snapshot", "Save a printer's PPD and documents in DIR", DefineSnapshot},
    {"uri", "Print the driver, address and port of a device URI", DefineUri},
});

// The common options of every verb without verbs of its own.
void AddCommonOptions(CLI::App& verb) {
  const auto subverbs = verb.get_subcommands([](const CLI::App*) { return true; });
  for (CLI::App* const subverb : subverbs) AddCommonOptions(*subverb);
  if (!subverbs.empty()) return;
  CLI::Option* const quiet =
      verb.add_flag_function("--quiet", [](std::int64_t) { SetQuiet(true); }, "Print errors only");
  verb.add_flag_function(
          "--verbose", [](std::int64_t) { SetVerbose(true); },
          "Print on standard error how long each step takes")
      ->excludes(quiet);
}

void DefineCommandLine(CLI::App& app) {
  app.name("info-analyze");
  app.set_version_flag("--version", "info-analyze " IA_TOOL_VERSION, "Print the version and exit");
  app.require_subcommand(0, 1);  // none is found out in RequireVerb(), after unknown words
  for (const Verb& verb : kVerbs) verb.define(*app.add_subcommand(verb.name, verb.description));
  AddCommonOptions(app);
}

[[nodiscard]] std::string HelpHint(const CLI::App& app) {
  std::string command = app.get_name();
  for (const CLI::App* verb = &app; !verb->get_subcommands().empty();) {
    verb = verb->get_subcommands().front();
    command += " " + verb->get_name();
  }
  return "; see " + command + " --help";
}

void RequireVerb(const CLI::App& app) {
  if (!app.get_subcommands().empty()) return;
  throw Failure(ExitStatus::kUsage, "a subcommand is required" + HelpHint(app));
}

[[nodiscard]] ExitStatus Fail(ExitStatus status, const std::string& message) {
  ReportError(message);
  return status;
}

[[nodiscard]] ExitStatus EndParsing(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {  // --help and --version
    app.exit(error);
    return ExitStatus::kSuccess;
  }
  return Fail(ExitStatus::kUsage, error.what() + HelpHint(app));
}

// A file that gets the descriptor of a closed standard stream would be taken for that stream, and
// the library reads no document from descriptor 0. Writing to the replacement of standard output
// fails, as it would without it.
void OpenStandardStreams() {
  int descriptor = open("/dev/null", O_RDONLY);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = open("/dev/null", O_RDONLY);
  if (descriptor >= 0) close(descriptor);
}

// CLI11 from 2.5 on breaks the lines of examples anew. Older ones keep them.
template <typename Formatter>
void KeepLines(Formatter& formatter) {
  if constexpr (requires { formatter.enable_footer_formatting(false); }) {
    formatter.enable_footer_formatting(false);
  }
}

// Makes one help text with all releases of CLI11: some leave "Usage:" out.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { KeepLines(*this); }

  [[nodiscard]] std::string make_usage(const CLI::App* app, std::string name) const override {
    std::string usage = CLI::Formatter::make_usage(app, std::move(name));
    const std::string label = get_label("Usage") + ":";
    if (usage.find(label) != std::string::npos) return usage;
    return label + " " + usage.substr(std::min(usage.find_first_not_of('\n'), usage.size()));
  }
};

[[nodiscard]] ExitStatus Run(int argc, char** argv) {
  CLI::App app(
      "Works out a printer's PPD options from its PPD and the documents the device reports.");
  app.formatter(std::make_shared<HelpFormatter>());
  try {
    DefineCommandLine(app);
    app.parse(argc, argv);
    RequireVerb(app);
    return ExitStatus::kSuccess;
  } catch (const CLI::ParseError& error) {
    return EndParsing(app, error);
  } catch (const Verdict& verdict) {
    return verdict.status();
  } catch (const Failure& failure) {
    return Fail(failure.status(), failure.what());
  } catch (const std::exception& error) {
    return Fail(ExitStatus::kOther, error.what());
  }
}

}  // namespace
}  // namespace ia::cli

// An error that cannot be reported because the tool is out of memory may end it.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  ia::cli::OpenStandardStreams();
  ia::cli::RemoveTemporaryFoldersOnInterrupt();
  return static_cast<int>(ia::cli::Run(argc, argv));
}
