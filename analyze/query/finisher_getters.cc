// Getters for one unit of the finisher list.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "analyze/model/function_query.h"
#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "info_common/owned.h"

// The records are shared with callers written in C.
static_assert(sizeof(FinisherUnit) == 7 * sizeof(void*));
static_assert(offsetof(FinisherUnit, name) == 1 * sizeof(void*));
static_assert(offsetof(FinisherUnit, functions) == 2 * sizeof(void*));
static_assert(offsetof(FinisherUnit, function_count) == 3 * sizeof(void*));
static_assert(offsetof(FinisherUnit, detail_functions) == 4 * sizeof(void*));
static_assert(offsetof(FinisherUnit, detail_count) == 5 * sizeof(void*));
static_assert(offsetof(FinisherUnit, stacker_count) == 6 * sizeof(void*));

namespace ia {
namespace {

constexpr std::int32_t kTopBottomTrimmerType = 12;
constexpr std::int32_t kStackerType = 15;
constexpr std::int32_t kBinderType = 18;

// A name fits every unit whose name begins with it.
constexpr auto kTrimmerNames = std::to_array<std::string_view>({
    "Vorel Saddle Finisher-X2",
    "Vorel Saddle Finisher-X2/X2L",
    "Vorel Saddle Finisher-WM2",
    "Vorel Saddle Finisher-TC2",
    "Vorel Booklet Finisher-D1",
    "Vorel Saddle Finisher-HB2",
    "Vorel Saddle Finisher-XU2",
    "Vorel Booklet Finisher-R1",
    "Vorel Saddle Finisher-W3",
    "Vorel Saddle Finisher-W4",
    "Vorel Booklet Finisher-W1",
    "Vorel Booklet Finisher-U1",
    "Vorel Saddle Finisher-WE2",
    "Vorel Booklet Finisher-K1 PRO",
});

constexpr auto kInnerTrimmerNames = std::to_array<std::string_view>({
    "Vorel Saddle Finisher-UH2",
    "Vorel Booklet Finisher-S1",
    "Vorel Booklet Finisher-Z1",
    "Vorel Booklet Finisher-P1",
});

constexpr auto kProPuncherNames = std::to_array<std::string_view>({
    "Vorel Professional Puncher-E1",
    "Vorel Booklet Finisher-D1",
    "Vorel Staple Finisher-D1",
    "Vorel Finisher-UH1",
    "Vorel Saddle Finisher-UH2",
    "Vorel Staple Finisher-S1",
    "Vorel Booklet Finisher-S1",
    "Vorel Staple Finisher-R1",
    "Vorel Booklet Finisher-R1",
    "Vorel Professional Puncher-B1",
    "Vorel Staple Finisher-W1",
    "Vorel Booklet Finisher-W1",
    "Vorel Staple Finisher-Z1",
    "Vorel Booklet Finisher-Z1",
    "Vorel Staple Finisher-U1",
    "Vorel Booklet Finisher-U1",
    "Vorel Staple Finisher-P1",
    "Vorel Booklet Finisher-P1",
    "Vorel Multi Function Professional Puncher-D1",
});

bool IsOneOf(const char* name, std::span<const std::string_view> names) noexcept {
  return name != nullptr && std::ranges::any_of(names, [&](std::string_view prefix) {
           return std::string_view(name).starts_with(prefix);
         });
}

bool Does(const FinisherUnit& unit, std::string_view function) noexcept {
  return IsReported(unit.functions, unit.function_count, function);
}

bool DoesInDetail(const FinisherUnit& unit, std::string_view function) noexcept {
  return IsReported(unit.detail_functions, unit.detail_count, function);
}

bool IsTrimmer(const FinisherUnit& unit) noexcept {
  return Does(unit, "trimming") && IsOneOf(unit.name, kTrimmerNames);
}

bool IsInnerTrimmer(const FinisherUnit& unit) noexcept {
  return Does(unit, "trimming") && IsOneOf(unit.name, kInnerTrimmerNames);
}

bool IsInserter(const FinisherUnit& unit) noexcept {
  return unit.type != kBinderType && Does(unit, "inserter");
}

bool IsMultiInserter(const FinisherUnit& unit) noexcept {
  return IsInserter(unit) && DoesInDetail(unit, "inserting_multiple_sheet");
}

bool IsBinder(const FinisherUnit& unit) noexcept { return unit.type == kBinderType; }

bool IsProPuncher(const FinisherUnit& unit) noexcept {
  return IsOneOf(unit.name, kProPuncherNames) && DoesInDetail(unit, "punching_multiple_holes");
}

bool IsTopBottomTrimmer(const FinisherUnit& unit) noexcept {
  return unit.type == kTopBottomTrimmerType && DoesInDetail(unit, "trimming_3_direction");
}

char* ValueIf(bool (*is_fitting)(const FinisherUnit&) noexcept, const void* datum,
              std::string_view value) noexcept {
  if (datum == nullptr || !is_fitting(*static_cast<const FinisherUnit*>(datum))) return nullptr;
  return Duplicate(value).release();
}

}  // namespace
}  // namespace ia

char* zGetFinishingFunctionOptionString(const void* datum) noexcept {
  return analyze_GetFinishingFunctionOptionString(static_cast<const FunctionQuery*>(datum));
}

char* zGetPuncherOptionString(const void* datum) noexcept {
  return analyze_GetPuncherOptionString(static_cast<const FunctionQuery*>(datum));
}

char* zGetTrimmerFunctionOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsTrimmer, datum, "TRMU1");
}

char* zGetInnerTrimmerFunctionOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsInnerTrimmer, datum, "ITRMU1");
}

char* zGetFinisherInserterOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsInserter, datum, "INSU1");
}

char* zGetMultiInserterOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsMultiInserter, datum, "True");
}

char* zGetStackerOptionString(const void* datum) noexcept {
  if (datum == nullptr) return nullptr;
  const auto& unit = *static_cast<const FinisherUnit*>(datum);
  if (unit.type != ia::kStackerType || unit.stacker_count == nullptr) return nullptr;
  int32_t& stackers = *unit.stacker_count;
  const bool is_first = stackers == 0;
  if (stackers < std::numeric_limits<int32_t>::max()) ++stackers;
  return ia::Duplicate(is_first ? "STKU1" : "STKU2").release();
}

char* zGetFinisherConstitutionOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsBinder, datum, "BIDU1");
}

char* zGetProPuncherOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsProPuncher, datum, "PUNU1");
}

char* zGetTopBottomTrimmerOptionString(const void* datum) noexcept {
  return ia::ValueIf(ia::IsTopBottomTrimmer, datum, "TBTU1");
}
