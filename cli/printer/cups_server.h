// What the tool asks the CUPS server, in child processes, so that each wait has an end.
#ifndef INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_
#define INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ia::cli {

// The PPD of a queue, by the rule of libcups: the file in the server's folder when the server is on
// this machine and the file can be read, or else from the server. Throws a Failure that names the
// cause.
[[nodiscard]] std::string FetchPpdFromServer(const std::string& queue,
                                             std::chrono::seconds timeout);

// The PPD of a queue in the folder of a CUPS root; throws a Failure that names the cause.
[[nodiscard]] std::string ReadPpdOfRoot(const std::string& queue, const std::string& root);

struct ServerQueue {
  std::string name;
  std::optional<std::int64_t> ppd_time;  // when its PPD was modified; nothing: it has none
};

// The queues that have a PPD in the folder of a CUPS root, by name; throws a Failure.
[[nodiscard]] std::vector<ServerQueue> ListQueuesOfRoot(const std::string& root);

// What the server knows of a queue beside its PPD. Texts that are empty are unknown.
struct QueueAttributes {
  std::string device_uri;
  std::string location;
  std::string description;
};

// Throws a Failure.
[[nodiscard]] QueueAttributes FetchQueueAttributes(const std::string& queue,
                                                   std::chrono::seconds timeout);

// The queues of the server; throws a Failure.
[[nodiscard]] std::vector<ServerQueue> ListServerQueues(std::chrono::seconds timeout);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_
