#include "info_analyze/halftone.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "calib/arguments.h"
#include "calib/print_options.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"

namespace ia {
namespace {

struct HalftoneEntry {
  std::string_view name;
  std::string_view color_pattern;  // key of the option with a pattern's digits, or empty
  std::string_view mono_pattern;
  std::uint32_t type;
};

// clang-format off
constexpr auto kHalftones = std::to_array<HalftoneEntry>({
    {.name = "None", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_NONE},
    {.name = "resolution", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_RESOLUTION},
    {.name = "highresolution", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_HIGH_RESOLUTION},
    {.name = "gradation", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_GRADATION},
    {.name = "colortone", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_COLOR_TONE},
    {.name = "errdiffusion", .color_pattern = "", .mono_pattern = "", .type = IA_HALFTONE_ERROR_DIFFUSION},
    {.name = "pattern1", .color_pattern = "QVCHTPattern1", .mono_pattern = "QVHTPattern1", .type = IA_HALFTONE_NONE},
    {.name = "pattern2", .color_pattern = "QVCHTPattern2", .mono_pattern = "QVHTPattern2", .type = IA_HALFTONE_NONE},
    {.name = "pattern3", .color_pattern = "QVCHTPattern3", .mono_pattern = "QVHTPattern3", .type = IA_HALFTONE_NONE},
    {.name = "pattern4", .color_pattern = "QVCHTPattern4", .mono_pattern = "QVHTPattern4", .type = IA_HALFTONE_NONE},
    {.name = "pattern5", .color_pattern = "QVCHTPattern5", .mono_pattern = "QVHTPattern5", .type = IA_HALFTONE_NONE},
    {.name = "pattern6", .color_pattern = "QVCHTPattern6", .mono_pattern = "QVHTPattern6", .type = IA_HALFTONE_NONE},
    {.name = "pattern7", .color_pattern = "QVCHTPattern7", .mono_pattern = "QVHTPattern7", .type = IA_HALFTONE_NONE},
    {.name = "pattern8", .color_pattern = "QVCHTPattern8", .mono_pattern = "QVHTPattern8", .type = IA_HALFTONE_NONE},
    {.name = "pattern9", .color_pattern = "QVCHTPattern9", .mono_pattern = "QVHTPattern9", .type = IA_HALFTONE_NONE},
});
// clang-format on

// Indexed by halftone type and by density characteristic.
constexpr std::array<std::uint32_t, 6> kBidiCodes = {
    0, kBidiGradation, kBidiResolution, kBidiHighResolution, kBidiColorTone, kBidiErrorDiffusion};
constexpr std::array<std::uint32_t, 3> kDensityCodes = {2, 3, 1};

constexpr HalftoneTriple kNoHalftone = {0, 0, 0};

bool IsColor(const OptTable& options) noexcept {
  const char* const mode = FindValue(&options, "QVColorMode");
  return mode != nullptr && !HasPrefixIgnoringCase(mode, "mono");
}

const HalftoneEntry* FindHalftone(const char* value) noexcept {
  if (value == nullptr) return nullptr;
  const auto hit = std::ranges::find_if(kHalftones, [&](const HalftoneEntry& entry) {
    return HasPrefixIgnoringCase(value, entry.name);
  });
  return hit != kHalftones.end() ? &*hit : nullptr;
}

std::uint32_t DigitAt(std::string_view digits, std::size_t index) noexcept {
  const char digit = index < digits.size() ? digits[index] : '\0';
  return static_cast<std::uint32_t>(static_cast<signed char>(digit) - '0');
}

// The last digit belongs to the first value.
HalftoneTriple ReadPattern(const OptTable& options, std::string_view key) noexcept {
  const char* const digits = FindValue(&options, key);
  if (digits == nullptr) return kNoHalftone;
  return {DigitAt(digits, 2), DigitAt(digits, 1), DigitAt(digits, 0)};
}

}  // namespace

HalftoneTriple ReadHalftone(const OptTable& options) noexcept {
  const bool is_color = IsColor(options);
  const HalftoneEntry* const entry =
      FindHalftone(FindValue(&options, is_color ? "QVColorHalftone" : "QVHalftone"));
  if (entry == nullptr) return kNoHalftone;
  if (entry->color_pattern.empty()) return {entry->type, entry->type, entry->type};
  return ReadPattern(options, is_color ? entry->color_pattern : entry->mono_pattern);
}

bool OptionBeginsWith(const OptTable& options, std::string_view key,
                      std::string_view prefix) noexcept {
  const char* const value = FindValue(&options, key);
  return value != nullptr && std::string_view(value).starts_with(prefix);
}

std::uint32_t BidiCode(std::uint32_t halftone_type) noexcept {
  return halftone_type < kBidiCodes.size() ? kBidiCodes[halftone_type] : 0;
}

std::uint32_t DensityCode(std::uint32_t characteristic) noexcept {
  return characteristic < kDensityCodes.size() ? kDensityCodes[characteristic] : 0;
}

}  // namespace ia

int32_t analyze_common_get_halftone(const OptTable* options, uint32_t* first, uint32_t* second,
                                    uint32_t* third) noexcept {
  if (ia::HasNull(options, first, second, third)) return -1;
  const ia::HalftoneTriple values = ia::ReadHalftone(*options);
  *first = values[0];
  *second = values[1];
  *third = values[2];
  return 0;
}

uint32_t analyze_common_convertHalftoneTypePPDtoBidi(uint32_t type) noexcept {
  return ia::BidiCode(type);
}

uint32_t analyze_common_convertDensityCharCMMtoBidi(uint32_t value) noexcept {
  return ia::DensityCode(value);
}
