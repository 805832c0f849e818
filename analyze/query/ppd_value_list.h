// Fitting a device's number to the values that its PPD knows.
#ifndef ANALYZE_PPD_VALUE_LIST_H_
#define ANALYZE_PPD_VALUE_LIST_H_

#include <cstdint>

#include "info_analyze/option_table.h"

namespace ia {

// The highest value of the list under the key that does not exceed the number; the lowest one when
// all do; the number itself when the PPD has no such list.
[[nodiscard]] std::int32_t FitToPpdValueList(const OptTable* ppd_options, const char* key,
                                             std::int32_t number) noexcept;

}  // namespace ia

#endif  // ANALYZE_PPD_VALUE_LIST_H_
