// The Calib4 information that a calibration tool starts from.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "calib/arguments.h"
#include "calib/calib4_code.h"
#include "calib/model_table.h"
#include "calib/print_options.h"
#include "info_analyze/calibration.h"

static_assert(sizeof(Calib4Entry) == 16);
static_assert(offsetof(Calib4Entry, code) == 0);
static_assert(offsetof(Calib4Entry, index) == 4);
static_assert(offsetof(Calib4Entry, words) == 8);
static_assert(offsetof(Calib4Header, entry_count) == 0);
static_assert(offsetof(Calib4Header, first_model_value) == 4);
static_assert(offsetof(Calib4Header, second_model_value) == 8);
static_assert(offsetof(Calib4Header, entries) == (sizeof(void*) == 8 ? 16 : 12));
static_assert(sizeof(Calib4Header) == (sizeof(void*) == 8 ? 24 : 16));
static_assert(offsetof(Calib4Info, words) == 0);
static_assert(offsetof(Calib4Info, values) == 56);
static_assert(offsetof(Calib4Info, bytes) == 72);
static_assert(offsetof(Calib4Info, header) == (sizeof(void*) == 8 ? 80 : 76));
static_assert(sizeof(Calib4Info) == (sizeof(void*) == 8 ? 88 : 80));

namespace ia {
namespace {

// RB-T3 and RA-X6 belong to other families here than in their settings.
constexpr auto kModels = std::to_array<CalibModelEntry<Calib4InfoHandler>>({
    {"RB-X6", analyze_CreateDefault_Calib4InfoACACIA},
    {"RB-X2", analyze_CreateDefault_Calib4InfoACACIA},
    {"RB-X6-2", analyze_CreateDefault_Calib4InfoACACIA},
    {"RA-H2", analyze_CreateDefault_Calib4InfoBAOBAB},
    {"RA-H8", analyze_CreateDefault_Calib4InfoBAOBAB},
    {"RA-Z6", analyze_CreateDefault_Calib4InfoBAOBAB},
    {"RC-STD", analyze_CreateDefault_Calib4InfoCHESTNUT},
    {"RC-J4", analyze_CreateDefault_Calib4InfoCHESTNUT},
    {"RB-J8", analyze_CreateDefault_Calib4InfoEBONY},
    {"RB-K7", analyze_CreateDefault_Calib4InfoEBONY},
    {"RA-H1", analyze_CreateDefault_Calib4InfoBAOBAB},
    {"RB-T3", analyze_CreateDefault_Calib4InfoEBONY},
    {"RB-X7", analyze_CreateDefault_Calib4InfoBAOBAB},
    {"RA-G5", analyze_CreateDefault_Calib4InfoTUPELO},
    {"RC-W0", analyze_CreateDefault_Calib4InfoREDWOOD},
    {"RA-X6", analyze_CreateDefault_Calib4InfoREDWOOD},
    {"RC-X8", analyze_CreateDefault_Calib4InfoREDWOOD},
});
// RB-X6-2 is unreachable after RB-X6, which has the same handler.
static_assert(CountUnreachableRows<CalibModelEntry<Calib4InfoHandler>>(kModels) == 1);

HalftoneTriple CodesOf(const OptTable& options, std::uint32_t (*code)(std::uint32_t)) noexcept {
  HalftoneTriple values = ReadHalftone(options);
  std::ranges::transform(values, values.begin(), code);
  return values;
}

// High resolution counts as resolution in the BAOBAB codes and as none here; the difference is
// intended.
HalftoneTriple CommonCodes(const OptTable& options) noexcept {
  return CodesOf(options, [](std::uint32_t type) noexcept {
    return type != IA_HALFTONE_HIGH_RESOLUTION ? CalibCode(type) : 0;
  });
}

HalftoneTriple BaobabCodes(const OptTable& options) noexcept { return CodesOf(options, CalibCode); }

HalftoneTriple Zeros(const OptTable& /*options*/) noexcept { return {0, 0, 0}; }

HalftoneTriple Twos(const OptTable& /*options*/) noexcept { return {2, 2, 2}; }

struct Family {
  std::uint32_t first_model_value;
  HalftoneTriple (*codes)(const OptTable& options);
};

constexpr Family kCommon = {8, CommonCodes};
constexpr Family kAcacia = {12, CommonCodes};
constexpr Family kBaobab = {8, BaobabCodes};
constexpr Family kChestnut = {12, BaobabCodes};
constexpr Family kEbony = {12, Zeros};
constexpr Family kRedwood = {12, Twos};
constexpr Family kTupelo = {8, Twos};

void FillEntries(const HalftoneTriple& codes, Calib4Entry* entries) noexcept {
  for (std::uint32_t i = 0; i < codes.size(); ++i) entries[i] = {codes[i], i, {}};
}

std::int32_t Fill(const AnalyzeContext* context, const OptTable* options, Calib4Info* info,
                  const Family& family) noexcept {
  if (HasNull(context, options, info)) return -1;
  Calib4Header* const header = info->header;
  if (header == nullptr || header->entries == nullptr) return -1;
  *info = {.words = {}, .values = {100, 100, 100, 100}, .bytes = {}, .header = header};
  header->entry_count = IA_CALIB_ENTRY_COUNT;
  header->first_model_value = family.first_model_value;
  header->second_model_value = 8;
  FillEntries(family.codes(*options), header->entries);
  return 0;
}

}  // namespace

constinit const CalibModelTable<Calib4InfoHandler> kCalib4InfoModels = kModels;

}  // namespace ia

int32_t analyze_CreateDefault_Calib4InfoCommon(const AnalyzeContext* context,
                                               const OptTable* options, Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kCommon);
}

int32_t analyze_CreateDefault_Calib4InfoACACIA(const AnalyzeContext* context,
                                               const OptTable* options, Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kAcacia);
}

int32_t analyze_CreateDefault_Calib4InfoBAOBAB(const AnalyzeContext* context,
                                               const OptTable* options, Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kBaobab);
}

int32_t analyze_CreateDefault_Calib4InfoCHESTNUT(const AnalyzeContext* context,
                                                 const OptTable* options,
                                                 Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kChestnut);
}

int32_t analyze_CreateDefault_Calib4InfoEBONY(const AnalyzeContext* context,
                                              const OptTable* options, Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kEbony);
}

int32_t analyze_CreateDefault_Calib4InfoREDWOOD(const AnalyzeContext* context,
                                                const OptTable* options,
                                                Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kRedwood);
}

int32_t analyze_CreateDefault_Calib4InfoTUPELO(const AnalyzeContext* context,
                                               const OptTable* options, Calib4Info* info) noexcept {
  return ia::Fill(context, options, info, ia::kTupelo);
}

int32_t analyze_CreateDefault_Calib4Info(const AnalyzeContext* context, const OptTable* options,
                                         Calib4Info* info) noexcept {
  if (ia::HasNull(context, options, info)) return -1;
  const Calib4InfoHandler handler = ia::FindHandler<Calib4InfoHandler>(
      ia::kCalib4InfoModels, *context, analyze_CreateDefault_Calib4InfoCommon);
  return handler(context, options, info);
}

int32_t Analyze_Info_CreateDefault_Calib4Info(const AnalyzeContext* context,
                                              const OptTable* options, Calib4Info* info) noexcept {
  return analyze_CreateDefault_Calib4Info(context, options, info);
}
