#include "cli/diff/diff.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/config/settings.h"
#include "cli/diff/printer_state.h"
#include "cli/printer/lpadmin.h"
#include "cli/provenance/provenance.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kLive = "queue:";
constexpr const char* kRefusedByLpadmin = "\"'\\?";

struct DiffQuestion {
  PrinterLocation location;  // of live queues
  std::string before;
  std::string after;
  std::string format = "text";
  bool wants_lpadmin = false;
  bool wants_status_only = false;
};

struct Change {
  const PrinterOption* before;  // null: only the later one has the option
  const PrinterOption* after;   // null: only the earlier one has it
};

struct Difference {
  PrinterState before;
  PrinterState after;
  std::vector<Change> changes;

  [[nodiscard]] bool IsNone() const {
    return changes.empty() && before.model_code == after.model_code &&
           before.list_counts == after.list_counts;
  }
};

[[nodiscard]] PrinterLocation LocationOf(const std::string& printer, const DiffQuestion& question) {
  PrinterLocation location = question.location;
  if (printer.starts_with(kLive)) {
    location.queue = printer.substr(kLive.size());
  } else {
    location.snapshot = printer;
    location.cups_root.clear();
    location.device.clear();
  }
  return location;
}

[[nodiscard]] const PrinterOption* FindOption(const PrinterState& state,
                                              const std::string& keyword) {
  const auto hit = std::ranges::find(state.options, keyword, &PrinterOption::keyword);
  return hit != state.options.end() ? &*hit : nullptr;
}

[[nodiscard]] const PrinterOption& LatestOf(const Change& change) {
  return change.after != nullptr ? *change.after : *change.before;
}

// In the order of the later printer, and then what only the earlier one has.
[[nodiscard]] std::vector<Change> ChangesOf(const PrinterState& before, const PrinterState& after) {
  std::vector<Change> changes;
  for (const PrinterOption& option : after.options) {
    const PrinterOption* const earlier = FindOption(before, option.keyword);
    if (earlier == nullptr || earlier->value != option.value) changes.push_back({earlier, &option});
  }
  for (const PrinterOption& option : before.options) {
    if (FindOption(after, option.keyword) == nullptr) changes.push_back({&option, nullptr});
  }
  return changes;
}

[[nodiscard]] std::string DefaultOf(const std::string& keyword) {
  std::string of_media_types;
  for (const Update& update : UpdateHandlers()) {
    for (const Option& option : update.options) {
      if (option.keyword == nullptr) of_media_types = option.default_value;
      if (option.keyword != nullptr && keyword == option.keyword) return option.default_value;
    }
  }
  return of_media_types;
}

// In a word: a unit whose default says that it is missing can be added and go.
[[nodiscard]] const char* NameOf(const Change& change) {
  if (change.before == nullptr) return "new option";
  if (change.after == nullptr) return "option dropped";
  const std::string default_value = DefaultOf(change.after->keyword);
  if (default_value != "None" && default_value != "False") return "changed";
  if (change.before->value == default_value) return "added";
  return change.after->value == default_value ? "gone" : "changed";
}

[[nodiscard]] std::string WordsOf(const Change& change) {
  const PrinterOption& latest = LatestOf(change);
  const bool is_gone = change.after == nullptr || NameOf(change) == std::string_view("gone");
  const PrinterOption& named = is_gone && change.before != nullptr ? *change.before : latest;
  std::string words = std::string("  (") + NameOf(change);
  if (!latest.keyword_text.empty()) words += ": " + latest.keyword_text;
  if (!named.value_text.empty()) words += ", " + named.value_text;
  return words + ")";
}

[[nodiscard]] std::string ValueOf(const PrinterOption* option) {
  return option != nullptr ? option->value : "-";
}

[[nodiscard]] std::string DifferenceText(const Difference& difference) {
  const auto& [before, after, changes] = difference;
  std::vector<std::string> lines;
  if (before.model_code != after.model_code) {
    lines.push_back("model code: " + before.model_code + " -> " + after.model_code);
  }
  for (std::size_t i = 0; i < kListNames.size(); ++i) {
    if (before.list_counts[i] == after.list_counts[i]) continue;
    lines.push_back(std::string("number of ") + kListNames[i] + ": " + before.list_counts[i] +
                    " -> " + after.list_counts[i]);
  }
  for (const Change& change : changes) {
    lines.push_back(LatestOf(change).keyword + ": " + ValueOf(change.before) + " -> " +
                    ValueOf(change.after) + WordsOf(change));
  }
  std::string text;
  for (const std::string& line : lines) text += Printable(line) + "\n";
  return text;
}

// Keys have no blanks.
[[nodiscard]] std::string KeyOf(std::string name) {
  std::ranges::replace(name, ' ', '_');
  return name;
}

[[nodiscard]] Json JsonOf(const PrinterState& state) {
  Json json = {{"queue", state.queue}, {"driver_name", OrNull(state.model_code)}};
  for (std::size_t i = 0; i < kListNames.size(); ++i) {
    json["items"][KeyOf(kListNames[i])] = std::stoi(state.list_counts[i]);
  }
  return json;
}

[[nodiscard]] Json JsonOf(const Change& change) {
  const auto side = [](const PrinterOption* option) {
    if (option == nullptr) return Json();
    return Json{{"value", option->value}, {"text", OrNull(option->value_text)}};
  };
  const PrinterOption& latest = LatestOf(change);
  return {{"keyword", latest.keyword},
          {"text", OrNull(latest.keyword_text)},
          {"change", NameOf(change)},
          {"before", side(change.before)},
          {"after", side(change.after)}};
}

[[nodiscard]] std::string DifferenceJson(const Difference& difference) {
  Json changes = Json::array();
  for (const Change& change : difference.changes) changes.push_back(JsonOf(change));
  return DumpJson({{"same", difference.IsNone()},
                   {"before", JsonOf(difference.before)},
                   {"after", JsonOf(difference.after)},
                   {"changes", changes}});
}

// Only what the PPD offers can be a default of the queue.
[[nodiscard]] bool CanBeDefault(const PrinterOption& option) {
  return option.is_choice && IsPlainOptionWord(option.keyword) && IsPlainOptionWord(option.value);
}

// Why an option is not proposed as a default; empty when it is.
[[nodiscard]] std::string ReasonAgainst(const PrinterOption& option) {
  if (!option.missing_data.empty()) return option.missing_data;
  return CanBeDefault(option) ? "" : "the PPD has no such choice";
}

// The line without values that lack data: they could remove what the printer has.
void WriteLpadminLine(const Difference& difference) {
  std::vector<DefaultChoice> choices;
  bool is_complete = true;
  for (const Change& change : difference.changes) {
    if (change.after == nullptr) continue;
    const PrinterOption& option = *change.after;
    const std::string reason = ReasonAgainst(option);
    if (reason.empty()) choices.push_back({option.keyword, option.value});
    if (!reason.empty()) {
      ReportWarning(option.keyword + "=" + option.value + " is left out: " + reason);
    }
    is_complete = is_complete && option.missing_data.empty();
  }
  WriteAnswer(choices.empty() ? "" : LpadminLine(difference.after.queue, choices) + "\n");
  if (!is_complete) throw Verdict(ExitStatus::kDocuments);
}

void RequireLpadminName(const std::string& queue) {
  if (queue.find_first_of(kRefusedByLpadmin) == std::string::npos) return;
  throw Failure(ExitStatus::kQueue,
                {.object = "queue \"" + queue + "\"",
                 .cause = std::string("lpadmin refuses a name with one of ") + kRefusedByLpadmin,
                 .hint = "set the defaults on the web pages of CUPS"});
}

// One document directory belongs to one printer.
void RequireOnePrinterOfTheDocuments(const DiffQuestion& question) {
  if (!question.before.starts_with(kLive) || !question.after.starts_with(kLive)) return;
  if (question.location.device.empty()) {
    const std::string before = Locate(LocationOf(question.before, question)).device_info;
    const std::string after = Locate(LocationOf(question.after, question)).device_info;
    if (before != after) return;
  }
  throw CLI::ValidationError(
      "cannot compare two live queues with one document directory; save one of them with "
      "`info-analyze snapshot` and compare the snapshot");
}

void Compare(const DiffQuestion& question) {
  (void)CurrentSettings(question.location.config_file);  // once for both processes
  RequireOnePrinterOfTheDocuments(question);
  Difference difference = {QueryInOwnProcess(LocationOf(question.before, question)),
                           QueryInOwnProcess(LocationOf(question.after, question)),
                           {}};
  difference.changes = ChangesOf(difference.before, difference.after);
  if (question.wants_status_only) {
    if (!difference.IsNone()) throw Verdict(ExitStatus::kDifferent);
  } else if (question.wants_lpadmin) {
    RequireLpadminName(difference.after.queue);
    WriteLpadminLine(difference);
  } else {
    WriteAnswer(question.format == "json" ? DifferenceJson(difference)
                                          : DifferenceText(difference));
  }
}

}  // namespace

void DefineDiff(CLI::App& verb) {
  const auto question = std::make_shared<DiffQuestion>();
  verb.add_option("A", question->before, "Path of a snapshot, or queue:NAME")->required();
  verb.add_option("B", question->after, "Path of a snapshot, or queue:NAME")->required();
  AddDriverOption(verb, question->location);
  AddCupsRootOption(verb, question->location);
  AddTimeoutOption(verb, question->location);
  AddConfigOption(verb, question->location);
  AddDocumentsOption(verb, question->location);
  question->location.needs_documents = true;
  CLI::Option* const lpadmin =
      verb.add_flag("--lpadmin", question->wants_lpadmin,
                    "Print the command that makes what has changed the defaults of B's queue");
  verb.add_flag("--check", question->wants_status_only,
                "Print nothing; exit with 0 for the same and 10 for different printers")
      ->excludes(lpadmin);
  AddFormatOption(verb, question->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze diff monday.snapshot tuesday.snapshot --driver-folder /usr/lib/driver\n"
      "  info-analyze diff office.snapshot queue:office --lpadmin \\\n"
      "      --driver-folder /usr/lib/driver --device-info /var/cache/office");
  verb.callback([question] { Compare(*question); });
}

}  // namespace ia::cli
