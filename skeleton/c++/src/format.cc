// The format of documents. Replace it by what your printers or your daemon write: only
// ParseDocument() and FormatDocument() are called from elsewhere.
//
// This one has a line for each value: its type, its key unless it is in an array, and the value.
// Values that follow a container are in it, up to its line "end":
//
//   document
//   number version 3
//   dictionary list
//   text name Finisher%20A
//   array codes
//   number 101
//   end
//   end
//   end
//
// In keys, texts and bytes, each blank, control character and "%" is written as "%" and two
// hexadecimal digits.
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "document.h"

namespace {

constexpr std::string_view kFirstLine = "document";
constexpr std::string_view kLastLine = "end";  // of a container
constexpr std::string_view kDigits = "0123456789abcdef";

// Reading
// ------------------------------------------------------------------------------------------------

// Takes what is before the separator, and the separator.
std::string_view Take(std::string_view& rest, char separator) {
  const std::string_view taken = rest.substr(0, rest.find(separator));
  rest.remove_prefix(taken.size() < rest.size() ? taken.size() + 1 : taken.size());
  return taken;
}

// Replaces "%20" by a blank and so on.
std::optional<std::string> Decode(std::string_view word) {
  std::string bytes;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (word[i] != '%') {
      bytes += word[i];
      continue;
    }
    if (word.size() - i < 3) return std::nullopt;
    const std::size_t high = kDigits.find(word[i + 1]);
    const std::size_t low = kDigits.find(word[i + 2]);
    if (high == kDigits.npos || low == kDigits.npos) return std::nullopt;
    bytes += static_cast<char>(16 * high + low);
    i += 2;
  }
  return bytes;
}

// A text that a C program can hold.
std::optional<std::string> DecodeText(std::string_view word) {
  std::optional<std::string> text = Decode(word);
  if (text && text->find('\0') != text->npos) return std::nullopt;
  return text;
}

template <class Number>
std::optional<Content> ParseNumber(std::string_view word) {
  Number number = {};
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
  return Content(number);
}

std::optional<Content> ParseText(std::string_view word) {
  std::optional<std::string> text = DecodeText(word);
  if (!text) return std::nullopt;
  return Content(Text{std::move(*text)});
}

std::optional<Content> ParseBytes(std::string_view word) {
  std::optional<std::string> bytes = Decode(word);
  if (!bytes) return std::nullopt;
  return Content(Bytes{std::move(*bytes)});
}

// In the order of the alternatives of Content.
constexpr struct {
  std::string_view name;
  std::optional<Content> (*parse)(std::string_view word);
} kTypes[] = {
    {"number", ParseNumber<std::int32_t>},
    {"real", ParseNumber<double>},
    {"text", ParseText},
    {"bytes", ParseBytes},
    {"dictionary", [](std::string_view) { return std::optional<Content>(Dictionary()); }},
    {"array", [](std::string_view) { return std::optional<Content>(Array()); }},
};

bool ParseLine(std::string_view line, Builder& builder) {
  const std::string_view name = Take(line, ' ');
  std::optional<std::string> key = "";
  if (!builder.IsInArray()) key = DecodeText(Take(line, ' '));
  if (!key) return false;
  for (const auto& type : kTypes) {
    if (type.name != name) continue;
    std::optional<Content> content = type.parse(line);
    return content && builder.Add(std::move(*key), std::move(*content));
  }
  return false;
}

// Writing
// ------------------------------------------------------------------------------------------------

std::string Encode(std::string_view bytes) {
  std::string word;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte <= ' ' || byte == '%' || byte == 0x7f) {
      word += '%';
      word += kDigits[byte / 16];
      word += kDigits[byte % 16];
    } else {
      word += character;
    }
  }
  return word;
}

// The shortest text that gives the same number when it is read.
template <class Number>
std::string FormatNumber(Number number) {
  char digits[32];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, number);
  return {digits, end};
}

void FormatValues(const std::vector<Value>& values, bool have_keys, std::string& out);

struct Formatter {
  std::string& out;

  void operator()(std::int32_t number) const { out += ' ' + FormatNumber(number) + '\n'; }
  void operator()(double number) const { out += ' ' + FormatNumber(number) + '\n'; }
  void operator()(const Text& text) const { out += ' ' + Encode(text.bytes) + '\n'; }
  void operator()(const Bytes& bytes) const { out += ' ' + Encode(bytes.bytes) + '\n'; }
  void operator()(const Dictionary& dictionary) const {
    out += '\n';
    FormatValues(dictionary.values, true, out);
  }
  void operator()(const Array& array) const {
    out += '\n';
    FormatValues(array.values, false, out);
  }
};

void FormatValues(const std::vector<Value>& values, bool have_keys, std::string& out) {
  for (const Value& value : values) {
    out += kTypes[value.content.index()].name;
    if (have_keys) out += ' ' + Encode(value.key);
    std::visit(Formatter{out}, value.content);
  }
  out += kLastLine;
  out += '\n';
}

}  // namespace

std::optional<Dictionary> ParseDocument(std::string_view bytes) {
  Builder builder;
  if (Take(bytes, '\n') != kFirstLine) return std::nullopt;
  while (!bytes.empty()) {
    const std::string_view line = Take(bytes, '\n');
    if (line != kLastLine) {
      if (!ParseLine(line, builder)) return std::nullopt;
    } else if (!builder.Close<Array>() && !builder.Close<Dictionary>()) {
      if (!bytes.empty()) return std::nullopt;  // after the last "end"
      return builder.Finish();
    }
  }
  return std::nullopt;
}

std::string FormatDocument(const Dictionary& document) {
  std::string out = std::string(kFirstLine) + '\n';
  FormatValues(document.values, true, out);
  return out;
}
