#include "analyze/model/function_query.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "info_common/owned.h"

static_assert(sizeof(FunctionPair) == 2 * sizeof(void*));
static_assert(offsetof(FunctionPair, value) == 1 * sizeof(void*));
static_assert(sizeof(FunctionQuery) == 9 * sizeof(void*));
static_assert(offsetof(FunctionQuery, function) == 1 * sizeof(void*));
static_assert(offsetof(FunctionQuery, functions) == 2 * sizeof(void*));
static_assert(offsetof(FunctionQuery, function_count) == 3 * sizeof(void*));
static_assert(offsetof(FunctionQuery, search_table) == 4 * sizeof(void*));
static_assert(offsetof(FunctionQuery, search_rows) == 5 * sizeof(void*));
static_assert(offsetof(FunctionQuery, detail_functions) == 6 * sizeof(void*));
static_assert(offsetof(FunctionQuery, detail_count) == 7 * sizeof(void*));
static_assert(offsetof(FunctionQuery, default_value) == 8 * sizeof(void*));

namespace ia {
namespace {

bool IsReported(char* const* words, const std::int32_t* count, const char* word) noexcept {
  return count != nullptr && zStringExistenceCheck(words, word, *count) != 0;
}

}  // namespace

bool IsFunctionReported(const FunctionQuery& query) noexcept {
  return IsReported(query.functions, query.function_count, query.function);
}

bool IsDetailReported(const FunctionQuery& query, const char* detail) noexcept {
  return IsReported(query.detail_functions, query.detail_count, detail);
}

std::span<const FunctionPair> SearchTableOf(const FunctionQuery& query) noexcept {
  if (query.search_table == nullptr || query.search_rows < 1) return {};
  return {query.search_table, static_cast<std::size_t>(query.search_rows)};
}

char* Answer(const FunctionQuery* query,
             const char* (*decide)(const FunctionQuery&) noexcept) noexcept {
  return query != nullptr ? CopyOf(decide(*query)).release() : nullptr;
}

}  // namespace ia

// An element is the beginning of the word, not the other way round: "punching_2" reports
// "punching_2_holes" and "punching_2or3_holes" alike.
int32_t zStringExistenceCheck(char* const* texts, const char* word, int32_t count) noexcept {
  if (texts == nullptr || word == nullptr || count < 1) return 0;
  return std::any_of(texts, texts + count,
                     [&](const char* text) {
                       return text != nullptr && std::string_view(word).starts_with(text);
                     })
             ? 1
             : 0;
}
