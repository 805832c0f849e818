#include "cli/terminal/nearest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ia::cli {

std::size_t EditDistance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] != right[j] ? 1 : 0);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

std::optional<std::string> FindNearest(std::string_view word,
                                       const std::vector<std::string>& candidates) {
  constexpr std::size_t kLongest = 64;  // no candidate is longer
  if (word.size() > kLongest) return std::nullopt;
  const auto longer = std::ranges::find_if(
      candidates, [&](const std::string& candidate) { return candidate.starts_with(word); });
  if (longer != candidates.end()) return *longer;
  const auto nearest = std::ranges::min_element(
      candidates, {}, [&](const std::string& candidate) { return EditDistance(word, candidate); });
  const bool is_near =
      nearest != candidates.end() && EditDistance(word, *nearest) <= 1 + nearest->size() / 4;
  return is_near ? std::optional(*nearest) : std::nullopt;
}

}  // namespace ia::cli
