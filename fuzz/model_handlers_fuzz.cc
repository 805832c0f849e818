// Any model, flags, trays, finishers, rules and functions through the handlers of the model tables.
// Each line begins with the letter of what it adds:
//   m model            flag stores: M I S O F (media types, trays, slots, sources, finishers) text
//   t type alias capacity medium-type
//   f bins name        r bins name           a alias-code   n low high extra-trays alias
//   q function         w reported-function   d reported-detail
//   p detail=value     v default-value       c count of each list that is not shorter
// A missing name or text is a null pointer.
#include <dlfcn.h>
#include <string.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "info_analyze/model_options.h"
#include "info_analyze/provenance.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/support/analyzer_ptr.h"

namespace {

using ia_fuzz::NumberOf;
using ia_fuzz::Require;
using ia_test::ExactText;
using ia_test::OwnedText;

constexpr std::size_t kLongest = 1024;

using Value = std::optional<std::string>;

Value ValueOf(const char* text) { return text != nullptr ? Value(text) : std::nullopt; }

// The exported functions of all handlers that the tables of these families name.
template <class Function>
std::vector<Function> HandlersOf(std::initializer_list<std::int32_t> families) {
  std::set<std::string> names;
  for (const std::int32_t family : families) {
    ModelRow row = {};
    for (std::int32_t i = IA_OTHER_MODELS;
         Analyze_Provenance_GetModelRow(family, i, &row, sizeof row) != 0; ++i) {
      if (row.handler != nullptr) names.insert(row.handler);
    }
  }
  std::vector<Function> handlers;
  for (const std::string& name : names) {
    handlers.push_back(reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, name.c_str())));
    Require(handlers.back() != nullptr);
  }
  return handlers;
}

const auto kInputHandlers =
    HandlersOf<InputOptionHandler>({IA_FAMILY_SIDE_PAPER_DECK, IA_FAMILY_SOURCE_OPTION,
                                    IA_FAMILY_MEDIA_TYPE, IA_FAMILY_ENVELOPE_FEEDER});

const auto kFinisherHandlers = HandlersOf<FinisherOptionHandler>(
    {IA_FAMILY_FINISHER, IA_FAMILY_COPY_TRAY, IA_FAMILY_FIN_TRAY});

constexpr FunctionStringHandler kFunctionHandlers[] = {
    analyze_GetFinishingFunctionOptionString,
    analyze_GetFinishingFunctionOptionStringCommon,
    analyze_GetFinishingFunctionOptionStringMagnolia,
    analyze_GetFinishingFunctionOptionString_ELM,
    analyze_GetPuncherOptionString,
    analyze_GetPuncherOptionStringDetailFuncListOrder,
    analyze_GetPuncherOptionStringJUNIPER,
    analyze_GetPuncherOptionStringJUNIPER_MLT,
    analyze_GetPuncherOptionStringMultipleHoles,
    analyze_GetPuncherOptionStringSearchTableListOrder,
};

// Elements in a heap block without a spare one, and a count that is not above theirs.
template <class Element>
class List {
 public:
  List(const std::vector<Element>& elements, std::int32_t most)
      : block_(new Element[elements.size()]),
        count_(std::min(most, static_cast<std::int32_t>(elements.size()))) {
    std::copy(elements.begin(), elements.end(), block_.get());
  }
  [[nodiscard]] Element* data() const { return block_.get(); }
  [[nodiscard]] const std::int32_t& count() const { return count_; }
  [[nodiscard]] const Element* begin() const { return data(); }
  [[nodiscard]] const Element* end() const { return data() + std::max(count_, 0); }

 private:
  std::unique_ptr<Element[]> block_;
  std::int32_t count_;
};

struct Numbers {
  std::int32_t low = 0;
  std::int32_t high = 0;
  std::int32_t extra_trays = 0;
  std::int32_t alias = 0;
};

// What the lines describe. Texts are heap blocks of their exact length.
class Case {
 public:
  explicit Case(ia_fuzz::Input input)
      : context(static_cast<AnalyzeContext*>(std::calloc(1, sizeof(AnalyzeContext)))) {
    while (!input.IsEmpty()) TakeLine(input.TakeText());
  }

  ia_test::AnalyzerPtr context;
  std::vector<TrayEntry> trays;
  std::vector<FinisherEntry> finishers;
  std::vector<std::int32_t> aliases;
  std::vector<AccessoryBinRule> rules;
  std::vector<char*> functions;
  std::vector<char*> details;
  std::vector<FunctionPair> pairs;
  const char* function = nullptr;
  const char* default_value = nullptr;
  std::int32_t most = std::numeric_limits<std::int32_t>::max();
  Numbers numbers;

 private:
  static std::string_view TakeWord(std::string_view& rest) {
    const std::string_view word = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    return word;
  }

  static std::array<std::int32_t, 4> NumbersIn(std::string_view rest) {
    std::array<std::int32_t, 4> numbers = {};
    for (std::int32_t& number : numbers) number = NumberOf(TakeWord(rest));
    return numbers;
  }

  char* Keep(std::string_view text) {
    texts_.push_back(ExactText(text));
    return texts_.back().get();
  }

  char* KeepUnlessEmpty(std::string_view text) { return text.empty() ? nullptr : Keep(text); }

  FlagInfo** Store(char letter) {
    switch (letter) {
      case 'M':
        return &context->media_type_flags;
      case 'I':
        return &context->input_tray_flags;
      case 'S':
        return &context->slot_media_info_flags;
      case 'O':
        return &context->src_option_flags;
      case 'F':
        return &context->finisher_name_flags;
      default:
        return nullptr;
    }
  }

  void TakeFlags(FlagInfo** store, std::string_view text) {
    zflaginfo_term(*store);
    *store = zflaginfo_init("key", 16);
    zflaginfo_get(ExactText(text).get(), *store);
  }

  void TakeLine(std::string_view line) {
    const char letter = line.empty() ? '\0' : line.front();
    std::string_view rest = line.substr(std::min<std::size_t>(2, line.size()));
    if (FlagInfo** const store = Store(letter)) TakeFlags(store, rest);
    switch (letter) {
      case 'm':
        SetModel(rest);
        break;
      case 't':
        TakeTray(NumbersIn(rest));
        break;
      case 'f':
        finishers.push_back({NumberOf(TakeWord(rest)), KeepUnlessEmpty(rest)});
        break;
      case 'a':
        aliases.push_back(NumberOf(rest));
        break;
      case 'r':
        rules.push_back({NumberOf(TakeWord(rest)), KeepUnlessEmpty(rest)});
        break;
      case 'n':
        TakeNumbers(NumbersIn(rest));
        break;
      case 'c':
        most = NumberOf(rest);
        break;
      case 'q':
        function = Keep(rest);
        break;
      case 'w':
        functions.push_back(KeepUnlessEmpty(rest));
        break;
      case 'd':
        details.push_back(KeepUnlessEmpty(rest));
        break;
      case 'p':
        TakePair(rest);
        break;
      case 'v':
        default_value = Keep(rest);
        break;
      default:
        break;
    }
  }

  void SetModel(std::string_view model) {
    std::free(context->driver_name);
    context->driver_name = strndup(model.data(), model.size());
  }

  void TakeTray(const std::array<std::int32_t, 4>& tray) {
    trays.push_back({tray[0], tray[1], tray[2], tray[3]});
  }

  void TakeNumbers(const std::array<std::int32_t, 4>& all) {
    numbers = {all[0], all[1], all[2], all[3]};
  }

  void TakePair(std::string_view pair) {
    const std::size_t equals = std::min(pair.find('='), pair.size());
    const std::string_view value = pair.substr(std::min(equals + 1, pair.size()));
    pairs.push_back({KeepUnlessEmpty(pair.substr(0, equals)), KeepUnlessEmpty(value)});
  }

  std::vector<std::unique_ptr<char[]>> texts_;
};

// Trays -----------------------------------------------------------------------------------------

// The rows handed to a handler: one in use already, and room for those that it may append.
class Rows {
 public:
  explicit Rows(std::size_t trays) : size_(trays + 4), rows_(new OptionSetter[size_]()) {}
  ~Rows() {
    for (std::size_t i = 0; i < size_; ++i) {
      std::free(const_cast<char*>(rows_[i].keyword));
      std::free(rows_[i].value);
    }
  }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  [[nodiscard]] OptionSetter* data() { return rows_.get(); }
  std::int32_t count = 1;

  void Check() const {
    Require(count >= 1 && static_cast<std::size_t>(count) <= size_);
    for (std::size_t i = 0; i < size_; ++i) {
      const OptionSetter& row = rows_[i];
      const bool is_appended = i > 0 && i < static_cast<std::size_t>(count);
      Require((row.keyword != nullptr) == is_appended);
      Require(is_appended || (row.value == nullptr && row.default_value == nullptr));
      Require(row.getter == nullptr && row.getter_arg == nullptr);
    }
  }

 private:
  std::size_t size_;
  std::unique_ptr<OptionSetter[]> rows_;
};

void CheckTrays(const Case& input) {
  const List<TrayEntry> trays(input.trays, input.most);
  const std::int32_t extra_trays = input.numbers.extra_trays;
  for (const InputOptionHandler handler : kInputHandlers) {
    Rows rows(input.trays.size());
    Require(handler(input.context.get(), trays.data(), trays.count(), extra_trays, rows.data(),
                    &rows.count) == 0);
    rows.Check();
  }
  Rows rows(input.trays.size());
  analyze_GetInputOptions(input.context.get(), trays.data(), trays.count(), extra_trays,
                          rows.data(), &rows.count);
  rows.Check();

  const std::int32_t alias = input.numbers.alias;
  const auto* const hit = std::find_if(trays.begin(), trays.end(),
                                       [&](const TrayEntry& tray) { return tray.alias == alias; });
  Require(zFindTrayByAlias(trays.data(), trays.count(), alias) ==
          (hit != trays.end() ? hit - trays.begin() : -1));
}

// Finishers -------------------------------------------------------------------------------------

// A row with a value that is kept or replaced.
class Row {
 public:
  Row() : row_{"keyword", strdup("old"), nullptr, nullptr, "default"} {}
  ~Row() { std::free(row_.value); }
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;

  OptionSetter* get() { return &row_; }
  [[nodiscard]] Value value() const { return ValueOf(row_.value); }

 private:
  OptionSetter row_;
};

struct Finishers {
  explicit Finishers(const Case& input)
      : context(input.context.get()),
        list(input.finishers, input.most),
        aliases(input.aliases, input.most),
        rules(input.rules, input.most) {}

  AnalyzeContext* context;
  List<FinisherEntry> list;
  List<std::int32_t> aliases;
  List<AccessoryBinRule> rules;
};

bool Begins(const FinisherEntry& finisher, const AccessoryBinRule& rule) {
  return finisher.name != nullptr && rule.accessory_name != nullptr &&
         std::string_view(finisher.name).starts_with(rule.accessory_name);
}

bool HasAlias(const Finishers& all, std::int32_t low, std::int32_t high) {
  return std::any_of(all.aliases.begin(), all.aliases.end(),
                     [&](std::int32_t alias) { return alias >= low && alias <= high; });
}

// The value that a rule for the copy tray gives: more bins than the rule has, or an alias.
void CheckCopyTray(const Finishers& all, const Numbers& numbers) {
  const bool has_alias = HasAlias(all, numbers.low, numbers.high);
  const bool is_there =
      std::any_of(all.list.begin(), all.list.end(), [&](const FinisherEntry& finisher) {
        return std::any_of(all.rules.begin(), all.rules.end(), [&](const AccessoryBinRule& rule) {
          return Begins(finisher, rule) && (finisher.binnum > rule.bin_count || has_alias);
        });
      });
  Row row;
  Require(analyze_GetQVCopyTrayByBinTrayAlias(
              all.context, all.list.data(), all.list.count(), all.rules.data(), all.rules.count(),
              all.aliases.data(), all.aliases.count(), numbers.low, numbers.high, row.get()) == 0);
  Require(row.value() == (is_there ? "CPTU1" : "old"));
}

// Only the first rule that fits a name counts.
void CheckFinisherTray(const Finishers& all) {
  const bool is_there =
      std::any_of(all.list.begin(), all.list.end(), [&](const FinisherEntry& finisher) {
        const auto* const rule =
            std::find_if(all.rules.begin(), all.rules.end(),
                         [&](const AccessoryBinRule& each) { return Begins(finisher, each); });
        return rule != all.rules.end() && finisher.binnum > rule->bin_count;
      });
  Row row;
  Require(analyze_GetQVFinTrayByBinTrayCount(
              all.context, all.list.data(), all.list.count(), all.rules.data(), all.rules.count(),
              all.aliases.data(), all.aliases.count(), row.get()) == 0);
  Require(row.value() == (is_there ? "FNTU1" : "old"));
}

void CheckFinisherRows(const Finishers& all, const Numbers& numbers) {
  for (const FinisherOptionHandler handler : kFinisherHandlers) {
    Row row;
    Require(handler(all.context, all.list.data(), all.list.count(), all.aliases.data(),
                    all.aliases.count(), row.get()) == 0);
    Require(all.list.count() > 0 || row.value() == "old");
  }
  Row row;
  Require(analyze_GetQVFinisherByBinTrayAlias(
              all.context, all.list.data(), all.list.count(), all.rules.data(), all.rules.count(),
              all.aliases.data(), all.aliases.count(), numbers.low, numbers.high, row.get()) == 0);
  const OwnedText value(
      analyze_GetQVFinisherValueString(all.context, all.list.data(), all.list.count()));
  Require(value == nullptr || all.list.count() > 0);
}

void CheckFinishers(const Case& input) {
  const Finishers all(input);
  CheckFinisherRows(all, input.numbers);
  CheckCopyTray(all, input.numbers);
  CheckFinisherTray(all);
  Require(analyze_CheckBinAlias(all.aliases.data(), all.aliases.count(), input.numbers.low,
                                input.numbers.high) ==
          (HasAlias(all, input.numbers.low, input.numbers.high) ? 1 : 0));

  OptionSetter rows[3] = {};
  analyze_GetFinisherOption(all.context, all.list.data(), all.list.count(), all.aliases.data(),
                            all.aliases.count(), rows);
  for (const OptionSetter& row : rows) std::free(row.value);
}

// Functions -------------------------------------------------------------------------------------

bool IsReported(const List<char*>& texts, const char* word) {
  return word != nullptr && std::any_of(texts.begin(), texts.end(), [&](const char* text) {
           return text != nullptr && std::string_view(word).starts_with(text);
         });
}

Value ValueBy(FunctionStringHandler handler, const FunctionQuery& query) {
  const OwnedText value(handler(&query));
  return ValueOf(value.get());
}

// The first reported detail that begins the name of a row gives that row's value, if it has one.
Value FirstOfDevice(const List<FunctionPair>& table, const List<char*>& details) {
  for (const char* const detail : details) {
    if (detail == nullptr) continue;
    for (const FunctionPair& pair : table) {
      const bool is_named = pair.detail_function != nullptr &&
                            std::string_view(pair.detail_function).starts_with(detail);
      if (is_named && pair.value != nullptr) return pair.value;
      if (is_named) break;
    }
  }
  return std::nullopt;
}

// The first row that is reported, the last one, and the first detail that names one.
void CheckOrders(const FunctionQuery& query, const List<FunctionPair>& table,
                 const List<char*>& details, bool is_reported) {
  Value first;
  Value last;
  bool has_first = false;
  for (const FunctionPair& pair : table) {
    if (!IsReported(details, pair.detail_function)) continue;
    last = ValueOf(pair.value);
    if (!has_first) first = last;
    has_first = true;
  }
  Value of_device = FirstOfDevice(table, details);
  if (query.search_table == nullptr) first = last = of_device = ValueOf(query.default_value);
  if (!is_reported) first = last = of_device = std::nullopt;
  Require(ValueBy(analyze_GetPuncherOptionStringSearchTableListOrder, query) == first);
  Require(ValueBy(analyze_GetFinishingFunctionOptionStringCommon, query) == last);
  Require(ValueBy(analyze_GetPuncherOptionStringDetailFuncListOrder, query) == of_device);
}

void CheckFunctions(const Case& input) {
  const List<char*> functions(input.functions, input.most);
  const List<char*> details(input.details, input.most);
  const List<FunctionPair> table(input.pairs, input.most);
  const bool has_table = !input.pairs.empty();
  const FunctionQuery query = {input.context->driver_name,
                               input.function,
                               functions.data(),
                               &functions.count(),
                               has_table ? table.data() : nullptr,
                               table.count(),
                               details.data(),
                               &details.count(),
                               input.default_value};
  for (const FunctionStringHandler handler : kFunctionHandlers) ValueBy(handler, query);
  const bool is_reported = IsReported(functions, input.function);
  Require(zStringExistenceCheck(functions.data(), input.function, functions.count()) ==
          (is_reported ? 1 : 0));
  CheckOrders(query, table, details, is_reported);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Case input(ia_fuzz::Input(data, std::min(size, kLongest)));
  CheckTrays(input);
  CheckFinishers(input);
  CheckFunctions(input);
  return 0;
}
