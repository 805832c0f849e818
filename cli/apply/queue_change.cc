#include "cli/apply/queue_change.h"

#include <algorithm>
#include <string>
#include <vector>

#include "cli/apply/ppd_defaults.h"
#include "cli/printer/cups_server.h"
#include "cli/printer/ppd.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

void RequireIdleQueue(const std::string& queue, const ChangeOptions& options) {
  if (options.is_forced || !HasPrintingJob(queue, options.timeout)) return;
  throw LeftAlone("a job is being printed; wait for it, or use --force");
}

[[nodiscard]] bool HasDefault(const PpdOptions& ppd, const std::string& keyword,
                              const std::string& choice) {
  const auto option = ppd.find(keyword);
  return option != ppd.end() && option->second.default_choice == choice;
}

// The server may answer with success before a full disk shows.
void Confirm(const std::string& queue, const std::string& ppd, const ChangeOptions& options) {
  if (DownloadPpd(queue, options.timeout) == ppd) return;
  throw Failure(ExitStatus::kQueue, {.action = "cannot change",
                                     .object = "PPD of queue \"" + queue + "\"",
                                     .cause = "the server has a different PPD than it was given",
                                     .hint = "read its error log, and run apply again"});
}

struct Change {
  std::string ppd;  // with the new defaults
  std::vector<ChangedDefault> defaults;
};

[[nodiscard]] Change ChangeOf(const std::string& ppd, const std::vector<NewDefault>& defaults) {
  const PpdOptions options = ParsePpdOptions(ppd);
  Change change = {.ppd = ppd, .defaults = {}};
  for (const NewDefault& wanted : defaults) {
    if (!HasDefault(options, wanted.keyword, wanted.before)) {
      throw LeftAlone("its PPD has changed since it was judged; run apply again");
    }
    const std::vector<std::string> texts = DefaultTexts(ppd, wanted.keyword);
    if (!std::ranges::all_of(texts, IsOneLine)) {
      throw LeftAlone("its PPD has control characters in *Default" + wanted.keyword);
    }
    change.ppd = WithDefaultTexts(change.ppd, wanted.keyword,
                                  std::vector<std::string>(texts.size(), wanted.after));
    change.defaults.push_back({wanted.keyword, texts, wanted.after});
  }
  const PpdOptions changed_options = ParsePpdOptions(change.ppd);
  for (const NewDefault& wanted : defaults) {
    if (!HasDefault(changed_options, wanted.keyword, wanted.after)) {
      throw LeftAlone("its PPD has an unusual line *Default" + wanted.keyword +
                      "; edit it by hand");
    }
  }
  return change;
}

}  // namespace

void SetDefaults(const LiveQueue& queue, const std::vector<NewDefault>& defaults,
                 const ChangeOptions& options, UndoFile& undo_file) {
  const Change change = ChangeOf(DownloadPpd(queue.name, options.timeout), defaults);
  RequireIdleQueue(queue.name, options);
  undo_file.Add({.server = queue.server, .queue = queue.name, .defaults = change.defaults});
  try {
    ReplacePpd(queue.name, change.ppd, options.timeout);
  } catch (const Denied&) {
    undo_file.RemoveLast();
    throw;
  }
  Confirm(queue.name, change.ppd, options);
}

Undone Undo(const UndoRecord& record, const ChangeOptions& options) {
  const std::string now = DownloadPpd(record.queue, options.timeout);
  std::string before = now;
  Undone undone;
  for (const ChangedDefault& changed : record.defaults) {
    const std::vector<std::string> texts = DefaultTexts(now, changed.keyword);
    if (texts == changed.before) continue;
    if (texts != std::vector<std::string>(changed.before.size(), changed.after)) {
      ReportWarning(record.queue + ": " + changed.keyword +
                    " has changed since, so it is left as it is");
      undone.is_complete = false;
      continue;
    }
    before = WithDefaultTexts(before, changed.keyword, changed.before);
    undone.defaults.push_back({changed.keyword, changed.after, changed.before.back()});
  }
  if (undone.defaults.empty()) return undone;
  RequireIdleQueue(record.queue, options);
  ReplacePpd(record.queue, before, options.timeout);
  Confirm(record.queue, before, options);
  return undone;
}

}  // namespace ia::cli
