// Calls inside the library that a test records and answers. The linker redirects them here
// (--wrap). Calls go through unchanged while no interception object of their type exists.
#ifndef TESTS_ANALYZE_INTERCEPTED_CALLS_H_
#define TESTS_ANALYZE_INTERCEPTED_CALLS_H_

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"

namespace ia_test {

// At most one object of each derived type exists at a time.
template <class Derived>
class Interception {
 public:
  Interception() { active = static_cast<Derived*>(this); }
  ~Interception() { active = nullptr; }
  Interception(const Interception&) = delete;
  Interception& operator=(const Interception&) = delete;

  static inline Derived* active = nullptr;
};

// Reads of list items. One that is to fail stores its values anyway, like a read that fails at its
// last key.
struct ListReads : Interception<ListReads> {
  using Item = std::pair<std::int32_t, std::int32_t>;  // document, index in its list
  std::vector<Item> reads;
  std::map<Item, std::int32_t> results;
};

// Calls of analyze_GetInputOptions(), which is not run.
struct InputMapping : Interception<InputMapping> {
  struct Call {
    AnalyzeContext* context;
    std::vector<std::vector<std::int32_t>> trays;  // type, alias, capacity, medium type
    std::int32_t extra_trays;
    std::int32_t row_count;
    bool has_empty_rows;  // one for each tray and three more, all empty
  };
  std::vector<Call> calls;
  std::function<void(OptionSetter* rows, std::int32_t* row_count)> answer;
};

// Calls of analyze_GetFinisherOption(), which is not run.
struct FinisherMapping : Interception<FinisherMapping> {
  struct Finisher {
    std::int32_t bins;
    std::optional<std::string> name;
    bool operator==(const Finisher&) const = default;
  };
  struct Call {
    AnalyzeContext* context;
    std::vector<Finisher> finishers;
    std::vector<std::int32_t> aliases;
  };
  std::vector<Call> calls;
  std::function<void(OptionSetter* rows)> answer;
};

// Calls that put flag values into a list. They are answered with these results, one after the
// other, and then with 0; nothing is put.
struct FlagSetting : Interception<FlagSetting> {
  struct Call {
    const OptTable* source;                 // null for "key:value" items
    std::optional<std::string> target_key;  // none for "key:value" items
    std::string text;
    OptionList* target;
    bool operator==(const Call&) const = default;
  };
  std::vector<Call> calls;
  std::vector<std::int32_t> results;
};

// Flag stores of keys that cannot be made, and fillings of keys that answer with a result.
struct FlagStores : Interception<FlagStores> {
  std::set<std::string> not_made;
  std::map<std::string, std::int32_t> results;
};

}  // namespace ia_test

#endif  // TESTS_ANALYZE_INTERCEPTED_CALLS_H_
