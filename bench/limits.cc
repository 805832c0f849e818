#include "bench/limits.h"

#include <array>

namespace ia_bench {

std::span<const Limit> Limits() {
  static const auto limits = std::to_array<Limit>({
      {"option_table/300", "times_bare", 2.0},
      {"option_table/3000", "times_bare", 4.4},
      {"option_table/30000", "times_bare", 8},
      {"option_table/300", "times_libcups", 0.25},
      {"option_table/3000", "times_libcups", 0.42},
      {"option_table/30000", "times_libcups", 0.27},
      {"option_table_growth", "times", 13},
      {"option_table/driver/300", "times_bare", 2.0},
      {"option_table/driver/3000", "times_bare", 4.4},
      {"option_table/driver/30000", "times_bare", 8},
      {"option_table/driver/300", "times_libcups", 0.25},
      {"option_table/driver/3000", "times_libcups", 0.42},
      {"option_table/driver/30000", "times_libcups", 0.27},
      {"option_table_growth/driver", "times", 13},
      {"create/300", "times_floor", 1.3},
      {"create/driver/300", "times_floor", 1.8},
      {"function_version/driver/300", "times_pass", 2},
      {"function_version/driver/3000", "times_pass", 2},
      {"function_version/driver/30000", "times_pass", 2},
      {"function_version/300", "times_pass", 1.5},
      {"function_version/3000", "times_pass", 1.5},
      {"function_version/30000", "times_pass", 1.5},
      {"lookup_by_uri/10", "times_floor", 1.3},
      {"lookup_by_uri/1000", "times_floor", 1.1},
      {"lookup_by_uri/100000", "times_floor", 1.1},
      {"lookup_by_name/10", "times_floor", 1.3},
      {"lookup_by_name/1000", "times_floor", 1.1},
      {"lookup_by_name/100000", "times_floor", 1.1},
      {"calibration_defaults", "of_allowed", 1},
      {"calibration_settings/30", "of_allowed", 1},
      {"calibration_settings/300", "of_allowed", 1},
      {"calibration_settings/3000", "of_allowed", 1},
      {"load", "times_empty", 2.2},
  });
  return limits;
}

}  // namespace ia_bench
