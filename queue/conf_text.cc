#include "queue/conf_text.h"

#include <string.h>

#include <cstring>
#include <optional>
#include <string_view>

namespace ia {
namespace {

constexpr std::string_view kQueueMark = "<Printer ";
constexpr char kQueueEnd = '>';
constexpr std::string_view kDevicePathMark = "DevicePath ";

// memmem() is faster than std::string_view::find().
const char* Find(std::string_view text, std::string_view wanted) noexcept {
  if (text.size() < wanted.size()) return nullptr;
  return static_cast<const char*>(memmem(text.data(), text.size(), wanted.data(), wanted.size()));
}

const char* End(std::string_view text) noexcept { return text.data() + text.size(); }

const char* LineStart(const char* text, const char* at) noexcept {
  const void* const feed = memrchr(text, '\n', static_cast<std::size_t>(at - text));
  return feed != nullptr ? static_cast<const char*>(feed) + 1 : text;
}

const char* LineEnd(const char* at, const char* end) noexcept {
  const void* const feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
  return feed != nullptr ? static_cast<const char*>(feed) : end;
}

bool IsComment(std::string_view line) noexcept { return line.starts_with('#'); }

std::optional<std::string_view> TextAfter(std::string_view line, std::string_view mark) noexcept {
  const char* const found = Find(line, mark);
  if (found == nullptr) return std::nullopt;
  return TextBetween(found + mark.size(), End(line));
}

std::optional<std::string_view> DevicePathIn(std::string_view line) noexcept {
  return IsComment(line) ? std::nullopt : TextAfter(line, kDevicePathMark);
}

}  // namespace

std::string_view TextBetween(const char* start, const char* end) noexcept {
  if (start == nullptr || end == nullptr || start > end) return {};
  return {start, static_cast<std::size_t>(end - start)};
}

bool LinesHolding::Next(std::string_view& line) noexcept {
  const char* const end = End(rest_);
  const char* const found = rest_.empty() ? nullptr : Find(rest_, held_);
  if (found == nullptr) {
    rest_.remove_prefix(rest_.size());
    return false;
  }
  line = TextBetween(LineStart(rest_.data(), found), LineEnd(found, end));
  const bool has_feed = End(line) != end;
  rest_ = TextBetween(End(line) + (has_feed ? 1 : 0), end);
  return true;
}

std::string_view LineBefore(std::string_view text, std::string_view line) noexcept {
  if (line.data() == text.data()) return {};
  const char* const end = line.data() - 1;
  return TextBetween(LineStart(text.data(), end), end);
}

std::string_view LineAfter(std::string_view text, std::string_view line) noexcept {
  if (End(line) == End(text)) return {};
  const char* const start = End(line) + 1;
  return TextBetween(start, LineEnd(start, End(text)));
}

std::optional<std::string_view> QueueNameIn(std::string_view line) noexcept {
  if (IsComment(line)) return std::nullopt;
  const auto rest = TextAfter(line, kQueueMark);
  if (!rest) return std::nullopt;
  const std::size_t length = rest->find(kQueueEnd);
  if (length == std::string_view::npos) return std::nullopt;
  const std::string_view name(rest->data(), length);
  // MqpdQueueList_Initialize() ended the name with a NUL.
  if (name.find('\0') != std::string_view::npos) return std::nullopt;
  return name;
}

QueueLines::QueueLines(std::string_view text) noexcept : lines_(text, kQueueMark) {}

bool QueueLines::Next(std::string_view& name) noexcept {
  std::string_view line;
  while (lines_.Next(line)) {
    if (const auto found = QueueNameIn(line)) {
      name = *found;
      return true;
    }
  }
  return false;
}

std::optional<QueueEntry> FindQueueNamed(std::string_view text, std::string_view name) noexcept {
  LinesHolding lines(text, name);
  std::string_view line;
  while (lines.Next(line)) {
    const auto found = QueueNameIn(line);
    if (found == name) return QueueEntry{*found, DevicePathIn(LineAfter(text, line))};
  }
  return std::nullopt;
}

// Searches for the URI first, because few lines contain it, while many lines begin a queue.
std::optional<QueueEntry> FindQueueWithUri(std::string_view text, std::string_view uri) noexcept {
  LinesHolding lines(text, uri);
  std::string_view line;
  while (lines.Next(line)) {
    const auto path = DevicePathIn(line);
    if (!path || Find(*path, uri) == nullptr) continue;
    if (const auto name = QueueNameIn(LineBefore(text, line))) return QueueEntry{*name, path};
  }
  return std::nullopt;
}

}  // namespace ia
