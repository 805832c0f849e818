// QVPuncher: which holes can be punched, per driver model.
#include <algorithm>
#include <array>
#include <cstdint>

#include "analyze/model/function_query.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr const char* kTwoHoles = "punching_2_holes";
constexpr const char* kFrenchFourHoles = "punching_French_4_holes";
constexpr const char* kMultipleHoles = "punching_multiple_holes";

bool Punches(const FunctionQuery& query, const char* holes) noexcept {
  return IsFunctionReported(query) && IsDetailReported(query, holes);
}

// The order of the search table is the priority.
const char* SearchInTableOrder(const FunctionQuery& query) noexcept {
  if (!IsFunctionReported(query)) return nullptr;
  if (query.search_table == nullptr) return query.default_value;
  const auto table = SearchTableOf(query);
  const auto hit = std::ranges::find_if(table, [&](const FunctionPair& pair) {
    return IsDetailReported(query, pair.detail_function);
  });
  return hit != table.end() ? hit->value : nullptr;
}

// The order of the device's own list is the priority.
const char* SearchInDeviceOrder(const FunctionQuery& query) noexcept {
  if (!IsFunctionReported(query)) return nullptr;
  if (query.search_table == nullptr) return query.default_value;
  if (query.detail_functions == nullptr || query.detail_count == nullptr) return nullptr;
  const auto table = SearchTableOf(query);
  for (std::int32_t i = 0; i < *query.detail_count; ++i) {
    const char* const detail = query.detail_functions[i];
    if (detail == nullptr) continue;
    const auto hit = std::ranges::find_if(table, [&](const FunctionPair& pair) {
      return pair.detail_function != nullptr &&
             std::string_view(pair.detail_function).starts_with(detail);
    });
    if (hit != table.end() && hit->value != nullptr) return hit->value;
  }
  return nullptr;
}

// Two holes or nothing.
const char* TwoHoles(const FunctionQuery& query) noexcept {
  return Punches(query, kTwoHoles) ? "PUNU2" : nullptr;
}

const char* TwoOrFourHoles(const FunctionQuery& query) noexcept {
  if (!Punches(query, kTwoHoles)) return SearchInTableOrder(query);
  return IsDetailReported(query, kFrenchFourHoles) ? "PUNU24" : "PUNU2";
}

const char* MultipleHoles(const FunctionQuery& query) noexcept {
  return Punches(query, kMultipleHoles) ? "PUNM" : SearchInTableOrder(query);
}

// The search also decides when the value of four holes cannot be allocated.
CString FourFrenchOrInTableOrder(const FunctionQuery& query) noexcept {
  if (Punches(query, kTwoHoles) && IsDetailReported(query, kFrenchFourHoles)) {
    if (CString value = CopyOf("PUNF24")) return value;
  }
  return CopyOf(SearchInTableOrder(query));
}

// Handlers ---------------------------------------------------------------------------------------

constexpr FunctionHandler kCommon{
    IA_EXPORTED(analyze_GetPuncherOptionString),
    .inputs = {Input::kFunctions, Input::kDetailFunctions},
    .rule = FourFrenchOrInTableOrder,
};

constexpr FunctionHandler kJuniper{
    IA_EXPORTED(analyze_GetPuncherOptionStringJUNIPER),
    .inputs = {Input::kFunctions, Input::kDetailFunctions},
    .rule = CopyValue<TwoHoles>,
};

constexpr FunctionHandler kJuniperMlt{
    IA_EXPORTED(analyze_GetPuncherOptionStringJUNIPER_MLT),
    .inputs = {Input::kFunctions, Input::kDetailFunctions},
    .rule = CopyValue<TwoOrFourHoles>,
};

constexpr FunctionHandler kMultipleHoleUnit{
    IA_EXPORTED(analyze_GetPuncherOptionStringMultipleHoles),
    .inputs = {Input::kFunctions, Input::kDetailFunctions},
    .rule = CopyValue<MultipleHoles>,
};

struct PuncherRow {
  std::string_view model;
  const FunctionHandler* puncher;
};

constexpr auto kPuncherOptionTable = std::to_array<PuncherRow>({
    {"RA-H2-JP", &kJuniper},
    {"RA-H2-MLT-JP", &kJuniperMlt},
    {"RA-Z5-MLT-JP", &kJuniperMlt},
    {"RA-W8-MLT-JP", &kJuniperMlt},
    {"RA-G5-MLT-JP", &kJuniperMlt},
    {"RA-T0-MLT-JP", &kJuniperMlt},
    {"RA-T6-MLT-JP", &kJuniperMlt},
    {"RA-X6-MLT-JP", &kJuniperMlt},
    {"RA-Z2-MLT-JP", &kJuniperMlt},
    {"RA-H5-MLT-JP", &kJuniperMlt},
    {"RA-J3", &kMultipleHoleUnit},
});
static_assert(CountUnreachableRows<PuncherRow>(kPuncherOptionTable) == 0);

constexpr PuncherRow kOtherModels{"", &kCommon};

}  // namespace
}  // namespace ia

char* analyze_GetPuncherOptionString(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  const auto* const row =
      ia::FindModel<ia::PuncherRow>(ia::kPuncherOptionTable, query->driver_name);
  return ia::Answer(query, *(row != nullptr ? *row : ia::kOtherModels).puncher);
}

char* analyze_GetPuncherOptionStringSearchTableListOrder(const FunctionQuery* query) noexcept {
  return query != nullptr ? ia::CopyOf(ia::SearchInTableOrder(*query)).release() : nullptr;
}

char* analyze_GetPuncherOptionStringDetailFuncListOrder(const FunctionQuery* query) noexcept {
  return query != nullptr ? ia::CopyOf(ia::SearchInDeviceOrder(*query)).release() : nullptr;
}

char* analyze_GetPuncherOptionStringJUNIPER(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kJuniper);
}

char* analyze_GetPuncherOptionStringJUNIPER_MLT(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kJuniperMlt);
}

char* analyze_GetPuncherOptionStringMultipleHoles(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kMultipleHoleUnit);
}

namespace ia {

constinit const ModelColumn kPuncherColumn =
    ColumnOf<PuncherRow, kPuncherOptionTable, kOtherModels, &PuncherRow::puncher>::kColumn;

}  // namespace ia
