// Which texts XML can carry, and how they are written in it.
#ifndef INFO_ANALYZE_COMMLIB_XML_TEXT_H_
#define INFO_ANALYZE_COMMLIB_XML_TEXT_H_

#include <optional>
#include <string>
#include <string_view>

namespace commlib {

[[nodiscard]] constexpr bool IsXmlSpace(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// True for well-formed UTF-8 whose characters are all allowed in XML 1.0.
[[nodiscard]] bool IsXmlText(std::string_view text);

// True for "UTF-8", ignoring case, and for a null name.
[[nodiscard]] bool IsSupportedEncoding(const char* name);

// Writes a text so that every XML parser reads it back unchanged, in an element or an attribute.
[[nodiscard]] std::string Escape(std::string_view text);

// Resolves the character references and the five entities of XML; nullopt when one of them is
// unknown, incomplete or a character that XML does not allow.
[[nodiscard]] std::optional<std::string> Unescape(std::string_view text);

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_XML_TEXT_H_
