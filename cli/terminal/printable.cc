#include "cli/terminal/printable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace ia::cli {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// What a terminal obeys or does not show, so that a text could look like another one.
constexpr auto kHidden = std::to_array<Range>({
    {0x00, 0x1F},        // controls
    {0x7F, 0x9F},        // delete, and controls that terminals obey as they do ESC
    {0xAD, 0xAD},        // soft hyphen
    {0x061C, 0x061C},    // Arabic letter mark
    {0x180E, 0x180E},    // Mongolian vowel separator
    {0x200B, 0x200F},    // zero-width characters, marks of direction
    {0x2028, 0x202E},    // separators of lines, embeddings and overrides of direction
    {0x2060, 0x206F},    // word joiner, isolates of direction
    {0xFEFF, 0xFEFF},    // zero-width no-break space
    {0xFFF9, 0xFFFB},    // interlinear annotation
    {0xE0000, 0xE007F},  // tags
});

[[nodiscard]] bool IsHidden(char32_t character) {
  return std::ranges::any_of(kHidden, [&](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

struct Character {
  char32_t value = 0;
  std::size_t length = 0;  // in bytes; 0: they are not UTF-8
};

// The first character of a text in UTF-8 (RFC 3629).
[[nodiscard]] Character Decode(std::string_view text) {
  struct Form {
    unsigned char mask, lead;
    char32_t smallest;  // smaller ones have a shorter form
  };
  constexpr auto kForms = std::to_array<Form>(
      {{0x80, 0x00, 0}, {0xE0, 0xC0, 0x80}, {0xF0, 0xE0, 0x800}, {0xF8, 0xF0, 0x10000}});
  const auto first = static_cast<unsigned char>(text.front());
  for (std::size_t i = 0; i < kForms.size(); ++i) {
    const Form& form = kForms[i];
    if ((first & form.mask) != form.lead) continue;
    if (text.size() <= i) return {};
    auto value = static_cast<char32_t>(first & ~form.mask);
    for (const char byte : text.substr(1, i)) {
      if ((byte & 0xC0) != 0x80) return {};
      value = (value << 6) | (static_cast<unsigned char>(byte) & 0x3F);
    }
    const bool is_surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (value < form.smallest || value > 0x10FFFF || is_surrogate) return {};
    return {value, i + 1};
  }
  return {};
}

void AppendEscaped(std::string& out, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    out += "\\x";
    out += kDigits[value >> 4];
    out += kDigits[value & 0xF];
  }
}

std::map<std::string, std::string> g_given_names;

}  // namespace

void SetGivenName(const std::string& path, const std::string& name) { g_given_names[path] = name; }

std::string WithGivenNames(std::string_view text) {
  std::string named(text);
  for (const auto& [path, name] : g_given_names) {
    for (std::size_t at = named.find(path); at != std::string::npos;
         at = named.find(path, at + name.size())) {
      named.replace(at, path.size(), name);
    }
  }
  return named;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
  });
  return lower;
}

std::string Printable(std::string_view given) {
  const std::string named = WithGivenNames(given);
  std::string_view text = named;
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Character character = Decode(text);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(character.length, 1));
    if (character.length == 0 || IsHidden(character.value)) {
      AppendEscaped(out, bytes);
    } else {
      out += bytes;
    }
    text.remove_prefix(bytes.size());
  }
  return out;
}

}  // namespace ia::cli
