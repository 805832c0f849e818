// Finishing functions other than punching (QVOptionStaple, QVFolder), per driver model.
#include <array>
#include <string_view>

#include "analyze/model/function_query.h"
#include "analyze/model/model_matrix.h"
#include "analyze/model_row.h"

namespace ia {
namespace {

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

// The query has no detailed functions for the stapler, so handlers depend on the functions alone.

constexpr FunctionHandler kCommon{
    IA_EXPORTED(analyze_GetFinishingFunctionOptionStringCommon),
    .inputs = {Input::kFunctions},
    .rule = CopyValue<SearchLast>,
};

constexpr FunctionHandler kElm{
    IA_EXPORTED(analyze_GetFinishingFunctionOptionString_ELM),
    .inputs = {Input::kFunctions},
    .rule = CopyValue<TrueForStaple>,
};

constexpr FunctionHandler kMagnolia{
    IA_EXPORTED(analyze_GetFinishingFunctionOptionStringMagnolia),
    .inputs = {Input::kFunctions},
    .rule = CopyValue<TrueForStaple>,
};

struct FinishingFunctionRow {
  std::string_view model;
  const FunctionHandler* function;
};

constexpr auto kFinishingFunctionTable = std::to_array<FinishingFunctionRow>({
    {"RC-T7", &kElm},
    {"RD-T7", &kMagnolia},
});
static_assert(CountUnreachableRows<FinishingFunctionRow>(kFinishingFunctionTable) == 0);

constexpr FinishingFunctionRow kOtherModels{"", &kCommon};

}  // namespace
}  // namespace ia

char* analyze_GetFinishingFunctionOptionString(const FunctionQuery* query) noexcept {
  if (query == nullptr) return nullptr;
  const auto* const row =
      ia::FindModel<ia::FinishingFunctionRow>(ia::kFinishingFunctionTable, query->driver_name);
  return ia::Answer(query, *(row != nullptr ? *row : ia::kOtherModels).function);
}

char* analyze_GetFinishingFunctionOptionStringCommon(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kCommon);
}

char* analyze_GetFinishingFunctionOptionString_ELM(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kElm);
}

char* analyze_GetFinishingFunctionOptionStringMagnolia(const FunctionQuery* query) noexcept {
  return ia::Answer(query, ia::kMagnolia);
}

namespace ia {

constinit const ModelColumn kFinishingFunctionColumn =
    ColumnOf<FinishingFunctionRow, kFinishingFunctionTable, kOtherModels,
             &FinishingFunctionRow::function>::kColumn;

}  // namespace ia
