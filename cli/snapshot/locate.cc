#include "cli/snapshot/locate.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <system_error>

#include "cli/acquire/acquire.h"
#include "cli/config/patterns.h"
#include "cli/config/settings.h"
#include "cli/printer/queue_facts.h"
#include "cli/printer/queue_ppd.h"
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

[[nodiscard]] PrinterLocation LocateQueue(const PrinterLocation& given, const Settings& settings) {
  if (given.queue.empty()) throw CLI::RequiredError("--queue");
  PrinterLocation location = given;
  location.timeout = TimeoutOf(given, settings);
  return Complete(given, settings, WordsOf(location));
}

// The driver's communication library writes the documents.
[[nodiscard]] PrinterLocation LocateDevice(const PrinterLocation& given, const Settings& settings) {
  PrinterLocation location = given;
  location.needs_driver = true;
  RequireLocation(location, settings);
  return WithDocumentsOfDevice(LocateQueue(location, settings));
}

[[nodiscard]] PrinterLocation LocateSnapshot(const PrinterLocation& given,
                                             const Settings& settings) {
  const SnapshotLocation found = LocateFiles(given);
  QueueWords words = WordsOf(found.location);
  words.host = [&] { return HostOfDeviceUri(found.device_uri); };
  return Complete(found.location, settings, words);
}

}  // namespace

SnapshotLocation LocateFiles(const PrinterLocation& given) {
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
  return {.location = location, .device_uri = snapshot.device_uri};
}

PrinterLocation Locate(const PrinterLocation& given) {
  const Settings& settings = CurrentSettings(given.config_file);
  if (!given.device.empty()) return LocateDevice(given, settings);
  RequireLocation(given, settings);
  return given.snapshot.empty() ? LocateQueue(given, settings) : LocateSnapshot(given, settings);
}

}  // namespace ia::cli
