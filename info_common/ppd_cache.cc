// The interface has a cache of device documents in PPDs; this library does not implement it.
#include <cstdint>

#include "info_analyze/option_table.h"

int32_t info_common_read_data_from_ppd(const char*, const char*, void**, int32_t*) noexcept {
  return -1;
}

int32_t info_common_write_data_for_ppd(const char*, const char*, const void*, int32_t) noexcept {
  return -1;
}

int32_t info_common_exist_data_from_ppd(const char*, const char*) noexcept { return 0; }

int32_t info_common_is_ppd_cache(void) noexcept { return 0; }
