// QVPuncher: which holes can be punched, per driver model.
#include <algorithm>
#include <array>

#include "analyze/model/function_query.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr const char* kTwoHoles = "punching_2_holes";
constexpr const char* kFrenchFourHoles = "punching_French_4_holes";
constexpr const char* kMultipleHoles = "punching_multiple_holes";

struct PuncherRow {
  std::string_view model;
  FunctionStringHandler puncher;
};

constexpr auto kPuncherOptionTable = std::to_array<PuncherRow>({
    {"RA-H2-JP", analyze_GetPuncherOptionStringJUNIPER},
    {"RA-H2-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-Z5-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-W8-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-G5-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-T0-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-T6-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-X6-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-Z2-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-H5-MLT-JP", analyze_GetPuncherOptionStringJUNIPER_MLT},
    {"RA-J3", analyze_GetPuncherOptionStringMultipleHoles},
});
static_assert(kPuncherOptionTable.size() == 11);
static_assert(CountUnreachableRows<PuncherRow>(kPuncherOptionTable) == 0);

// Of models without a row the dispatch itself takes care.
constexpr PuncherRow kOtherModels{"", analyze_GetPuncherOptionString};

constexpr std::uint64_t kLooksAt = SetOf(Input::kFunctions, Input::kDetailFunctions);
constexpr auto kSources = std::to_array<HandlerSource<FunctionStringHandler>>({
    IA_HANDLER_SOURCE(analyze_GetPuncherOptionString, kLooksAt),
    IA_HANDLER_SOURCE(analyze_GetPuncherOptionStringJUNIPER, kLooksAt),
    IA_HANDLER_SOURCE(analyze_GetPuncherOptionStringJUNIPER_MLT, kLooksAt),
    IA_HANDLER_SOURCE(analyze_GetPuncherOptionStringMultipleHoles, kLooksAt),
});

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

// The table answers, too, when there is no memory for the value that the holes stand for.
CString OtherModels(const FunctionQuery& query) noexcept {
  if (Punches(query, kTwoHoles) && IsDetailReported(query, kFrenchFourHoles)) {
    if (CString value = CopyOf("PUNF24")) return value;
  }
  return CopyOf(SearchInTableOrder(query));
}

}  // namespace
}  // namespace ia

char* analyze_GetPuncherOptionString(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  const auto* const row =
      ia::FindModel<ia::PuncherRow>(ia::kPuncherOptionTable, query->driver_name);
  return row != nullptr ? row->puncher(query) : ia::OtherModels(*query).release();
}

char* analyze_GetPuncherOptionStringSearchTableListOrder(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::SearchInTableOrder);
}

char* analyze_GetPuncherOptionStringDetailFuncListOrder(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::SearchInDeviceOrder);
}

char* analyze_GetPuncherOptionStringJUNIPER(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::TwoHoles);
}

char* analyze_GetPuncherOptionStringJUNIPER_MLT(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::TwoOrFourHoles);
}

char* analyze_GetPuncherOptionStringMultipleHoles(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::MultipleHoles);
}

namespace ia {

constinit const ModelColumn kPuncherColumn = ColumnOf<PuncherRow, kPuncherOptionTable, kOtherModels,
                                                      &PuncherRow::puncher, kSources>::kColumn;

}  // namespace ia
