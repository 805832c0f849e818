#include "cli/snapshot/locate.h"

#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "cli/snapshot/snapshot_files.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/printable.h"
#include "cli/terminal/temporary_folder.h"

namespace ia::cli {
namespace {

// Where libcups puts its copies of PPDs, while it lives.
class TemporaryPlace {
 public:
  explicit TemporaryPlace(const std::string& folder) {
    const char* const before = std::getenv(kVariable);
    if (before != nullptr) before_ = before;
    setenv(kVariable, folder.c_str(), 1);
  }
  TemporaryPlace(const TemporaryPlace&) = delete;
  TemporaryPlace& operator=(const TemporaryPlace&) = delete;
  ~TemporaryPlace() {
    if (before_) setenv(kVariable, before_->c_str(), 1);
    if (!before_) unsetenv(kVariable);
  }

 private:
  static constexpr const char* kVariable = "TMPDIR";
  std::optional<std::string> before_;
};

// The files of an archive, in a folder for libcups and the library, which open files by name.
class UnpackedSnapshot {
 public:
  explicit UnpackedSnapshot(const Snapshot& snapshot)
      : folder_(std::filesystem::temp_directory_path().string()), copies_(folder_.path()) {
    WriteFiles(FilesOf(snapshot), folder_.path());
  }
  [[nodiscard]] const std::string& path() const noexcept { return folder_.path(); }

 private:
  TemporaryFolder folder_;
  TemporaryPlace copies_;  // no signal leaves one, either
};

[[nodiscard]] std::shared_ptr<const UnpackedSnapshot> Unpacked(const Snapshot& snapshot,
                                                               const std::string& name) {
  try {
    return std::make_shared<const UnpackedSnapshot>(snapshot);
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
