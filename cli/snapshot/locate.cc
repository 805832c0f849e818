#include "cli/snapshot/locate.h"

#include "cli/snapshot/snapshot_folder.h"

namespace ia::cli {

PrinterLocation Locate(const PrinterLocation& given) {
  if (given.snapshot.empty()) {
    if (given.queue.empty()) throw CLI::RequiredError("--queue");
    if (given.needs_documents && given.device_info.empty()) {
      throw CLI::RequiredError("--device-info");
    }
    return given;
  }
  PrinterLocation location = given;
  location.queue = ReadSnapshot(given.snapshot).queue;
  location.cups_root = given.snapshot;
  if (given.needs_documents) location.device_info = given.snapshot + "/device-info";
  return location;
}

}  // namespace ia::cli
