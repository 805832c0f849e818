#include "tests/info_common/ppd_model.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ia_test {
namespace {

const ParsedLine kRefused{-1, "", ""};

using LineBuffer = std::array<char, 512>;

std::string_view UpToNul(std::string_view text) { return text.substr(0, text.find('\0')); }

// Takes the bytes before the first of the stopping ones off the front of the text.
std::string_view TakeUntil(std::string_view* text, const char* stops) {
  const std::string_view taken = text->substr(0, text->find_first_of(stops));
  text->remove_prefix(taken.size());
  return taken;
}

void SkipRun(std::string_view* text, const char* bytes) {
  text->remove_prefix(std::min(text->find_first_not_of(bytes), text->size()));
}

ParsedLine Accepted(std::string_view key, std::string_view value) {
  return {static_cast<std::int32_t>(value.size()) + 1, std::string(key), std::string(value)};
}

// Lines as a 512-byte read hands them over: CR, LF and CR LF end a line, and so does the 511th
// byte, after which a line end of its own counts as an empty line.
std::vector<LineBuffer> SplitLines(std::string_view bytes) {
  std::vector<LineBuffer> lines;
  while (!bytes.empty()) {
    LineBuffer line{};
    std::size_t length = 0;
    bool ended = false;
    while (!ended && length < line.size() - 1 && !bytes.empty()) {
      const char byte = bytes.front();
      bytes.remove_prefix(1);
      ended = byte == '\n' || byte == '\r';
      if (byte == '\r' && bytes.starts_with('\n')) bytes.remove_prefix(1);
      if (!ended) line[length++] = byte;
    }
    lines.push_back(line);
  }
  return lines;
}

bool HasWordAfterFirstByte(const LineBuffer& line, std::string_view word) {
  return std::memcmp(line.data() + 1, word.data(), word.size()) == 0;
}

class Reader {
 public:
  void Read(const LineBuffer& line) {
    const std::string_view text = UpToNul({line.data(), line.size()});
    if (!inside_block_ && HasWordAfterFirstByte(line, "QV")) {
      Insert(ParseOptionLine({line.data() + 1, line.size() - 1}, 256));
    } else if (!inside_block_ && text.starts_with(kUiValue)) {
      Insert(ParseUiValueLine(text.substr(kUiValue.size())));
    } else if (HasWordAfterFirstByte(line, "OpenUI")) {
      Open(text);
    } else if (inside_block_ && HasWordAfterFirstByte(line, "CloseUI")) {
      Close();
    } else if (list_key_) {
      AddChoice(text);
    }
  }

  const Entries& entries() const { return table_.entries(); }

 private:
  static constexpr std::string_view kUiValue = "*%QVUIValue:";

  void Insert(const ParsedLine& line) {
    if (line.result >= 1) table_.AddFront(line.key, line.value);
  }

  void Open(std::string_view text) {
    inside_block_ = true;
    for (const char* name : {"QVPlatformVersion", "QVSpecID"}) {
      if (text.find(name) == std::string_view::npos) continue;
      option_name_ = name;
      list_key_ = "QVValueList" + std::string(name).substr(2);
      return;
    }
  }

  void Close() {
    inside_block_ = false;
    if (list_key_ && choices_) table_.AddFront(*list_key_, *choices_);
    list_key_.reset();
    choices_.reset();
  }

  void AddChoice(std::string_view text) {
    if (EqualIgnoringCase(text.substr(0, 8), "*Default")) return;
    const std::size_t start = option_name_.size() + 2;
    if (start > text.size()) return;
    const std::size_t slash = text.find('/', start);
    if (slash == std::string_view::npos) return;
    const std::string choice(text.substr(start, slash - start));
    choices_ = choices_ ? *choices_ + "," + choice : choice;
  }

  TableModel table_;
  bool inside_block_ = false;
  std::string option_name_;
  std::optional<std::string> list_key_;
  std::optional<std::string> choices_;
};

}  // namespace

ParsedLine ParseOptionLine(std::string_view text, std::int64_t size) {
  text = UpToNul(text);
  const auto too_long = [size](std::string_view part) {
    return static_cast<std::int64_t>(part.size()) >= size - 1;
  };
  const std::string_view key = TakeUntil(&text, " \t\r\n\":");
  if (too_long(key)) return kRefused;
  if (text.empty()) return Accepted(key, "");
  text.remove_prefix(1);
  for (const char* run : {" \t", ":", " \t", "\""}) SkipRun(&text, run);
  const std::string_view value = TakeUntil(&text, "\r\t\"\n");
  return too_long(value) ? kRefused : Accepted(key, value);
}

ParsedLine ParseUiValueLine(std::string_view text) {
  text = UpToNul(text);
  std::string key(TakeUntil(&text, "\r\n("));
  std::erase_if(key, [](char c) { return c == ' ' || c == '\t' || c == '*'; });
  if (key.size() > 254) return kRefused;
  if (text.empty()) return Accepted(key, "");
  text.remove_prefix(1);
  const std::string_view value = TakeUntil(&text, "\r\n)");
  return value.size() > 254 ? kRefused : Accepted(key, value);
}

Entries EntriesOfPpd(std::string_view bytes) {
  Reader reader;
  for (const LineBuffer& line : SplitLines(bytes)) reader.Read(line);
  return reader.entries();
}

}  // namespace ia_test
