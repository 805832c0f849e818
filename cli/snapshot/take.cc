#include "cli/snapshot/take.h"

#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/printer/documents.h"
#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"
#include "info_analyze/device_documents.h"
#include "info_analyze/provenance.h"

namespace ia::cli {
namespace {

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

[[nodiscard]] bool HasDocument(const Snapshot& snapshot, std::int32_t document) {
  return snapshot.files.contains(
      SnapshotDocumentName(Analyze_Provenance_GetDocumentName(document)));
}

[[nodiscard]] std::int32_t CountDocuments(const Snapshot& snapshot) {
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) count += HasDocument(snapshot, i) ? 1 : 0;
  return count;
}

void TakeDocuments(const std::string& folder, Snapshot& snapshot) {
  for (std::int32_t i = 0; i < IA_DOCUMENT_COUNT; ++i) {
    const std::string name = Analyze_Provenance_GetDocumentName(i);
    const std::string path = std::string(folder).append("/").append(name);
    if (const auto fault = FindFileFault(path)) {
      ReportWarning("document " + path + ": " + *fault);
    } else {
      snapshot.files[SnapshotDocumentName(name)] = ReadRegularFile(path, IA_DOCUMENT_MAX_SIZE);
    }
  }
  if (CountDocuments(snapshot) > 0) return;
  throw Failure(ExitStatus::kDocuments,
                {.object = "document directory " + folder,
                 .cause = "no document can be read, so there is nothing to save",
                 .hint = "correct --device-info"});
}

}  // namespace

Snapshot ComposeSnapshot(const PrinterFiles& printer) {
  Snapshot snapshot;
  snapshot.queue = printer.queue;
  snapshot.files[SnapshotPpdName(printer.queue)] = printer.ppd;
  TakeDocuments(printer.device_info, snapshot);
  snapshot.date = Now();
  snapshot.device_uri = printer.device_uri;
  snapshot.model_code = printer.model_code;
  snapshot.tool_version = IA_TOOL_VERSION;
  snapshot.library_version = LibraryVersion();
  return snapshot;
}

bool IsPartial(const Snapshot& snapshot) { return CountDocuments(snapshot) < IA_DOCUMENT_COUNT; }

}  // namespace ia::cli
