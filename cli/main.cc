// info-analyze: the library's answers on the command line.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/acquire/acquire.h"
#include "cli/apply/apply.h"
#include "cli/audit/audit.h"
#include "cli/calibration/calibration.h"
#include "cli/commlib/commlib.h"
#include "cli/diff/diff.h"
#include "cli/doctor/doctor.h"
#include "cli/explain/explain.h"
#include "cli/snapshot/snapshot.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/nearest.h"
#include "cli/terminal/output.h"
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

// Thrown by the verb "help"; the words name a verb.
struct HelpRequest {
  std::vector<std::string> words;
};

void DefineHelp(CLI::App& verb) {
  const auto words = std::make_shared<std::vector<std::string>>();
  verb.add_option("VERB", *words, "The verb, as in help queues find");
  verb.footer("Examples:\n  info-analyze help explain");
  verb.callback([words] { throw HelpRequest{*words}; });
}

constexpr auto kVerbs = std::to_array<Verb>({
    {"acquire", "Read a device over the network and write its documents", DefineAcquire},
    {"apply", "Set the PPD defaults of queues to what their devices have", DefineApply},
    {"audit", "Compare the PPD defaults of queues with what their devices have", DefineAudit},
    {"calibration", "Print calibration settings, default data and curves", DefineCalibration},
    {"commlib", "Check the communication library of a driver", DefineCommlib},
    {"completion", "Print a completion script for a shell", DefineCompletion},
    {"config", "Print the settings in force and where they are set", DefineConfig},
    {"diff", "Compare two printers, or a printer with its snapshot", DefineDiff},
    {"doctor", "Find out what is wrong with a printer's set-up, and what to fix first",
     DefineDoctor},
    {"explain", "Explain why each option of a printer has its value", DefineExplain},
    {"function-version", "Print the flags that a driver function version selects",
     DefineFunctionVersion},
    {"help", "Print the help of a verb", DefineHelp},
    {"models", "List the handlers that decide the options of each driver model", DefineModels},
    {"profile", "Check the profiles by which devices are read", DefineProfile},
    {"query", "Print the PPD options of a printer", DefineQuery},
    {"queues", "List print queues, or find the one that serves a device", DefineQueues},
    {"snapshot", "Save a printer's PPD and documents in PATH", DefineSnapshot},
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

using Words = std::span<char* const>;

// The words after the program's name that are verbs.
[[nodiscard]] std::string VerbIn(const CLI::App& app, Words words) {
  std::string name;
  const CLI::App* verb = &app;
  for (const std::string word : words) {
    const auto named =
        verb->get_subcommands([&](const CLI::App* subverb) { return subverb->get_name() == word; });
    if (named.empty()) break;
    verb = named.front();
    name += (name.empty() ? "" : " ") + word;
  }
  return name;
}

// Found without the parser, whose failures are reported in this format, too.
[[nodiscard]] bool WantsJson(Words words) {
  std::string_view previous;
  for (const std::string_view word : words) {
    if (word == "--format=json" || (previous == "--format" && word == "json")) return true;
    previous = word;
  }
  return false;
}

// The last verb that the command line names; the tool itself when it names none.
[[nodiscard]] const CLI::App* FindVerb(const CLI::App* app) {
  const std::vector<CLI::App*> named = app->get_subcommands();
  return named.empty() ? app : FindVerb(named.front());
}

// "info-analyze queues find".
[[nodiscard]] std::string CommandOf(const CLI::App& verb) {
  const CLI::App* const parent = verb.get_parent();
  return (parent != nullptr ? CommandOf(*parent) + " " : "") + verb.get_name();
}

[[nodiscard]] std::string HelpHint(const CLI::App& verb) {
  return "see " + CommandOf(verb) + " --help";
}

[[nodiscard]] std::vector<std::string> VerbsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const verb : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(verb->get_name());
  }
  return names;
}

[[nodiscard]] std::vector<std::string> OptionsOf(const CLI::App& verb) {
  std::vector<std::string> names;
  for (const CLI::Option* const option : verb.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

// "unknown verb qurey (did you mean query?)"
[[nodiscard]] std::string UnknownText(const std::string& what, const std::string& word,
                                      const std::vector<std::string>& known) {
  const std::optional<std::string> nearest = FindNearest(word, known);
  return "unknown " + what + " " + word + (nearest ? " (did you mean " + *nearest + "?)" : "");
}

[[nodiscard]] Failure UnknownVerb(const CLI::App& parent, const std::string& word) {
  return {ExitStatus::kUsage,
          {.cause = UnknownText("verb", word, VerbsOf(parent)), .hint = HelpHint(parent)}};
}

// The words of a command line that no verb takes, in the order given.
[[nodiscard]] std::vector<std::string> UnknownWords(const CLI::App& app,
                                                    const std::vector<std::string>& arguments) {
  std::vector<std::string> left = app.remaining(true);
  std::vector<std::string> words;
  for (const std::string& argument : arguments) {
    const auto hit = std::ranges::find(left, argument);
    if (hit == left.end()) continue;
    words.push_back(argument);
    left.erase(hit);
  }
  return words;
}

[[nodiscard]] bool IsOption(const std::string& word) { return word.starts_with('-'); }

[[nodiscard]] std::string UnknownOption(const CLI::App& verb, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  const std::vector<std::string> known = OptionsOf(verb);
  const bool is_known = std::ranges::find(known, name) != known.end();
  return is_known ? name + " must follow the verb" : UnknownText("option", name, known);
}

// Throws a Failure that names what no verb takes, if there is something.
void RefuseUnknownWords(const CLI::App& app, const std::vector<std::string>& arguments) {
  const CLI::App& verb = *FindVerb(&app);
  const std::vector<std::string> words = UnknownWords(app, arguments);
  const auto argument = std::ranges::find_if_not(words, IsOption);
  // Its options follow a verb that is misspelt.
  if (!VerbsOf(verb).empty() && argument == words.begin() && argument != words.end()) {
    throw UnknownVerb(verb, *argument);
  }
  const bool has_options = std::ranges::any_of(words, IsOption);
  std::string text;
  for (const std::string& word : words) {
    if (has_options && !IsOption(word)) continue;  // it may be the value of one
    text += text.empty() ? "" : ", ";
    text += IsOption(word) ? UnknownOption(verb, word) : "unexpected argument " + word;
  }
  if (text.empty()) return;
  throw Failure(ExitStatus::kUsage, {.cause = text, .hint = HelpHint(verb)});
}

// The help of the verb that the words name, or of the tool.
[[nodiscard]] std::string FindHelp(const CLI::App& app, const std::vector<std::string>& words) {
  const CLI::App* verb = &app;
  for (const std::string& word : words) {
    const auto verbs =
        verb->get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
    if (verbs.empty()) throw UnknownVerb(*verb, word);
    verb = verbs.front();
  }
  return verb->get_formatter()->make_help(verb, CommandOf(*verb), CLI::AppFormatMode::Normal);
}

void RequireVerb(const CLI::App& verb) {
  if (VerbsOf(verb).empty()) return;
  throw Failure(ExitStatus::kUsage, {.cause = "a verb is required", .hint = HelpHint(verb)});
}

[[nodiscard]] ExitStatus Fail(ExitStatus status, const FailureParts& parts) {
  ReportFailure(status, parts);
  return status;
}

// Parses the command line and runs the verb that it names.
void Parse(CLI::App& app, int argc, char** argv) {
  const Words words(argv + std::min(argc, 1), argv + argc);
  SetVerb(VerbIn(app, words), WantsJson(words));
  try {
    app.parse(argc, argv);
    RequireVerb(*FindVerb(&app));
  } catch (const HelpRequest& request) {
    WriteAnswer(FindHelp(app, request.words));
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // --help and --version
      std::ostringstream text;
      app.exit(error, text, text);
      return WriteAnswer(text.str());
    }
    RefuseUnknownWords(app, {words.begin(), words.end()});
    RequireVerb(*FindVerb(&app));
    throw Failure(ExitStatus::kUsage, {.cause = error.what(), .hint = HelpHint(*FindVerb(&app))});
  }
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
    Parse(app, argc, argv);
    return ExitStatus::kSuccess;
  } catch (const Verdict& verdict) {
    return verdict.status();
  } catch (const Failure& failure) {
    return Fail(failure.status(), failure.parts());
  } catch (const ReaderHasEnded&) {
    signal(SIGPIPE, SIG_DFL);
    raise(SIGPIPE);
    return ExitStatus::kOther;
  } catch (const std::exception& error) {
    return Fail(ExitStatus::kOther, {.cause = error.what()});
  }
}

}  // namespace
}  // namespace ia::cli

// An error that cannot be reported because the tool is out of memory may end it.
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape)
  ia::cli::OpenStandardStreams();
  ia::cli::RemoveTemporaryFoldersOnInterrupt();
  signal(SIGPIPE, SIG_IGN);  // a failing write ends the verb instead
  return static_cast<int>(ia::cli::Run(argc, argv));
}
