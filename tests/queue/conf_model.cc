#include "tests/queue/conf_model.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace ia_test {
namespace {

using Words = std::optional<std::string>;

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines(1);
  for (const char byte : text) {
    if (byte == '\n') {
      lines.emplace_back();
    } else {
      lines.back() += byte;
    }
  }
  return lines;
}

Words After(const std::string& line, const std::string& mark) {
  const std::size_t at = line.find(mark);
  if (at == std::string::npos) return std::nullopt;
  return line.substr(at + mark.size());
}

Words Before(const std::string& text, const std::string& mark) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return std::nullopt;
  return text.substr(0, at);
}

bool IsComment(const std::string& line) { return !line.empty() && line[0] == '#'; }

Words NameIn(const std::string& line) {
  const Words rest = IsComment(line) ? std::nullopt : After(line, "<Printer ");
  const Words name = rest ? Before(*rest, ">") : std::nullopt;
  return name && name->find('\0') == std::string::npos ? name : std::nullopt;
}

}  // namespace

ConfModel::ConfModel(const std::string& text) {
  const std::vector<std::string> lines = SplitLines(text);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Words name = NameIn(lines[i]);
    if (!name) continue;
    const bool has_next = i + 1 < lines.size() && !IsComment(lines[i + 1]);
    queues_.push_back({*name, has_next ? After(lines[i + 1], "DevicePath ") : std::nullopt});
  }
}

std::vector<std::string> ConfModel::Names() const {
  std::vector<std::string> names;
  for (const Queue& queue : queues_) names.push_back(queue.name);
  return names;
}

std::optional<std::string> ConfModel::NameForUri(const std::string& uri) const {
  for (const Queue& queue : queues_) {
    if (queue.device_path && queue.device_path->find(uri) != std::string::npos) return queue.name;
  }
  return std::nullopt;
}

std::optional<ModelDevice> ConfModel::DeviceOf(const std::string& name) const {
  for (const Queue& queue : queues_) {
    if (queue.name != name) continue;
    if (!queue.device_path) return ModelDevice{};
    for (const char* prefix : {"net:", "net6:", "mdns:", "usb://", "ncap_usb_cdc://", "notuse:"}) {
      if (!queue.device_path->starts_with(prefix)) continue;
      return ModelDevice{Before(*After(*queue.device_path, prefix), "/PDLType="), prefix};
    }
    return std::nullopt;
  }
  return std::nullopt;
}

std::string UpToNul(const std::string& text) { return text.c_str(); }

}  // namespace ia_test
