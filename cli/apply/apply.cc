#include "cli/apply/apply.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/apply/apply_lock.h"
#include "cli/apply/queue_change.h"
#include "cli/apply/undo_file.h"
#include "cli/audit/audit.h"
#include "cli/audit/judgement.h"
#include "cli/audit/report.h"
#include "cli/audit/targets.h"
#include "cli/config/settings.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/lpadmin.h"
#include "cli/printer/queue_name.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/shell_quoting.h"

namespace ia::cli {
namespace {

// A server that has failed so many times in a row is not asked again.
constexpr int kMaxFailures = 3;

struct ApplyQuestion {
  AuditPlan plan;
  std::vector<std::string> queues;
  std::string undo;       // file to take back
  std::string save_undo;  // file for the old values; empty: a new one in the state folder
  bool is_forced = false;
  bool is_dry_run = false;
};

[[nodiscard]] std::chrono::seconds TimeoutOf(const ApplyQuestion& question) {
  return std::chrono::seconds(question.plan.scope.location.timeout);
}

[[nodiscard]] std::string Lines(const std::string& queue, const std::vector<NewDefault>& defaults) {
  std::string text;
  for (const NewDefault& changed : defaults) {
    text +=
        Printable(queue + ": " + changed.keyword + " " + changed.before + " -> " + changed.after) +
        "\n";
  }
  return text;
}

[[nodiscard]] std::vector<NewDefault> WantedOf(const Judgement& judgement) {
  std::vector<NewDefault> wanted;
  for (const JudgedOption& option : judgement.options) {
    if (option.state != OptionState::kDiffers) continue;
    wanted.push_back({option.keyword, option.default_choice, option.value});
  }
  return wanted;
}

// Why apply does not set the option; empty: it does, or the option is equal.
[[nodiscard]] std::string WhyKept(const JudgedOption& option) {
  switch (option.state) {
    case OptionState::kNotOffered:
      return "the device has " + option.value + ", but " + option.reason;
    case OptionState::kUnknown:
      return option.reason;
    default:
      return "";
  }
}

// Without values that lpadmin would misread. They are set all the same, because apply does not use
// it.
[[nodiscard]] std::string CommandOf(const std::string& queue,
                                    const std::vector<NewDefault>& wanted) {
  std::vector<DefaultChoice> choices;
  for (const NewDefault& option : wanted) {
    if (IsPlainOptionWord(option.after)) choices.push_back({option.keyword, option.after});
  }
  return choices.empty() ? "" : LpadminLine(queue, choices) + "\n";
}

// Changes one queue after the other, and warns of each that it cannot change.
class QueueChanges {
 public:
  enum class Outcome { kChanged, kLeftAlone, kFailed };

  // Throws what the change throws when it is not of this queue alone.
  [[nodiscard]] Outcome Make(const std::string& queue, const std::function<void()>& change) {
    try {
      change();
      failures_ = 0;
      return Outcome::kChanged;
    } catch (const LeftAlone& reason) {
      ReportWarning(queue + " is left alone: " + reason.what());
      return Outcome::kLeftAlone;
    } catch (const Denied&) {
      throw;
    } catch (const Failure& failure) {
      const bool is_of_queue = failure.status() == ExitStatus::kQueue;  // not of the undo file
      if (!is_of_queue || ++failures_ == kMaxFailures) throw;
      ReportWarning(queue + " failed: " + failure.what());
      return Outcome::kFailed;
    }
  }

 private:
  int failures_ = 0;  // since the last queue that was changed
};

// The work of one apply, queue by queue.
class Apply {
 public:
  explicit Apply(const ApplyQuestion& question)
      : question_(question), options_{TimeoutOf(question), question.is_forced} {
    if (question.is_dry_run) return;
    const bool has_path = !question.save_undo.empty();
    const std::string folder = StateFolder();
    lock_.emplace(folder, TimeoutOf(question));
    undo_file_.emplace(has_path ? question.save_undo : NewUndoPath(folder));
  }

  void Do(Judgement judgement) {
    if (judgement.state == QueueState::kFailed) {
      ReportWarning(judgement.queue + " failed: " + WhyNotJudged(judgement));
    }
    const std::vector<NewDefault> wanted = WantedOf(judgement);
    if (question_.is_dry_run) {
      WriteAnswer(CommandOf(judgement.queue, wanted));
    } else if (!wanted.empty()) {
      Set(wanted, judgement);
    }
    ReportKept(judgement);
    summary_.Add(judgement);
  }

  // The command that takes the changes back; empty: there are none.
  [[nodiscard]] std::string UndoCommand() const {
    if (!undo_file_ || undo_file_->IsEmpty()) return "";
    const std::string& host = question_.plan.host;
    return "undo with: info-analyze apply --undo " + QuoteForShell(undo_file_->path()) +
           (host.empty() ? "" : " -h " + QuoteForShell(host));
  }

  // Throws a Verdict unless all is right now.
  void Finish() const {
    if (!question_.is_dry_run) {
      WriteAnswer(std::to_string(changed_) + (changed_ == 1 ? " queue" : " queues") + " changed; " +
                  TextOf(summary_));
    }
    const std::string command = UndoCommand();
    if (!command.empty()) WriteAnswer(command + "\n");
    if (summary_.Status() != ExitStatus::kSuccess) throw Verdict(summary_.Status());
  }

 private:
  // A queue that was set is right but for what its PPD does not offer.
  void Set(const std::vector<NewDefault>& wanted, Judgement& judgement) {
    const LiveQueue queue = {.server = question_.plan.scope.server.name, .name = judgement.queue};
    const QueueChanges::Outcome outcome =
        changes_.Make(queue.name, [&] { SetDefaults(queue, wanted, options_, *undo_file_); });
    if (outcome == QueueChanges::Outcome::kFailed) judgement.state = QueueState::kFailed;
    if (outcome != QueueChanges::Outcome::kChanged) return;
    ++changed_;
    for (JudgedOption& option : judgement.options) {
      if (option.state == OptionState::kDiffers) option.state = OptionState::kEqual;
    }
    WriteAnswer(Lines(judgement.queue, wanted));
  }

  static void ReportKept(const Judgement& judgement) {
    for (const JudgedOption& option : judgement.options) {
      const std::string reason = WhyKept(option);
      if (reason.empty()) continue;
      ReportWarning(judgement.queue + ": " + option.keyword + " stays as it is: " + reason);
    }
  }

  const ApplyQuestion& question_;
  ChangeOptions options_;
  std::optional<ApplyLock> lock_;
  std::optional<UndoFile> undo_file_;
  QueueChanges changes_;
  std::size_t changed_ = 0;
  AuditSummary summary_;
};

void ApplyAll(ApplyQuestion& question) {
  AuditPlan& plan = question.plan;
  UseSettings(plan, true);
  Apply apply(question);
  plan.targets = FindLiveTargets(plan.scope, question.queues);
  if (const auto fault = FaultOfDocuments(plan)) throw Failure(ExitStatus::kUsage, *fault);
  try {
    JudgeAll(plan, [&](const Judgement& judgement) { apply.Do(judgement); });
  } catch (...) {  // such as a full standard output
    if (!apply.UndoCommand().empty()) ReportError(apply.UndoCommand());
    throw;
  }
  apply.Finish();
}

// By name: that two names are of one server cannot be known for sure.
void RequireSameServer(const std::vector<UndoRecord>& records, const std::string& server) {
  for (const UndoRecord& record : records) {
    if (record.server == server) continue;
    throw Failure(ExitStatus::kQueue,
                  {.object = "undo file",
                   .cause = "it is of the CUPS server at " + record.server + ", and the one at " +
                            server + " may be a different one",
                   .hint = "pass -h " + QuoteForShell(record.server)});
  }
}

// A PPD that the server sends for a class is that of one of its printers.
void RequirePrinter(const std::vector<QueueAttributes>& queues, const std::string& name) {
  const auto queue = std::ranges::find_if(
      queues, [&](const QueueAttributes& each) { return IsSameQueue(each.name, name); });
  if (queue == queues.end()) throw LeftAlone("the CUPS server has no such queue");
  if (queue->is_class) throw LeftAlone("it is a class");
}

void UndoAll(ApplyQuestion& question) {
  PrinterLocation& location = question.plan.scope.location;
  location.timeout = TimeoutOf(location, CurrentSettings(location.config_file));
  const std::vector<UndoRecord> records = ReadUndoFile(question.undo);
  const ApplyLock lock(StateFolder(), TimeoutOf(question));
  const AllQueues all = FetchAllQueues(TimeoutOf(question));
  RequireSameServer(records, all.server.name);
  const ChangeOptions options = {TimeoutOf(question), question.is_forced};
  QueueChanges changes;
  std::size_t changed = 0;
  AuditSummary summary;
  for (const UndoRecord& record : records) {
    Undone undone;
    const QueueChanges::Outcome outcome = changes.Make(record.queue, [&] {
      RequirePrinter(all.queues, record.queue);
      undone = Undo(record, options);
    });
    WriteAnswer(Lines(record.queue, undone.defaults));
    if (!undone.defaults.empty()) ++changed;
    if (outcome == QueueChanges::Outcome::kFailed) ++summary.failed;
    if (outcome == QueueChanges::Outcome::kLeftAlone || !undone.is_complete) ++summary.differ;
  }
  WriteAnswer(std::to_string(changed) + (changed == 1 ? " queue" : " queues") + " restored\n");
  if (summary.Status() != ExitStatus::kSuccess) throw Verdict(summary.Status());
}

}  // namespace

void DefineApply(CLI::App& verb) {
  const auto question = std::make_shared<ApplyQuestion>();
  AddAuditOptions(verb, question->plan, question->queues);
  CLI::Option* const dry_run =
      verb.add_flag("--dry-run", question->is_dry_run,
                    "Change nothing; print lpadmin commands that would make the changes");
  verb.add_flag("--force", question->is_forced, "Change queues that are printing a job, too");
  verb.add_option("--save-undo", question->save_undo,
                  "Keep the old values in FILE instead of in a new file of the state folder")
      ->type_name("FILE")
      ->excludes(dry_run);
  verb.add_option("--undo", question->undo, "Restore the old values that are kept in FILE")
      ->type_name("FILE")
      ->excludes(dry_run)
      ->excludes("QUEUE");
  verb.footer(
      "Exit status: 0 when all is right now, 10 when an option still differs, 11 when something "
      "could not be judged, 12 for both.\n\n"
      "Examples:\n"
      "  info-analyze apply --dry-run\n"
      "  info-analyze apply office reception\n"
      "  info-analyze apply --undo /var/lib/info-analyze/2026-11-22T160850Z-1234.json");
  verb.callback([question] {
    HideCupsRoot();
    if (question->undo.empty()) {
      ApplyAll(*question);
    } else {
      UndoAll(*question);
    }
  });
}

}  // namespace ia::cli
