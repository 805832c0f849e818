#include "cli/apply/queue_change.h"

#include <algorithm>
#include <functional>
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
void Replace(const std::string& queue, const std::string& ppd, const ChangeOptions& options) {
  ReplacePpd(queue, ppd, options.timeout);
  if (DownloadPpd(queue, options.timeout) == ppd) return;
  throw Failure(ExitStatus::kQueue, {.action = "cannot change",
                                     .object = "PPD of queue \"" + queue + "\"",
                                     .cause = "the server has a different PPD than it was given",
                                     .hint = "read its error log, and run apply again"});
}

}  // namespace

void SetDefaults(const std::string& queue, const std::vector<NewDefault>& defaults,
                 const ChangeOptions& options,
                 const std::function<void(const UndoRecord&)>& keep_record) {
  const std::string before = DownloadPpd(queue, options.timeout);
  const PpdOptions ppd_options = ParsePpdOptions(before);
  UndoRecord record = {.server = "", .queue = queue, .defaults = {}};
  std::string after = before;
  for (const NewDefault& wanted : defaults) {
    if (!HasDefault(ppd_options, wanted.keyword, wanted.before)) {
      throw LeftAlone("its PPD has changed since it was judged; run apply again");
    }
    const std::vector<std::string> texts = DefaultTexts(before, wanted.keyword);
    if (!std::ranges::all_of(texts, IsOneLine)) {
      throw LeftAlone("its PPD has control characters in *Default" + wanted.keyword);
    }
    after = WithDefaultTexts(after, wanted.keyword,
                             std::vector<std::string>(texts.size(), wanted.after));
    record.defaults.push_back({wanted.keyword, texts, wanted.after});
  }
  const PpdOptions changed_options = ParsePpdOptions(after);
  for (const NewDefault& wanted : defaults) {
    if (!HasDefault(changed_options, wanted.keyword, wanted.after)) {
      throw LeftAlone("its PPD has an unusual line *Default" + wanted.keyword +
                      "; edit it by hand");
    }
  }
  RequireIdleQueue(queue, options);
  keep_record(record);
  Replace(queue, after, options);
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
  Replace(record.queue, before, options);
  return undone;
}

}  // namespace ia::cli
