#include "cli/audit/report.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

[[nodiscard]] std::string NameOf(const Judgement& judgement) {
  return judgement.queue.empty() ? judgement.snapshot : judgement.queue;
}

[[nodiscard]] std::string Join(const std::vector<std::string>& parts,
                               std::string_view separator = ", ") {
  std::string text;
  for (const std::string& part : parts) {
    text += (text.empty() ? "" : std::string(separator)) + part;
  }
  return text;
}

[[nodiscard]] const char* NameOf(OptionState state) {
  switch (state) {
    case OptionState::kEqual:
      return "equal";
    case OptionState::kDiffers:
      return "differs";
    case OptionState::kNotOffered:
      return "not offered";
    default:
      return "unknown";
  }
}

[[nodiscard]] const char* NameOf(QueueState state) {
  switch (state) {
    case QueueState::kJudged:
      return "judged";
    case QueueState::kNotApplicable:
      return "not applicable";
    default:
      return "failed";
  }
}

// "QVFinisher None -> STFINT1".
[[nodiscard]] std::string TextOf(const JudgedOption& option) {
  const std::string changed = option.default_choice + " -> " + option.value;
  switch (option.state) {
    case OptionState::kEqual:
      return option.keyword + " " + option.value;
    case OptionState::kDiffers:
      return option.keyword + " " + changed;
    case OptionState::kNotOffered:
      return option.keyword + " " + changed + " (" + option.reason + ")";
    default:
      return option.keyword + " unknown (" + option.reason + ")";
  }
}

[[nodiscard]] std::string TextOf(const ChangedOption& change, const std::string& since) {
  return change.keyword + " was " + change.before + " at " + since + " and is " + change.after;
}

// "3 differ, 1 unknown".
[[nodiscard]] std::string CountsOf(const Judgement& judgement) {
  const std::size_t differ =
      judgement.Count(OptionState::kDiffers) + judgement.Count(OptionState::kNotOffered);
  const std::size_t unknown = judgement.Count(OptionState::kUnknown);
  std::vector<std::string> counts;
  if (differ > 0) counts.push_back(std::to_string(differ) + (differ == 1 ? " differs" : " differ"));
  if (unknown > 0) counts.push_back(std::to_string(unknown) + " unknown");
  return counts.empty() ? "right" : Join(counts);
}

[[nodiscard]] std::string Line(const std::vector<std::string>& parts) {
  return Printable(Join(parts, "  ")) + "\n";
}

[[nodiscard]] std::vector<std::string> ChangesOf(const Judgement& judgement) {
  std::vector<std::string> changes;
  changes.reserve(judgement.changes.size());
  for (const ChangedOption& change : judgement.changes) {
    changes.push_back(TextOf(change, judgement.since));
  }
  return changes;
}

[[nodiscard]] Json ToJson(const JudgedOption& option) {
  return {{"keyword", option.keyword},
          {"default", OrNull(option.default_choice)},
          {"value", option.state == OptionState::kUnknown ? Json(nullptr) : Json(option.value)},
          {"state", NameOf(option.state)},
          {"reason", OrNull(option.reason)}};
}

[[nodiscard]] Json ToJson(const ChangedOption& change) {
  return {{"keyword", change.keyword}, {"before", change.before}, {"after", change.after}};
}

}  // namespace

void AuditSummary::Add(const Judgement& judgement) {
  ++queues;
  if (judgement.state == QueueState::kNotApplicable) ++not_applicable;
  if (judgement.state == QueueState::kFailed) ++failed;
  if (judgement.state != QueueState::kJudged) return;
  if (judgement.Differs()) ++differ;
  if (judgement.IsUnjudged()) ++unknown;
  if (judgement.Differs() && judgement.IsUnjudged()) ++differ_and_unknown;
  if (!judgement.Differs() && !judgement.IsUnjudged()) ++right;
}

ExitStatus AuditSummary::Status() const {
  const bool is_unjudged = unknown + failed > 0;
  if (differ > 0) return is_unjudged ? ExitStatus::kDifferentAndUnjudged : ExitStatus::kDifferent;
  return is_unjudged ? ExitStatus::kUnjudged : ExitStatus::kSuccess;
}

std::string TextOf(const Judgement& judgement, bool with_equal) {
  if (judgement.state != QueueState::kJudged) {
    return Line({NameOf(judgement), NameOf(judgement.state), WhyNotJudged(judgement)});
  }
  std::vector<std::string> details;
  for (const JudgedOption& option : judgement.options) {
    if (with_equal || option.state != OptionState::kEqual) details.push_back(TextOf(option));
  }
  for (std::string& change : ChangesOf(judgement)) details.push_back(std::move(change));
  if (!judgement.reason.empty()) details.push_back("not compared: " + judgement.reason);
  std::vector<std::string> parts = {NameOf(judgement), CountsOf(judgement)};
  if (!with_equal && !details.empty()) parts.push_back(Join(details));
  std::string text = Line(parts);
  if (!with_equal) return text;
  for (const std::string& detail : details) text += "  " + Printable(detail) + "\n";
  return text;
}

std::string TextOf(const AuditSummary& summary) {
  std::vector<std::string> counts;
  const auto add = [&](std::size_t count, const std::string& what) {
    if (count > 0) counts.push_back(std::to_string(count) + " " + what);
  };
  add(summary.right, "right");
  const std::size_t both = summary.differ_and_unknown;
  add(summary.differ,
      (summary.differ == 1 ? "differs" : "differ") +
          (both > 0 ? " (" + std::to_string(both) + " with unknown options, too)" : ""));
  add(summary.unknown - both, "right but for unknown options");
  add(summary.not_applicable, "not applicable");
  add(summary.failed, "failed");
  return std::to_string(summary.queues) + (summary.queues == 1 ? " queue" : " queues") +
         (counts.empty() ? "" : ": " + Join(counts)) + "\n";
}

std::string WhyNotJudged(const Judgement& judgement) {
  return judgement.reason + (judgement.hint.empty() ? "" : "; " + judgement.hint);
}

std::string LogOf(const Judgement& judgement) {
  std::vector<std::string> lines;
  if (judgement.state == QueueState::kFailed) lines.push_back("failed: " + WhyNotJudged(judgement));
  for (const JudgedOption& option : judgement.options) {
    if (option.state != OptionState::kEqual) lines.push_back(TextOf(option));
  }
  for (std::string& change : ChangesOf(judgement)) lines.push_back(std::move(change));
  if (judgement.state == QueueState::kJudged && !judgement.reason.empty()) {
    lines.push_back("not compared: " + judgement.reason);
  }
  std::string text;
  for (const std::string& line : lines) text += Printable(NameOf(judgement) + ": " + line) + "\n";
  return text;
}

std::string JsonOf(const Judgement& judgement, bool with_equal) {
  Json options = Json::array();
  for (const JudgedOption& option : judgement.options) {
    if (with_equal || option.state != OptionState::kEqual) options.push_back(ToJson(option));
  }
  Json changes = Json::array();
  for (const ChangedOption& change : judgement.changes) changes.push_back(ToJson(change));
  return DumpJsonLine({{"queue", OrNull(judgement.queue)},
                       {"snapshot", OrNull(judgement.snapshot)},
                       {"driver_name", OrNull(judgement.model_code)},
                       {"state", NameOf(judgement.state)},
                       {"reason", OrNull(judgement.reason)},
                       {"hint", OrNull(judgement.hint)},
                       {"differ", judgement.Count(OptionState::kDiffers) +
                                      judgement.Count(OptionState::kNotOffered)},
                       {"unknown", judgement.Count(OptionState::kUnknown)},
                       {"options", options},
                       {"since", OrNull(judgement.since)},
                       {"changes", changes}});
}

std::string JsonOf(const AuditSummary& summary) {
  return DumpJsonLine({{"summary",
                        {{"queues", summary.queues},
                         {"right", summary.right},
                         {"differ", summary.differ},
                         {"unknown", summary.unknown},
                         {"not_applicable", summary.not_applicable},
                         {"failed", summary.failed}}}});
}

}  // namespace ia::cli
