#include "cli/explain/printer_options.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"
#include "cli/explain/unknown_values.h"
#include "cli/provenance/raw_values.h"

namespace ia::cli {
namespace {

[[nodiscard]] PrinterOption OptionOf(const Explanation& why, const PpdOptions& ppd) {
  PrinterOption option;
  option.keyword = why.keyword;
  option.value = why.value;
  option.missing_data = why.missing_data;
  const auto in_ppd = ppd.find(option.keyword);
  if (in_ppd == ppd.end()) return option;
  option.is_in_ppd = true;
  option.keyword_text = in_ppd->second.text;
  option.default_choice = in_ppd->second.default_choice;
  option.is_choice = in_ppd->second.HasChoice(option.value);
  for (const PpdChoice& choice : in_ppd->second.choices) {
    if (choice.name == option.value) option.value_text = choice.text;
  }
  return option;
}

[[nodiscard]] bool MayDecide(const UnknownValue& unknown, const Explanation& why,
                             const Decision& decision) {
  if (!decision.is_known) return IsIn(why.raw_values, unknown.raw);
  return IsIn(decision.needed, unknown.raw) || IsIn(decision.unmatched, unknown.raw);
}

// What nothing knows may be what the printer has, under a different name.
void AddUnknownValues(AnalyzeContext& analyzer, std::vector<Explanation>& explanations) {
  const std::vector<UnknownValue> unknown_values = FindUnknownValues(analyzer);
  if (unknown_values.empty()) return;
  const std::vector<Decision> decisions = FindDecisions(analyzer, explanations);
  for (std::size_t i = 0; i < explanations.size(); ++i) {
    const auto unknown = std::ranges::find_if(unknown_values, [&](const UnknownValue& value) {
      return MayDecide(value, explanations[i], decisions[i]);
    });
    const bool is_complete = explanations[i].missing_data.empty();
    if (is_complete && unknown != unknown_values.end()) {
      explanations[i].missing_data = Describe(*unknown);
    }
  }
}

}  // namespace

std::vector<PrinterOption> OptionsOf(AnalyzeContext& analyzer, const OptionList* options,
                                     const PpdOptions& ppd) {
  std::vector<Explanation> explanations = Explain(analyzer, options);
  AddUnknownValues(analyzer, explanations);
  std::vector<PrinterOption> of_printer;
  std::ranges::transform(explanations, std::back_inserter(of_printer),
                         [&](const Explanation& why) { return OptionOf(why, ppd); });
  return of_printer;
}

}  // namespace ia::cli
