// Which Calib3 settings a calibration tool sends to a printer.
#include <array>
#include <cstdint>

#include "calib/arguments.h"
#include "calib/model_table.h"
#include "calib/print_options.h"
#include "info_analyze/calibration.h"
#include "info_common/option_table.h"

namespace ia {
namespace {

constexpr auto kModels = std::to_array<CalibModelEntry<Calib3SettingsHandler>>({
    {"RC-STD", analyze_GetCalibSettingsSFP},
    {"RB-W7", analyze_GetCalibSettingsLARCH},
    {"RB-Z4", analyze_GetCalibSettingsLARCH},
    {"RC-T9", analyze_GetCalibSettingsLARCH},
    {"RB-P9", analyze_GetCalibSettingsLINDEN},
    {"RB-J9", analyze_GetCalibSettingsPINE_POPLAR},
});
static_assert(CountUnreachableRows<CalibModelEntry<Calib3SettingsHandler>>(kModels) == 0);

HalftoneTriple LarchSettings(const OptTable& /*options*/) noexcept {
  return {0, kBidiResolution, kBidiColorTone};
}

HalftoneTriple GradationSettings(const OptTable& options) noexcept {
  if (OptionBeginsWith(options, "QVGradation", "Normal")) return {0, 0, 0};
  return {0, kBidiColorTone, kBidiResolution};
}

// Case-sensitive, unlike ReadHalftone(): drivers depend on both.
bool HasGradationHalftone(const OptTable& options) noexcept {
  if (FindValue(&options, "QVColorMode") == nullptr) return false;
  const bool is_mono = OptionBeginsWith(options, "QVColorMode", "mono");
  return OptionBeginsWith(options, is_mono ? "QVHalftone" : "QVColorHalftone", "gradation");
}

HalftoneTriple SfpSettings(const OptTable& options) noexcept {
  return {HasGradationHalftone(options) ? kBidiColorTone : kBidiResolution, kBidiColorTone,
          kBidiResolution};
}

struct Request {
  const AnalyzeContext* context;
  const OptTable* options;
  std::uint32_t* out1;
  std::uint32_t* out2;
  std::uint32_t* out3;

  [[nodiscard]] bool IsWhole() const noexcept {
    return !HasNull(context, options, out1, out2, out3);
  }
};

std::int32_t Answer(const Request& request, HalftoneTriple (*settings)(const OptTable&)) noexcept {
  if (!request.IsWhole()) return -1;
  const HalftoneTriple codes = settings(*request.options);
  *request.out1 = codes[0];
  *request.out2 = codes[1];
  *request.out3 = codes[2];
  return 0;
}

}  // namespace

constinit const CalibModelTable<Calib3SettingsHandler> kCalib3SettingsModels = kModels;

}  // namespace ia

int32_t analyze_GetCalibSettingsLARCH(const AnalyzeContext* context, const OptTable* options,
                                      uint32_t* out1, uint32_t* out2, uint32_t* out3) noexcept {
  return ia::Answer({context, options, out1, out2, out3}, ia::LarchSettings);
}

int32_t analyze_GetCalibSettingsLINDEN(const AnalyzeContext* context, const OptTable* options,
                                       uint32_t* out1, uint32_t* out2, uint32_t* out3) noexcept {
  return ia::Answer({context, options, out1, out2, out3}, ia::GradationSettings);
}

int32_t analyze_GetCalibSettingsPINE_POPLAR(const AnalyzeContext* context, const OptTable* options,
                                            uint32_t* out1, uint32_t* out2,
                                            uint32_t* out3) noexcept {
  return ia::Answer({context, options, out1, out2, out3}, ia::GradationSettings);
}

int32_t analyze_GetCalibSettingsSFP(const AnalyzeContext* context, const OptTable* options,
                                    uint32_t* out1, uint32_t* out2, uint32_t* out3) noexcept {
  return ia::Answer({context, options, out1, out2, out3}, ia::SfpSettings);
}

int32_t analyze_GetCalib3Settings(const AnalyzeContext* context, const OptTable* options,
                                  uint32_t* out1, uint32_t* out2, uint32_t* out3) noexcept {
  if (ia::HasNull(context, options, out1, out2, out3)) return -1;
  const Calib3SettingsHandler handler =
      ia::FindHandler<Calib3SettingsHandler>(ia::kCalib3SettingsModels, *context, nullptr);
  // A model without settings is not a failure here, unlike in Calib4: the outputs keep the values
  // of the caller.
  return handler != nullptr ? handler(context, options, out1, out2, out3) : 0;
}

int32_t Analyze_Info_GetCalib3Settings(const AnalyzeContext* context, const OptTable* options,
                                       uint32_t* out1, uint32_t* out2, uint32_t* out3) noexcept {
  return analyze_GetCalib3Settings(context, options, out1, out2, out3);
}
