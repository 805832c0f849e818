// Queries of the handlers of finishing functions for what a finisher can do.
#ifndef ANALYZE_MODEL_FUNCTION_QUERY_H_
#define ANALYZE_MODEL_FUNCTION_QUERY_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "analyze/model/handler.h"
#include "info_analyze/model_options.h"
#include "info_common/owned.h"

namespace ia {

// Whether a list of a device holds the word, as zStringExistenceCheck() finds it.
[[nodiscard]] bool IsReported(char* const* words, const std::int32_t* count,
                              std::string_view word) noexcept;

[[nodiscard]] bool IsFunctionReported(const FunctionQuery& query) noexcept;
[[nodiscard]] bool IsDetailReported(const FunctionQuery& query, const char* detail) noexcept;

[[nodiscard]] std::span<const FunctionPair> SearchTableOf(const FunctionQuery& query) noexcept;

using FunctionHandler = Handler<FunctionStringHandler, CString (*)(const FunctionQuery&) noexcept>;

// What the exported functions of handlers do.
[[nodiscard]] char* Answer(const FunctionQuery* query, const FunctionHandler& handler) noexcept;

// A rule whose value needs nothing but the query.
template <const char* (*kDecide)(const FunctionQuery&) noexcept>
CString CopyValue(const FunctionQuery& query) noexcept {
  return CopyOf(kDecide(query));
}

}  // namespace ia

#endif  // ANALYZE_MODEL_FUNCTION_QUERY_H_
