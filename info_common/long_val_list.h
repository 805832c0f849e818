// Ascending lists of numbers.
#ifndef INFO_COMMON_LONG_VAL_LIST_H_
#define INFO_COMMON_LONG_VAL_LIST_H_

#include <memory>

#include "info_analyze/option_table.h"

namespace ia {

struct LongValListDeleter {
  void operator()(LongValList* head) const noexcept { info_common_long_val_list_free(head); }
};
using LongValListPtr = std::unique_ptr<LongValList, LongValListDeleter>;

// As info_common_convert_hex_string_to_long_val_list().
[[nodiscard]] LongValListPtr ParseHexList(const char* text) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_LONG_VAL_LIST_H_
