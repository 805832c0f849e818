// The matching rule of all tables keyed by driver model code.
#ifndef ANALYZE_MODEL_ROW_H_
#define ANALYZE_MODEL_ROW_H_

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

namespace ia {

// The first row, in table order, whose model is a prefix of the code; null when there is none.
template <class Row>
[[nodiscard]] constexpr const Row* FindModel(std::span<const Row> rows, const char* code) noexcept {
  if (code == nullptr) return nullptr;  // a driver without a model code has no row
  const std::string_view text(code);
  const auto hit =
      std::ranges::find_if(rows, [&](const Row& row) { return text.starts_with(row.model); });
  return hit != rows.end() ? &*hit : nullptr;
}

// Rows that no code can reach: empty ones, and those that begin with an earlier row.
template <class Row>
[[nodiscard]] constexpr std::size_t CountUnreachableRows(std::span<const Row> rows) noexcept {
  std::size_t unreachable = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const bool hidden = std::ranges::any_of(rows.first(i), [&](const Row& earlier) {
      return rows[i].model.starts_with(earlier.model);
    });
    if (hidden || rows[i].model.empty()) ++unreachable;
  }
  return unreachable;
}

}  // namespace ia

#endif  // ANALYZE_MODEL_ROW_H_
