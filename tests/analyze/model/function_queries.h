// Calls the handlers of finishing functions as the update of the finisher list does.
#ifndef TESTS_ANALYZE_MODEL_FUNCTION_QUERIES_H_
#define TESTS_ANALYZE_MODEL_FUNCTION_QUERIES_H_

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"

namespace ia_test {

using Words = std::vector<std::optional<std::string>>;
using SearchTable = std::vector<FunctionPair>;

// Words as the device reports them, in a block of exactly their length, never null.
class WordList {
 public:
  explicit WordList(Words words)
      : words_(std::move(words)), texts_(std::make_unique<char*[]>(words_.size())) {
    std::transform(words_.begin(), words_.end(), texts_.get(),
                   [](auto& word) { return word ? word->data() : nullptr; });
    count_ = static_cast<std::int32_t>(words_.size());
  }

  char* const* texts() const { return texts_.get(); }
  const std::int32_t* count() const { return &count_; }

 private:
  Words words_;
  std::unique_ptr<char*[]> texts_;
  std::int32_t count_;
};

// The search table of punchers.
inline const SearchTable kPunchTable{{"punching_2_holes", "PUNU2"},
                                     {"punching_2or3_holes", "PUNU23"},
                                     {"punching_3_holes", "PUNU3"},
                                     {"punching_French_4_holes", "PUNF4"},
                                     {"punching_Swedish_4_holes", "PUNS4"}};

// A query about one function of a device that reports these words. Its record is open to be
// spoiled.
class Query {
 public:
  Query(std::string function, Words functions, Words details,
        const std::optional<SearchTable>& table = kPunchTable)
      : function_(std::move(function)),
        functions_(std::move(functions)),
        details_(std::move(details)) {
    record = {nullptr,
              function_.c_str(),
              functions_.texts(),
              functions_.count(),
              nullptr,
              0,
              details_.texts(),
              details_.count(),
              nullptr};
    if (!table) return;
    table_ = std::make_unique<FunctionPair[]>(table->size());
    std::copy(table->begin(), table->end(), table_.get());
    record.search_table = table_.get();
    record.search_rows = static_cast<std::int32_t>(table->size());
  }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  // What a handler answers.
  std::optional<std::string> Ask(FunctionStringHandler handler) const {
    char* const answer = handler(&record);
    if (answer == nullptr) return std::nullopt;
    std::string text = answer;
    std::free(answer);
    return text;
  }

  FunctionQuery record;

 private:
  std::string function_;
  WordList functions_;
  WordList details_;
  std::unique_ptr<FunctionPair[]> table_;
};

// A query about the punching of a device that reports it.
inline Query Punching(Words details, const std::optional<SearchTable>& table = kPunchTable) {
  return Query("punch", {"staple", "punch"}, std::move(details), table);
}

}  // namespace ia_test

#endif  // TESTS_ANALYZE_MODEL_FUNCTION_QUERIES_H_
