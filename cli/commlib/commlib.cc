#include "cli/commlib/commlib.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <vector>

#include "cli/commlib/check.h"
#include "cli/commlib/skeleton.h"
#include "cli/commlib/trial.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/shell_quoting.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;
using Results = std::vector<ClauseResult>;

constexpr const char* kLibraryName = "libmqpd_util.so";
constexpr int kClauseTimeout = 10;  // seconds

struct CheckQuestion {
  std::string folder;
  std::string documents;
  int timeout = kClauseTimeout;
  std::string format = "text";
};

// The library of a driver folder, or of its own folder.
[[nodiscard]] TriedLibrary FindLibrary(const CheckQuestion& question) {
  const std::filesystem::path folder = std::filesystem::absolute(question.folder);
  TriedLibrary tried = {.path = folder / kLibraryName,
                        .folder = folder.parent_path(),
                        .documents = question.documents};
  std::error_code error;
  if (!std::filesystem::exists(tried.path, error)) {
    tried.path = LibraryPath(folder);
    tried.folder = folder;
  }
  const auto type = std::filesystem::status(tried.path, error).type();
  if (type == std::filesystem::file_type::regular) return tried;
  const bool is_present = type != std::filesystem::file_type::not_found && !error;
  throw Failure(ExitStatus::kCommunicationLibrary,
                {.action = "cannot check",
                 .object = "communication library " + tried.path,
                 .cause = is_present ? "not a regular file" : error.message(),
                 .hint = "pass the driver folder or the folder of the library"});
}

[[nodiscard]] const char* NameOf(Outcome outcome) {
  if (outcome == Outcome::kKept) return "kept";
  return outcome == Outcome::kBroken ? "broken" : "not tested";
}

[[nodiscard]] Colour ColourOf(Outcome outcome) {
  if (outcome == Outcome::kKept) return Colour::kGreen;
  return outcome == Outcome::kBroken ? Colour::kRed : Colour::kYellow;
}

[[nodiscard]] std::size_t Count(const Results& results, Outcome outcome) {
  return static_cast<std::size_t>(std::ranges::count(results, outcome, &ClauseResult::outcome));
}

[[nodiscard]] std::string TextOf(const ClauseResult& result) {
  std::string outcome = NameOf(result.outcome);
  outcome.resize(12, ' ');
  std::string name = result.clause.name;
  name.resize(21, ' ');
  std::string text =
      Coloured(outcome, ColourOf(result.outcome)) + name + result.clause.sentence + "\n";
  if (!result.detail.empty()) text += std::string(33, ' ') + Printable(result.detail) + "\n";
  return text;
}

[[nodiscard]] std::string FormatResults(const Results& results) {
  std::string text;
  for (const ClauseResult& result : results) text += TextOf(result);
  return text + std::to_string(results.size()) +
         " clauses: " + std::to_string(Count(results, Outcome::kKept)) + " kept, " +
         std::to_string(Count(results, Outcome::kBroken)) + " broken, " +
         std::to_string(Count(results, Outcome::kNotTested)) + " not tested\n";
}

[[nodiscard]] std::string ResultsJson(const TriedLibrary& tried, const Results& results) {
  Json clauses = Json::array();
  for (const ClauseResult& result : results) {
    clauses.push_back({{"clause", result.clause.name},
                       {"sentence", result.clause.sentence},
                       {"result", NameOf(result.outcome)},
                       {"detail", OrNull(result.detail)}});
  }
  return DumpJson({{"library", tried.path},
                   {"kept", Count(results, Outcome::kKept)},
                   {"broken", Count(results, Outcome::kBroken)},
                   {"not_tested", Count(results, Outcome::kNotTested)},
                   {"clauses", clauses}});
}

[[nodiscard]] Results Run(const CheckQuestion& question, const TriedLibrary& tried) {
  const Step step("the check of communication library " + tried.path);
  return CheckLibrary(tried, std::chrono::seconds(question.timeout));
}

void Check(const CheckQuestion& question) {
  const TriedLibrary tried = FindLibrary(question);
  const Results results = Run(question, tried);
  WriteAnswer(question.format == "json" ? ResultsJson(tried, results) : FormatResults(results));
  if (Count(results, Outcome::kBroken) > 0) throw Verdict(ExitStatus::kFailures);
}

void DefineCheck(CLI::App& verb) {
  const auto question = std::make_shared<CheckQuestion>();
  verb.add_option("DIR", question->folder, "Driver folder, or the folder of the library")
      ->required();
  verb.add_option("--documents", question->documents, "Try it with the nine documents in DIR too")
      ->type_name("DIR");
  verb.add_option("--timeout", question->timeout, "Seconds that a clause may take")
      ->type_name("SECONDS")
      ->check(CLI::Range(1, kMaxTimeout))
      ->capture_default_str();
  AddFormatOption(verb, question->format);
  verb.footer(
      "Exit status: 0 no clause is broken, 8 a clause is broken.\n"
      "Examples:\n"
      "  info-analyze commlib check /usr/lib/driver\n"
      "  info-analyze commlib check build --documents documents");
  verb.callback([question] { Check(*question); });
}

struct NewQuestion {
  std::string folder;
  std::string language = "c";
};

void New(const NewQuestion& question) {
  WriteSkeleton(question.language, question.folder);
  const std::string folder = QuoteForShell(question.folder);
  const std::string build = QuoteForShell(question.folder + "/build");
  WriteAnswer("cmake -S " + folder + " -B " + build + " && cmake --build " + build +
              " && ctest --test-dir " + build + " --output-on-failure\n");
}

void DefineNew(CLI::App& verb) {
  const auto question = std::make_shared<NewQuestion>();
  verb.add_option("DIR", question->folder, "New folder")->required();
  verb.add_option("--language", question->language, "Language of the sources")
      ->type_name("LANGUAGE")
      ->check(CLI::IsMember(SkeletonLanguages()))
      ->capture_default_str();
  verb.footer(
      "Prints the command that builds the library and checks it.\n"
      "Example:\n"
      "  info-analyze commlib new mqpd_util --language c++");
  verb.callback([question] { New(*question); });
}

}  // namespace

void DefineCommlib(CLI::App& verb) {
  verb.require_subcommand(0, 1);
  DefineCheck(*verb.add_subcommand("check", "Try a communication library against its contract"));
  DefineNew(*verb.add_subcommand("new", "Write the sources with which a library begins"));
}

}  // namespace ia::cli
