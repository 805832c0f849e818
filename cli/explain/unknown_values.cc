#include "cli/explain/unknown_values.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/explain/experiment.h"
#include "cli/provenance/known_values.h"
#include "cli/provenance/provenance.h"
#include "cli/terminal/nearest.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

// More than printers report. Documents with a million items end soon, too.
constexpr std::int32_t kMaxItems = 100;
constexpr std::size_t kMaxUnknown = 100;  // of each input

[[nodiscard]] std::size_t DistanceOf(const Json& left, const Json& right) {
  constexpr std::size_t kLongest = 256;
  if (left.is_number()) {
    const auto difference = left.get<std::int64_t>() - right.get<std::int64_t>();
    return static_cast<std::size_t>(std::abs(difference));
  }
  return EditDistance(std::string_view(left.get_ref<const std::string&>()).substr(0, kLongest),
                      std::string_view(right.get_ref<const std::string&>()).substr(0, kLongest));
}

[[nodiscard]] Json FindNearest(const Json& value, const std::vector<Json>& known) {
  const auto hit = std::ranges::min_element(
      known, {}, [&](const Json& candidate) { return DistanceOf(value, candidate); });
  return hit != known.end() ? *hit : Json(nullptr);
}

[[nodiscard]] bool IsKnown(const Json& value, const std::vector<Json>& known) {
  return std::ranges::any_of(known, [&](const Json& candidate) {
    return value == candidate || (value.is_string() && candidate.is_string() &&
                                  value.get_ref<const std::string&>().starts_with(
                                      candidate.get_ref<const std::string&>()));
  });
}

// What is looked up; of an array that is its first element.
[[nodiscard]] Json LookedUp(const RawValue& raw) {
  if (!raw.is_present()) return nullptr;
  if (!raw.value.is_array()) return raw.value;
  return raw.value.empty() ? Json(nullptr) : raw.value[0];
}

// What the update handlers that read a document would set if it had this item alone, or with -1
// none.
[[nodiscard]] std::vector<std::optional<OptionValues>> RunWithItem(AnalyzeContext& analyzer,
                                                                   std::int32_t document,
                                                                   std::int32_t item) {
  std::vector<std::optional<OptionValues>> options;
  for (std::size_t update = 0; update < UpdateHandlers().size(); ++update) {
    Experiment experiment(analyzer, static_cast<std::int32_t>(update));
    Changes missing;
    for (std::size_t i = 0; i < experiment.values().size(); ++i) {
      const RawValue& raw = experiment.values()[i];
      const bool is_of_list = raw.input->document == document && raw.input->in_list != 0;
      if (is_of_list && raw.item != item) missing[i] = nullptr;
    }
    options.push_back(experiment.Run(missing));
  }
  return options;
}

// Whether items can be tried alone, which takes all documents.
[[nodiscard]] bool CanTryItems(AnalyzeContext& analyzer) {
  const auto is_missing = [](const XmlData& document) { return document.xml == nullptr; };
  if (std::ranges::any_of(analyzer.documents, is_missing)) return false;
  for (std::size_t update = 0; update < UpdateHandlers().size(); ++update) {
    if (!Experiment(analyzer, static_cast<std::int32_t>(update)).IsFaithful()) return false;
  }
  return true;
}

// A name or alias identifies the whole item; another key is a value of its own.
[[nodiscard]] bool IdentifiesItem(const InputKey& input) {
  const std::string_view key = input.key;
  return key == "name" || key == "alias";
}

// Null when no rule reads it.
[[nodiscard]] const InputKey* FindFunctionsOfUnits() {
  std::int32_t number = 0;
  const InputKey* input = FindInput(number);
  while (input != nullptr &&
         (input->document != IA_DOCUMENT_FINISHER_LIST || std::string_view(input->key) != "func")) {
    input = FindInput(++number);
  }
  return input;
}

// A unit that staples is a finisher, which only its name identifies.
[[nodiscard]] bool IsFinisher(const AnalyzeContext& analyzer, const RawValue& raw) {
  const InputKey* const input = FindFunctionsOfUnits();
  if (raw.input->document != IA_DOCUMENT_FINISHER_LIST || input == nullptr) return false;
  const std::vector<RawValue> functions = ReadRawValues(analyzer, *input);
  return std::ranges::any_of(functions, [&](const RawValue& unit) {
    return unit.item == raw.item && unit.value.is_array() &&
           std::ranges::find(unit.value, Json("staple")) != unit.value.end();
  });
}

[[nodiscard]] bool GivesAnOption(AnalyzeContext& analyzer, const RawValue& raw) {
  if (analyzer.documents[raw.input->document].count > kMaxItems) return false;
  return RunWithItem(analyzer, raw.input->document, raw.item) !=
         RunWithItem(analyzer, raw.input->document, -1);
}

class Search {
 public:
  explicit Search(AnalyzeContext& analyzer) : analyzer_(analyzer) {}

  void Add(const InputKey& input, std::vector<UnknownValue>& unknown);

 private:
  // Whether something else than the name or alias gives an option. What cannot be tried is taken
  // to be known.
  [[nodiscard]] bool IsKnownOtherwise(const RawValue& raw) {
    if (!IdentifiesItem(*raw.input) || IsFinisher(analyzer_, raw)) return false;
    if (!has_tried_) can_try_items_ = CanTryItems(analyzer_);
    has_tried_ = true;
    return !can_try_items_ || GivesAnOption(analyzer_, raw);
  }

  AnalyzeContext& analyzer_;
  bool has_tried_ = false;  // to find out whether items can be tried
  bool can_try_items_ = false;
};

void Search::Add(const InputKey& input, std::vector<UnknownValue>& unknown) {
  const std::vector<Json> known = KnownValues(analyzer_, input);
  const std::vector<Json> in_lists = ValuesInLists(analyzer_, input);
  std::set<Json> seen;
  for (RawValue& raw : ReadRawValues(analyzer_, input)) {
    const Json value = LookedUp(raw);
    const bool is_nothing = value.is_null() || value == Json("") || value == 0;
    if (is_nothing || IsKnown(value, known) || !seen.insert(value).second) continue;
    if (seen.size() > kMaxUnknown) return;
    if (IsKnownOtherwise(raw)) continue;
    unknown.push_back({std::move(raw), ListsOf(input), FindNearest(value, in_lists)});
  }
}

}  // namespace

std::vector<UnknownValue> FindUnknownValues(AnalyzeContext& analyzer) {
  Search search(analyzer);
  std::vector<UnknownValue> unknown;
  for (const InputKey* const input : InputsOfModel(analyzer.driver_name)) {
    if (!ListsOf(*input).empty()) search.Add(*input, unknown);
  }
  return unknown;
}

std::string Describe(const UnknownValue& unknown) {
  std::string text = FormatRawValue(unknown.raw) + ": not in " + unknown.lists;
  if (!unknown.nearest.is_null()) {
    text += "; the nearest known value is " +
            unknown.nearest.dump(-1, ' ', false, Json::error_handler_t::replace);
  }
  return text;
}

}  // namespace ia::cli
