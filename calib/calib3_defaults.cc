// The Calib3 information that a calibration tool starts from.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "calib/arguments.h"
#include "calib/model_table.h"
#include "calib/print_options.h"
#include "info_analyze/calibration.h"
#include "info_common/owned.h"

static_assert(offsetof(Calib3Info, words) == 0);
static_assert(offsetof(Calib3Info, first_set) == 48);
static_assert(offsetof(Calib3Info, second_set) == 48 + sizeof(void*));
static_assert(sizeof(Calib3Info) == 48 + 2 * sizeof(void*));
static_assert(sizeof LARCH_Def_Calib == 16384);

namespace ia {
namespace {

// RC-STD has Calib3 settings but no row here, so it gets the zeroed record.
constexpr auto kModels = std::to_array<CalibModelEntry<Calib3InfoHandler>>({
    {"RB-W7", analyze_CreateDefault_Calib3InfoLARCH},
    {"RB-Z4", analyze_CreateDefault_Calib3InfoLARCH},
    {"RC-T9", analyze_CreateDefault_Calib3InfoLARCH},
    {"RB-P9", analyze_CreateDefault_Calib3InfoLINDEN},
    {"RB-J9", analyze_CreateDefault_Calib3InfoPINE_POPLAR},
});
static_assert(CountUnreachableRows<CalibModelEntry<Calib3InfoHandler>>(kModels) == 0);

std::uint16_t* NewCurveSet(const std::uint16_t* values) noexcept {
  auto* const set =
      static_cast<std::uint16_t*>(std::malloc(IA_CALIB_SET_VALUES * sizeof(std::uint16_t)));
  if (set != nullptr) std::copy_n(values, IA_CALIB_SET_VALUES, set);
  return set;
}

std::int32_t CopyCurveSets(const std::uint16_t* table, Calib3Info& info) noexcept {
  info.first_set = NewCurveSet(table);
  if (info.first_set == nullptr) return -1;
  info.second_set = NewCurveSet(table + IA_CALIB_SET_VALUES);
  return info.second_set != nullptr ? 0 : -1;
}

struct GradationTables {
  const std::uint16_t* two_bit;
  const std::uint16_t* four_bit;
};

std::int32_t CopyGradationSets(const GradationTables& tables, const OptTable& options,
                               Calib3Info& info) noexcept {
  info = {};
  if (OptionBeginsWith(options, "QVGradation", "Normal")) return 0;
  const bool is_four_bit = OptionBeginsWith(options, "QVGradation", "High2");
  return CopyCurveSets(is_four_bit ? tables.four_bit : tables.two_bit, info);
}

}  // namespace

constinit const CalibModelTable<Calib3InfoHandler> kCalib3InfoModels = kModels;

}  // namespace ia

int32_t analyze_CreateDefault_Calib3InfoCommon(const AnalyzeContext* context,
                                               Calib3Info* info) noexcept {
  if (ia::HasNull(context, info)) return -1;
  *info = {};
  return 0;
}

int32_t analyze_CreateDefault_Calib3InfoLARCH(const AnalyzeContext* context,
                                              const OptTable* options, Calib3Info* info) noexcept {
  if (ia::HasNull(context, options, info)) return -1;
  std::ranges::fill(info->words, 0);
  return ia::CopyCurveSets(LARCH_Def_Calib, *info);
}

int32_t analyze_CreateDefault_Calib3InfoLINDEN(const AnalyzeContext* context,
                                               const OptTable* options, Calib3Info* info) noexcept {
  if (ia::HasNull(context, options, info)) return -1;
  return ia::CopyGradationSets({Linden_Def_Calib_2bit, Linden_Def_Calib_4bit}, *options, *info);
}

int32_t analyze_CreateDefault_Calib3InfoPINE_POPLAR(const AnalyzeContext* context,
                                                    const OptTable* options,
                                                    Calib3Info* info) noexcept {
  if (ia::HasNull(context, options, info)) return -1;
  return ia::CopyGradationSets({PinePoplar_Def_Calib_2bit, PinePoplar_Def_Calib_4bit}, *options,
                               *info);
}

int32_t analyze_CreateDefault_Calib3Info(const AnalyzeContext* context, const OptTable* options,
                                         Calib3Info* info) noexcept {
  if (ia::HasNull(context, options, info)) return -1;
  const Calib3InfoHandler handler =
      ia::FindHandler<Calib3InfoHandler>(ia::kCalib3InfoModels, *context, nullptr);
  return handler != nullptr ? handler(context, options, info)
                            : analyze_CreateDefault_Calib3InfoCommon(context, info);
}

int32_t Analyze_Info_CreateDefault_Calib3Info(const AnalyzeContext* context,
                                              const OptTable* options, Calib3Info* info) noexcept {
  return analyze_CreateDefault_Calib3Info(context, options, info);
}
