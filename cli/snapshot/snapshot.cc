#include "cli/snapshot/snapshot.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <string>

#include "cli/printer/queue_facts.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/snapshot/redaction.h"
#include "cli/snapshot/secrets.h"
#include "cli/snapshot/snapshot_files.h"
#include "cli/snapshot/snapshot_list.h"
#include "cli/snapshot/take.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"

namespace ia::cli {
namespace {

struct SnapshotQuestion {
  PrinterLocation location;
  std::string path;
  bool is_redacted = false;
  bool may_be_partial = false;
};

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
  const PrinterLocation location = Locate(question.location);
  const std::string text = FetchPpd(location);
  const QueueAttributes facts = FactsOf(location);
  Snapshot snapshot = ComposeSnapshot({.queue = location.queue,
                                       .ppd = text,
                                       .device_info = location.device_info,
                                       .device_uri = facts.device_uri,
                                       .model_code = ModelCodeIn(location.queue, text)});
  const std::string report = question.is_redacted ? ReportOf(Redact(snapshot, facts)) : "";
  WriteSnapshot(snapshot, question.path);
  WriteAnswer(report);
  if (IsPartial(snapshot) && !question.may_be_partial) throw Verdict(ExitStatus::kSnapshot);
}

}  // namespace

void DefineSnapshot(CLI::App& verb) {
  const auto question = std::make_shared<SnapshotQuestion>();
  verb.add_option("PATH", question->path,
                  "New folder, or new archive if it ends with .tar.gz or .tgz")
      ->required();
  AddCupsOptions(verb, question->location);
  AddDocumentsOption(verb, question->location);
  AddDriverOption(verb, question->location);
  question->location.needs_driver = false;  // only to read a device
  question->location.needs_documents = true;
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
