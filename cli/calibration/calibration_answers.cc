#include "cli/calibration/calibration_answers.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/calibration/curve_tables.h"
#include "cli/printer/handles.h"
#include "cli/terminal/output.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;
using CurveSetPtr = std::unique_ptr<std::uint16_t, Releaser<std::free>>;

// No code has all bits set, so outputs that nobody wrote are known by them.
constexpr std::uint32_t kUnwritten = 0xFFFFFFFF;

[[nodiscard]] bool IsCopy(const CurveSetPtr& set, const std::uint16_t* half) {
  return set && std::equal(half, half + IA_CALIB_SET_VALUES, set.get());
}

[[nodiscard]] const char* NameTable(const CurveSetPtr& first, const CurveSetPtr& second) {
  for (const CurveTable& table : CurveTables()) {
    if (IsCopy(first, table.values) && IsCopy(second, table.values + IA_CALIB_SET_VALUES)) {
      return table.name;
    }
  }
  return nullptr;
}

[[nodiscard]] const char* GetCurves(const AnalyzeContext& analyzer, const OptTable* options) {
  Calib3Info info = {};
  const int32_t status = Analyze_Info_CreateDefault_Calib3Info(&analyzer, options, &info);
  const CurveSetPtr first(info.first_set);
  const CurveSetPtr second(info.second_set);
  if (status != 0) throw std::bad_alloc();
  return NameTable(first, second);
}

[[nodiscard]] std::string Hex(std::uint32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", code);
  return text;
}

[[nodiscard]] std::string Join(const auto& numbers) {
  std::string text;
  for (const std::uint32_t number : numbers) {
    text += (text.empty() ? "" : ",") + std::to_string(number);
  }
  return text;
}

[[nodiscard]] std::string FormatCodes(const HalftoneCodes& codes) {
  return "calib3.halftone_codes=" + Hex(codes[0]) + "," + Hex(codes[1]) + "," + Hex(codes[2]) +
         "\n";
}

[[nodiscard]] std::string FormatSettings(const Calib4Settings& settings) {
  std::string text = "calib4.flag=" + std::to_string(settings.flag) + "\n";
  text += "calib4.resolution=" + std::to_string(settings.x_dpi) + "x" +
          std::to_string(settings.y_dpi) + "\n";
  for (std::size_t group = 0; group < 3; ++group) {
    const std::uint32_t* const words = &settings.words[3 * group];
    text += "calib4.group" + std::to_string(group + 1) + "=" + Hex(words[0]) + "," +
            std::to_string(words[1]) + "," + std::to_string(words[2]) + "\n";
  }
  return text;
}

[[nodiscard]] Json OrNull(const char* text) { return text != nullptr ? Json(text) : Json(nullptr); }

[[nodiscard]] Json ToJson(const Calib4Settings& settings) {
  Json json = {{"flag", settings.flag}, {"x_dpi", settings.x_dpi}, {"y_dpi", settings.y_dpi}};
  json["groups"] = Json::array();
  for (std::size_t group = 0; group < 3; ++group) {
    const std::uint32_t* const words = &settings.words[3 * group];
    json["groups"].push_back({words[0], words[1], words[2]});
  }
  return json;
}

[[nodiscard]] Json ToJson(const CalibrationDefaults& defaults) {
  Json json = {{"values", defaults.values}, {"model_values", defaults.model_values}};
  json["codes"] = defaults.codes;
  return json;
}

}  // namespace

CalibrationSettings GetSettings(const AnalyzeContext& analyzer, const OptTable* options) {
  HalftoneCodes codes = {kUnwritten, kUnwritten, kUnwritten};
  Analyze_Info_GetCalib3Settings(&analyzer, options, &codes[0], &codes[1], &codes[2]);
  Calib4Settings calib4 = {};
  const int32_t status = Analyze_Info_GetCalib4Settings(
      &analyzer, options, &calib4.flag, &calib4.x_dpi, &calib4.y_dpi, calib4.words.data());
  CalibrationSettings settings = {analyzer.driver_name, {}, {}};
  if (codes[0] != kUnwritten) settings.calib3 = codes;
  if (status == 0) settings.calib4 = calib4;
  return settings;
}

CalibrationDefaults GetDefaults(const AnalyzeContext& analyzer, const OptTable* options) {
  std::array<Calib4Entry, IA_CALIB_ENTRY_COUNT> entries = {};
  Calib4Header header = {
      .entry_count = 0, .first_model_value = 0, .second_model_value = 0, .entries = entries.data()};
  Calib4Info info = {.words = {}, .values = {}, .bytes = {}, .header = &header};
  Analyze_Info_CreateDefault_Calib4Info(&analyzer, options, &info);
  CalibrationDefaults defaults = {};
  defaults.driver_name = analyzer.driver_name;
  defaults.curve_table = GetCurves(analyzer, options);
  std::ranges::copy(info.values, defaults.values.begin());
  defaults.model_values = {header.first_model_value, header.second_model_value};
  std::ranges::transform(entries, defaults.codes.begin(), &Calib4Entry::code);
  return defaults;
}

std::string FormatText(const CalibrationSettings& settings) {
  return (settings.calib3 ? FormatCodes(*settings.calib3) : "calib3=none\n") +
         (settings.calib4 ? FormatSettings(*settings.calib4) : "calib4=none\n");
}

std::string FormatText(const CalibrationDefaults& defaults) {
  const std::string curves = defaults.curve_table != nullptr ? defaults.curve_table : "none";
  return "calib3.curves=" + curves + "\ncalib4.values=" + Join(defaults.values) +
         "\ncalib4.model_values=" + Join(defaults.model_values) +
         "\ncalib4.codes=" + Join(defaults.codes) + "\n";
}

std::string FormatJson(const CalibrationSettings& settings) {
  Json document = {{"driver_name", OrNull(settings.driver_name)}};
  document["calib3"] = settings.calib3 ? Json{{"halftone_codes", *settings.calib3}} : Json(nullptr);
  document["calib4"] = settings.calib4 ? ToJson(*settings.calib4) : Json(nullptr);
  return DumpJson(document);
}

std::string FormatJson(const CalibrationDefaults& defaults) {
  Json document = {{"driver_name", OrNull(defaults.driver_name)}};
  document["calib3"] = {{"curves", OrNull(defaults.curve_table)}};
  document["calib4"] = ToJson(defaults);
  return DumpJson(document);
}

}  // namespace ia::cli
