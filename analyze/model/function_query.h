// What a finisher can do, as the handlers of finishing functions ask for it.
#ifndef ANALYZE_MODEL_FUNCTION_QUERY_H_
#define ANALYZE_MODEL_FUNCTION_QUERY_H_

#include <span>

#include "info_analyze/model_options.h"

namespace ia {

[[nodiscard]] bool IsFunctionReported(const FunctionQuery& query) noexcept;
[[nodiscard]] bool IsDetailReported(const FunctionQuery& query, const char* detail) noexcept;

[[nodiscard]] std::span<const FunctionPair> SearchTableOf(const FunctionQuery& query) noexcept;

// A copy of what a handler decides; null for null.
[[nodiscard]] char* Answer(const FunctionQuery* query,
                           const char* (*decide)(const FunctionQuery&) noexcept) noexcept;

}  // namespace ia

#endif  // ANALYZE_MODEL_FUNCTION_QUERY_H_
