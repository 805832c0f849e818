// Making paths.
#ifndef INFO_COMMON_PATHS_H_
#define INFO_COMMON_PATHS_H_

#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "info_common/owned.h"

namespace ia {

// A path and its NUL need no more than this; longer ones are refused.
inline constexpr std::size_t kPathSize = 2048;

// The pieces one behind the other; null when they and a NUL need more than size bytes or memory ran
// out.
[[nodiscard]] CString MakePath(std::initializer_list<std::string_view> pieces,
                               std::size_t size = kPathSize) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_PATHS_H_
