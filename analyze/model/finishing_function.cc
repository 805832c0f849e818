// Finishing functions other than punching (QVOptionStaple, QVFolder), per driver model.
#include <array>
#include <string_view>

#include "analyze/model/function_query.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"

namespace ia {
namespace {

struct FinishingFunctionRow {
  std::string_view model;
  FunctionStringHandler function;
};

constexpr auto kFinishingFunctionTable = std::to_array<FinishingFunctionRow>({
    {"RC-T7", analyze_GetFinishingFunctionOptionString_ELM},
    {"RD-T7", analyze_GetFinishingFunctionOptionStringMagnolia},
});
static_assert(kFinishingFunctionTable.size() == 2);
static_assert(CountUnreachableRows<FinishingFunctionRow>(kFinishingFunctionTable) == 0);

constexpr FinishingFunctionRow kOtherModels{"", analyze_GetFinishingFunctionOptionStringCommon};

// The query has no detailed functions for the stapler.
constexpr auto kSources = std::to_array<HandlerSource<FunctionStringHandler>>({
    IA_HANDLER_SOURCE(analyze_GetFinishingFunctionOptionStringCommon, SetOf(Input::kFunctions)),
    IA_HANDLER_SOURCE(analyze_GetFinishingFunctionOptionString_ELM, SetOf(Input::kFunctions)),
    IA_HANDLER_SOURCE(analyze_GetFinishingFunctionOptionStringMagnolia, SetOf(Input::kFunctions)),
});

// The last row that is reported decides, unlike with punchers.
const char* SearchLast(const FunctionQuery& query) noexcept {
  if (!IsFunctionReported(query)) return nullptr;
  if (query.search_table == nullptr) return query.default_value;
  const char* value = nullptr;
  for (const FunctionPair& pair : SearchTableOf(query)) {
    if (IsDetailReported(query, pair.detail_function)) value = pair.value;
  }
  return value;
}

const char* TrueForStaple(const FunctionQuery& query) noexcept {
  const bool is_staple = query.function != nullptr && std::string_view(query.function) == "staple";
  return is_staple && IsFunctionReported(query) ? "True" : nullptr;
}

}  // namespace
}  // namespace ia

char* analyze_GetFinishingFunctionOptionString(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  const auto* const row =
      ia::FindModel<ia::FinishingFunctionRow>(ia::kFinishingFunctionTable, query->driver_name);
  return (row != nullptr ? *row : ia::kOtherModels).function(query);
}

char* analyze_GetFinishingFunctionOptionStringCommon(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::SearchLast);
}

char* analyze_GetFinishingFunctionOptionString_ELM(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::TrueForStaple);
}

char* analyze_GetFinishingFunctionOptionStringMagnolia(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::TrueForStaple);
}

namespace ia {

constinit const ModelColumn kFinishingFunctionColumn =
    ColumnOf<FinishingFunctionRow, kFinishingFunctionTable, kOtherModels,
             &FinishingFunctionRow::function, kSources>::kColumn;

}  // namespace ia
