// What the tool asks the CUPS server, in child processes, so that each wait has an end.
#ifndef INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_
#define INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "cli/terminal/failure.h"

namespace ia::cli {

// Makes libcups use this server: HOST, HOST:PORT, [IPV6-ADDRESS]:PORT or the path of a socket.
// Hints then name the option -h, which the verb must have.
void UseServer(const std::string& host);

// For a verb without --cups-root, which hints then do not name.
void HideCupsRoot();

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
  std::string name;
  std::string device_uri;
  std::string location;
  std::string description;
  std::string make_and_model;
  bool is_class = false;
  bool is_temporary = false;  // CUPS adds and removes the queue itself

  // For processes that send them to each other.
  static auto FieldsOf(auto& queue) {
    return std::tie(queue.name, queue.device_uri, queue.location, queue.description,
                    queue.make_and_model, queue.is_class, queue.is_temporary);
  }
};

// Whether CUPS prints without a driver, and whether it sends what it gets as it is.
[[nodiscard]] bool IsDriverless(const QueueAttributes& queue);
[[nodiscard]] bool IsRaw(const QueueAttributes& queue);

// Throws a Failure.
[[nodiscard]] QueueAttributes FetchQueueAttributes(const std::string& queue,
                                                   std::chrono::seconds timeout);

// The queues of the server; throws a Failure.
[[nodiscard]] std::vector<ServerQueue> ListServerQueues(std::chrono::seconds timeout);

// A server as libcups finds it in the environment and its files, for processes in which a copied
// PPD has replaced these settings.
struct ServerSettings {
  std::string name;    // host and port, or the path of a socket
  std::string folder;  // of its files; empty: it may be on a different machine
  std::string user;
  int encryption = 0;  // an http_encryption_t
};

struct AllQueues {
  ServerSettings server;
  std::vector<QueueAttributes> queues;  // and classes
};

// Throws a Failure.
[[nodiscard]] AllQueues FetchAllQueues(std::chrono::seconds timeout);

// The PPD of a queue of a server that FetchAllQueues has found; throws a Failure.
[[nodiscard]] std::string FetchPpdFrom(const ServerSettings& server, const std::string& queue,
                                       std::chrono::seconds timeout);

// Whether the server prints a job of the queue now; throws a Failure.
[[nodiscard]] bool HasPrintingJob(const std::string& queue, std::chrono::seconds timeout);

// The PPD that the server has, also where a file of this machine could be read; throws a Failure.
[[nodiscard]] std::string DownloadPpd(const std::string& queue, std::chrono::seconds timeout);

// Thrown when the server does not let this user do something.
class Denied : public Failure {
 public:
  using Failure::Failure;
};

// Gives the queue this PPD, which the server takes as a whole or not at all; throws a Failure.
// After a Denied, the queue has the PPD that it had.
void ReplacePpd(const std::string& queue, const std::string& ppd, std::chrono::seconds timeout);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_CUPS_SERVER_H_
