// Calls inside the library that a test sees and answers in its own way. The linker leads them here
// (--wrap); while no object of a kind lives, its calls go through unchanged.
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

// Of each kind one object lives at a time.
template <class Kind>
class Interception {
 public:
  Interception() { active = static_cast<Kind*>(this); }
  ~Interception() { active = nullptr; }
  Interception(const Interception&) = delete;
  Interception& operator=(const Interception&) = delete;

  static inline Kind* active = nullptr;
};

// Reads of list items. One that is to fail stores its values all the same, as a read does that
// fails at its last key.
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
    bool has_room;  // for three rows more than trays, all empty
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
