// The text of a daemon configuration. It may contain NUL bytes.
#ifndef QUEUE_CONF_TEXT_H_
#define QUEUE_CONF_TEXT_H_

#include <optional>
#include <string_view>

namespace ia {

// Empty when a pointer is null or the start is after the end.
[[nodiscard]] std::string_view TextBetween(const char* start, const char* end) noexcept;

// Visits the lines that contain a text, in order and without their line feeds. One search skips all
// lines in between, so visiting them costs little more than reading the text once.
class LinesHolding {
 public:
  // Every line contains an empty text.
  LinesHolding(std::string_view text, std::string_view held) noexcept : rest_(text), held_(held) {}

  // False when there is no further line.
  [[nodiscard]] bool Next(std::string_view& line) noexcept;

  // The text after the last visited line and its line feed.
  [[nodiscard]] std::string_view rest() const noexcept { return rest_; }

 private:
  std::string_view rest_;  // begins with a line
  std::string_view held_;
};

// The lines before and after a line of the text; empty before the first and after the last one.
[[nodiscard]] std::string_view LineBefore(std::string_view text, std::string_view line) noexcept;
[[nodiscard]] std::string_view LineAfter(std::string_view text, std::string_view line) noexcept;

// Name of the queue whose entry begins with this line, or nothing.
[[nodiscard]] std::optional<std::string_view> QueueNameIn(std::string_view line) noexcept;

// Visits the lines with which queue entries begin.
class QueueLines {
 public:
  explicit QueueLines(std::string_view text) noexcept;

  // False when there is no further queue.
  [[nodiscard]] bool Next(std::string_view& name) noexcept;

  [[nodiscard]] std::string_view rest() const noexcept { return lines_.rest(); }

 private:
  LinesHolding lines_;
};

// A queue, and the device path in the line after its first; nullopt when that line has none.
struct QueueEntry {
  std::string_view name;
  std::optional<std::string_view> device_path;
};

// The first queue of this name.
[[nodiscard]] std::optional<QueueEntry> FindQueueNamed(std::string_view text,
                                                       std::string_view name) noexcept;

// The first queue with this URI somewhere in its device path.
[[nodiscard]] std::optional<QueueEntry> FindQueueWithUri(std::string_view text,
                                                         std::string_view uri) noexcept;

}  // namespace ia

#endif  // QUEUE_CONF_TEXT_H_
