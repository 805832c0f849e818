#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/acquire/acquired_documents.h"
#include "cli/acquire/device_facts.h"
#include "cli/acquire/document_folder.h"
#include "cli/acquire/profile.h"
#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/explain/unknown_values.h"
#include "cli/printer/handles.h"
#include "cli/printer/printer_query.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/regular_file.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/temporary_folder.h"
#include "cli/verbs.h"

namespace ia::cli {
namespace {

using nlohmann::ordered_json;

constexpr std::size_t kMaxPpdSize = std::size_t{16} << 20;

struct CheckQuestion {
  PrinterLocation location;
  std::string profile;
  std::string ppd;  // file; empty: that of the location's queue, if it has one
  std::string format = "text";
};

// What of the profile the PPD does not know.
struct Finding {
  std::string place;  // of the rule
  std::string key;
  std::string sentence;
};

// Every value of the profile, in documents -------------------------------------------------------

// The names that a rule for finishing units is about, where it gives none itself.
[[nodiscard]] std::vector<std::string> NamesOf(const Rule& rule) {
  for (const Condition& condition : rule.conditions) {
    if (condition.field != "name") continue;
    std::vector<std::string> names;
    for (const std::string& pattern : condition.patterns) {
      if (pattern.find_first_of("*?[") == std::string::npos) names.push_back(pattern);
    }
    return names;
  }
  return {};
}

[[nodiscard]] Part PartOf(const Rule& rule, const KeyValues& values) {
  Part part = {.name = rule.place, .fields = {}, .known = {}};
  for (const auto& [key, value] : values) part.known[key] = {.value = value, .source = ""};
  return part;
}

// The rule as items of its list.
void AddParts(std::int32_t document, const Rule& rule, std::vector<Part>& parts) {
  for (const KeyValues& values : rule.values) {
    Part part = PartOf(rule, values);
    const bool needs_name = document == IA_DOCUMENT_FINISHER_LIST && !values.contains("name");
    if (!needs_name) {
      parts.push_back(part);
      continue;
    }
    for (const std::string& name : NamesOf(rule)) {
      part.known["name"] = {.value = name, .source = ""};
      parts.push_back(part);
    }
  }
}

[[nodiscard]] std::vector<AcquiredDocument> DocumentsOf(const Profile& profile) {
  std::vector<AcquiredDocument> documents;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    AcquiredDocument& document =
        documents.emplace_back(AcquiredDocument{.document = i, .parts = {}, .left_out = ""});
    const auto list = profile.lists.find(i);
    if (list == profile.lists.end()) continue;
    for (const Rule& rule : list->second) AddParts(i, rule, document.parts);
  }
  return documents;
}

// The check --------------------------------------------------------------------------------------

[[nodiscard]] std::vector<Finding> FindUnknown(const Profile& profile, const CopiedPpd& ppd,
                                               BidiContext& library) {
  const std::vector<AcquiredDocument> documents = DocumentsOf(profile);
  const TemporaryFolder folder;
  WriteDocumentFiles(WriteDocuments(library, documents), folder.path());
  const AnalyzerPtr analyzer = ppd.CreateAnalyzer(&library, folder.path().c_str());
  const OptionListPtr options = QueryPrinter(*analyzer, profile.file);
  std::vector<Finding> findings;
  for (const UnknownValue& unknown : FindUnknownValues(*analyzer)) {
    const auto document = static_cast<std::size_t>(unknown.raw.input->document);
    const Part& part = documents[document].parts[static_cast<std::size_t>(unknown.raw.item)];
    const std::string sentence = Describe(unknown);
    const std::size_t value = sentence.find(unknown.raw.key + " = ");
    findings.push_back({.place = part.name,
                        .key = unknown.raw.key,
                        .sentence = sentence.substr(value != std::string::npos ? value : 0)});
  }
  return findings;
}

[[nodiscard]] std::vector<Finding> FindUnknown(const CheckQuestion& question,
                                               const Profile& profile) {
  PrinterLocation location = question.location;
  location.needs_driver = true;
  if (!question.ppd.empty()) {
    location = Complete(location, CurrentSettings(location.config_file), WordsOf(location));
    const BidiPtr library = LoadLibrary(location.driver_folder);
    try {
      const CopiedPpd ppd("profile", ReadRegularFile(question.ppd, kMaxPpdSize));
      return FindUnknown(profile, ppd, *library);
    } catch (const FileFault& fault) {
      throw Failure(
          ExitStatus::kQueue,
          {.action = "cannot read", .object = "PPD " + question.ppd, .cause = fault.what()});
    }
  }
  location = Locate(location);
  const BidiPtr library = LoadLibrary(location.driver_folder);
  return FindUnknown(profile, CopiedPpd(location), *library);
}

[[nodiscard]] std::string FindingsAsText(const std::vector<Finding>& findings) {
  std::string text;
  for (const Finding& finding : findings) {
    text += finding.place + " " + Printable(finding.sentence) + "\n";
  }
  return text;
}

[[nodiscard]] std::string FindingsAsJson(const Profile& profile,
                                         const std::vector<Finding>& findings) {
  ordered_json all = ordered_json::array();
  for (const Finding& finding : findings) {
    all.push_back({{"rule", finding.place}, {"key", finding.key}, {"sentence", finding.sentence}});
  }
  return DumpJson({{"profile", profile.file}, {"name", OrNull(profile.name)}, {"findings", all}});
}

void Check(const CheckQuestion& question) {
  const Profile profile = ReadProfile(question.profile);
  const bool has_ppd = !question.ppd.empty() || !question.location.queue.empty();
  const std::vector<Finding> findings =
      has_ppd ? FindUnknown(question, profile) : std::vector<Finding>();
  WriteAnswer(question.format == "json" ? FindingsAsJson(profile, findings)
                                        : FindingsAsText(findings));
  if (!findings.empty()) throw Verdict(ExitStatus::kWarnings);
}

void DefineCheck(CLI::App& verb) {
  const auto question = std::make_shared<CheckQuestion>();
  verb.add_option("FILE", question->profile, "Profile of devices")->required();
  verb.add_option("--ppd", question->ppd, "PPD that must know the codes, names and media")
      ->type_name("FILE")
      ->excludes(
          verb.add_option("-p,--queue", question->location.queue, "CUPS queue that has this PPD")
              ->type_name("NAME"));
  AddCupsRootOption(verb, question->location);
  AddTimeoutOption(verb, question->location);
  AddConfigOption(verb, question->location);
  AddDriverOption(verb, question->location);
  AddFormatOption(verb, question->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze profile check office.json\n"
      "  info-analyze profile check office.json --ppd office.ppd \\\n"
      "      --driver-folder /usr/lib/driver");
  verb.callback([question] { Check(*question); });
}

}  // namespace

void DefineProfile(CLI::App& verb) {
  verb.require_subcommand(0, 1);
  DefineCheck(*verb.add_subcommand("check", "Check a profile, and its values against a PPD"));
}

}  // namespace ia::cli
