#include "analyze/query/ppd_value_list.h"

#include <cstdint>

#include "info_common/long_val_list.h"
#include "info_common/option_table.h"

namespace ia {

std::int32_t FitToPpdValueList(const OptTable* ppd_options, const char* key,
                               std::int32_t number) noexcept {
  const LongValListPtr values = ParseHexList(FindValue(ppd_options, key));
  if (values == nullptr) return number;
  std::int32_t fitting = values->value;
  for (const LongValList* node = values.get(); node != nullptr && node->value <= number;
       node = node->next) {
    fitting = node->value;
  }
  return fitting;
}

}  // namespace ia
