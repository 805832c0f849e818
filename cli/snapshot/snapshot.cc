#include "cli/snapshot/snapshot.h"

#include <cstdint>
#include <fstream>
#include <ios>
#include <iterator>
#include <memory>
#include <string>

#include "cli/printer/documents.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/session.h"
#include "cli/snapshot/redaction.h"
#include "cli/snapshot/snapshot_folder.h"
#include "cli/terminal/failure.h"
#include "info_analyze/device_documents.h"

namespace ia::cli {
namespace {

struct SnapshotQuestion {
  PrinterLocation location;
  std::string folder;
  bool is_redacted = false;
};

[[nodiscard]] std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A document that cannot be read is left out with a warning, because a query can do without it.
void TakeDocuments(const SnapshotQuestion& question, Snapshot& snapshot) {
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    const std::string name = Analyze_Provenance_GetDocumentName(i);
    const std::string path = question.location.device_info + "/" + name;
    if (const auto fault = FindFileFault(path)) {
      ReportWarning("document " + path + ": " + *fault);
      continue;
    }
    const std::string document = ReadFile(path);
    snapshot.files[SnapshotDocumentName(name)] =
        question.is_redacted ? Redact(i, document) : document;
  }
}

void TakeSnapshot(const SnapshotQuestion& question) {
  const PrinterLocation& location = question.location;
  const std::string ppd = FetchPpd(location);
  Snapshot snapshot = {location.queue, question.is_redacted, {}};
  snapshot.files[SnapshotPpdName(location.queue)] = ppd;
  TakeDocuments(question, snapshot);
  WriteSnapshot(snapshot, question.folder);
}

}  // namespace

void DefineSnapshot(CLI::App& verb) {
  const auto question = std::make_shared<SnapshotQuestion>();
  verb.add_option("DIR", question->folder, "Folder to be made")->required();
  AddCupsOptions(verb, question->location);
  AddDocumentsOption(verb, question->location)->required();
  verb.get_option("--queue")->required();
  verb.add_flag("--redact", question->is_redacted,
                "Leave out the device's name and the ids of fax lines");
  verb.footer(
      "Examples:\n"
      "  info-analyze snapshot office.snapshot --queue office --device-info /var/cache/office\n"
      "  info-analyze query --snapshot office.snapshot --driver-folder /usr/lib/driver");
  verb.callback([question] { TakeSnapshot(*question); });
}

}  // namespace ia::cli
