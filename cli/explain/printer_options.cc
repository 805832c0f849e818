#include "cli/explain/printer_options.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

#include "cli/explain/decision.h"
#include "cli/explain/explanation.h"
#include "cli/explain/unknown_values.h"
#include "cli/provenance/provenance.h"
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

[[nodiscard]] bool IsLoaded(const AnalyzeContext& analyzer, std::int32_t document) {
  return document < 0 || document >= IA_DOCUMENT_COUNT ||
         analyzer.documents[document].xml != nullptr;
}

// Why an update handler does not set the option: a document that the option depends on, or the one
// without which the handler does not run. Empty: none is missing.
[[nodiscard]] std::string MissingDocument(const AnalyzeContext& analyzer, const Update& update,
                                          const Option& option) {
  for (const InputKey* const input : InputsOf(option, analyzer.driver_name)) {
    if (IsLoaded(analyzer, input->document)) continue;
    return FormatRawValue(
        {.input = input, .key = input->key, .state = RawState::kNoDocument, .value = nullptr});
  }
  if (IsLoaded(analyzer, update.guard)) return "";
  return std::string(Analyze_Provenance_GetDocumentName(update.guard)) +
         " cannot be read: the document is not loaded";
}

// The names of these options are in the PPD alone: QVCas1MediaType, QVManualMediaType.
[[nodiscard]] bool IsMediaType(const std::string& keyword) {
  return keyword.starts_with("QV") && keyword.ends_with("MediaType");
}

[[nodiscard]] bool HasOption(const std::vector<PrinterOption>& options,
                             const std::string& keyword) {
  return std::ranges::find(options, keyword, &PrinterOption::keyword) != options.end();
}

[[nodiscard]] bool IsOf(const Option& option, const std::string& keyword) {
  return option.keyword != nullptr ? keyword == option.keyword : IsMediaType(keyword);
}

// Empty when no document is missing for the option, or no update handler sets it.
[[nodiscard]] std::string WhyNotSet(const AnalyzeContext& analyzer, const std::string& keyword) {
  for (const Update& update : UpdateHandlers()) {
    const auto option = std::ranges::find_if(
        update.options, [&](const Option& candidate) { return IsOf(candidate, keyword); });
    if (option == update.options.end()) continue;
    const std::string missing = MissingDocument(analyzer, update, *option);
    if (!missing.empty()) return missing;
  }
  return "";
}

}  // namespace

std::vector<PrinterOption> OptionsWithoutDocument(const AnalyzeContext& analyzer,
                                                  const std::vector<PrinterOption>& options,
                                                  const PpdOptions& ppd) {
  std::vector<PrinterOption> lacking;
  for (const auto& [keyword, of_ppd] : ppd) {
    if (HasOption(options, keyword)) continue;
    const std::string missing = WhyNotSet(analyzer, keyword);
    if (missing.empty()) continue;
    PrinterOption& option = lacking.emplace_back();
    option.keyword = keyword;
    option.default_choice = of_ppd.default_choice;
    option.missing_data = missing;
    option.is_in_ppd = true;
  }
  return lacking;
}

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
