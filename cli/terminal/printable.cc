#include "cli/terminal/printable.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace ia::cli {
namespace {

// Terminals obey U+0080 to U+009F as they do ESC; in UTF-8 they are C2 80 to C2 9F.
constexpr unsigned char kC1Lead = 0xC2;

[[nodiscard]] bool IsC1Trail(unsigned char byte) { return byte >= 0x80 && byte <= 0x9F; }

[[nodiscard]] bool IsControl(std::string_view text, std::size_t at) {
  const auto byte = static_cast<unsigned char>(text[at]);
  if (byte == kC1Lead) {
    return at + 1 < text.size() && IsC1Trail(static_cast<unsigned char>(text[at + 1]));
  }
  if (IsC1Trail(byte)) return at > 0 && static_cast<unsigned char>(text[at - 1]) == kC1Lead;
  return byte < 0x20 || byte == 0x7F;
}

void AppendEscaped(std::string& out, char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const auto value = static_cast<unsigned char>(byte);
  out += "\\x";
  out += kDigits[value >> 4];
  out += kDigits[value & 0xF];
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

std::string Printable(std::string_view text) {
  const std::string named = WithGivenNames(text);
  std::string out;
  out.reserve(named.size());
  for (std::size_t i = 0; i < named.size(); ++i) {
    if (IsControl(named, i)) {
      AppendEscaped(out, named[i]);
    } else {
      out += named[i];
    }
  }
  return out;
}

}  // namespace ia::cli
