#include "commlib/xml_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace commlib {
namespace {

struct Entity {
  std::string_view name;
  char character;
};

constexpr auto kEntities = std::to_array<Entity>({
    {"lt", '<'},
    {"gt", '>'},
    {"amp", '&'},
    {"quot", '"'},
    {"apos", '\''},
});

constexpr bool IsXmlCharacter(std::uint32_t code) {
  return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
         (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

// Bytes that a character takes in UTF-8.
constexpr std::size_t EncodedLength(std::uint32_t code) {
  return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

struct Decoded {
  std::uint32_t code;
  std::size_t length;
};

std::optional<Decoded> DecodeFirst(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return Decoded{lead, 1};
  const auto length = static_cast<std::size_t>(std::countl_one(lead));
  if (length < 2 || length > text.size()) return std::nullopt;
  std::uint32_t code = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return std::nullopt;
    code = code << 6 | (byte & 0x3F);
  }
  if (EncodedLength(code) != length) return std::nullopt;  // overlong
  return Decoded{code, length};
}

void AppendUtf8(std::uint32_t code, std::string& out) {
  const std::size_t length = EncodedLength(code);
  if (length == 1) {
    out += static_cast<char>(code);
    return;
  }
  const auto lead_mark = 0xF00u >> length & 0xFF;
  out += static_cast<char>(lead_mark | code >> (6 * (length - 1)));
  for (std::size_t left = length - 1; left > 0; --left) {
    out += static_cast<char>(0x80 | (code >> (6 * (left - 1)) & 0x3F));
  }
}

std::optional<std::uint32_t> ParseCharacterNumber(std::string_view digits) {
  const bool is_hex = digits.starts_with('x');
  if (is_hex) digits.remove_prefix(1);
  std::uint32_t code = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, code, is_hex ? 16 : 10);
  if (error != std::errc() || stop != end || !IsXmlCharacter(code)) return std::nullopt;
  return code;
}

// The name is the text between '&' and ';'.
std::optional<std::uint32_t> ResolveReference(std::string_view name) {
  if (name.starts_with('#')) return ParseCharacterNumber(name.substr(1));
  const auto entity = std::ranges::find(kEntities, name, &Entity::name);
  if (entity == kEntities.end()) return std::nullopt;
  return static_cast<std::uint32_t>(entity->character);
}

constexpr char ToLowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool IsXmlText(std::string_view text) {
  while (!text.empty()) {
    const auto first = DecodeFirst(text);
    if (!first || !IsXmlCharacter(first->code)) return false;
    text.remove_prefix(first->length);
  }
  return true;
}

bool IsSupportedEncoding(const char* name) {
  using namespace std::string_view_literals;
  return name == nullptr || std::ranges::equal(std::string_view(name), "utf-8"sv, {}, ToLowerAscii);
}

std::string Escape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      // A parser turns plain line ends into '\n', and in attributes all of these into blanks.
      case '\r':
        out += "&#13;";
        break;
      case '\n':
        out += "&#10;";
        break;
      case '\t':
        out += "&#9;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::optional<std::string> Unescape(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (;;) {
    const std::size_t start = text.find('&');
    out += text.substr(0, start);
    if (start == std::string_view::npos) return out;
    text.remove_prefix(start + 1);
    const std::size_t end = text.find(';');
    if (end == std::string_view::npos) return std::nullopt;
    const auto code = ResolveReference(text.substr(0, end));
    if (!code) return std::nullopt;
    AppendUtf8(*code, out);
    text.remove_prefix(end + 1);
  }
}

}  // namespace commlib
