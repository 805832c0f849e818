#include "cli/calibration/curve_tables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace ia::cli {
namespace {

const auto kTables = std::to_array<CurveTable>({
    {"LARCH_Def_Calib", LARCH_Def_Calib},
    {"Linden_Def_Calib_2bit", Linden_Def_Calib_2bit},
    {"Linden_Def_Calib_4bit", Linden_Def_Calib_4bit},
    {"PinePoplar_Def_Calib_2bit", PinePoplar_Def_Calib_2bit},
    {"PinePoplar_Def_Calib_4bit", PinePoplar_Def_Calib_4bit},
});

}  // namespace

std::span<const CurveTable> CurveTables() { return kTables; }

const CurveTable& FindCurveTable(const std::string& name) {
  return *std::ranges::find(kTables, name, &CurveTable::name);
}

std::string FormatCsv(const CurveTable& table) {
  std::string csv = "level";
  for (std::size_t i = 0; i < IA_CALIB_CURVE_COUNT; ++i) csv += ",curve" + std::to_string(i);
  csv += "\n";
  for (std::size_t level = 0; level < IA_CALIB_LEVEL_COUNT; ++level) {
    csv += std::to_string(level);
    for (std::size_t i = 0; i < IA_CALIB_CURVE_COUNT; ++i) {
      csv += "," + std::to_string(table.Curve(i)[level]);
    }
    csv += "\n";
  }
  return csv;
}

}  // namespace ia::cli
