// What the handlers read from a job's option table.
#ifndef CALIB_PRINT_OPTIONS_H_
#define CALIB_PRINT_OPTIONS_H_

#include <array>
#include <cstdint>
#include <string_view>

#include "info_analyze/halftone.h"

namespace ia {

// Codes by which a printer knows halftone types.
inline constexpr std::uint32_t kBidiGradation = 0x40000;
inline constexpr std::uint32_t kBidiResolution = 0x10000;
inline constexpr std::uint32_t kBidiHighResolution = 0x20000;
inline constexpr std::uint32_t kBidiColorTone = 0x80000;
inline constexpr std::uint32_t kBidiErrorDiffusion = 0x100000;

// A number for each of a job's three halftone values.
using HalftoneTriple = std::array<std::uint32_t, 3>;

struct Resolution {
  std::uint32_t x_dpi;
  std::uint32_t y_dpi;
};

[[nodiscard]] HalftoneTriple ReadHalftone(const OptTable& options) noexcept;
[[nodiscard]] Resolution ReadResolution(const OptTable& options) noexcept;

// Case-sensitive; false for an absent option.
[[nodiscard]] bool OptionBeginsWith(const OptTable& options, std::string_view key,
                                    std::string_view prefix) noexcept;

[[nodiscard]] std::uint32_t BidiCode(std::uint32_t halftone_type) noexcept;
[[nodiscard]] std::uint32_t DensityCode(std::uint32_t characteristic) noexcept;

}  // namespace ia

#endif  // CALIB_PRINT_OPTIONS_H_
