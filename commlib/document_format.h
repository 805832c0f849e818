// Names and limits of the document format, shared by its reader and its writer.
#ifndef INFO_ANALYZE_COMMLIB_DOCUMENT_FORMAT_H_
#define INFO_ANALYZE_COMMLIB_DOCUMENT_FORMAT_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace commlib {

inline constexpr std::size_t kMaxDocumentBytes = std::size_t{16} << 20;
inline constexpr std::size_t kMaxDepth = 64;  // elements within elements, the outermost included

inline constexpr const char* kRootElement = "document";
inline constexpr const char* kVersionAttribute = "version";
inline constexpr const char* kVersion = "1";
inline constexpr const char* kKeyAttribute = "key";

enum class Type { kLong, kDouble, kString, kBinary, kDict, kArray };

// In the order of Type.
inline constexpr auto kElementNames =
    std::to_array<std::string_view>({"long", "double", "string", "binary", "dict", "array"});

[[nodiscard]] constexpr std::string_view ElementName(Type type) {
  return kElementNames[static_cast<std::size_t>(type)];
}

[[nodiscard]] constexpr std::optional<Type> TypeOf(std::string_view element_name) {
  const auto hit = std::ranges::find(kElementNames, element_name);
  if (hit == kElementNames.end()) return std::nullopt;
  return static_cast<Type>(hit - kElementNames.begin());
}

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_DOCUMENT_FORMAT_H_
