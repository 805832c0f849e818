#ifndef INFO_ANALYZE_CLI_ACQUIRE_DEVICE_ANSWER_H_
#define INFO_ANALYZE_CLI_ACQUIRE_DEVICE_ANSWER_H_

#include <string>

#include "cli/acquire/printer_attributes.h"
#include "cli/printer/session.h"

namespace ia::cli {

struct DeviceAnswer {
  AttributeValues values;
  std::string text;  // of an attributes file
};

// What the location's device answers, or what the file has that is in its place. Throws a Failure.
// A child process uses libcups, which keeps the first CUPS root that it finds, so this one can
// still have any.
[[nodiscard]] DeviceAnswer ReadDevice(const PrinterLocation& location);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_DEVICE_ANSWER_H_
