#include "cli/snapshot/snapshot.h"

#include <dlfcn.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/printer/documents.h"
#include "cli/printer/queue_ppd.h"
#include "cli/printer/regular_file.h"
#include "cli/printer/session.h"
#include "cli/snapshot/locate.h"
#include "cli/snapshot/queue_facts.h"
#include "cli/snapshot/redaction.h"
#include "cli/snapshot/secrets.h"
#include "cli/snapshot/snapshot_files.h"
#include "cli/snapshot/snapshot_list.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/output.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

struct SnapshotQuestion {
  PrinterLocation location;
  std::string path;
  bool is_redacted = false;
  bool may_be_partial = false;
};

[[nodiscard]] std::string Now() {
  const std::time_t now = std::time(nullptr);
  std::tm utc{};
  std::array<char, 32> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", gmtime_r(&now, &utc));
  return text.data();
}

// That of the file's name, because the library may be newer than the tool.
[[nodiscard]] std::string LibraryVersion() {
  constexpr std::string_view kName = "libinfo_analyze.so.";
  Dl_info library{};
  const auto* const function = reinterpret_cast<const void*>(&Analyze_Provenance_GetDocumentName);
  if (dladdr(function, &library) == 0 || library.dli_fname == nullptr) return "";
  std::error_code ignored;
  const std::string name =
      std::filesystem::canonical(library.dli_fname, ignored).filename().string();
  return name.starts_with(kName) ? name.substr(kName.size()) : "";
}

// The number of documents that cannot be read.
[[nodiscard]] std::size_t TakeDocuments(const std::string& folder, Snapshot& snapshot) {
  std::size_t missing = 0;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    const std::string name = Analyze_Provenance_GetDocumentName(i);
    const std::string path = std::string(folder).append("/").append(name);
    if (const auto fault = FindFileFault(path)) {
      ReportWarning("document " + path + ": " + *fault);
      ++missing;
    } else {
      snapshot.files[SnapshotDocumentName(name)] = ReadRegularFile(path, IA_DOCUMENT_MAX_SIZE);
    }
  }
  if (missing < IA_DOCUMENT_COUNT) return missing;
  throw Failure(ExitStatus::kDocuments,
                {.object = "document directory " + folder,
                 .cause = "no document can be read, so there is nothing to save",
                 .hint = "correct --device-info"});
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
  const PrinterLocation location = Locate(question.location);
  const std::string text = FetchPpd(location);
  const QueueAttributes facts = FactsOf(location);
  Snapshot snapshot;
  snapshot.queue = location.queue;
  snapshot.files[SnapshotPpdName(location.queue)] = text;
  const std::size_t missing = TakeDocuments(location.device_info, snapshot);
  snapshot.date = Now();
  snapshot.device_uri = facts.device_uri;
  snapshot.model_code = ModelCodeIn(location.queue, text);
  snapshot.tool_version = IA_TOOL_VERSION;
  snapshot.library_version = LibraryVersion();
  const std::string report = question.is_redacted ? ReportOf(Redact(snapshot, facts)) : "";
  WriteSnapshot(snapshot, question.path);
  WriteAnswer(report);
  if (missing > 0 && !question.may_be_partial) throw Verdict(ExitStatus::kSnapshot);
}

}  // namespace

void DefineSnapshot(CLI::App& verb) {
  const auto question = std::make_shared<SnapshotQuestion>();
  verb.add_option("PATH", question->path, "New folder, or new archive if it ends with .tar.gz")
      ->required();
  AddCupsOptions(verb, question->location);
  AddDocumentsOption(verb, question->location);
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
