// Which Calib4 settings a calibration tool sends to a printer.
#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>

#include "calib/arguments.h"
#include "calib/calib4_code.h"
#include "calib/model_table.h"
#include "calib/print_options.h"
#include "info_analyze/calibration.h"

namespace ia {
namespace {

constexpr auto kModels = std::to_array<CalibModelEntry<Calib4SettingsHandler>>({
    {"RA-H2", analyze_GetCalibSettingsBAOBAB},
    {"RA-H8", analyze_GetCalibSettingsBAOBAB},
    {"RA-Z6", analyze_GetCalibSettingsBAOBAB},
    {"RB-J8", analyze_GetCalibSettingsEBONY},
    {"RB-K7", analyze_GetCalibSettingsEBONY},
    {"RA-H1", analyze_GetCalibSettingsBAOBAB},
    {"RB-T3", analyze_GetCalibSettingsSEQUOIA},
    {"RB-X7", analyze_GetCalibSettingsBAOBAB},
    {"RA-G5", analyze_GetCalibSettingsTUPELO},
    {"RA-X6", analyze_GetCalibSettingsTUPELO},
});
static_assert(CountUnreachableRows<CalibModelEntry<Calib4SettingsHandler>>(kModels) == 0);

using Group = std::array<std::uint32_t, 3>;
static_assert(std::tuple_size_v<HalftoneTriple> * std::tuple_size_v<Group> == IA_CALIB4_WORD_COUNT);

Group BaobabGroup(std::uint32_t type) noexcept {
  return {BidiCode(type), 3, DensityCode(CalibCode(type))};
}

Group EbonyGroup(std::uint32_t type) noexcept { return {BidiCode(type), 3, DensityCode(0)}; }

Group TupeloGroup(std::uint32_t type) noexcept { return {BidiCode(type), 3, 1}; }

// Not BidiCode(): gradation goes under the bit that elsewhere means colour tone.
Group SequoiaGroup(std::uint32_t type) noexcept {
  if (type == IA_HALFTONE_GRADATION) return {kBidiColorTone, 0, 0};
  if (type == IA_HALFTONE_RESOLUTION) return {kBidiResolution, 0, 0};
  return {0, 0, 0};
}

Resolution NoResolution(const OptTable& /*options*/) noexcept { return {0, 0}; }

struct Family {
  std::uint32_t flag;
  Resolution (*resolution)(const OptTable& options);
  Group (*group)(std::uint32_t halftone_type);
};

constexpr Family kBaobab = {1, ReadResolution, BaobabGroup};
constexpr Family kEbony = {0, ReadResolution, EbonyGroup};
constexpr Family kSequoia = {0, NoResolution, SequoiaGroup};
constexpr Family kTupelo = {1, ReadResolution, TupeloGroup};

struct Request {
  const AnalyzeContext* context;
  const OptTable* options;
  std::uint32_t* flag;
  std::uint32_t* x_dpi;
  std::uint32_t* y_dpi;
  std::uint32_t* words;
};

std::int32_t Answer(const Request& request, const Family& family) noexcept {
  const auto& [context, options, flag, x_dpi, y_dpi, words] = request;
  if (HasNull(context, options, flag, x_dpi, y_dpi, words)) return -1;
  const Resolution resolution = family.resolution(*options);
  *flag = family.flag;
  *x_dpi = resolution.x_dpi;
  *y_dpi = resolution.y_dpi;
  std::uint32_t* next = words;
  for (const std::uint32_t type : ReadHalftone(*options)) {
    next = std::ranges::copy(family.group(type), next).out;
  }
  return 0;
}

}  // namespace

constinit const CalibModelTable<Calib4SettingsHandler> kCalib4SettingsModels = kModels;

}  // namespace ia

int32_t analyze_GetCalibSettingsBAOBAB(const AnalyzeContext* context, const OptTable* options,
                                       uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                       uint32_t* words) noexcept {
  return ia::Answer({context, options, flag, x_dpi, y_dpi, words}, ia::kBaobab);
}

int32_t analyze_GetCalibSettingsEBONY(const AnalyzeContext* context, const OptTable* options,
                                      uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                      uint32_t* words) noexcept {
  return ia::Answer({context, options, flag, x_dpi, y_dpi, words}, ia::kEbony);
}

int32_t analyze_GetCalibSettingsSEQUOIA(const AnalyzeContext* context, const OptTable* options,
                                        uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                        uint32_t* words) noexcept {
  return ia::Answer({context, options, flag, x_dpi, y_dpi, words}, ia::kSequoia);
}

int32_t analyze_GetCalibSettingsTUPELO(const AnalyzeContext* context, const OptTable* options,
                                       uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                       uint32_t* words) noexcept {
  return ia::Answer({context, options, flag, x_dpi, y_dpi, words}, ia::kTupelo);
}

int32_t analyze_GetCalib4Settings(const AnalyzeContext* context, const OptTable* options,
                                  uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                  uint32_t* words) noexcept {
  if (ia::HasNull(context, options, flag, x_dpi, y_dpi, words)) return -1;
  const Calib4SettingsHandler handler =
      ia::FindHandler<Calib4SettingsHandler>(ia::kCalib4SettingsModels, *context, nullptr);
  return handler != nullptr ? handler(context, options, flag, x_dpi, y_dpi, words) : -1;
}

int32_t Analyze_Info_GetCalib4Settings(const AnalyzeContext* context, const OptTable* options,
                                       uint32_t* flag, uint32_t* x_dpi, uint32_t* y_dpi,
                                       uint32_t* words) noexcept {
  return analyze_GetCalib4Settings(context, options, flag, x_dpi, y_dpi, words);
}
