// Bytes as text, RFC 4648 section 4.
#ifndef INFO_ANALYZE_COMMLIB_BASE64_H_
#define INFO_ANALYZE_COMMLIB_BASE64_H_

#include <optional>
#include <string>
#include <string_view>

namespace commlib {

[[nodiscard]] std::string EncodeBase64(std::string_view bytes);

// Ignores blanks anywhere. Nullopt for any other text that EncodeBase64() does not produce.
[[nodiscard]] std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_BASE64_H_
