#include "cli/explain/decision.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <list>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/explain/because.h"
#include "cli/explain/explanation.h"
#include "cli/explain/unknown_values.h"
#include "cli/printer/handles.h"
#include "cli/provenance/provenance.h"
#include "cli/provenance/raw_values.h"
#include "info_analyze/info_analyze.h"
#include "tests/cli/explain/random_printer.h"
#include "tests/support/temp_folder.h"

namespace {

using ia::cli::AllInstead;
using ia::cli::AnalyzerPtr;
using ia::cli::Because;
using ia::cli::BidiPtr;
using ia::cli::Decision;
using ia::cli::Explain;
using ia::cli::Explanation;
using ia::cli::FindDecisions;
using ia::cli::FindInput;
using ia::cli::FindUnknownValues;
using ia::cli::IsIn;
using ia::cli::OptionListPtr;
using ia::cli::RawValue;
using ia::cli::ReadRawValues;
using ia::cli::RejectedValue;
using ia::cli::StartOptionList;
using ia::cli::UnknownValue;
using ia::cli::UpdateHandlers;
using ia_test::MakePrinter;
using ia_test::MakeValue;
using ia_test::Random;
using ia_test::RandomPrinter;
using Json = nlohmann::ordered_json;

// The analysers of the sample PPDs.
class SampleAnalyzers {
 public:
  SampleAnalyzers() : library_(Bidi_Create(IA_TEST_DRIVER_FOLDER)) {
    std::filesystem::create_directory(root_ / "ppd");
    std::vector<std::string> queues;
    for (const auto& entry : std::filesystem::directory_iterator(IA_TEST_SOURCE "/examples")) {
      const std::string queue = entry.path().filename();
      const std::filesystem::path ppd = entry.path() / "ppd" / (queue + ".ppd");
      if (!std::filesystem::exists(ppd)) continue;
      std::filesystem::copy(ppd, root_ / "ppd");
      queues.push_back(queue);
    }
    setenv("CUPS_SERVER", "localhost", 1);
    setenv("CUPS_SERVERROOT", std::string(root_.path()).c_str(), 1);
    std::ranges::sort(queues);
    for (const std::string& queue : queues) {
      document_directories_.push_back(IA_TEST_SOURCE "/examples/" + queue + "/device-info");
      analyzers_.emplace_back(
          Analyze_Create(library_.get(), queue.c_str(), document_directories_.back().c_str()));
      EXPECT_NE(analyzers_.back(), nullptr) << queue;
    }
  }

  [[nodiscard]] const std::vector<AnalyzerPtr>& all() const { return analyzers_; }

 private:
  ia_test::TempFolder root_;
  BidiPtr library_;
  std::list<std::string> document_directories_;  // analysers refer to them
  std::vector<AnalyzerPtr> analyzers_;
};

const std::vector<AnalyzerPtr>& Analyzers() {
  static const SampleAnalyzers analyzers;
  return analyzers.all();
}

// Gives an analyser a printer's model code and documents while it lives.
class PrinterInPlace {
 public:
  PrinterInPlace(AnalyzeContext& analyzer, const RandomPrinter& printer)
      : analyzer_(analyzer), model_code_(printer.model_code), original_(analyzer) {
    analyzer_.driver_name = model_code_.data();
    for (std::size_t i = 0; i < printer.documents.size(); ++i) {
      const std::string xml = printer.Xml(i);
      QvXmlReader* const reader =
          Bidi_qvxmlwrapGet_New(analyzer_.bidi, xml.data(), static_cast<std::int32_t>(xml.size()));
      EXPECT_NE(reader, nullptr) << xml;
      analyzer_.documents[i] = {reader, printer.CountItems(i)};
    }
  }
  PrinterInPlace(const PrinterInPlace&) = delete;
  PrinterInPlace& operator=(const PrinterInPlace&) = delete;
  ~PrinterInPlace() {
    for (XmlData& document : analyzer_.documents) {
      Bidi_qvxmlwrapGet_Destroy(analyzer_.bidi, document.xml);
    }
    analyzer_ = original_;
  }

 private:
  AnalyzeContext& analyzer_;
  std::string model_code_;
  AnalyzeContext original_;
};

OptionListPtr Run(AnalyzeContext& analyzer, std::int32_t update) {
  OptionListPtr options = StartOptionList();
  Analyze_Provenance_RunUpdate(&analyzer, update, 1, options.get());
  return options;
}

// The last value of a keyword counts.
std::optional<std::string> ValueOf(AnalyzeContext& analyzer, std::int32_t update,
                                   const std::string& keyword) {
  const OptionListPtr options = Run(analyzer, update);
  std::optional<std::string> value;
  for (const OptionList* node = options->next; node != nullptr; node = node->next) {
    if (keyword == node->key) value = node->value;
  }
  return value;
}

std::optional<std::string> ValueOf(AnalyzeContext& analyzer, const RandomPrinter& printer,
                                   std::int32_t update, const std::string& keyword) {
  const PrinterInPlace in_place(analyzer, printer);
  return ValueOf(analyzer, update, keyword);
}

Json& ValueAt(RandomPrinter& printer, std::size_t document, const RawValue& raw) {
  Json& values = printer.documents.at(document);
  return (raw.item < 0 ? values : values["list"][static_cast<std::size_t>(raw.item)])[raw.key];
}

// The printer with one value replaced.
RandomPrinter Change(RandomPrinter printer, const RawValue& raw, const Json& value) {
  const auto document = static_cast<std::size_t>(raw.input->document);
  if (raw.input->type != IA_KEY_DICTIONARY) {
    ValueAt(printer, document, raw) = value;
    return printer;
  }
  Json& list = printer.documents[document]["list"];
  std::vector<Json> items(list.begin(), list.end());
  items.resize(value.get<std::size_t>(), Json::object());
  list = items;
  return printer;
}

// All that is said of an option, one sentence to a line.
std::string ReasonOf(const Explanation& why, const Decision& decision) {
  std::string text = Because(why, decision) + "\n";
  for (const RawValue& raw : decision.needed) text += "needed " + FormatRawValue(raw) + "\n";
  for (const RawValue& raw : decision.unmatched) text += "unmatched " + FormatRawValue(raw) + "\n";
  for (const std::string& sentence : AllInstead(decision)) text += "instead " + sentence + "\n";
  return text;
}

// One printer, one update handler, and the reasons of the options that it sets.
class Trial {
 public:
  Trial(Random& random, AnalyzeContext& analyzer, RandomPrinter printer, std::size_t update)
      : random_(random),
        analyzer_(analyzer),
        printer_(std::move(printer)),
        update_(static_cast<std::int32_t>(update)) {}

  void Check() {
    {
      const PrinterInPlace in_place(analyzer_, printer_);
      explanations_ = ExplainUpdate();
      decisions_ = FindDecisions(analyzer_, explanations_);
    }
    for (std::size_t i = 0; i < explanations_.size(); ++i) {
      SCOPED_TRACE(explanations_[i].keyword + "=" + explanations_[i].value + ", model " +
                   printer_.model_code);
      ASSERT_TRUE(decisions_[i].is_known);
      CheckNamed(explanations_[i], decisions_[i]);
      CheckUnnamed(explanations_[i], decisions_[i]);
    }
    if (!explanations_.empty()) CheckForeign(random_() % explanations_.size());
  }

 private:
  std::vector<Explanation> ExplainUpdate() {
    const OptionListPtr options = Run(analyzer_, update_);
    std::vector<Explanation> explanations = Explain(analyzer_, options->next);
    std::erase_if(explanations, [&](const Explanation& why) {
      return why.update != &UpdateHandlers()[static_cast<std::size_t>(update_)];
    });
    return explanations;
  }

  std::optional<std::string> ValueWith(const RawValue& raw, const Json& value,
                                       const std::string& keyword) {
    return ValueOf(analyzer_, Change(printer_, raw, value), update_, keyword);
  }

  // Each rejected value is what its change gives, and every named value has such a change.
  void CheckNamed(const Explanation& why, const Decision& decision) {
    for (const RejectedValue& rejected : decision.rejected) {
      EXPECT_NE(rejected.value, why.value);
      EXPECT_EQ(ValueWith(rejected.raw, rejected.replacement, why.keyword), rejected.value)
          << FormatRawValue(rejected.raw) << " instead " << rejected.replacement;
      EXPECT_TRUE(IsIn(decision.needed, rejected.raw) || IsIn(decision.unmatched, rejected.raw));
    }
    for (const RawValue& raw : decision.needed) EXPECT_TRUE(IsIn(why.raw_values, raw));
    for (const RawValue& raw : decision.unmatched) EXPECT_TRUE(IsIn(why.raw_values, raw));
  }

  // Another value of the option's inputs does not change it.
  void CheckUnnamed(const Explanation& why, const Decision& decision) {
    for (const RawValue& raw : why.raw_values) {
      const bool is_of_ppd = raw.input->document == IA_INPUT_OF_PPD;
      if (is_of_ppd || IsIn(decision.needed, raw) || IsIn(decision.unmatched, raw)) continue;
      if (raw.input->type == IA_KEY_DICTIONARY) continue;
      const Json other = MakeValue(random_, static_cast<std::size_t>(raw.input->document), raw.key);
      EXPECT_EQ(ValueWith(raw, other, why.keyword), why.value)
          << FormatRawValue(raw) << " instead " << other;
    }
  }

  // A value that is none of the option's inputs changes neither the option nor its reason.
  void CheckForeign(std::size_t number) {
    const Explanation& why = explanations_[number];
    RandomPrinter changed = MakePrinter(random_);
    for (std::size_t i = 0; i < changed.documents.size(); ++i) CopyItemCount(i, changed);
    for (const RawValue& raw : why.raw_values) {
      const bool is_of_ppd = raw.input->document == IA_INPUT_OF_PPD;
      if (is_of_ppd || raw.input->type == IA_KEY_DICTIONARY) continue;
      const auto document = static_cast<std::size_t>(raw.input->document);
      ValueAt(changed, document, raw) = ValueAt(printer_, document, raw);
    }
    changed.model_code = printer_.model_code;
    const PrinterInPlace in_place(analyzer_, changed);
    const std::vector<Explanation> explanations = ExplainUpdate();
    const auto again = std::ranges::find(explanations, why.keyword, &Explanation::keyword);
    ASSERT_NE(again, explanations.end()) << why.keyword;
    EXPECT_EQ(again->value, why.value);
    const Decision decision = FindDecisions(analyzer_, {*again}).front();
    EXPECT_EQ(ReasonOf(*again, decision), ReasonOf(why, decisions_[number])) << why.keyword;
  }

  // How many items a list has is not a value of its own.
  void CopyItemCount(std::size_t document, RandomPrinter& changed) const {
    if (!printer_.documents[document].contains("list")) return;
    const auto count = static_cast<std::size_t>(printer_.CountItems(document));
    Json& list = changed.documents[document]["list"];
    while (list.size() > count) list.erase(list.size() - 1);
    while (list.size() < count) list.push_back(Json::object());
  }

  Random& random_;
  AnalyzeContext& analyzer_;
  RandomPrinter printer_;
  std::int32_t update_;
  std::vector<Explanation> explanations_;
  std::vector<Decision> decisions_;
};

std::size_t NumberOf(const char* variable, std::size_t usual) {
  const char* const text = std::getenv(variable);
  return text != nullptr ? std::strtoull(text, nullptr, 10) : usual;
}

TEST(Decision, NamesWhatDecidesForRandomPrinters) {
  const std::size_t printers = NumberOf("IA_RANDOM_PRINTERS", 300);
  const std::size_t seed = NumberOf("IA_RANDOM_SEED", 1);
  for (std::size_t i = 0; i < printers; ++i) {
    SCOPED_TRACE("IA_RANDOM_SEED=" + std::to_string(seed + i));
    Random random(seed + i);
    AnalyzeContext& analyzer = *Analyzers()[random() % Analyzers().size()];
    RandomPrinter printer = MakePrinter(random);
    Trial(random, analyzer, std::move(printer), random() % UpdateHandlers().size()).Check();
    if (testing::Test::HasFailure()) break;
  }
}

// What the sample printer of an analyser reports.
RandomPrinter ReadPrinter(AnalyzeContext& analyzer) {
  const OptionListPtr options = StartOptionList();
  EXPECT_EQ(Analyze_Info_FromPrinter(&analyzer, options.get(), 0), 0);
  RandomPrinter printer = {.model_code = analyzer.driver_name, .documents = {}};
  for (std::size_t i = 0; i < printer.documents.size(); ++i) {
    const auto count = static_cast<std::size_t>(analyzer.documents[i].count);
    printer.documents[i]["list"] = std::vector<Json>(count, Json::object());
  }
  for (std::int32_t number = 0; FindInput(number) != nullptr; ++number) {
    const InputKey& input = *FindInput(number);
    if (input.document == IA_INPUT_OF_PPD || input.type == IA_KEY_DICTIONARY) continue;
    const auto document = static_cast<std::size_t>(input.document);
    for (const RawValue& raw : ReadRawValues(analyzer, input)) {
      ValueAt(printer, document, raw) = raw.value;
    }
  }
  return printer;
}

TEST(Decision, NamesWhatDecidesForTheSamplePrinters) {
  Random random(1);
  for (const AnalyzerPtr& analyzer : Analyzers()) {
    SCOPED_TRACE(analyzer->queue_name);
    const RandomPrinter printer = ReadPrinter(*analyzer);
    for (std::size_t update = 0; update < UpdateHandlers().size(); ++update) {
      for (int round = 0; round < 2; ++round) Trial(random, *analyzer, printer, update).Check();
    }
  }
}

// The decisions of the options that one update handler sets for a printer, by keyword.
class DecisionOf : public testing::Test {
 protected:
  static RandomPrinter EmptyPrinter() {
    RandomPrinter printer;
    for (Json& document : printer.documents) document = Json::object();
    return printer;
  }

  static std::pair<Explanation, Decision> Decide(const RandomPrinter& printer,
                                                 const std::string& keyword) {
    AnalyzeContext& analyzer = *Analyzers().front();
    const PrinterInPlace in_place(analyzer, printer);
    const OptionListPtr options = StartOptionList();
    for (std::size_t update = 0; update < UpdateHandlers().size(); ++update) {
      Analyze_Provenance_RunUpdate(&analyzer, static_cast<std::int32_t>(update), 1, options.get());
    }
    std::vector<Explanation> explanations = Explain(analyzer, options->next);
    std::erase_if(explanations, [&](const Explanation& why) { return why.keyword != keyword; });
    Decision decision = FindDecisions(analyzer, explanations).at(0);
    return {explanations.at(0), std::move(decision)};
  }

  static std::vector<std::string> Format(const std::vector<RawValue>& values) {
    std::vector<std::string> sentences;
    std::ranges::transform(values, std::back_inserter(sentences), ia::cli::FormatRawValue);
    return sentences;
  }

  static Json Trays(const std::vector<std::int32_t>& aliases) {
    Json trays = Json::array();
    for (const std::int32_t alias : aliases) trays.push_back({{"alias", Json::array({alias})}});
    return trays;
  }
};

TEST_F(DecisionOf, FirstOfSeveralTraysThatWouldEachDoIsNeeded) {
  RandomPrinter printer = EmptyPrinter();
  printer.model_code = "RA-Z2";  // alias 162 of any tray is a source
  printer.documents[IA_DOCUMENT_TRAY_LIST]["list"] = Trays({101, 162, 162});
  const auto [why, decision] = Decide(printer, "QVSrcOption");
  EXPECT_EQ(why.value, "OptCas1");
  EXPECT_EQ(Format(decision.needed),
            (std::vector<std::string>{"Tray_list.xml list[1] alias = [162]"}));
  EXPECT_TRUE(decision.rejected.empty());
}

TEST_F(DecisionOf, ModelWithoutARuleSaysSo) {
  RandomPrinter printer = EmptyPrinter();
  printer.model_code = "RA-W8";  // has no side paper deck
  printer.documents[IA_DOCUMENT_FINISHER_LIST]["list"] = {{{"name", "any"}}};
  const auto [why, decision] = Decide(printer, "QVCopyTray");
  EXPECT_EQ(why.value, "None");
  EXPECT_EQ(Because(why, decision), "row (other models) has no rule for this option; default");
}

TEST_F(DecisionOf, ListWithoutItemsIsNamed) {
  const auto [why, decision] = Decide(EmptyPrinter(), "QVFinisher");
  EXPECT_EQ(
      Because(why, decision),
      "Finisher_list.xml: no items (analyze_GetQVFinisherCommon, row (other models)); default");
}

TEST_F(DecisionOf, MoreValuesThanPrintersReportAreNotTried) {
  RandomPrinter printer = EmptyPrinter();
  printer.model_code = "RA-Z2";
  printer.documents[IA_DOCUMENT_TRAY_LIST]["list"] = Trays(std::vector<std::int32_t>(200, 162));
  const auto [why, decision] = Decide(printer, "QVSrcOption");
  EXPECT_FALSE(decision.is_known);
  EXPECT_EQ(
      Because(why, decision),
      "201 values; which of them decide is not known (analyze_GetQVSrcOptionOAK, row RA-Z2*)");
}

TEST(UnknownValues, AreThoseThatGiveNoOption) {
  RandomPrinter printer;
  for (Json& document : printer.documents) document = Json::object();
  printer.documents[IA_DOCUMENT_FINISHER_LIST]["list"] = {
      {{"name", "Vorel Bookled Finisher-W1"}, {"func", Json::array({"staple"})}},
      {{"name", "Vorel Document Insertion Unit-X9"}, {"func", Json::array({"inserter"})}},
      {{"name", "Vorel Booklet Finisher-W1"}}};
  printer.documents[IA_DOCUMENT_TRAY_LIST]["list"] = {
      {{"alias", Json::array({101})}, {"medium_type", 77}}, {{"alias", Json::array({250})}}};
  AnalyzeContext& analyzer = *Analyzers().front();
  const PrinterInPlace in_place(analyzer, printer);
  std::vector<std::string> sentences;
  for (const UnknownValue& unknown : FindUnknownValues(analyzer)) {
    sentences.push_back(Describe(unknown));
  }
  EXPECT_EQ(sentences,
            (std::vector<std::string>{
                "Finisher_list.xml list[0] name = \"Vorel Bookled Finisher-W1\": not in "
                "QVAnlz_FinisherName; the nearest known value is \"Vorel Booklet Finisher-X1\"",
                "Tray_list.xml list[1] alias = [250]: not in QVAnlz_InputTray or "
                "QVAnlz_SrcOption; the nearest known value is 161",
                "Tray_list.xml list[0] medium_type = 77: not in QV_Prot_MediaType; the nearest "
                "known value is 13"}));
}

}  // namespace
