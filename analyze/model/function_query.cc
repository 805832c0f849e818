#include "analyze/model/function_query.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

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

// An element is a prefix of the word, not the other way round: "punching_2" reports
// "punching_2_holes" and "punching_2or3_holes" alike.
bool HasPrefixOf(std::span<char* const> texts, std::string_view word) noexcept {
  return std::ranges::any_of(
      texts, [&](const char* text) { return text != nullptr && word.starts_with(text); });
}

}  // namespace

bool IsReported(char* const* words, const std::int32_t* count, std::string_view word) noexcept {
  if (words == nullptr || count == nullptr || *count < 1) return false;
  return HasPrefixOf({words, static_cast<std::size_t>(*count)}, word);
}

bool IsFunctionReported(const FunctionQuery& query) noexcept {
  return query.function != nullptr &&
         IsReported(query.functions, query.function_count, query.function);
}

bool IsDetailReported(const FunctionQuery& query, const char* detail) noexcept {
  return detail != nullptr && IsReported(query.detail_functions, query.detail_count, detail);
}

std::span<const FunctionPair> SearchTableOf(const FunctionQuery& query) noexcept {
  if (query.search_table == nullptr || query.search_rows < 1) return {};
  return {query.search_table, static_cast<std::size_t>(query.search_rows)};
}

char* Answer(const FunctionQuery* query, const FunctionHandler& handler) noexcept {
  return query != nullptr ? handler.rule(*query).release() : nullptr;
}

}  // namespace ia

int32_t zStringExistenceCheck(char* const* texts, const char* word, int32_t count) noexcept {
  return word != nullptr && ia::IsReported(texts, &count, word) ? 1 : 0;
}
