#include "cli/snapshot/queue_facts.h"

#include <cups/cups.h>
#include <cups/http.h>
#include <cups/ipp.h>
#include <strings.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <fstream>
#include <ios>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>

#include "cli/printer/child_process.h"
#include "cli/printer/ppd.h"
#include "cli/printer/session.h"

namespace ia::cli {
namespace {

constexpr int kMaxSeconds = 5;

struct Releaser {
  void operator()(http_t* server) const noexcept { httpClose(server); }
  void operator()(ipp_t* message) const noexcept { ippDelete(message); }
};
using ServerPtr = std::unique_ptr<http_t, Releaser>;
using MessagePtr = std::unique_ptr<ipp_t, Releaser>;

// A configuration file
// -----------------------------------------------------------------------------

[[nodiscard]] bool IsSame(std::string_view left, std::string_view right) {
  return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

struct Directive {
  std::string_view name;
  std::string_view value;
};

[[nodiscard]] Directive ParseDirective(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  const std::size_t blank = std::min(line.find_first_of(" \t"), line.size());
  std::string_view value = line.substr(blank);
  value.remove_prefix(std::min(value.find_first_not_of(" \t"), value.size()));
  return {line.substr(0, blank), value.substr(0, value.find_last_not_of(" \t") + 1)};
}

[[nodiscard]] bool Opens(const Directive& line, std::string_view queue) {
  std::string_view name = line.value;
  if (!name.ends_with('>')) return false;
  name.remove_suffix(1);
  return (IsSame(line.name, "<Printer") || IsSame(line.name, "<DefaultPrinter")) &&
         IsSame(name, queue);
}

void Take(const Directive& line, QueueFacts& facts) {
  if (IsSame(line.name, "DeviceURI")) facts.device_uri = line.value;
  if (IsSame(line.name, "Location")) facts.location = line.value;
  if (IsSame(line.name, "Info")) facts.description = line.value;
}

[[nodiscard]] std::string ReadConfiguration(const std::string& cups_root) {
  std::ifstream file(cups_root + "/printers.conf", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A server
// -----------------------------------------------------------------------------------------

[[nodiscard]] ServerPtr Connect() {
  return ServerPtr(httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1,
                                kMaxSeconds * 1000, nullptr));
}

[[nodiscard]] MessagePtr Request(const std::string& queue) {
  constexpr auto kNames =
      std::to_array<const char*>({"device-uri", "printer-info", "printer-location"});
  std::array<char, HTTP_MAX_URI> uri{};
  httpAssembleURIf(HTTP_URI_CODING_ALL, uri.data(), static_cast<int>(uri.size()), "ipp", nullptr,
                   "localhost", 0, "/printers/%s", queue.c_str());
  MessagePtr request(ippNewRequest(IPP_OP_GET_PRINTER_ATTRIBUTES));
  ippAddString(request.get(), IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri.data());
  ippAddStrings(request.get(), IPP_TAG_OPERATION, IPP_TAG_KEYWORD, "requested-attributes",
                static_cast<int>(kNames.size()), nullptr, kNames.data());
  return request;
}

[[nodiscard]] std::string TextOf(ipp_t* answer, const char* name, ipp_tag_t type) {
  const char* const text = ippGetString(ippFindAttribute(answer, name, type), 0, nullptr);
  return text != nullptr ? text : "";
}

// Each text, followed by a NUL.
[[nodiscard]] std::string AskServer(const std::string& queue) {
  const ServerPtr server = Connect();
  if (!server) return "";
  const MessagePtr answer(cupsDoRequest(server.get(), Request(queue).release(), "/"));
  return TextOf(answer.get(), "device-uri", IPP_TAG_URI) + '\0' +
         TextOf(answer.get(), "printer-location", IPP_TAG_TEXT) + '\0' +
         TextOf(answer.get(), "printer-info", IPP_TAG_TEXT) + '\0';
}

[[nodiscard]] std::string TakeText(std::string& texts) {
  const std::size_t end = texts.find('\0');
  if (end == std::string::npos) return "";
  std::string text = texts.substr(0, end);
  texts.erase(0, end + 1);
  return text;
}

// In a child, because libcups reads the server's name once, and another one is set later.
[[nodiscard]] QueueFacts FactsOfServer(const PrinterLocation& location) {
  const std::chrono::seconds limit(std::min(location.timeout, kMaxSeconds));
  ChildResult child =
      RunInChild(limit, [&](int descriptor) { WriteAll(descriptor, AskServer(location.queue)); });
  return {.device_uri = TakeText(child.answer),
          .location = TakeText(child.answer),
          .description = TakeText(child.answer)};
}

}  // namespace

QueueFacts FactsOf(const PrinterLocation& location) {
  QueueFacts facts = location.cups_root.empty()
                         ? FactsOfServer(location)
                         : FactsIn(ReadConfiguration(location.cups_root), location.queue);
  facts.device_uri = WithoutCredentials(facts.device_uri);
  return facts;
}

QueueFacts FactsIn(std::string_view printers_conf, std::string_view queue) {
  QueueFacts facts;
  bool is_of_queue = false;
  ForEachLine(printers_conf, [&](std::string_view line) {
    const Directive directive = ParseDirective(line);
    if (Opens(directive, queue)) is_of_queue = true;
    if (directive.name.starts_with("</")) is_of_queue = false;
    if (is_of_queue) Take(directive, facts);
  });
  return facts;
}

std::string WithoutCredentials(const std::string& device_uri) {
  const std::size_t start = device_uri.find("//");
  if (start == std::string::npos) return device_uri;
  const std::size_t host = start + 2;
  const std::size_t end = std::min(device_uri.find_first_of("/?#", host), device_uri.size());
  const std::size_t at = device_uri.rfind('@', end);
  if (at == std::string::npos || at < host || at >= end) return device_uri;
  return device_uri.substr(0, host) + device_uri.substr(at + 1);
}

}  // namespace ia::cli
