// Option rows that a handler fills and then applies or drops.
#ifndef ANALYZE_OPTION_ROWS_H_
#define ANALYZE_OPTION_ROWS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "analyze/update_option.h"
#include "info_analyze/option_setter.h"
#include "info_common/owned.h"

namespace ia {

// Where an update handler puts its options.
struct OptionTarget {
  OptionList* list;
  bool with_defaults;  // false: rows without a value are left out
};

// As zGetOptionString(): values of rows whose getter gives one are replaced.
void RunGetters(std::span<OptionSetter> rows) noexcept;

// As zSetOptionList().
std::int32_t SetOptions(OptionSetter* rows, std::int32_t count,
                        const OptionTarget& target) noexcept;

[[nodiscard]] constexpr OptionSetter RowOf(const UpdateOption& option, const void* datum) noexcept {
  return {.keyword = option.keyword,
          .value = nullptr,
          .getter = option.getter,
          .getter_arg = datum,
          .default_value = option.default_value};
}

template <std::size_t kCount>
[[nodiscard]] constexpr std::array<OptionSetter, kCount> RowsOf(
    const std::array<UpdateOption, kCount>& options,
    const std::array<const void*, kCount>& data) noexcept {
  std::array<OptionSetter, kCount> rows{};
  for (std::size_t i = 0; i < kCount; ++i) rows[i] = RowOf(options[i], data[i]);
  return rows;
}

// Owns the values of its rows: those of rows that are not applied are released.
template <std::size_t kCount>
class OptionRows {
 public:
  explicit OptionRows(const std::array<OptionSetter, kCount>& rows) noexcept : rows_(rows) {}
  OptionRows(const OptionRows&) = delete;
  OptionRows& operator=(const OptionRows&) = delete;
  ~OptionRows() {
    for (const OptionSetter& row : rows_) std::free(row.value);
  }

  void RunGetters() noexcept { ia::RunGetters(rows_); }

  [[nodiscard]] std::int32_t Apply(const OptionTarget& target) noexcept {
    const std::int32_t status = SetOptions(rows_.data(), kCount, target);
    for (OptionSetter& row : rows_) row.value = nullptr;  // released by the call
    return status;
  }

  [[nodiscard]] OptionSetter* Data() noexcept { return rows_.data(); }
  [[nodiscard]] OptionSetter& operator[](std::size_t index) noexcept { return rows_[index]; }

 private:
  std::array<OptionSetter, kCount> rows_;
};

}  // namespace ia

#endif  // ANALYZE_OPTION_ROWS_H_
