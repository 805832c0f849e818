// The library's answers about calibration, and the formats in which the tool prints them.
#ifndef INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_ANSWERS_H_
#define INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_ANSWERS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "info_analyze/calibration.h"

namespace ia::cli {

using HalftoneCodes = std::array<std::uint32_t, 3>;

struct Calib4Settings {
  std::uint32_t flag;
  std::uint32_t x_dpi;
  std::uint32_t y_dpi;
  std::array<std::uint32_t, IA_CALIB4_WORD_COUNT> words;
};

// A generation that the model does not have is left out.
struct CalibrationSettings {
  const char* driver_name;  // null when the PPD has none
  std::optional<HalftoneCodes> calib3;
  std::optional<Calib4Settings> calib4;
};

struct CalibrationDefaults {
  const char* driver_name;  // null when the PPD has none
  const char* curve_table;  // exported name of the default curves; null without curves
  std::array<std::uint32_t, 4> values;
  std::array<std::uint32_t, 2> model_values;
  std::array<std::uint32_t, IA_CALIB_ENTRY_COUNT> codes;
};

[[nodiscard]] CalibrationSettings GetSettings(const AnalyzeContext& analyzer,
                                              const OptTable* options);
[[nodiscard]] CalibrationDefaults GetDefaults(const AnalyzeContext& analyzer,
                                              const OptTable* options);

// "KEY=VALUE" lines, and one JSON object with its keys in a fixed order.
[[nodiscard]] std::string FormatText(const CalibrationSettings& settings);
[[nodiscard]] std::string FormatText(const CalibrationDefaults& defaults);
[[nodiscard]] std::string FormatJson(const CalibrationSettings& settings);
[[nodiscard]] std::string FormatJson(const CalibrationDefaults& defaults);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_ANSWERS_H_
