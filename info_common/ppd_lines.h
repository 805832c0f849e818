// Splits the two types of PPD lines that hold a key and a value.
#ifndef INFO_COMMON_PPD_LINES_H_
#define INFO_COMMON_PPD_LINES_H_

#include <string_view>

namespace ia {

// Parts of the line that was split.
struct KeyAndValue {
  std::string_view key;
  std::string_view value;
};

// Splits a "*QV" line, given from its second byte.
[[nodiscard]] KeyAndValue SplitOptionLine(const char* source) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_PPD_LINES_H_
