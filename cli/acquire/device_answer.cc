#include "cli/acquire/device_answer.h"

#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/acquire/acquire.h"
#include "cli/acquire/attributes_file.h"
#include "cli/acquire/device_client.h"
#include "cli/acquire/printer_attributes.h"
#include "cli/printer/child_process.h"
#include "cli/printer/connection.h"
#include "cli/printer/queue_facts.h"
#include "cli/printer/regular_file.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

using nlohmann::json;
using std::chrono::seconds;

constexpr seconds kParsingTime{10};

[[nodiscard]] std::string FetchFrom(const PrinterLocation& location) {
  const int timeout = location.has_timeout ? location.timeout : kDefaultDeviceTimeout;
  return FetchAttributes({.uri = IppUriOf(location.device),
                          .timeout = seconds(timeout),
                          .accepts_any_certificate = location.accepts_any_certificate});
}

// Binary, because octet strings are not UTF-8.
void Write(int descriptor, const json& result) {
  std::string bytes;
  json::to_cbor(result, bytes);
  WriteAll(descriptor, bytes);
}

void ParseInChild(int descriptor, const std::function<DeviceAnswer()>& parse) {
  try {
    const DeviceAnswer answer = parse();
    Write(descriptor, {{"values", answer.values}, {"text", answer.text}});
  } catch (const Failure& failure) {
    Write(descriptor, {{"failure", failure.parts().cause}});
  }
}

[[nodiscard]] DeviceAnswer Parse(const std::string& device,
                                 const std::function<DeviceAnswer()>& parse) {
  const ChildResult child =
      RunInChild(kParsingTime, [&](int descriptor) { ParseInChild(descriptor, parse); });
  const json result = json::from_cbor(child.answer, true, false);
  if (child.signal != 0 || !result.is_object()) {
    throw Failure(ExitStatus::kDevice,
                  {.object = "device " + device,
                   .cause = "the process that reads its answer ended with " +
                            (child.signal != 0 ? NameOfSignal(child.signal)
                                               : "status " + std::to_string(child.status))});
  }
  if (result.contains("failure")) {
    throw Failure(ExitStatus::kUsage, {.object = "attributes file " + device,
                                       .cause = result["failure"].get<std::string>()});
  }
  return {.values = result["values"].get<AttributeValues>(),
          .text = result["text"].get<std::string>()};
}

}  // namespace

DeviceAnswer ReadDevice(const PrinterLocation& location) {
  const std::string device = WithoutCredentials(location.device);
  if (device.find("://") == std::string::npos) {
    return Parse(device,
                 [&] { return DeviceAnswer{.values = ReadAttributesFile(device), .text = ""}; });
  }
  const std::string bytes = FetchFrom(location);
  return Parse(device, [&] {
    const IppPtr message = ReadMessage(bytes);
    return DeviceAnswer{.values = ValuesOf(*message), .text = FormatAttributes(*message)};
  });
}

}  // namespace ia::cli
