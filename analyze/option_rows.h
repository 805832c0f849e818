// Option rows that a handler works on until it applies or drops them.
#ifndef ANALYZE_OPTION_ROWS_H_
#define ANALYZE_OPTION_ROWS_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "info_analyze/option_setter.h"
#include "info_common/owned.h"

namespace ia {

// Owns the values of its rows: those of rows that are not applied are released.
template <std::size_t kCount>
class OptionRows {
 public:
  explicit OptionRows(const std::array<OptionSetter, kCount>& rows) noexcept : rows_(rows) {}
  OptionRows(const OptionRows&) = delete;
  OptionRows& operator=(const OptionRows&) = delete;
  ~OptionRows() {
    for (OptionSetter& row : rows_) std::free(row.value);
  }

  void RunGetters() noexcept { zGetOptionString(rows_.data(), kCount); }

  [[nodiscard]] std::int32_t Apply(OptionList* options) noexcept {
    const std::int32_t status = zSetOptionList(rows_.data(), kCount, options);
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
