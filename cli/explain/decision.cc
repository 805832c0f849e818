#include "cli/explain/decision.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <ranges>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/explain/experiment.h"
#include "cli/explain/explanation.h"
#include "cli/provenance/known_values.h"
#include "cli/provenance/provenance.h"

namespace ia::cli {
namespace {

using Json = nlohmann::ordered_json;

// More than printers report. Each value is tried with all of its replacements.
constexpr std::size_t kMaxValues = 400;

// Without an element, or with a known one before, after or instead of the others.
void AddReplacementsOfArray(const Json& current, const std::vector<Json>& known,
                            std::vector<Json>& replacements) {
  replacements.push_back(Json::array());
  for (std::size_t i = 0; i < current.size(); ++i) {
    Json shorter = current;
    shorter.erase(i);
    replacements.push_back(std::move(shorter));
  }
  for (const Json& element : known) {
    replacements.push_back(Json::array({element}));
    Json longer = current.is_array() ? current : Json::array();
    longer.push_back(element);
    replacements.push_back(longer);
    std::ranges::rotate(longer, longer.end() - 1);
    replacements.push_back(std::move(longer));
  }
}

void AddReplacementsOfNumber(const Json& current, const std::vector<Json>& known,
                             std::vector<Json>& replacements) {
  constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
  const std::int32_t number = current.is_number() ? current.get<std::int32_t>() : 0;
  replacements.insert(replacements.end(), known.begin(), known.end());
  for (const std::int32_t other : {0, 1, kLargest}) replacements.emplace_back(other);
  replacements.emplace_back(number < kLargest ? number + 1 : number - 1);
}

// What the device could report instead of a value, absence first.
[[nodiscard]] std::vector<Json> ReplacementsOf(const RawValue& raw,
                                               const std::vector<Json>& known) {
  std::vector<Json> replacements = {nullptr};
  switch (raw.input->type) {
    case IA_KEY_LONG:
      AddReplacementsOfNumber(raw.value, known, replacements);
      break;
    case IA_KEY_STRING:
      replacements.insert(replacements.end(), known.begin(), known.end());
      replacements.emplace_back("other");
      break;
    case IA_KEY_DICTIONARY:
      replacements = known;
      break;
    default:
      AddReplacementsOfArray(raw.value, known, replacements);
  }
  std::erase(replacements, raw.is_present() ? raw.value : Json(nullptr));
  return replacements;
}

// The value of a keyword; none when the update handler does not set it.
[[nodiscard]] std::optional<std::string> Find(const OptionValues& values,
                                              const std::string& keyword) {
  const auto hit = values.find(keyword);
  return hit != values.end() ? std::optional(hit->second) : std::nullopt;
}

[[nodiscard]] bool DependsOn(const Explanation& why, const InputKey& input) {
  return std::ranges::find(why.raw_values, &input, &RawValue::input) != why.raw_values.end();
}

// All options of one update handler, because each run of it sets all of them.
class UpdateDecisions {
 public:
  UpdateDecisions(AnalyzeContext& analyzer, std::int32_t update)
      : analyzer_(analyzer), experiment_(analyzer, update) {}

  [[nodiscard]] bool AreKnown() {
    return values().size() <= kMaxValues && experiment_.IsFaithful();
  }

  void Add(const Explanation& why, Decision& decision) {
    decision.is_known = true;
    questions_.push_back({&why, &decision, {}, {}});
  }

  void Run() {
    unchanged_ = experiment_.Run({}).value_or(OptionValues());
    for (std::size_t i = 0; i < values().size(); ++i) Replace(i);
    for (Question& question : questions_) {
      FindFirstOfSeveral(question);
      question.decision->empty_lists = experiment_.FindEmptyLists();
      for (const std::size_t i : question.needed) question.decision->needed.push_back(values()[i]);
      for (const std::size_t i : question.changing) {
        if (!question.needed.contains(i)) question.decision->unmatched.push_back(values()[i]);
      }
    }
  }

 private:
  struct Question {
    const Explanation* why;
    Decision* decision;
    std::set<std::size_t> changing;  // indices of values
    std::set<std::size_t> needed;
  };

  [[nodiscard]] const std::vector<RawValue>& values() const { return experiment_.values(); }

  // Documents that cannot be tried change nothing.
  [[nodiscard]] bool IsUnchanged(const Question& question,
                                 const std::optional<OptionValues>& changed) const {
    if (!changed) return true;
    return Find(*changed, question.why->keyword) == Find(unchanged_, question.why->keyword);
  }

  void Replace(std::size_t index) {
    const InputKey* const input = values()[index].input;
    const auto [known, is_new] = known_.try_emplace(input);
    if (is_new) known->second = KnownValues(analyzer_, *input);
    for (const Json& replacement : ReplacementsOf(values()[index], known->second)) {
      const auto changed = experiment_.Run({{index, replacement}});
      if (!changed) continue;
      for (Question& question : questions_) Compare(*changed, index, replacement, question);
    }
  }

  void Compare(const OptionValues& changed, std::size_t index, const Json& replacement,
               Question& question) {
    const RawValue& raw = values()[index];
    const bool is_count = raw.input->type == IA_KEY_DICTIONARY;
    if (IsUnchanged(question, changed) || (is_count && !DependsOn(*question.why, *raw.input))) {
      return;
    }
    question.changing.insert(index);
    if (is_count || replacement.is_null()) question.needed.insert(index);
    const std::optional<std::string> value = Find(changed, question.why->keyword);
    std::vector<RejectedValue>& rejected = question.decision->rejected;
    if (std::ranges::find(rejected, value, &RejectedValue::value) != rejected.end()) return;
    rejected.push_back({value, raw, replacement});
  }

  // Where several values would each do, none is needed. Then the first of them are named: those
  // without which the option changes when all later ones are missing, too.
  void FindFirstOfSeveral(Question& question) {
    Changes others;
    for (std::size_t i = 0; i < values().size(); ++i) {
      const bool is_count = values()[i].input->type == IA_KEY_DICTIONARY;
      if (is_count || !values()[i].is_present() || question.changing.contains(i)) continue;
      others[i] = nullptr;
    }
    if (IsUnchanged(question, experiment_.Run(others))) return;
    Changes missing;
    for (const auto& other : others | std::views::reverse) {
      missing.insert(other);
      if (IsUnchanged(question, experiment_.Run(missing))) continue;
      missing.erase(other.first);
      question.needed.insert(other.first);
    }
  }

  AnalyzeContext& analyzer_;
  Experiment experiment_;
  OptionValues unchanged_;
  std::map<const InputKey*, std::vector<Json>> known_;
  std::vector<Question> questions_;
};

}  // namespace

std::vector<Decision> FindDecisions(AnalyzeContext& analyzer,
                                    const std::vector<Explanation>& explanations) {
  std::vector<Decision> decisions(explanations.size());
  for (const Update& update : UpdateHandlers()) {
    const auto is_of_update = [&](const Explanation& why) { return why.update == &update; };
    if (std::ranges::none_of(explanations, is_of_update)) continue;
    const auto number = &update - UpdateHandlers().data();
    UpdateDecisions of_update(analyzer, static_cast<std::int32_t>(number));
    if (!of_update.AreKnown()) continue;
    for (std::size_t i = 0; i < explanations.size(); ++i) {
      if (is_of_update(explanations[i])) of_update.Add(explanations[i], decisions[i]);
    }
    of_update.Run();
  }
  return decisions;
}

}  // namespace ia::cli
