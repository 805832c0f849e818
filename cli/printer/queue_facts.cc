#include "cli/printer/queue_facts.h"

#include <strings.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "cli/printer/cups_server.h"
#include "cli/printer/ppd.h"
#include "cli/printer/regular_file.h"
#include "cli/printer/session.h"
#include "cli/terminal/failure.h"

namespace ia::cli {
namespace {

constexpr int kMaxSeconds = 5;
constexpr std::size_t kMaxConfigurationSize = std::size_t{64} << 20;

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

void Take(const Directive& line, QueueAttributes& facts) {
  if (IsSame(line.name, "DeviceURI")) facts.device_uri = line.value;
  if (IsSame(line.name, "Location")) facts.location = line.value;
  if (IsSame(line.name, "Info")) facts.description = line.value;
}

[[nodiscard]] QueueAttributes FactsOfRoot(const std::string& queue, const std::string& root) {
  try {
    return FactsIn(ReadRegularFile(root + "/printers.conf", kMaxConfigurationSize), queue);
  } catch (const FileFault&) {
    return {};
  }
}

[[nodiscard]] QueueAttributes FactsOfServer(const PrinterLocation& location) {
  try {
    return FetchQueueAttributes(location.queue,
                                std::chrono::seconds(std::min(location.timeout, kMaxSeconds)));
  } catch (const Failure&) {
    return {};
  }
}

}  // namespace

QueueAttributes FactsOf(const PrinterLocation& location) {
  QueueAttributes facts = location.cups_root.empty()
                              ? FactsOfServer(location)
                              : FactsOfRoot(location.queue, location.cups_root);
  facts.device_uri = WithoutCredentials(facts.device_uri);
  return facts;
}

QueueAttributes FactsIn(std::string_view printers_conf, std::string_view queue) {
  QueueAttributes facts;
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
