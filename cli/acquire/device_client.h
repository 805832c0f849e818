// How a device is asked for its attributes over the network.
#ifndef INFO_ANALYZE_CLI_ACQUIRE_DEVICE_CLIENT_H_
#define INFO_ANALYZE_CLI_ACQUIRE_DEVICE_CLIENT_H_

#include <chrono>
#include <string>

namespace ia::cli {

struct DeviceRequest {
  std::string uri;                   // ipp://HOST[:PORT]/PATH, or ipps
  std::chrono::seconds timeout{10};  // for the connection, TLS and the whole answer together
  bool accepts_any_certificate = false;
};

// The URI by which the device of a queue answers IPP: its own, or that of its host; without user
// and password. Throws a Failure for a device URI that names no host, such as one of USB.
[[nodiscard]] std::string IppUriOf(const std::string& device_uri);

// The answer to Get-Printer-Attributes as a message of IPP, read in a child process. Certificates
// are accepted by the rules of CUPS. Throws a Failure that names the cause.
[[nodiscard]] std::string FetchAttributes(const DeviceRequest& request);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_DEVICE_CLIENT_H_
