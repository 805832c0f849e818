#include "cli/printer/cups_server.h"

#include <cups/cups.h>
#include <cups/ppd.h>
#include <strings.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/printer/child_process.h"
#include "cli/printer/message.h"
#include "cli/printer/regular_file.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/shell_quoting.h"
#include "cli/terminal/temporary_folder.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::size_t kMaxPpdSize = std::size_t{16} << 20;

struct HttpCloser {
  void operator()(http_t* http) const noexcept { httpClose(http); }
};
using HttpPtr = std::unique_ptr<http_t, HttpCloser>;

struct IppDeleter {
  void operator()(ipp_t* message) const noexcept { ippDelete(message); }
};
using IppPtr = std::unique_ptr<ipp_t, IppDeleter>;

// What a request is for, in messages: "cannot read", "PPD of queue "office"".
struct Purpose {
  std::string action;
  std::string object;
  std::string queue;  // empty: all of them
};

[[nodiscard]] Purpose ReadingPpd(const std::string& queue) {
  return {.action = "cannot read", .object = "PPD of queue \"" + queue + "\"", .queue = queue};
}

[[noreturn]] void Fail(const Purpose& purpose, const std::string& why, const std::string& fix) {
  throw Failure(ExitStatus::kQueue,
                {.action = purpose.action, .object = purpose.object, .cause = why, .hint = fix});
}

// Files ------------------------------------------------------------------------------------------

[[nodiscard]] std::string FixOfFile(const FileFault& fault, const std::string& path,
                                    const std::string& root) {
  switch (fault.error()) {
    case 0:
      return "replace " + path + " with the PPD of the driver package";
    case EACCES:
      return "run as a user who may read it";
    case ENOENT:
      return "list the queues with `info-analyze queues cups --cups-root " + QuoteForShell(root) +
             "`";
    default:
      return "check the file";
  }
}

[[nodiscard]] std::string PpdPath(const std::string& queue, const std::string& root) {
  return root + "/ppd/" + queue + ".ppd";
}

// The folder of PPDs that libcups reads itself.
[[nodiscard]] std::string LocalRoot() {
  const char* const root = std::getenv("CUPS_SERVERROOT");
  return root != nullptr ? root : "/etc/cups";
}

[[nodiscard]] bool IsLocal(std::string_view server) {
  return server.starts_with('/') || strcasecmp(std::string(server).c_str(), "localhost") == 0;
}

// The conditions of libcups.
[[nodiscard]] bool HasLocalPpd(const std::string& queue, std::string_view server) {
  const std::string path = PpdPath(queue, LocalRoot());
  struct stat status = {};
  return IsLocal(server) && stat(path.c_str(), &status) == 0 && access(path.c_str(), R_OK) == 0;
}

[[nodiscard]] std::optional<std::int64_t> ModificationTime(const std::filesystem::path& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || status.st_mtime == 0) return std::nullopt;
  return status.st_mtime;
}

// The server ------------------------------------------------------------------------------------

// "the CUPS server at /run/cups/cups.sock".
[[nodiscard]] std::string NameOfServer(const std::string& server) {
  return "the CUPS server at " + server;
}

[[nodiscard]] std::string ServerOfLibcups() {
  const std::string server = cupsServer();
  return server.starts_with('/') ? server : server + ":" + std::to_string(ippPort());
}

// libcups would ask for a password on the terminal.
const char* AskForNoPassword(const char*, http_t*, const char*, const char*, void*) {
  return nullptr;
}

struct AddressListDeleter {
  void operator()(http_addrlist_t* list) const noexcept { httpAddrFreeList(list); }
};

// Why there is no connection. libcups leaves no usable errno, so the first address is tried again.
[[nodiscard]] std::string FindConnectionFault() {
  const std::unique_ptr<http_addrlist_t, AddressListDeleter> list(
      httpAddrGetList(cupsServer(), AF_UNSPEC, std::to_string(ippPort()).c_str()));
  if (!list) return cupsLastErrorString();
  const int descriptor = socket(httpAddrFamily(&list->addr), SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return std::strerror(errno);
  const bool is_connected = connect(descriptor, &list->addr.addr,
                                    static_cast<socklen_t>(httpAddrLength(&list->addr))) == 0;
  const int error = errno;
  close(descriptor);
  return is_connected ? "it closes connections" : std::strerror(error);
}

class Server {
 public:
  Server(Purpose purpose, seconds timeout) : purpose_(std::move(purpose)) {
    const Step step("connecting to " + Name());
    cupsSetPasswordCB2(AskForNoPassword, nullptr);
    http_.reset(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                             static_cast<int>(milliseconds(timeout).count()), nullptr));
    if (http_) return;
    Fail(purpose_, Name() + " does not answer (" + FindConnectionFault() + ")",
         IsLocal(cupsServer()) ? "start cups.service or pass --cups-root"
                               : "correct CUPS_SERVER, start CUPS there or pass --cups-root");
  }

  [[nodiscard]] std::string Name() const { return NameOfServer(ServerOfLibcups()); }
  [[nodiscard]] http_t* http() const { return http_.get(); }

  [[nodiscard]] IppPtr Ask(IppPtr request, const char* resource) const {
    IppPtr answer(cupsDoRequest(http_.get(), request.release(), resource));
    const ipp_status_t status = cupsLastError();
    if (status == IPP_STATUS_ERROR_NOT_FOUND) return nullptr;
    if (status == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE || status == IPP_STATUS_ERROR_INTERNAL) {
      Fail(purpose_, Name() + " does not complete the request (" + cupsLastErrorString() + ")",
           "read the server's error log, or pass --cups-root");
    }
    if (!answer || status > IPP_STATUS_OK_CONFLICTING) Refuse(cupsLastErrorString());
    return answer;
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    Fail(purpose_, Name() + " refuses the request (" + reason + ")",
         "check the server's policy and its error log");
  }

 private:
  Purpose purpose_;
  HttpPtr http_;
};

[[nodiscard]] IppPtr NewRequest(ipp_op_t operation,
                                const std::initializer_list<const char*>& attributes) {
  IppPtr request(ippNewRequest(operation));
  std::vector<const char*> names(attributes);
  ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                static_cast<int>(names.size()), nullptr, names.data());
  return request;
}

[[nodiscard]] std::string TextOf(ipp_t* answer, const char* name) {
  ipp_attribute_t* const attribute = ippFindAttribute(answer, name, IPP_TAG_ZERO);
  const char* const text = attribute != nullptr ? ippGetString(attribute, 0, nullptr) : nullptr;
  return text != nullptr ? text : "";
}

constexpr std::initializer_list<const char*> kQueueAttributes = {
    "device-uri",       "printer-info",           "printer-is-temporary",
    "printer-location", "printer-make-and-model", "printer-name",
    "printer-type"};

[[nodiscard]] IppPtr AskForQueue(const Server& server, const Purpose& purpose) {
  const Step step("the attributes of queue " + purpose.queue);
  std::array<char, HTTP_MAX_URI> uri = {};
  httpAssembleURIf(HTTP_URI_CODING_ALL, uri.data(), static_cast<int>(uri.size()), "ipp", nullptr,
                   "localhost", 0, "/printers/%s", purpose.queue.c_str());
  IppPtr request = NewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES, kQueueAttributes);
  ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.data());
  IppPtr answer = server.Ask(std::move(request), "/");
  if (answer) return answer;
  Fail(purpose, server.Name() + " has no such queue",
       "list the queues with `info-analyze queues cups`");
}

[[nodiscard]] QueueAttributes AttributesOf(ipp_t* answer) {
  return {.device_uri = TextOf(answer, "device-uri"),
          .location = TextOf(answer, "printer-location"),
          .description = TextOf(answer, "printer-info")};
}

void Put(const QueueAttributes& attributes, Message& message) {
  message.Put(attributes.device_uri);
  message.Put(attributes.location);
  message.Put(attributes.description);
}

[[nodiscard]] QueueAttributes TakeAttributes(Message& message) {
  return {.device_uri = message.Take(), .location = message.Take(), .description = message.Take()};
}

[[nodiscard]] bool IsDriverless(ipp_t* queue) {
  ipp_attribute_t* const temporary =
      ippFindAttribute(queue, "printer-is-temporary", IPP_TAG_BOOLEAN);
  if (temporary != nullptr && ippGetBoolean(temporary, 0) != 0) return true;
  return TextOf(queue, "printer-make-and-model").find("IPP Everywhere") != std::string::npos;
}

[[noreturn]] void FailForNoPpd(const Purpose& purpose, const Server& server, ipp_t* queue) {
  const std::string fix = "set it up with the PPD of the driver package: `lpadmin -p " +
                          QuoteForShell(purpose.queue) + " -P FILE.ppd`";
  if (IsDriverless(queue)) {
    Fail(purpose, "the queue is driverless (" + TextOf(queue, "device-uri") + "), without a PPD",
         fix);
  }
  if (TextOf(queue, "printer-make-and-model").find("Raw") != std::string::npos) {
    Fail(purpose, "it is a raw queue, which has no PPD", fix);
  }
  Fail(purpose, server.Name() + " has no PPD of the queue", fix);
}

// A file in TMPDIR, or a link there to a file of the server.
[[nodiscard]] std::string TakeTemporaryPpd(const Purpose& purpose, const std::string& path) {
  try {
    std::string ppd = ReadRegularFile(path, kMaxPpdSize);
    unlink(path.c_str());
    return ppd;
  } catch (const FileFault& fault) {
    unlink(path.c_str());
    Fail(purpose, path + ": " + fault.what(), "check TMPDIR");
  }
}

[[nodiscard]] std::string DownloadPpd(const Server& server, const Purpose& purpose, ipp_t* queue) {
  const Step step("downloading the PPD of queue " + purpose.queue);
  std::array<char, 1024> path = {};
  std::time_t time = 0;
// libcups 2 deprecates the call without offering another way to a queue's whole PPD.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
  const http_status_t status =
      cupsGetPPD3(server.http(), purpose.queue.c_str(), &time, path.data(), path.size());
#pragma GCC diagnostic pop
  if (status == HTTP_STATUS_OK) return TakeTemporaryPpd(purpose, path.data());
  if (path.front() != '\0') unlink(path.data());
  if (status == HTTP_STATUS_NOT_FOUND) FailForNoPpd(purpose, server, queue);
  server.Refuse(httpStatus(status));
}

[[nodiscard]] std::string FetchPpdInChild(const Purpose& purpose, seconds timeout) {
  if (HasLocalPpd(purpose.queue, cupsServer())) return ReadPpdOfRoot(purpose.queue, LocalRoot());
  const Server server(purpose, timeout);
  const IppPtr queue = AskForQueue(server, purpose);
  return DownloadPpd(server, purpose, queue.get());
}

// Lists ------------------------------------------------------------------------------------------

// When the queue's PPD was modified; 0: it has none.
[[nodiscard]] std::time_t PpdTimeOf(const Server& server, const std::string& queue) {
  const std::string resource = "/printers/" + queue + ".ppd";
  http_t* const http = server.http();
  httpClearFields(http);
  if (httpHead(http, resource.c_str()) != 0 &&
      (httpReconnect2(http, 30000, nullptr) != 0 || httpHead(http, resource.c_str()) != 0)) {
    return 0;
  }
  http_status_t status = HTTP_STATUS_CONTINUE;
  while (status == HTTP_STATUS_CONTINUE) status = httpUpdate(http);
  const std::time_t time = httpGetDateTime(httpGetField(http, HTTP_FIELD_LAST_MODIFIED));
  httpFlush(http);
  return status == HTTP_STATUS_OK ? time : 0;
}

[[nodiscard]] std::vector<std::string> NamesOfQueues(ipp_t* answer) {
  std::vector<std::string> names;
  ipp_attribute_t* attribute = ippFindAttribute(answer, "printer-name", IPP_TAG_NAME);
  for (; attribute != nullptr;
       attribute = ippFindNextAttribute(answer, "printer-name", IPP_TAG_NAME)) {
    const char* const name = ippGetString(attribute, 0, nullptr);
    if (name != nullptr) names.emplace_back(name);
  }
  return names;
}

// Name and time of each queue.
[[nodiscard]] std::string ListQueuesInChild(const Purpose& purpose, seconds timeout) {
  const Server server(purpose, timeout);
  const Step step("the list of queues");
  const IppPtr answer = server.Ask(NewRequest(IPP_OP_CUPS_GET_PRINTERS, {"printer-name"}), "/");
  Message list;
  if (!answer) return "";  // a server without queues reports that none is found
  for (const std::string& name : NamesOfQueues(answer.get())) {
    list.Put(name);
    list.Put(std::to_string(PpdTimeOf(server, name)));
  }
  return list.bytes();
}

// The child --------------------------------------------------------------------------------------

constexpr std::string_view kSuccess = "answer";
constexpr std::string_view kFailure = "failure";

// Writes the server's name, before any wait, and then the result: a word and what belongs to it.
void Answer(int descriptor, const std::function<std::string()>& ask) {
  Message name;
  name.Put(ServerOfLibcups());
  WriteAll(descriptor, name.bytes());
  Message result;
  try {
    const std::string answer = ask();
    result.Put(kSuccess);
    WriteAll(descriptor, result.bytes() + answer);
  } catch (const Failure& failure) {
    result.Put(kFailure);
    result.Put(failure.parts().cause);
    result.Put(failure.parts().hint);
    WriteAll(descriptor, result.bytes());
  }
}

[[noreturn]] void FailForChild(const Purpose& purpose, const ChildResult& child,
                               const std::string& server, seconds timeout) {
  if (child.has_timed_out) {
    Fail(
        purpose,
        NameOfServer(server) + " has not answered within " + std::to_string(timeout.count()) + " s",
        "restart cups.service, pass --cups-root, or allow more time with --timeout");
  }
  Fail(purpose,
       "the process that asks " + NameOfServer(server) + " ended with " +
           (child.signal != 0 ? NameOfSignal(child.signal)
                              : "status " + std::to_string(child.status)),
       "pass --cups-root");
}

[[nodiscard]] std::string AskInChild(const Purpose& purpose, seconds timeout,
                                     const std::function<std::string()>& ask) {
  const ChildResult child = RunInChild(timeout, [&](int descriptor) { Answer(descriptor, ask); });
  Message message(child.answer);
  const std::string server = message.Take();
  if (child.has_timed_out || child.signal != 0 || child.status != 0 || message.IsAtEnd()) {
    FailForChild(purpose, child, server, timeout);
  }
  if (message.Take() == kSuccess) return message.TakeRest();
  const std::string cause = message.Take();
  Fail(purpose, cause, message.Take());
}

}  // namespace

std::string ReadPpdOfRoot(const std::string& queue, const std::string& root) {
  const std::string path = PpdPath(queue, root);
  try {
    return ReadRegularFile(path, kMaxPpdSize);
  } catch (const FileFault& fault) {
    Fail(ReadingPpd(queue), path + ": " + fault.what(), FixOfFile(fault, path, root));
  }
}

std::string FetchPpdFromServer(const std::string& queue, seconds timeout) {
  const Purpose purpose = ReadingPpd(queue);
  return AskInChild(purpose, timeout, [&] { return FetchPpdInChild(purpose, timeout); });
}

std::vector<ServerQueue> ListQueuesOfRoot(const std::string& root) {
  const std::filesystem::path folder = std::filesystem::path(root) / "ppd";
  std::error_code error;
  std::vector<ServerQueue> queues;
  for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
    const std::filesystem::path& file = entry.path();
    if (file.extension() != ".ppd") continue;
    queues.push_back({.name = file.stem().string(), .ppd_time = ModificationTime(file)});
  }
  if (error) {
    Fail({.action = "cannot list", .object = "the queues", .queue = ""},
         folder.string() + ": " + error.message(), "check --cups-root");
  }
  std::ranges::sort(queues, {}, &ServerQueue::name);
  return queues;
}

std::vector<ServerQueue> ListServerQueues(seconds timeout) {
  const Purpose purpose = {.action = "cannot list", .object = "the queues", .queue = ""};
  const std::string answer =
      AskInChild(purpose, timeout, [&] { return ListQueuesInChild(purpose, timeout); });
  std::vector<ServerQueue> queues;
  for (Message message(answer); !message.IsAtEnd();) {
    ServerQueue queue = {.name = message.Take(), .ppd_time = std::nullopt};
    const std::int64_t time = std::strtoll(message.Take().c_str(), nullptr, 10);
    if (time != 0) queue.ppd_time = time;
    queues.push_back(queue);
  }
  return queues;
}

QueueAttributes FetchQueueAttributes(const std::string& queue, seconds timeout) {
  const Purpose purpose = {
      .action = "cannot read", .object = "attributes of queue \"" + queue + "\"", .queue = queue};
  Message message(AskInChild(purpose, timeout, [&] {
    const Server server(purpose, timeout);
    Message attributes;
    Put(AttributesOf(AskForQueue(server, purpose).get()), attributes);
    return attributes.bytes();
  }));
  return TakeAttributes(message);
}

}  // namespace ia::cli
