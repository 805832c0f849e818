#include "cli/explain/explanation.h"

#include <strings.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/printer/handles.h"
#include "cli/provenance/provenance.h"
#include "info_analyze/flag_info.h"

namespace ia::cli {
namespace {

[[nodiscard]] bool IsSameKeyword(const char* left, const char* right) {
  return strcasecmp(left, right) == 0;
}

using FlagsPtr = std::unique_ptr<FlagInfo, Releaser<zflaginfo_term>>;

// Renames the PPD's media types while it lives, so that a medium that the PPD names differs from
// the default.
class UnknownMediaTypes {
 public:
  explicit UnknownMediaTypes(AnalyzeContext& analyzer)
      : analyzer_(analyzer), names_(analyzer.media_type_flags) {
    if (names_ == nullptr) return;
    marked_.reset(zflaginfo_init("", names_->capacity));
    if (!marked_) throw std::bad_alloc();
    for (std::int32_t i = 0; i < names_->count; ++i) Mark(names_->entries[i]);
    analyzer_.media_type_flags = marked_.get();
  }
  UnknownMediaTypes(const UnknownMediaTypes&) = delete;
  UnknownMediaTypes& operator=(const UnknownMediaTypes&) = delete;
  ~UnknownMediaTypes() { analyzer_.media_type_flags = names_; }

 private:
  void Mark(const FlagPair& pair) {
    const std::string text = std::string("known ") + pair.name + ":" + pair.value;
    if (zflaginfo_get(text.c_str(), marked_.get()) != 0) throw std::bad_alloc();
  }

  AnalyzeContext& analyzer_;
  FlagInfo* names_;
  FlagsPtr marked_;
};

// What one update handler sets.
[[nodiscard]] OptionListPtr RunUpdate(AnalyzeContext& analyzer, std::int32_t update,
                                      bool with_defaults) {
  OptionListPtr options = StartOptionList();
  Analyze_Provenance_RunUpdate(&analyzer, update, with_defaults ? 1 : 0, options.get());
  return options;
}

[[nodiscard]] const char* FindValue(const OptionList* options, const char* keyword) {
  for (const OptionList* node = options; node != nullptr; node = node->next) {
    if (IsSameKeyword(node->key, keyword)) return node->value;
  }
  return nullptr;
}

// The record of a keyword; media types have one together.
[[nodiscard]] const Option* FindOption(const Update& update, const char* keyword) {
  const Option* media_types = nullptr;
  for (const Option& option : update.options) {
    if (option.keyword == nullptr) media_types = &option;
    if (option.keyword != nullptr && IsSameKeyword(option.keyword, keyword)) return &option;
  }
  return media_types;
}

// What an update handler sets, with and without default values.
struct UpdateRun {
  const Update* update;
  OptionListPtr all;
  OptionListPtr given;
};

[[nodiscard]] std::vector<UpdateRun> RunUpdates(AnalyzeContext& analyzer) {
  std::vector<UpdateRun> runs;
  for (const Update& update : UpdateHandlers()) {
    const auto number = static_cast<std::int32_t>(runs.size());
    OptionListPtr all = RunUpdate(analyzer, number, true);
    const UnknownMediaTypes unknown(analyzer);
    runs.push_back({&update, std::move(all), RunUpdate(analyzer, number, false)});
  }
  return runs;
}

// The last that sets a keyword decides.
[[nodiscard]] const UpdateRun* FindRun(const std::vector<UpdateRun>& runs, const char* keyword) {
  const auto hit = std::find_if(runs.rbegin(), runs.rend(), [&](const UpdateRun& run) {
    return FindValue(run.all->next, keyword) != nullptr;
  });
  return hit != runs.rend() ? &*hit : nullptr;
}

// Whether a document has a value that was read.
[[nodiscard]] bool IsReported(const std::vector<RawValue>& raw_values, const InputKey* input) {
  return std::ranges::any_of(raw_values, [&](const RawValue& raw) {
    return raw.is_present() && raw.input->document != IA_INPUT_OF_PPD &&
           (input == nullptr || raw.input == input);
  });
}

[[nodiscard]] bool IsGiven(const UpdateRun& run, const Option& option,
                           const Explanation& explanation) {
  const char* const given = FindValue(run.given->next, explanation.keyword.c_str());
  if (option.family != IA_FAMILY_MEDIA_TYPE) return given != nullptr;
  return given != nullptr && option.default_value != std::string_view(given);
}

[[nodiscard]] Origin OriginOf(const UpdateRun& run, const Explanation& explanation) {
  const Option& option = *explanation.option;
  if (option.value_input == IA_NO_INPUT) {
    return IsGiven(run, option, explanation) ? Origin::kDevice : Origin::kDefault;
  }
  const InputKey* const input = FindInput(option.value_input);
  if (IsReported(explanation.raw_values, input)) return Origin::kDevice;
  if (explanation.value == option.default_value) return Origin::kDefault;
  return IsReported(explanation.raw_values, nullptr) ? Origin::kDevice : Origin::kPpd;
}

[[nodiscard]] bool IsArray(const InputKey& input) {
  return input.type == IA_KEY_LONG_ELEMENTS || input.type == IA_KEY_STRING_ELEMENTS;
}

// Whether the item of a missing array has the element in a different array.
[[nodiscard]] bool HasBeside(const std::vector<RawValue>& raw_values, const RawValue& missing,
                             std::string_view array, const char* element) {
  return std::ranges::any_of(raw_values, [&](const RawValue& raw) {
    return raw.is_present() && raw.input->document == missing.input->document &&
           raw.item == missing.item && raw.input->key == array &&
           std::ranges::find(raw.value, element) != raw.value.end();
  });
}

// An empty list is an answer, and so is an array that is missing: a unit without functions has
// none. But each tray and bin has a code, and a unit that punches makes some type of holes.
[[nodiscard]] bool IsAnswer(const RawValue& missing, const std::vector<RawValue>& raw_values) {
  if (missing.input->type == IA_KEY_DICTIONARY) return true;
  const std::string_view key = missing.input->key;
  if (key == "detail_func") return !HasBeside(raw_values, missing, "func", "punch");
  return IsArray(*missing.input) && key != "alias";
}

[[nodiscard]] bool IsLacking(const RawValue& raw, const std::vector<RawValue>& raw_values) {
  if (raw.input->document == IA_INPUT_OF_PPD || raw.is_present()) return false;
  return raw.state != RawState::kMissing || !IsAnswer(raw, raw_values);
}

// An update handler without one of its documents sets other options differently, too.
[[nodiscard]] std::string MissingData(const AnalyzeContext& analyzer, const Explanation& why) {
  const auto lacking = std::ranges::find_if(
      why.raw_values, [&](const RawValue& raw) { return IsLacking(raw, why.raw_values); });
  if (lacking != why.raw_values.end()) return FormatRawValue(*lacking);
  for (const Option& option : why.update->options) {
    for (const InputKey* const input : InputsOf(option, analyzer.driver_name)) {
      if (input->document == IA_INPUT_OF_PPD) continue;
      if (analyzer.documents[input->document].xml != nullptr) continue;
      return FormatRawValue(
          {.input = input, .key = input->key, .state = RawState::kNoDocument, .value = nullptr});
    }
  }
  return "";
}

[[nodiscard]] Explanation ExplainOption(const AnalyzeContext& analyzer, const OptionList& node,
                                        const UpdateRun& run) {
  Explanation why = {.keyword = node.key,
                     .value = node.value,
                     .origin = Origin::kDefault,
                     .update = run.update,
                     .option = FindOption(*run.update, node.key),
                     .row = {},
                     .raw_values = {},
                     .missing_data = ""};
  if (why.option->family != IA_FAMILY_NONE) {
    why.row = FindRow(why.option->family, analyzer.driver_name);
  }
  for (const InputKey* const input : InputsOf(*why.option, analyzer.driver_name)) {
    std::ranges::move(ReadRawValues(analyzer, *input), std::back_inserter(why.raw_values));
  }
  why.origin = OriginOf(run, why);
  why.missing_data = MissingData(analyzer, why);
  return why;
}

}  // namespace

std::vector<Explanation> Explain(AnalyzeContext& analyzer, const OptionList* options) {
  const std::vector<UpdateRun> runs = RunUpdates(analyzer);
  std::vector<Explanation> explanations;
  for (const OptionList* node = options; node != nullptr; node = node->next) {
    const UpdateRun* const run = FindRun(runs, node->key);
    if (run == nullptr) continue;  // out of memory
    explanations.push_back(ExplainOption(analyzer, *node, *run));
  }
  return explanations;
}

}  // namespace ia::cli
