// The nine documents of what is known of a device.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_ACQUIRED_DOCUMENTS_H_
#define INFO_ANALYZE_CLI_ACQUIRE_ACQUIRED_DOCUMENTS_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "cli/acquire/device_facts.h"
#include "info_analyze/bidi.h"

namespace ia::cli {

// One document: the device for the keys of an outermost dictionary, else the items of its list.
struct AcquiredDocument {
  std::int32_t document;
  std::vector<Part> parts;
  std::string left_out;  // why it is not written; empty: it is
};

// All nine, in the order of their numbers. A list is left out when its items, without what is
// missing, would claim that the device lacks something.
[[nodiscard]] std::vector<AcquiredDocument> DocumentsOf(const DeviceFacts& facts);

// The files by name, made by the writer of the communication library; throws a Failure when it does
// not write one, or does not read it again.
[[nodiscard]] std::map<std::string, std::string> WriteDocuments(
    BidiContext& library, const std::vector<AcquiredDocument>& documents);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_ACQUIRED_DOCUMENTS_H_
