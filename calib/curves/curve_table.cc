#include "calib/curves/curve_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace ia {
namespace {

constexpr int kTop = IA_CALIB_LEVEL_COUNT - 1;
constexpr std::string_view kHeading =
    "level,curve0,curve1,curve2,curve3,curve4,curve5,curve6,curve7";

// Reading ----------------------------------------------------------------------------------------

[[nodiscard]] int ParseLevel(std::string_view cell, int line) {
  int level = 0;
  const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), level);
  if (error != std::errc() || end != cell.data() + cell.size() || level < 0 || level > kTop) {
    throw CurveFileError(line, "\"" + std::string(cell) + "\" is no level from 0 to 1023");
  }
  return level;
}

[[nodiscard]] std::vector<std::string_view> SplitAtCommas(std::string_view text) {
  std::vector<std::string_view> cells;
  std::size_t comma = text.find(',');
  while (comma != std::string_view::npos) {
    cells.push_back(text.substr(0, comma));
    text.remove_prefix(comma + 1);
    comma = text.find(',');
  }
  cells.push_back(text);
  return cells;
}

[[nodiscard]] KnownLevel ParseRow(std::string_view text, int line) {
  std::vector<int> numbers;
  for (const std::string_view cell : SplitAtCommas(text)) {
    numbers.push_back(ParseLevel(cell, line));
  }
  if (numbers.size() != 1 + IA_CALIB_CURVE_COUNT) {
    throw CurveFileError(line, "9 numbers wanted, " + std::to_string(numbers.size()) + " found");
  }
  KnownLevel row = {numbers.front(), {}};
  std::copy(numbers.begin() + 1, numbers.end(), row.outputs.begin());
  return row;
}

[[nodiscard]] bool AreAll(const KnownLevel& row, int output) {
  return std::ranges::all_of(row.outputs, [=](int each) { return each == output; });
}

void CheckHeading(std::string_view text, int line) {
  if (text != kHeading) throw CurveFileError(line, "heading wanted: " + std::string(kHeading));
}

// Checks a row against the one before it.
void CheckOrder(const std::vector<KnownLevel>& known, const KnownLevel& next, int line) {
  if (known.empty()) {
    if (next.level == 0 && AreAll(next, 0)) return;
    throw CurveFileError(line, "the first row must be level 0, with 0 for all curves");
  }
  const KnownLevel& last = known.back();
  if (next.level <= last.level) throw CurveFileError(line, "levels must ascend");
  for (std::size_t curve = 0; curve < next.outputs.size(); ++curve) {
    if (next.outputs[curve] < last.outputs[curve]) {
      throw CurveFileError(line, "curve " + std::to_string(curve) + " decreases from " +
                                     std::to_string(last.outputs[curve]) + " to " +
                                     std::to_string(next.outputs[curve]));
    }
  }
}

[[nodiscard]] std::string_view WithoutLineEnd(std::string_view text) {
  return text.ends_with('\r') ? text.substr(0, text.size() - 1) : text;
}

[[nodiscard]] bool IsComment(std::string_view text) {
  return text.empty() || text.starts_with('#');
}

// Interpolating ----------------------------------------------------------------------------------

struct Point {
  int level;
  int output;
};

// The points of one curve, up to the first that has the highest level.
[[nodiscard]] std::vector<Point> RisingPoints(const std::vector<KnownLevel>& known,
                                              std::size_t curve) {
  const auto last = std::ranges::find_if(
      known, [=](const KnownLevel& row) { return row.outputs[curve] == kTop; });
  std::vector<Point> points;
  std::transform(known.begin(), last + 1, std::back_inserter(points),
                 [=](const KnownLevel& row) { return Point{row.level, row.outputs[curve]}; });
  return points;
}

[[nodiscard]] double Slope(Point from, Point to) {
  return static_cast<double>(to.output - from.output) / (to.level - from.level);
}

// Those between the neighbours of each point.
[[nodiscard]] std::vector<double> WantedSlopes(const std::vector<Point>& points) {
  std::vector<double> slopes;
  slopes.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    slopes.push_back(Slope(points[i == 0 ? 0 : i - 1], points[std::min(i + 1, points.size() - 1)]));
  }
  return slopes;
}

// F. N. Fritsch and R. E. Carlson, "Monotone Piecewise Cubic Interpolation", SIAM Journal on
// Numerical Analysis 17 (1980): a cubic between two points is monotone when its end slopes, taken
// as a vector, are not longer than 3 times the slope between the points.
[[nodiscard]] std::vector<double> MonotoneSlopes(const std::vector<Point>& points) {
  std::vector<double> slopes = WantedSlopes(points);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const double length = std::hypot(slopes[i], slopes[i + 1]);
    const double longest = 3 * Slope(points[i], points[i + 1]);
    if (length <= longest) continue;
    slopes[i] *= longest / length;
    slopes[i + 1] *= longest / length;
  }
  return slopes;
}

// Cubic from one point to the next with these slopes, at a level between them.
[[nodiscard]] double Cubic(Point from, Point to, double slope_from, double slope_to, int level) {
  const double width = to.level - from.level;
  const double t = (level - from.level) / width;
  const double u = 1 - t;
  return u * u * ((1 + 2 * t) * from.output + t * width * slope_from) +
         t * t * ((3 - 2 * t) * to.output - u * width * slope_to);
}

[[nodiscard]] Curve InterpolateCurve(const std::vector<Point>& points) {
  const std::vector<double> slopes = MonotoneSlopes(points);
  Curve curve;
  curve.fill(kTop);
  for (std::size_t i = 0; i + 1 < points.size(); ++i) {
    const Point from = points[i];
    const Point to = points[i + 1];
    curve[static_cast<std::size_t>(from.level)] = static_cast<std::uint16_t>(from.output);
    for (int level = from.level + 1; level < to.level; ++level) {
      const int output =
          static_cast<int>(std::lround(Cubic(from, to, slopes[i], slopes[i + 1], level)));
      // The highest level is reached where a point says so, not where rounding would.
      curve[static_cast<std::size_t>(level)] = static_cast<std::uint16_t>(
          std::clamp(output, from.output, std::min(to.output, kTop - 1)));
    }
  }
  return curve;
}

}  // namespace

std::vector<KnownLevel> ReadKnownLevels(std::istream& file) {
  std::vector<KnownLevel> known;
  bool has_heading = false;
  int line = 0;
  for (std::string text; std::getline(file, text);) {
    ++line;
    const std::string_view content = WithoutLineEnd(text);
    if (IsComment(content)) continue;
    if (!has_heading) {
      CheckHeading(content, line);
      has_heading = true;
      continue;
    }
    const KnownLevel row = ParseRow(content, line);
    CheckOrder(known, row, line);
    known.push_back(row);
  }
  if (known.empty() || known.back().level != kTop || !AreAll(known.back(), kTop)) {
    throw CurveFileError(line, "the last row must be level 1023, with 1023 for all curves");
  }
  return known;
}

CurveTable Interpolate(const std::vector<KnownLevel>& known) {
  CurveTable table;
  for (std::size_t curve = 0; curve < table.size(); ++curve) {
    table[curve] = InterpolateCurve(RisingPoints(known, curve));
  }
  return table;
}

std::string FormatNumbers(const CurveTable& table) {
  std::string numbers;
  for (const Curve& curve : table) {
    for (const std::uint16_t output : curve) numbers += std::to_string(output) + ",";
    numbers += "\n";
  }
  return numbers;
}

}  // namespace ia
