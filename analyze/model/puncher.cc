// QVPuncher: which holes can be punched, per driver model.
#include <algorithm>
#include <array>

#include "analyze/model/function_query.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"

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
CString SearchInTableOrder(const FunctionQuery& query) noexcept {
  if (!IsFunctionReported(query)) return nullptr;
  if (query.search_table == nullptr) return CopyOf(query.default_value);
  const auto table = SearchTableOf(query);
  const auto hit = std::ranges::find_if(table, [&](const FunctionPair& pair) {
    return IsDetailReported(query, pair.detail_function);
  });
  return hit != table.end() ? CopyOf(hit->value) : nullptr;
}

// The order of the device's own list is the priority.
CString SearchInDeviceOrder(const FunctionQuery& query) noexcept {
  if (!IsFunctionReported(query)) return nullptr;
  if (query.search_table == nullptr) return CopyOf(query.default_value);
  if (query.detail_functions == nullptr || query.detail_count == nullptr) return nullptr;
  const auto table = SearchTableOf(query);
  for (std::int32_t i = 0; i < *query.detail_count; ++i) {
    const char* const detail = query.detail_functions[i];
    if (detail == nullptr) continue;
    const auto hit = std::ranges::find_if(table, [&](const FunctionPair& pair) {
      return pair.detail_function != nullptr &&
             std::string_view(pair.detail_function).starts_with(detail);
    });
    if (hit != table.end() && hit->value != nullptr) return CopyOf(hit->value);
  }
  return nullptr;
}

CString OtherModels(const FunctionQuery& query) noexcept {
  if (Punches(query, kTwoHoles) && IsDetailReported(query, kFrenchFourHoles)) {
    if (CString value = CopyOf("PUNF24")) return value;
  }
  return SearchInTableOrder(query);
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
  return query != nullptr ? ia::SearchInTableOrder(*query).release() : nullptr;
}

char* analyze_GetPuncherOptionStringDetailFuncListOrder(const FunctionQuery* query) noexcept {
  return query != nullptr ? ia::SearchInDeviceOrder(*query).release() : nullptr;
}

// Two holes or nothing.
char* analyze_GetPuncherOptionStringJUNIPER(const FunctionQuery* query) noexcept {
  if (query == nullptr || !ia::Punches(*query, ia::kTwoHoles)) return nullptr;
  return ia::CopyOf("PUNU2").release();
}

char* analyze_GetPuncherOptionStringJUNIPER_MLT(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  if (!ia::Punches(*query, ia::kTwoHoles)) return ia::SearchInTableOrder(*query).release();
  return ia::CopyOf(ia::IsDetailReported(*query, ia::kFrenchFourHoles) ? "PUNU24" : "PUNU2")
      .release();
}

char* analyze_GetPuncherOptionStringMultipleHoles(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  if (!ia::Punches(*query, ia::kMultipleHoles)) return ia::SearchInTableOrder(*query).release();
  return ia::CopyOf("PUNM").release();
}

namespace ia {

constinit const ModelColumn kPuncherColumn = ColumnOf<PuncherRow, kPuncherOptionTable, kOtherModels,
                                                      &PuncherRow::puncher, kSources>::kColumn;

}  // namespace ia
