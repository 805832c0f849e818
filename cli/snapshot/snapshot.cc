#include "cli/snapshot/snapshot.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"
#include "cli/snapshot/queue_facts.h"
#include "cli/snapshot/redaction.h"
#include "cli/snapshot/secrets.h"
#include "cli/snapshot/snapshot_files.h"
#include "cli/snapshot/snapshot_list.h"
#include "cli/snapshot/take.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "info_analyze/option_table.h"

namespace ia::cli {
namespace {

struct SnapshotQuestion {
  PrinterLocation location;
  std::string path;
  bool is_redacted = false;
  bool may_be_partial = false;
};

// The value that the library's reader of PPDs keeps.
[[nodiscard]] std::string ModelCode(const std::string& queue) {
  struct Releaser {
    void operator()(OptTable* table) const noexcept { info_common_optlist_destroy(table); }
  };
  const std::unique_ptr<OptTable, Releaser> table(info_common_optlist_create(queue.c_str()));
  const char* const code = info_common_optlist_getvalue(table.get(), "QVAnlz_DriverName");
  return code != nullptr ? code : "";
}

[[nodiscard]] std::string ReportOf(const Secrets& secrets) {
  std::string report;
  for (std::size_t i = 0; i < kCategoryCount; ++i) {
    const auto category = static_cast<Category>(i);
    const std::size_t places = secrets.places(category);
    if (places == 0) continue;
    report += std::string(NameOf(category)) + ": replaced in " + std::to_string(places) +
              (places == 1 ? " place\n" : " places\n");
  }
  return report;
}

void TakeSnapshot(const SnapshotQuestion& question) {
  const PrinterLocation& location = question.location;
  const std::string text = FetchPpd(location);
  const QueueAttributes facts = FactsOf(location);
  const CopiedPpd ppd(location.queue, text);
  Snapshot snapshot = ComposeSnapshot({.queue = location.queue,
                                       .ppd = ppd.text(),
                                       .device_info = location.device_info,
                                       .device_uri = facts.device_uri,
                                       .model_code = ModelCode(location.queue)});
  const std::string report = question.is_redacted ? ReportOf(Redact(snapshot, facts)) : "";
  WriteSnapshot(snapshot, question.path);
  WriteAnswer(report);
  if (IsPartial(snapshot) && !question.may_be_partial) throw Verdict(ExitStatus::kSnapshot);
}

}  // namespace

void DefineSnapshot(CLI::App& verb) {
  const auto question = std::make_shared<SnapshotQuestion>();
  verb.add_option("PATH", question->path, "New folder, or new archive if it ends with .tar.gz")
      ->required();
  AddCupsOptions(verb, question->location);
  AddDocumentsOption(verb, question->location)->required();
  verb.get_option("--queue")->required();
  verb.add_flag("--partial", question->may_be_partial,
                "Exit with 0 even if some documents cannot be read");
  verb.add_flag("--redact", question->is_redacted,
                "Replace names, addresses and serial numbers, and print how many");
  verb.footer(
      "Examples:\n"
      "  info-analyze snapshot office.snapshot --queue office --device-info /var/cache/office\n"
      "  info-analyze snapshot office.tar.gz --redact --queue office \\\n"
      "      --device-info /var/cache/office\n"
      "  info-analyze query --snapshot office.snapshot --driver-folder /usr/lib/driver");
  verb.callback([question] { TakeSnapshot(*question); });
}

}  // namespace ia::cli
