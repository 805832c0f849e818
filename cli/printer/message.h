#ifndef INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_
#define INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace ia::cli {

// What one process sends to another: texts, each followed by a NUL, which none of them contains.
class Message {
 public:
  Message() = default;
  explicit Message(std::string bytes) : bytes_(std::move(bytes)) {}

  void Put(std::string_view text) {
    bytes_.append(text.substr(0, text.find('\0'))).push_back('\0');
  }
  void Put(bool flag) { Put(std::string_view(flag ? "1" : "")); }

  // The next text; empty at the end.
  [[nodiscard]] std::string Take() {
    const std::size_t end = std::min(bytes_.find('\0', at_), bytes_.size());
    std::string text = bytes_.substr(at_, end - at_);
    at_ = std::min(end + 1, bytes_.size());
    return text;
  }
  [[nodiscard]] bool TakeFlag() { return !Take().empty(); }

  // All that is left, which may contain NULs.
  [[nodiscard]] std::string TakeRest() { return bytes_.substr(std::exchange(at_, bytes_.size())); }

  [[nodiscard]] bool IsAtEnd() const { return at_ == bytes_.size(); }
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_
