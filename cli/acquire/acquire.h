// Device documents made of what a device reports over the network.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_ACQUIRE_H_
#define INFO_ANALYZE_CLI_ACQUIRE_ACQUIRE_H_

#include <string>
#include <vector>

#include "cli/acquire/acquired_documents.h"
#include "cli/printer/session.h"

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

inline constexpr int kDefaultDeviceTimeout = 10;  // seconds

struct Acquired {
  std::string attributes;  // the text of an attributes file
  bool has_profile = false;
  std::vector<AcquiredDocument> documents;
};

// Reads the location's device, with the profile of the location or else of its driver folder.
// Throws a Failure.
[[nodiscard]] Acquired Acquire(const PrinterLocation& location);

// The location with a private document directory of its device, which the location keeps. Throws a
// Failure.
[[nodiscard]] PrinterLocation WithDocumentsOfDevice(const PrinterLocation& given);

// Adds the verb to the command line.
void DefineAcquire(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_ACQUIRE_H_
