// Making paths.
#ifndef INFO_COMMON_PATHS_H_
#define INFO_COMMON_PATHS_H_

#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "info_common/owned.h"

namespace ia {

// Limit of a path with its NUL, in bytes; longer paths are refused.
inline constexpr std::size_t kPathSize = 2048;

// Concatenates the pieces. Null when they and a NUL need more than size bytes or an allocation
// fails.
[[nodiscard]] CString MakePath(std::initializer_list<std::string_view> pieces,
                               std::size_t size = kPathSize) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_PATHS_H_
