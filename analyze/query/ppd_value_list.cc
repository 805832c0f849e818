#include "analyze/query/ppd_value_list.h"

#include "info_common/option_table.h"

namespace ia {

std::int32_t FitToPpdValueList(const OptTable* ppd_options, const char* key,
                               std::int32_t number) noexcept {
  LongValList* const values =
      info_common_convert_hex_string_to_long_val_list(FindValue(ppd_options, key));
  if (values == nullptr) return number;
  std::int32_t fitting = values->value;
  for (const LongValList* node = values; node != nullptr && node->value <= number;
       node = node->next) {
    fitting = node->value;
  }
  info_common_long_val_list_free(values);
  return fitting;
}

}  // namespace ia
