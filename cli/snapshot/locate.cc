#include "cli/snapshot/locate.h"

#include <memory>
#include <string>
#include <system_error>

#include "cli/snapshot/snapshot_files.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/temporary_folder.h"

namespace ia::cli {
namespace {

// The files of an archive, in a folder for libcups and the library, which open files by name.
[[nodiscard]] std::shared_ptr<const TemporaryFolder> Unpacked(const Snapshot& snapshot,
                                                              const std::string& name) {
  try {
    auto folder = std::make_shared<const TemporaryFolder>();
    WriteFiles(FilesOf(snapshot), folder->path());
    return folder;
  } catch (const std::system_error& error) {
    throw Failure(ExitStatus::kSnapshot, {.object = "snapshot " + name,
                                          .cause = "cannot be unpacked: " + error.code().message(),
                                          .hint = "check the folder that TMPDIR names"});
  }
}

}  // namespace

PrinterLocation Locate(const PrinterLocation& given) {
  if (given.snapshot.empty()) {
    if (given.queue.empty()) throw CLI::RequiredError("--queue");
    if (given.needs_documents && given.device_info.empty()) {
      throw CLI::RequiredError("--device-info");
    }
    return given;
  }
  PrinterLocation location = given;
  const Snapshot snapshot = ReadSnapshot(given.snapshot);
  location.queue = snapshot.queue;
  location.cups_root = given.snapshot;
  if (!IsFolder(given.snapshot)) {
    const auto unpacked = Unpacked(snapshot, given.snapshot);
    SetGivenName(unpacked->path(), given.snapshot);
    location.cups_root = unpacked->path();
    location.unpacked = unpacked;
  }
  if (given.needs_documents) location.device_info = location.cups_root + "/device-info";
  return location;
}

}  // namespace ia::cli
