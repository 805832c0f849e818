// Connections and messages of libcups.
#ifndef INFO_ANALYZE_CLI_PRINTER_CONNECTION_H_
#define INFO_ANALYZE_CLI_PRINTER_CONNECTION_H_

#include <cups/cups.h>

#include <memory>
#include <string>

namespace ia::cli {

struct HttpCloser {
  void operator()(http_t* http) const noexcept { httpClose(http); }
};
using HttpPtr = std::unique_ptr<http_t, HttpCloser>;

struct IppDeleter {
  void operator()(ipp_t* message) const noexcept { ippDelete(message); }
};
using IppPtr = std::unique_ptr<ipp_t, IppDeleter>;

// Why there is no connection. libcups leaves no usable errno, so the first address is tried again.
[[nodiscard]] std::string FindConnectionFault(const std::string& host, int port);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_CONNECTION_H_
