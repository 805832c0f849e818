#include "cli/explain/explain.h"

#include <strings.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cli/explain/because.h"
#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"
#include "cli/explain/unknown_values.h"
#include "cli/printer/ppd.h"
#include "cli/printer/printer_query.h"
#include "cli/printer/session.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"
#include "cli/snapshot/locate.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/nearest.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

struct ExplainQuestion {
  PrinterLocation location;
  std::vector<std::string> keywords;  // none: all
  std::string format = "text";
  bool all = false;
};

// The explanations, and the printer that they are about.
struct Report {
  const char* model_code;  // null when the PPD has none
  PpdOptions ppd;
  std::vector<Explanation> explanations;
  std::vector<Decision> decisions;  // of the explanations, in their order
  std::vector<UnknownValue> unknown_values;
};

[[nodiscard]] const char* NameOf(Origin origin) {
  switch (origin) {
    case Origin::kDevice:
      return "device";
    case Origin::kPpd:
      return "ppd";
    case Origin::kDefault:
      break;
  }
  return "default";
}

[[nodiscard]] const PpdOption* FindPpdOption(const Report& report, const Explanation& why) {
  const auto hit = report.ppd.find(why.keyword);
  return hit != report.ppd.end() ? &hit->second : nullptr;
}

[[nodiscard]] std::string OriginText(const Explanation& why) {
  switch (why.origin) {
    case Origin::kDevice:
      return "from the device";
    case Origin::kPpd:
      return "from the PPD's list of values; the device reports none";
    case Origin::kDefault:
      break;
  }
  return "the default";
}

[[nodiscard]] std::string ModelText(const Report& report, const Row& row) {
  const std::string code = report.model_code != nullptr ? report.model_code : "(no model code)";
  const std::string handler = row.handler != nullptr
                                  ? row.handler
                                  : std::string("no handler, the option keeps its default");
  const bool is_other = *row.code == '\0';
  return code +
         (is_other ? ", no row of its own, common fallback: " : ", row " + PatternOf(row) + ": ") +
         handler;
}

[[nodiscard]] std::string ChoicesText(const Explanation& why, const PpdOption* option) {
  if (option == nullptr) return "the PPD has no such option";
  std::string text;
  for (const PpdChoice& choice : option->choices) {
    text += (text.empty() ? "" : ", ") + choice.name;
    if (!choice.text.empty()) text += " (" + choice.text + ")";
  }
  if (!option->HasChoice(why.value)) text += "; " + why.value + " is none of them";
  return text;
}

// What decided, what would have changed the option, and what else it depends on.
[[nodiscard]] std::vector<std::string> SummaryOf(const Report& report, const Explanation& why,
                                                 const Decision& decision) {
  std::vector<std::string> lines = {"because   " + Because(why, decision)};
  const std::string instead = Instead(why, decision);
  if (!instead.empty()) lines.push_back("instead   " + instead);
  const std::string others = AlsoRead(why, decision);
  if (!others.empty()) lines.push_back("also read " + others);
  const PpdOption* const option = FindPpdOption(report, why);
  const bool is_offered = option == nullptr || option->HasChoice(why.value);
  if (!is_offered) lines.push_back("choices   " + ChoicesText(why, option));
  return lines;
}

// The same with all that is known.
[[nodiscard]] std::vector<std::string> DetailsOf(const Report& report, const Explanation& why,
                                                 const Decision& decision) {
  std::vector<std::string> lines = {"because   " + Because(why, decision)};
  for (const std::string& sentence : AllInstead(decision)) lines.push_back("instead   " + sentence);
  lines.push_back("origin    " + OriginText(why));
  lines.push_back(std::string("update    ") + why.update->name);
  if (why.row) lines.push_back("model     " + ModelText(report, *why.row));
  for (const RawValue& raw : why.raw_values) lines.push_back("read      " + FormatRawValue(raw));
  lines.push_back("choices   " + ChoicesText(why, FindPpdOption(report, why)));
  return lines;
}

[[nodiscard]] std::string TextOf(const Report& report, std::size_t number, bool all) {
  const Explanation& why = report.explanations[number];
  const Decision& decision = report.decisions[number];
  std::string text = Printable(why.keyword + "=" + why.value) + "\n";
  for (const std::string& line :
       all ? DetailsOf(report, why, decision) : SummaryOf(report, why, decision)) {
    text += "  " + Printable(line) + "\n";
  }
  return text;
}

[[nodiscard]] std::string FormatReport(const Report& report, bool all) {
  std::string text;
  for (std::size_t i = 0; i < report.explanations.size(); ++i) {
    text += (text.empty() ? "" : "\n") + TextOf(report, i, all);
  }
  if (!report.unknown_values.empty()) text += "\nunknown values\n";
  for (const UnknownValue& unknown : report.unknown_values) {
    text += "  " + Printable(Describe(unknown)) + "\n";
  }
  return text;
}

[[nodiscard]] Json ModelJson(const std::optional<Row>& row) {
  if (!row) return nullptr;
  const bool is_other = *row->code == '\0';
  return {{"code", is_other ? Json(nullptr) : Json(row->code)},
          {"match", is_other ? "other models" : (row->whole_code != 0 ? "whole" : "prefix")},
          {"handler", row->handler != nullptr ? Json(row->handler) : Json(nullptr)}};
}

[[nodiscard]] Json ChoicesJson(const Explanation& why, const PpdOption* option) {
  if (option == nullptr) return nullptr;
  Json choices = Json::array();
  for (const PpdChoice& choice : option->choices) {
    choices.push_back({{"choice", choice.name}, {"text", choice.text}});
  }
  return {{"default", option->default_choice ? Json(*option->default_choice) : Json(nullptr)},
          {"has_value", option->HasChoice(why.value)},
          {"choices", choices}};
}

[[nodiscard]] Json ToJson(const std::vector<RawValue>& raw_values) {
  Json list = Json::array();
  for (const RawValue& raw : raw_values) list.push_back(ToJson(raw));
  return list;
}

[[nodiscard]] Json RejectedJson(const Decision& decision) {
  Json list = Json::array();
  for (const RejectedValue& rejected : decision.rejected) {
    list.push_back({{"value", rejected.value ? Json(*rejected.value) : Json(nullptr)},
                    {"input", ToJson(rejected.raw)},
                    {"instead", rejected.replacement}});
  }
  return list;
}

[[nodiscard]] Json JsonOf(const Report& report, const Explanation& why, const Decision& decision) {
  return {{"keyword", why.keyword},
          {"value", why.value},
          {"because", Because(why, decision)},
          {"needed", decision.is_known ? ToJson(decision.needed) : Json(nullptr)},
          {"unmatched", decision.is_known ? ToJson(decision.unmatched) : Json(nullptr)},
          {"rejected", decision.is_known ? RejectedJson(decision) : Json(nullptr)},
          {"origin", NameOf(why.origin)},
          {"default_value", why.option->default_value},
          {"update", why.update->name},
          {"model", ModelJson(why.row)},
          {"inputs", ToJson(why.raw_values)},
          {"ppd", ChoicesJson(why, FindPpdOption(report, why))}};
}

[[nodiscard]] Json ToJson(const UnknownValue& unknown) {
  return {{"input", ToJson(unknown.raw)}, {"lists", unknown.lists}, {"nearest", unknown.nearest}};
}

[[nodiscard]] std::string ReportJson(const Report& report) {
  Json explanations = Json::array();
  for (std::size_t i = 0; i < report.explanations.size(); ++i) {
    explanations.push_back(JsonOf(report, report.explanations[i], report.decisions[i]));
  }
  Json unknown_values = Json::array();
  for (const UnknownValue& unknown : report.unknown_values) {
    unknown_values.push_back(ToJson(unknown));
  }
  return DumpJson(
      {{"driver_name", report.model_code != nullptr ? Json(report.model_code) : Json(nullptr)},
       {"explanations", explanations},
       {"unknown_values", unknown_values}});
}

[[nodiscard]] bool IsSame(const std::string& left, const std::string& right) {
  return strcasecmp(left.c_str(), right.c_str()) == 0;
}

// Which update handler would set an option that the printer does not have.
[[nodiscard]] std::string WhoWouldSet(const AnalyzeContext& analyzer, const std::string& keyword) {
  for (const Update& update : UpdateHandlers()) {
    const bool sets_it = std::ranges::any_of(update.options, [&](const Option& option) {
      return option.keyword != nullptr && IsSame(option.keyword, keyword);
    });
    if (!sets_it) continue;
    const bool has_guard = update.guard >= 0 && update.guard < IA_DOCUMENT_COUNT;
    if (has_guard && analyzer.documents[update.guard].xml == nullptr) {
      return std::string("; ") + update.name + " would set it, but " +
             Analyze_Provenance_GetDocumentName(update.guard) + " is not loaded";
    }
    return std::string("; ") + update.name + " sets it for other printers";
  }
  return "";
}

[[nodiscard]] std::string Suggestion(const std::string& keyword,
                                     const std::vector<Explanation>& explanations) {
  std::vector<std::string> keywords;
  keywords.reserve(explanations.size());
  for (const Explanation& why : explanations) keywords.push_back(why.keyword);
  const std::optional<std::string> nearest = FindNearest(keyword, keywords);
  return nearest ? " (did you mean " + *nearest + "?)" : "";
}

// Keeps the explanations of the keywords, in the order of the query.
void Select(const AnalyzeContext& analyzer, const std::vector<std::string>& keywords,
            std::vector<Explanation>& explanations) {
  if (keywords.empty()) return;
  for (const std::string& keyword : keywords) {
    const auto is_of_keyword = [&](const Explanation& why) { return IsSame(why.keyword, keyword); };
    if (std::ranges::any_of(explanations, is_of_keyword)) continue;
    throw Failure(ExitStatus::kNotFound, "the printer has no option " + keyword +
                                             Suggestion(keyword, explanations) +
                                             WhoWouldSet(analyzer, keyword));
  }
  std::erase_if(explanations, [&](const Explanation& why) {
    return std::ranges::none_of(
        keywords, [&](const std::string& keyword) { return IsSame(why.keyword, keyword); });
  });
}

void ExplainOptions(const ExplainQuestion& question) {
  const PrinterLocation location = Locate(question.location);
  const Session session = OpenSession(location);
  const OptionListPtr options = QueryPrinter(*session.analyzer, location.queue);
  Report report = {session.analyzer->driver_name,
                   ParsePpdOptions(session.ppd),
                   Explain(*session.analyzer, options->next),
                   {},
                   {}};
  Select(*session.analyzer, question.keywords, report.explanations);
  const Step step("finding what decided");
  report.decisions = FindDecisions(*session.analyzer, report.explanations);
  if (question.keywords.empty()) report.unknown_values = FindUnknownValues(*session.analyzer);
  WriteAnswer(question.format == "json" ? ReportJson(report) : FormatReport(report, question.all));
}

}  // namespace

void DefineExplain(CLI::App& verb) {
  const auto question = std::make_shared<ExplainQuestion>();
  verb.add_option("KEYWORD", question->keywords, "Only these options");
  AddPrinterOptions(verb, question->location);
  verb.add_flag("--all", question->all, "Print every value that was read, and every change");
  AddFormatOption(verb, question->format);
  verb.footer(
      "Examples:\n"
      "  info-analyze explain QVFinisher --queue office\n"
      "  info-analyze explain QVFinisher --queue office --driver-folder /usr/lib/driver \\\n"
      "      --device-info /var/cache/office");
  verb.callback([question] { ExplainOptions(*question); });
}

}  // namespace ia::cli
