#ifndef INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_
#define INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

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
  template <class Enum>
    requires std::is_enum_v<Enum>
  void Put(Enum value) {
    Put(std::to_string(static_cast<int>(value)));
  }
  template <class... Fields>
  void Put(const std::tuple<Fields...>& fields) {
    std::apply([this](const auto&... each) { (this->Put(each), ...); }, fields);
  }
  template <class Record>
  void Put(const std::vector<Record>& records) {
    Put(std::to_string(records.size()));
    for (const Record& record : records) Put(Record::FieldsOf(record));
  }

  // The next text; empty at the end.
  [[nodiscard]] std::string Take() {
    const std::size_t end = std::min(bytes_.find('\0', at_), bytes_.size());
    std::string text = bytes_.substr(at_, end - at_);
    at_ = std::min(end + 1, bytes_.size());
    return text;
  }
  [[nodiscard]] bool TakeFlag() { return !Take().empty(); }
  // Zero when the next text is no number.
  [[nodiscard]] int TakeNumber() {
    const std::string text = Take();
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
  }

  void Take(std::string& text) { text = Take(); }
  void Take(bool& flag) { flag = TakeFlag(); }
  template <class Enum>
    requires std::is_enum_v<Enum>
  void Take(Enum& value) {
    value = static_cast<Enum>(TakeNumber());
  }
  template <class... Fields>
  void Take(std::tuple<Fields&...> fields) {
    std::apply([this](auto&... each) { (this->Take(each), ...); }, fields);
  }
  template <class Record>
  void Take(std::vector<Record>& records) {
    for (int left = TakeNumber(); left > 0 && !IsAtEnd(); --left) {
      Take(Record::FieldsOf(records.emplace_back()));
    }
  }

  // All that is left, which may contain NULs.
  [[nodiscard]] std::string TakeRest() { return bytes_.substr(std::exchange(at_, bytes_.size())); }

  [[nodiscard]] bool IsAtEnd() const { return at_ == bytes_.size(); }
  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::size_t at_ = 0;
};

// A record as one message. Its fields are those that its function FieldsOf() lists.
template <class Record>
[[nodiscard]] std::string Write(const Record& record) {
  Message message;
  message.Put(Record::FieldsOf(record));
  return message.bytes();
}

template <class Record>
[[nodiscard]] Record Read(const std::string& bytes) {
  Record record;
  Message(bytes).Take(Record::FieldsOf(record));
  return record;
}

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_MESSAGE_H_
