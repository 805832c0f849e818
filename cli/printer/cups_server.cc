#include "cli/printer/cups_server.h"

#include <cups/cups.h>
#include <cups/ppd.h>
#include <stdlib.h>
#include <strings.h>
#include <sys/mman.h>
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
#include <fstream>
#include <functional>
#include <ios>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/printer/child_process.h"
#include "cli/printer/connection.h"
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

// What hints can name.
bool g_has_host = false;      // the option -h
bool g_has_cups_root = true;  // the option --cups-root

constexpr std::size_t kMaxPpdSize = std::size_t{16} << 20;

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

// The conditions of libcups. Without a folder, the server is on a different machine.
[[nodiscard]] bool HasLocalPpd(const std::string& queue, const std::string& folder) {
  const std::string path = PpdPath(queue, folder);
  struct stat status = {};
  return !folder.empty() && stat(path.c_str(), &status) == 0 && access(path.c_str(), R_OK) == 0;
}

// Of the server that libcups uses, by its own rule: any server of that name is on this machine.
[[nodiscard]] std::string LocalFolder() { return IsLocal(cupsServer()) ? LocalRoot() : ""; }

[[nodiscard]] std::optional<std::int64_t> ModificationTime(const std::filesystem::path& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0 || status.st_mtime == 0) return std::nullopt;
  return status.st_mtime;
}

// Of the server that libcups uses, only where that is certain. A port of localhost may belong to a
// tunnel, and a socket to a second server.
[[nodiscard]] std::string CertainFolder() {
  if (std::getenv("CUPS_SERVERROOT") != nullptr) return LocalFolder();
  const std::string_view server = cupsServer();
  const bool is_default = server == "/run/cups/cups.sock" || server == "/var/run/cups/cups.sock" ||
                          (!server.starts_with('/') && IsLocal(server) && ippPort() == 631);
  return is_default ? LocalRoot() : "";
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

[[nodiscard]] std::string OrCupsRoot(const std::string& fix) {
  return g_has_cups_root ? fix + " or pass --cups-root" : fix;
}

[[nodiscard]] std::string FixOfNoAnswer() {
  if (g_has_host) return "correct -h or start CUPS there";
  if (IsLocal(cupsServer())) return OrCupsRoot("start cups.service");
  return g_has_cups_root ? "correct CUPS_SERVER, start CUPS there or pass --cups-root"
                         : "correct CUPS_SERVER or start CUPS there";
}

[[nodiscard]] bool IsDenial(ipp_status_t status) {
  return status == IPP_STATUS_ERROR_FORBIDDEN || status == IPP_STATUS_ERROR_NOT_AUTHENTICATED ||
         status == IPP_STATUS_ERROR_NOT_AUTHORIZED ||
         status == IPP_STATUS_ERROR_CUPS_AUTHENTICATION_CANCELED;
}

class Server {
 public:
  Server(Purpose purpose, seconds timeout) : purpose_(std::move(purpose)) {
    const Step step("connecting to " + Name());
    cupsSetPasswordCB2(AskForNoPassword, nullptr);
    http_.reset(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                             static_cast<int>(milliseconds(timeout).count()), nullptr));
    if (http_) return;
    const std::string fault = FindConnectionFault(cupsServer(), ippPort());
    Fail(purpose_, Name() + " does not answer (" + fault + ")", FixOfNoAnswer());
  }

  [[nodiscard]] std::string Name() const { return NameOfServer(ServerOfLibcups()); }
  [[nodiscard]] http_t* http() const { return http_.get(); }

  // With a file, which the server gets after the request.
  [[nodiscard]] IppPtr Ask(IppPtr request, const char* resource, const char* file = nullptr) const {
    IppPtr answer(cupsDoFileRequest(http_.get(), request.release(), resource, file));
    const ipp_status_t status = cupsLastError();
    if (IsDenial(status)) throw Denied(ExitStatus::kQueue, DenialOf(cupsLastErrorString()));
    if (status == IPP_STATUS_ERROR_NOT_FOUND) return nullptr;
    if (status == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE || status == IPP_STATUS_ERROR_INTERNAL) {
      Fail(purpose_, Name() + " does not complete the request (" + cupsLastErrorString() + ")",
           OrCupsRoot("read the server's error log"));
    }
    if (!answer || status > IPP_STATUS_OK_CONFLICTING) Refuse(cupsLastErrorString());
    return answer;
  }

  [[nodiscard]] FailureParts DenialOf(const std::string& reason) const {
    return {.action = purpose_.action,
            .object = purpose_.object,
            .cause = Name() + " does not let user " + cupsUser() + " do it (" + reason + ")",
            .hint = "run as root, or as a member of the group that administers CUPS"};
  }

  [[noreturn]] void Refuse(const std::string& reason) const {
    Fail(purpose_, Name() + " refuses the request (" + reason + ")",
         "check the server's policy and its error log");
  }

 private:
  Purpose purpose_;
  HttpPtr http_;
};

[[nodiscard]] IppPtr NewRequest(ipp_op_t operation, std::span<const char* const> attributes) {
  IppPtr request(ippNewRequest(operation));
  ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                static_cast<int>(attributes.size()), nullptr, attributes.data());
  return request;
}

[[nodiscard]] std::string TextOf(ipp_t* answer, const char* name) {
  ipp_attribute_t* const attribute = ippFindAttribute(answer, name, IPP_TAG_ZERO);
  const char* const text = attribute != nullptr ? ippGetString(attribute, 0, nullptr) : nullptr;
  return text != nullptr ? text : "";
}

constexpr auto kQueueAttributes = std::to_array<const char*>(
    {"device-uri", "printer-info", "printer-is-temporary", "printer-location",
     "printer-make-and-model", "printer-name", "printer-type"});

[[nodiscard]] QueueAttributes AttributesOf(ipp_t* answer) {
  ipp_attribute_t* const type = ippFindAttribute(answer, "printer-type", IPP_TAG_ENUM);
  ipp_attribute_t* const temporary =
      ippFindAttribute(answer, "printer-is-temporary", IPP_TAG_BOOLEAN);
  return {
      .name = TextOf(answer, "printer-name"),
      .device_uri = TextOf(answer, "device-uri"),
      .location = TextOf(answer, "printer-location"),
      .description = TextOf(answer, "printer-info"),
      .make_and_model = TextOf(answer, "printer-make-and-model"),
      .is_class = type != nullptr && (ippGetInteger(type, 0) & CUPS_PRINTER_CLASS) != 0,
      .is_temporary = temporary != nullptr && ippGetBoolean(temporary, 0) != 0,
  };
}

void AddUri(const std::string& queue, ipp_t* request) {
  std::array<char, HTTP_MAX_URI> uri = {};
  httpAssembleURIf(HTTP_URI_CODING_ALL, uri.data(), static_cast<int>(uri.size()), "ipp", nullptr,
                   "localhost", 0, "/printers/%s", queue.c_str());
  ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.data());
}

[[nodiscard]] QueueAttributes AskForQueue(const Server& server, const Purpose& purpose) {
  const Step step("the attributes of queue " + purpose.queue);
  IppPtr request = NewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES, kQueueAttributes);
  AddUri(purpose.queue, request.get());
  const IppPtr answer = server.Ask(std::move(request), "/");
  if (answer) return AttributesOf(answer.get());
  Fail(purpose, server.Name() + " has no such queue",
       "list the queues with `info-analyze queues cups`");
}

[[noreturn]] void FailForNoPpd(const Purpose& purpose, const Server& server,
                               const QueueAttributes& queue) {
  const std::string fix = "set it up with the PPD of the driver package: `lpadmin -p " +
                          QuoteForShell(purpose.queue) + " -P FILE.ppd`";
  if (IsDriverless(queue)) {
    Fail(purpose, "the queue is driverless (" + queue.device_uri + "), without a PPD", fix);
  }
  if (IsRaw(queue)) Fail(purpose, "it is a raw queue, which has no PPD", fix);
  Fail(purpose, server.Name() + " has no PPD of the queue", fix);
}

// Over the connection. cupsGetPPD3() would take this machine's PPD of the same name for any server
// that is called localhost, also at the other end of a tunnel.
[[nodiscard]] std::string DownloadPpd(const Server& server, const Purpose& purpose) {
  const QueueAttributes queue = AskForQueue(server, purpose);
  const Step step("downloading the PPD of queue " + purpose.queue);
  const int file = memfd_create("ppd", MFD_CLOEXEC);
  if (file < 0) Fail(purpose, std::strerror(errno), "close other programs");
  const std::string resource = "/printers/" + purpose.queue + ".ppd";
  const http_status_t status = cupsGetFd(server.http(), resource.c_str(), file);
  if (status == HTTP_STATUS_NOT_FOUND) FailForNoPpd(purpose, server, queue);
  if (status != HTTP_STATUS_OK) server.Refuse(httpStatus(status));
  try {
    return ReadRegularFile("/proc/self/fd/" + std::to_string(file), kMaxPpdSize);
  } catch (const FileFault& fault) {
    Fail(purpose, fault.what(), "replace it with the PPD of the driver package");
  }
}

[[nodiscard]] std::string FetchPpdInChild(const Purpose& purpose, seconds timeout) {
  const std::string folder = LocalFolder();
  if (HasLocalPpd(purpose.queue, folder)) return ReadPpdOfRoot(purpose.queue, folder);
  const Server server(purpose, timeout);
  return DownloadPpd(server, purpose);
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
  const IppPtr answer =
      server.Ask(NewRequest(IPP_OP_CUPS_GET_PRINTERS, std::to_array({"printer-name"})), "/");
  Message list;
  if (!answer) return "";  // a server without queues reports that none is found
  for (const std::string& name : NamesOfQueues(answer.get())) {
    list.Put(name);
    list.Put(std::to_string(PpdTimeOf(server, name)));
  }
  return list.bytes();
}

// An answer has a group of attributes for each printer, with a separator after it.
void PutQueues(const Server& server, Message& list) {
  const Step step("the list of queues");
  const IppPtr answer = server.Ask(NewRequest(IPP_OP_CUPS_GET_PRINTERS, kQueueAttributes), "/");
  if (!answer) return;  // a server without queues reports that none is found
  IppPtr queue(ippNew());
  const auto put = [&] {
    const QueueAttributes attributes = AttributesOf(queue.get());
    if (!attributes.name.empty()) list.Put(QueueAttributes::FieldsOf(attributes));
    queue.reset(ippNew());
  };
  for (ipp_attribute_t* attribute = ippFirstAttribute(answer.get()); attribute != nullptr;
       attribute = ippNextAttribute(answer.get())) {
    if (ippGetName(attribute) == nullptr) put();
    if (ippGetGroupTag(attribute) == IPP_TAG_PRINTER) ippCopyAttribute(queue.get(), attribute, 0);
  }
  put();
}

[[nodiscard]] bool PrintsJob(const Server& server, const Purpose& purpose) {
  IppPtr request = NewRequest(IPP_OP_GET_JOBS, std::to_array({"job-state"}));
  AddUri(purpose.queue, request.get());
  ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "which-jobs", nullptr,
               "not-completed");
  const IppPtr answer = server.Ask(std::move(request), "/");
  if (!answer) return false;
  ipp_attribute_t* state = ippFindAttribute(answer.get(), "job-state", IPP_TAG_ENUM);
  while (state != nullptr && ippGetInteger(state, 0) != IPP_JSTATE_PROCESSING) {
    state = ippFindNextAttribute(answer.get(), "job-state", IPP_TAG_ENUM);
  }
  return state != nullptr;
}

void Upload(const Server& server, const Purpose& purpose, const std::string& file) {
  IppPtr request(ippNewRequest(IPP_OP_CUPS_ADD_MODIFY_PRINTER));
  AddUri(purpose.queue, request.get());
  const IppPtr answer = server.Ask(std::move(request), "/admin/", file.c_str());
  if (!answer) Fail(purpose, server.Name() + " has no such queue", "run audit again");
}

void Use(const ServerSettings& server) {
  cupsSetServer(server.name.c_str());
  cupsSetUser(server.user.c_str());
  cupsSetEncryption(static_cast<http_encryption_t>(server.encryption));
}

// The child --------------------------------------------------------------------------------------

constexpr std::string_view kSuccess = "answer";
constexpr std::string_view kFailure = "failure";
constexpr std::string_view kDenied = "denied";

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
    result.Put(dynamic_cast<const Denied*>(&failure) != nullptr ? kDenied : kFailure);
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
        g_has_cups_root
            ? "restart cups.service, pass --cups-root, or allow more time with --timeout"
            : "restart cups.service or allow more time with --timeout");
  }
  Fail(purpose,
       "the process that asks " + NameOfServer(server) + " ended with " +
           (child.signal != 0 ? NameOfSignal(child.signal)
                              : "status " + std::to_string(child.status)),
       OrCupsRoot("try again"));
}

[[nodiscard]] std::string AskInChild(const Purpose& purpose, seconds timeout,
                                     const std::function<std::string()>& ask) {
  const ChildResult child = RunInChild(timeout, [&](int descriptor) { Answer(descriptor, ask); });
  Message message(child.answer);
  const std::string server = message.Take();
  if (child.has_timed_out || child.signal != 0 || child.status != 0 || message.IsAtEnd()) {
    FailForChild(purpose, child, server, timeout);
  }
  const std::string outcome = message.Take();
  if (outcome == kSuccess) return message.TakeRest();
  FailureParts parts = {.action = purpose.action, .object = purpose.object};
  parts.cause = message.Take();
  parts.hint = message.Take();
  if (outcome == kDenied) throw Denied(ExitStatus::kQueue, parts);
  throw Failure(ExitStatus::kQueue, parts);
}

}  // namespace

void UseServer(const std::string& host) {
  setenv("CUPS_SERVER", host.c_str(), 1);
  unsetenv("CUPS_SERVERROOT");  // that of a different server
  g_has_host = true;
  g_has_cups_root = false;
}

void HideCupsRoot() { g_has_cups_root = false; }

bool IsDriverless(const QueueAttributes& queue) {
  return queue.is_temporary || queue.make_and_model.find("IPP Everywhere") != std::string::npos;
}

bool IsRaw(const QueueAttributes& queue) {
  return queue.make_and_model.find("Raw") != std::string::npos;
}

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
    std::error_code ignored;
    if (file.extension() != ".ppd" || !entry.is_regular_file(ignored)) continue;
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

bool HasPrintingJob(const std::string& queue, seconds timeout) {
  const Purpose purpose = {
      .action = "cannot list", .object = "jobs of queue \"" + queue + "\"", .queue = queue};
  return !AskInChild(purpose, timeout, [&] {
            return PrintsJob(Server(purpose, timeout), purpose) ? "1" : "";
          }).empty();
}

std::string DownloadPpd(const std::string& queue, seconds timeout) {
  const Purpose purpose = ReadingPpd(queue);
  return AskInChild(purpose, timeout,
                    [&] { return DownloadPpd(Server(purpose, timeout), purpose); });
}

void ReplacePpd(const std::string& queue, const std::string& ppd, seconds timeout) {
  const Purpose purpose = {
      .action = "cannot change", .object = "PPD of queue \"" + queue + "\"", .queue = queue};
  const TemporaryFolder folder;  // of this process, so that no interrupt leaves it
  const std::string path = folder.path() + "/ppd";
  std::ofstream file(path, std::ios::binary);
  file << ppd << std::flush;
  if (!file) Fail(purpose, path + ": " + std::strerror(errno), "free space in TMPDIR");
  (void)AskInChild(purpose, timeout, [&] {
    Upload(Server(purpose, timeout), purpose, path);
    return "";
  });
}

AllQueues FetchAllQueues(seconds timeout) {
  const Purpose purpose = {.action = "cannot list", .object = "the queues", .queue = ""};
  Message message(AskInChild(purpose, timeout, [&] {
    const Server server(purpose, timeout);
    Message list;
    list.Put(ServerOfLibcups());
    list.Put(CertainFolder());
    list.Put(cupsUser());
    list.Put(std::to_string(cupsEncryption()));
    PutQueues(server, list);
    return list.bytes();
  }));
  AllQueues all;
  all.server.name = message.Take();
  all.server.folder = message.Take();
  all.server.user = message.Take();
  all.server.encryption = message.TakeNumber();
  while (!message.IsAtEnd()) message.Take(QueueAttributes::FieldsOf(all.queues.emplace_back()));
  return all;
}

std::string FetchPpdFrom(const ServerSettings& server, const std::string& queue, seconds timeout) {
  if (HasLocalPpd(queue, server.folder)) return ReadPpdOfRoot(queue, server.folder);
  const Purpose purpose = ReadingPpd(queue);
  return AskInChild(purpose, timeout, [&] {
    Use(server);
    return DownloadPpd(Server(purpose, timeout), purpose);
  });
}

QueueAttributes FetchQueueAttributes(const std::string& queue, seconds timeout) {
  const Purpose purpose = {
      .action = "cannot read", .object = "attributes of queue \"" + queue + "\"", .queue = queue};
  return Read<QueueAttributes>(AskInChild(
      purpose, timeout, [&] { return Write(AskForQueue(Server(purpose, timeout), purpose)); }));
}

}  // namespace ia::cli
