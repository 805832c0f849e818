#include "cli/acquire/fields.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

constexpr std::string_view kEscapable = " ;=\\";
constexpr std::string_view kBlanks{" \t\r\n\0", 5};

[[nodiscard]] std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

[[nodiscard]] bool IsEscape(std::string_view text, std::size_t at) {
  return text[at] == '\\' && at + 1 < text.size() &&
         kEscapable.find(text[at + 1]) != std::string_view::npos;
}

// The place of the first such character that is not escaped, or the end.
[[nodiscard]] std::size_t FindPlain(std::string_view text, char wanted) {
  std::size_t at = 0;
  while (at < text.size() && text[at] != wanted) at += IsEscape(text, at) ? 2 : 1;
  return at;
}

[[nodiscard]] std::string WithoutEscapes(std::string_view text) {
  std::string plain;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (IsEscape(text, at)) ++at;
    plain += text[at];
  }
  return plain;
}

// U+FFFE and U+FFFF are valid UTF-8 that XML does not allow.
[[nodiscard]] std::string WithoutNoncharacters(std::string text) {
  for (const std::string_view noncharacter : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
    for (std::size_t at = text.find(noncharacter); at != std::string::npos;
         at = text.find(noncharacter, at)) {
      text.replace(at, noncharacter.size(), "\xEF\xBF\xBD");
    }
  }
  return text;
}

}  // namespace

Fields ParseFields(std::string_view text) {
  Fields fields;
  while (!text.empty()) {
    const std::size_t name_end = text.find_first_of("=;");
    if (name_end == std::string_view::npos) break;
    const std::string name = LowerCase(Trimmed(text.substr(0, name_end)));
    const bool has_value = text[name_end] == '=';
    text.remove_prefix(name_end + 1);
    if (!has_value) continue;
    const std::string_view value = text.substr(0, FindPlain(text, ';'));
    text.remove_prefix(std::min(value.size() + 1, text.size()));
    if (!name.empty()) fields.emplace(name, CleanText(WithoutEscapes(value)));
  }
  return fields;
}

void AppendField(std::string_view name, std::string_view value, std::string& text) {
  text.append(name).append("=");
  for (const char character : value) {
    if (kEscapable.find(character) != std::string_view::npos) text += '\\';
    text += character;
  }
  text += ';';
}

std::optional<std::int32_t> ParseCapacity(std::string_view text) {
  std::int32_t sheets = -1;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, sheets);
  const bool is_number = result.ec == std::errc() && result.ptr == end;
  return is_number && sheets >= 0 ? std::optional(sheets) : std::nullopt;
}

std::string CleanText(std::string_view bytes) {
  using nlohmann::json;
  std::string text(bytes);
  for (char& character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20 || code == 0x7F) character = ' ';
  }
  const std::string valid = json(text).dump(-1, ' ', false, json::error_handler_t::replace);
  return std::string(Trimmed(WithoutNoncharacters(json::parse(valid).get<std::string>())));
}

}  // namespace ia::cli
