#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "calib/arguments.h"
#include "calib/print_options.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"

namespace ia {
namespace {

struct ResolutionEntry {
  std::string_view value;
  Resolution resolution;
};

constexpr auto kResolutions = std::to_array<ResolutionEntry>({
    {"600x600dpi", {600, 600}},
    {"1200x600dpi", {1200, 600}},
    {"1200x1200dpi", {1200, 1200}},
    {"600", {600, 600}},
    {"1200", {1200, 1200}},
});
static_assert(kResolutions.size() == 5);

constexpr Resolution kUsualResolution = {600, 600};

}  // namespace

Resolution ReadResolution(const OptTable& options) noexcept {
  const char* const value = FindValue(&options, "Resolution");
  if (value == nullptr) return kUsualResolution;
  const auto hit = std::ranges::find_if(kResolutions, [&](const ResolutionEntry& entry) {
    return EqualsIgnoringCase(value, entry.value);
  });
  return hit != kResolutions.end() ? hit->resolution : kUsualResolution;
}

}  // namespace ia

int32_t analyze_common_get_resolution(const OptTable* options, uint32_t* x_dpi,
                                      uint32_t* y_dpi) noexcept {
  if (ia::HasNull(options, x_dpi, y_dpi)) return -1;
  const ia::Resolution resolution = ia::ReadResolution(*options);
  *x_dpi = resolution.x_dpi;
  *y_dpi = resolution.y_dpi;
  return 0;
}
