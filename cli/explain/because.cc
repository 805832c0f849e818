#include "cli/explain/because.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"

namespace ia::cli {
namespace {

// In a sentence that is not to be longer than a line or two.
constexpr std::size_t kMaxNamed = 3;

[[nodiscard]] std::string RuleOf(const Explanation& why) {
  if (!why.row) return std::string(" (") + why.update->name + ")";
  if (why.row->handler == nullptr) return "";
  return std::string(" (") + why.row->handler + ", row " + PatternOf(*why.row) + ")";
}

// The first sentences, and the number of the others.
[[nodiscard]] std::string Join(const std::vector<std::string>& sentences, std::size_t max_named) {
  std::string text;
  for (std::size_t i = 0; i < std::min(sentences.size(), max_named); ++i) {
    text += (i > 0 ? "; " : "") + sentences[i];
  }
  if (sentences.size() > max_named) {
    text += "; and " + std::to_string(sentences.size() - max_named) + " more";
  }
  return text;
}

[[nodiscard]] std::string JoinValues(const std::vector<RawValue>& values) {
  std::vector<std::string> sentences;
  std::ranges::transform(values, std::back_inserter(sentences), FormatRawValue);
  return Join(sentences, kMaxNamed);
}

// Values by input: "Tray_list.xml list[] alias (3 values)".
[[nodiscard]] std::string JoinInputs(const std::vector<RawValue>& values) {
  std::map<const InputKey*, std::size_t> counts;
  for (const RawValue& raw : values) ++counts[raw.input];
  std::string text;
  for (const auto& [input, count] : counts) {
    text += (text.empty() ? "" : "; ") + Describe(*input);
    if (count > 1) text += " (" + std::to_string(count) + " values)";
  }
  return text;
}

[[nodiscard]] std::string EndingOf(const Explanation& why) {
  switch (why.origin) {
    case Origin::kDevice:
      return "";
    case Origin::kPpd:
      return "; from the PPD's list of values";
    case Origin::kDefault:
      break;
  }
  return "; default";
}

[[nodiscard]] std::string SentenceOf(const RejectedValue& rejected) {
  RawValue changed = rejected.raw;
  changed.value = rejected.replacement;
  changed.state = changed.value.is_null() ? RawState::kMissing : RawState::kPresent;
  return rejected.value.value_or("not set") + " if " + FormatRawValue(changed);
}

}  // namespace

std::string Because(const Explanation& why, const Decision& decision) {
  const std::string ending = RuleOf(why) + EndingOf(why);
  if (!why.missing_data.empty() && why.origin != Origin::kDevice) return why.missing_data + ending;
  if (why.row && why.row->handler == nullptr) {
    return "row " + PatternOf(*why.row) + " has no rule for this option; default";
  }
  if (!decision.is_known) {
    return std::to_string(why.raw_values.size()) + " values; which of them decide is not known" +
           ending;
  }
  if (!decision.needed.empty()) return JoinValues(decision.needed) + ending;
  if (decision.unmatched.empty()) {
    return (decision.empty_lists.empty() ? "no value that the device reports matters"
                                         : Join(decision.empty_lists, kMaxNamed) + ": no items") +
           ending;
  }
  const bool are_few = decision.unmatched.size() <= kMaxNamed;
  const bool is_copied = why.option->value_input != IA_NO_INPUT && why.origin == Origin::kDevice;
  return (are_few ? JoinValues(decision.unmatched) : JoinInputs(decision.unmatched)) +
         (is_copied ? "" : ": no rule matches") + ending;
}

std::string Instead(const Explanation& why, const Decision& decision) {
  std::vector<std::string> sentences = AllInstead(decision);
  const bool is_copied = why.option->value_input != IA_NO_INPUT;
  return is_copied && !sentences.empty() ? sentences.front() : Join(sentences, kMaxNamed);
}

std::vector<std::string> AllInstead(const Decision& decision) {
  std::vector<std::string> sentences;
  std::ranges::transform(decision.rejected, std::back_inserter(sentences), SentenceOf);
  return sentences;
}

std::string AlsoRead(const Explanation& why, const Decision& decision) {
  std::vector<RawValue> others;
  const bool are_unmatched_named = decision.needed.empty();
  for (const RawValue& raw : why.raw_values) {
    const bool is_model_code = raw.input->key == std::string_view("QVAnlz_DriverName");
    if (is_model_code || IsIn(decision.needed, raw)) continue;
    if (are_unmatched_named && IsIn(decision.unmatched, raw)) continue;
    others.push_back(raw);
  }
  return JoinInputs(others);
}

}  // namespace ia::cli
