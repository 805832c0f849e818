#include "cli/acquire/device_client.h"

#include <cups/cups.h>
#include <strings.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "cli/acquire/printer_attributes.h"
#include "cli/printer/child_process.h"
#include "cli/printer/connection.h"
#include "cli/printer/message.h"
#include "cli/terminal/failure.h"
#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

constexpr const char* kDefaultPath = "/ipp/print";  // PWG 5100.14, section 4.2
constexpr int kDefaultPort = 631;

struct Address {
  bool is_encrypted = false;
  std::string host;
  int port = kDefaultPort;
  std::string path;
};

// Why there is no answer: the cause and what to do.
struct Fault {
  std::string cause;
  std::string hint;
};

[[noreturn]] void Fail(const std::string& uri, const Fault& fault) {
  throw Failure(ExitStatus::kDevice, {.action = "cannot read",
                                      .object = "device " + uri,
                                      .cause = fault.cause,
                                      .hint = fault.hint});
}

// URIs -------------------------------------------------------------------------------------------

struct UriParts {
  http_uri_status_t status = HTTP_URI_STATUS_BAD_URI;
  std::string scheme;
  Address address;
};

[[nodiscard]] UriParts Split(const std::string& uri) {
  std::array<char, 32> scheme = {};
  std::array<char, HTTP_MAX_URI> user = {};
  std::array<char, HTTP_MAX_HOST> host = {};
  std::array<char, HTTP_MAX_URI> path = {};
  int port = 0;
  UriParts parts;
  parts.status =
      httpSeparateURI(HTTP_URI_CODING_ALL, uri.c_str(), scheme.data(), scheme.size(), user.data(),
                      user.size(), host.data(), host.size(), &port, path.data(), path.size());
  parts.scheme = scheme.data();
  parts.address = {.is_encrypted = parts.scheme == "ipps",
                   .host = host.data(),
                   .port = port > 0 ? port : kDefaultPort,
                   .path = path.data()};
  return parts;
}

[[nodiscard]] bool IsIpp(const UriParts& parts) {
  return parts.scheme == "ipp" || parts.scheme == "ipps";
}

[[nodiscard]] std::string Join(const Address& address) {
  std::array<char, HTTP_MAX_URI> uri = {};
  httpAssembleURI(HTTP_URI_CODING_ALL, uri.data(), static_cast<int>(uri.size()),
                  address.is_encrypted ? "ipps" : "ipp", nullptr, address.host.c_str(),
                  address.port, address.path.c_str());
  return uri.data();
}

// The child --------------------------------------------------------------------------------------

const char* AskForNoPassword(const char*, http_t*, const char*, const char*, void*) {
  return nullptr;
}

class Connection {
 public:
  Connection(const Address& address, const DeviceRequest& request)
      : address_(address), request_(request) {
    const Step step("connecting to " + request.uri);
    cupsSetPasswordCB2(AskForNoPassword, nullptr);
    using std::chrono::milliseconds;
    http_.reset(
        httpConnect2(address.host.c_str(), address.port, nullptr, AF_UNSPEC,
                     address.is_encrypted ? HTTP_ENCRYPTION_ALWAYS : HTTP_ENCRYPTION_IF_REQUESTED,
                     1, static_cast<int>(milliseconds(request.timeout).count()), nullptr));
    if (!http_) {
      throw Fault{"it does not answer (" + FindConnectionFault(address.host, address.port) + ")",
                  "check the address, and that the device has IPP enabled"};
    }
    if (address.is_encrypted) RequireTrust();
  }

  // The body of the answer.
  [[nodiscard]] std::string Ask(int major, int minor) {
    const Step step("the attributes of " + request_.uri);
    http_status_t status = Send(major, minor);
    if (status == HTTP_STATUS_UPGRADE_REQUIRED) {
      Encrypt();
      status = Send(major, minor);
    }
    if (status != HTTP_STATUS_OK) throw FaultOf(status);
    if (strncasecmp(httpGetField(http_.get(), HTTP_FIELD_CONTENT_TYPE), "application/ipp", 15) !=
        0) {
      throw Fault{"it does not answer with IPP", "check the path of the URI"};
    }
    return ReadBody();
  }

 private:
  void RequireTrust() {
    if (request_.accepts_any_certificate) return;
    cups_array_t* certificates = nullptr;
    httpCopyCredentials(http_.get(), &certificates);
    const std::unique_ptr<cups_array_t, void (*)(cups_array_t*)> owner(certificates,
                                                                       httpFreeCredentials);
    const http_trust_t trust = httpCredentialsGetTrust(certificates, address_.host.c_str());
    if (trust == HTTP_TRUST_OK) {
      // Of devices that are new to it, CUPS trusts the certificate that it sees first.
      httpSaveCredentials(nullptr, certificates, address_.host.c_str());
    } else if (trust != HTTP_TRUST_RENEWED) {
      throw Fault{"its certificate is not trusted (" + std::string(cupsLastErrorString()) + ")",
                  "check it, or pass --insecure"};
    }
  }

  // As a device asks for on a connection that is not encrypted.
  void Encrypt() {
    httpFlush(http_.get());
    if (httpEncryption(http_.get(), HTTP_ENCRYPTION_REQUIRED) != 0) {
      throw Fault{
          "it demands TLS and does not start it (" + std::string(cupsLastErrorString()) + ")",
          "pass its ipps:// URI"};
    }
    RequireTrust();
  }

  // The status of the answer, whose body is next.
  [[nodiscard]] http_status_t Send(int major, int minor) {
    const IppPtr request(ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES));
    ippSetVersion(request.get(), major, minor);
    ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr,
                 request_.uri.c_str());
    ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                  static_cast<int>(kRequestedAttributes.size()), nullptr,
                  kRequestedAttributes.data());
    http_status_t status = cupsSendRequest(http_.get(), request.get(), address_.path.c_str(),
                                           ippLength(request.get()));
    while (status == HTTP_STATUS_CONTINUE) status = httpUpdate(http_.get());
    return status;
  }

  [[nodiscard]] static Fault FaultOf(http_status_t status) {
    if (status == HTTP_STATUS_ERROR) {
      return {"it closes the connection without an answer", "check that it speaks IPP"};
    }
    const std::string text = std::to_string(status) + " " + httpStatus(status);
    if (status >= HTTP_STATUS_MULTIPLE_CHOICES && status < HTTP_STATUS_BAD_REQUEST) {
      return {"it redirects to a different place (" + text + ")", "pass the URI of that place"};
    }
    if (status == HTTP_STATUS_NOT_FOUND) {
      return {"it has no such path (" + text + ")", "try the path /ipp/print"};
    }
    return {"it refuses the request (" + text + ")", "check the device's access settings"};
  }

  // Up to what a message can have.
  [[nodiscard]] std::string ReadBody() {
    std::string body;
    std::array<char, 65536> buffer;
    ssize_t count = 1;
    while (count > 0 && body.size() <= kMaxMessageSize) {
      count = httpRead2(http_.get(), buffer.data(), buffer.size());
      if (count > 0) body.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return body;
  }

  const Address& address_;
  const DeviceRequest& request_;
  HttpPtr http_;
};

// From the bytes, because a device can send a number that ipp_status_t does not have.
[[nodiscard]] int StatusOf(const std::string& message) {
  (void)ReadMessage(message);
  return static_cast<unsigned char>(message[2]) << 8 | static_cast<unsigned char>(message[3]);
}

[[nodiscard]] std::string NameOfStatus(int status) {
  constexpr int kLastKnown = 0x5FF;
  if (status > kLastKnown) return "status " + std::to_string(status);
  return ippErrorString(static_cast<ipp_status_t>(status));
}

[[nodiscard]] std::string Ask(const DeviceRequest& request) {
  const Address address = Split(request.uri).address;
  Connection connection(address, request);
  std::string answer = connection.Ask(2, 0);
  if (StatusOf(answer) == IPP_STATUS_ERROR_VERSION_NOT_SUPPORTED) answer = connection.Ask(1, 1);
  const int status = StatusOf(answer);
  if (status > IPP_STATUS_OK_EVENTS_COMPLETE) {
    throw Fault{"it refuses the request (" + NameOfStatus(status) + ")",
                "check the path of the URI and the device's access settings"};
  }
  return answer;
}

constexpr std::string_view kAnswer = "answer";

// Writes the word and the message, or the cause and the hint.
void Answer(int descriptor, const DeviceRequest& request) {
  Message result;
  try {
    const std::string answer = Ask(request);
    result.Put(kAnswer);
    return WriteAll(descriptor, result.bytes() + answer);
  } catch (const Fault& fault) {
    result.Put("");
    result.Put(fault.cause);
    result.Put(fault.hint);
  } catch (const MessageFault& fault) {
    result.Put("");
    result.Put(std::string("its answer ") + fault.what());
    result.Put("check that it speaks IPP");
  }
  WriteAll(descriptor, result.bytes());
}

[[nodiscard]] Fault FaultOf(const ChildResult& child, const DeviceRequest& request) {
  if (child.has_timed_out) {
    return {"it has not answered within " + std::to_string(request.timeout.count()) + " s",
            "check the address, or allow more time with --timeout"};
  }
  return {"the process that asks it ended with " + (child.signal != 0
                                                        ? NameOfSignal(child.signal)
                                                        : "status " + std::to_string(child.status)),
          "save its answer with ipptool and pass that file"};
}

}  // namespace

std::string IppUriOf(const std::string& device_uri) {
  UriParts parts = Split(device_uri);
  const bool has_host = parts.status >= HTTP_URI_STATUS_OK && !parts.address.host.empty();
  if (!has_host || parts.scheme == "dnssd" || parts.scheme == "usb") {
    Fail(device_uri, {"the URI does not name a host", "pass ipp://HOST/ipp/print"});
  }
  if (!IsIpp(parts)) {
    parts.address.port = kDefaultPort;
    parts.address.path = kDefaultPath;
  }
  if (parts.address.path.size() <= 1) parts.address.path = kDefaultPath;
  return Join(parts.address);
}

std::string FetchAttributes(const DeviceRequest& request) {
  const ChildResult child =
      RunInChild(request.timeout, [&](int descriptor) { Answer(descriptor, request); });
  Message message(child.answer);
  if (child.has_timed_out || child.signal != 0 || child.status != 0 || message.IsAtEnd()) {
    Fail(request.uri, FaultOf(child, request));
  }
  if (message.Take() == kAnswer) return message.TakeRest();
  Fault fault;
  fault.cause = message.Take();
  fault.hint = message.Take();
  Fail(request.uri, fault);
}

}  // namespace ia::cli
