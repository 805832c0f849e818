// Words that were probably meant.
#ifndef INFO_ANALYZE_CLI_TERMINAL_NEAREST_H_
#define INFO_ANALYZE_CLI_TERMINAL_NEAREST_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ia::cli {

// The number of bytes to insert, remove or replace (Levenshtein distance).
[[nodiscard]] std::size_t EditDistance(std::string_view left, std::string_view right);

// The candidate that begins with a word, or the nearest one that differs little from it.
[[nodiscard]] std::optional<std::string> FindNearest(std::string_view word,
                                                     const std::vector<std::string>& candidates);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_NEAREST_H_
