// The library's tables of default calibration curves, by name.
#ifndef INFO_ANALYZE_CLI_CALIBRATION_CURVE_TABLES_H_
#define INFO_ANALYZE_CLI_CALIBRATION_CURVE_TABLES_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "info_analyze/calibration.h"

namespace ia::cli {

struct CurveTable {
  const char* name;
  const std::uint16_t* values;

  [[nodiscard]] std::span<const std::uint16_t> Curve(std::size_t number) const {
    return {values + number * IA_CALIB_LEVEL_COUNT, IA_CALIB_LEVEL_COUNT};
  }
};

[[nodiscard]] std::span<const CurveTable> CurveTables();

// The table of a name that a row has.
[[nodiscard]] const CurveTable& FindCurveTable(const std::string& name);

// One line for each input level, in the format of the files that the library's tables are made of.
[[nodiscard]] std::string FormatCsv(const CurveTable& table);

// A picture in SVG: one diagram for each curve set, for light and dark surroundings.
[[nodiscard]] std::string FormatSvg(const CurveTable& table);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CALIBRATION_CURVE_TABLES_H_
