// The calibration code of a halftone type, as the BAOBAB family counts it.
#ifndef CALIB_CALIB4_CODE_H_
#define CALIB_CALIB4_CODE_H_

#include <cstdint>

#include "info_analyze/halftone.h"

namespace ia {

[[nodiscard]] constexpr std::uint32_t CalibCode(std::uint32_t halftone_type) noexcept {
  switch (halftone_type) {
    case IA_HALFTONE_RESOLUTION:
    case IA_HALFTONE_HIGH_RESOLUTION:
      return 1;
    case IA_HALFTONE_COLOR_TONE:
      return 2;
    default:
      return 0;
  }
}

}  // namespace ia

#endif  // CALIB_CALIB4_CODE_H_
