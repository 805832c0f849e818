// Files of known curve points, and the whole curves that follow from them.
// docs/calibration-curves.md describes both. This is part of the build, not of the library, and may
// use all of C++.
#ifndef CALIB_CURVES_CURVE_TABLE_H_
#define CALIB_CURVES_CURVE_TABLE_H_

#include <array>
#include <cstdint>
#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

#include "info_analyze/calibration.h"

namespace ia {

// An invalid line of a curve file.
class CurveFileError : public std::runtime_error {
 public:
  CurveFileError(int line, const std::string& message) : std::runtime_error(message), line_(line) {}
  [[nodiscard]] int line() const noexcept { return line_; }

 private:
  int line_;
};

// The known output levels of all curves at one input level.
struct KnownLevel {
  int level;
  std::array<int, IA_CALIB_CURVE_COUNT> outputs;
};

using Curve = std::array<std::uint16_t, IA_CALIB_LEVEL_COUNT>;
using CurveTable = std::array<Curve, IA_CALIB_CURVE_COUNT>;

// Throws a CurveFileError for the first line that breaks a rule of the format.
[[nodiscard]] std::vector<KnownLevel> ReadKnownLevels(std::istream& file);

// Whole curves through all known points, which must come from a valid file.
[[nodiscard]] CurveTable Interpolate(const std::vector<KnownLevel>& known);

// The numbers of the table as an initialiser lists them, one curve to a line.
[[nodiscard]] std::string FormatNumbers(const CurveTable& table);

}  // namespace ia

#endif  // CALIB_CURVES_CURVE_TABLE_H_
