// Properties that hold for any device report and any PPD.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/analyze/model/input_handlers.h"

// Trays are shown by a failing property.
static std::ostream& operator<<(std::ostream& out, const TrayEntry& tray) {
  return out << "{type " << tray.type << ", alias " << tray.alias << ", capacity " << tray.capacity
             << ", medium " << tray.medium_type << "}";
}

namespace ia_test {
namespace {

using Words = std::vector<std::string>;

bool Contains(const Words& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// Codes of the model tables, longer, shorter and unknown ones. Null: the PPD names no model.
rc::Gen<Text> AnyModel() {
  const auto code = rc::gen::element<std::string>(
      "RA-P9-1", "RA-P9", "RA-J0", "RA-G1", "RA-T7", "RA-X1", "RA-T9", "RA-G8", "RB-X1-1",
      "RB-X1-2", "RA-G7", "RA-G4", "RB-T9-1", "RB-T9-2", "RA-K8", "RA-H8", "RA-Z3", "RA-T6",
      "RA-X6", "RA-H5", "RA-Z2", "RC-Z9", "RA-Z4", "RC-T7", "RC-X1", "RA-Z5", "RC-J4", "RC-X5",
      "RC-W5", "RC-STD", "RA-H1", "RA-W8", "RB-X7", "RC-W0", "RA-T0", "RC-X8", "RA-H2", "R", "");
  const auto longer = rc::gen::map(
      rc::gen::pair(code, rc::gen::element<std::string>("", "-1", "-MLT-JP", "x")),
      [](const std::pair<std::string, std::string>& parts) { return parts.first + parts.second; });
  return rc::gen::weightedOneOf<Text>(
      {{30, rc::gen::map(longer, [](std::string text) { return Text(std::move(text)); })},
       {1, rc::gen::just(Text())}});
}

// Few and short, so that rules meet.
template <class Element>
rc::Gen<std::vector<Element>> Few(rc::Gen<Element> element, std::size_t most) {
  return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, most + 1), [element](std::size_t length) {
    return rc::gen::container<std::vector<Element>>(length, element);
  });
}

// A missing store, or flags of these names and values.
rc::Gen<std::optional<Flags>> AnyFlags(const Words& names, const Words& values) {
  const auto text = [](const Words& words) {
    return rc::gen::map(rc::gen::elementOf(words), [](std::string word) { return Text(word); });
  };
  return rc::gen::weightedOneOf<std::optional<Flags>>(
      {{9, rc::gen::map(Few(rc::gen::pair(text(names), text(values)), 8),
                        [](Flags flags) { return std::optional(std::move(flags)); })},
       {1, rc::gen::just(std::optional<Flags>())}});
}

// Paper sources ----------------------------------------------------------------------------------

const Words kSlots = {"Cas1", "Cas2", "Cas3",  "Cas4",   "Cas6", "Cas7",
                      "Cas8", "Cas9", "Cas10", "Manual", "",     "Deck"};
const Words kKeywords = {"QVCas1MediaType", "QVCas2MediaType", "QVManualMediaType"};
const Words kAliases = {"6", "7", "101", "102", "121", "122", "123", "124", "161", "162", "0", "x"};
const Words kMedia = {"Thick", "Thin", "Labels"};
const Words kSources = {"Cas1", "Cas10", "Cas2", "PaperDeck", "Deck"};

rc::Gen<TrayEntry> AnyTray() {
  return rc::gen::construct<TrayEntry>(
      rc::gen::element(0, 1, 3, 6, -1),
      rc::gen::element(0, 6, 7, 101, 102, 121, 122, 123, 124, 130, 161, 162, 164, 167),
      rc::gen::element(0, 1999, 2000), rc::gen::element(0, 1, 7));
}

bool IsSourceValue(const std::string& value) {
  static const Words documented = {"None",     "OptCas1",  "OptCas2",  "OptCas3", "OptCas4",
                                   "PODDeck1", "PODDeck2", "PODDeck3", "MltDeck1"};
  if (Contains(documented, value)) return true;
  std::set<std::string> listed;
  std::istringstream list(value);
  for (std::string name; std::getline(list, name, ',');) {
    if (!Contains(kSources, name) || !listed.insert(name).second) return false;
  }
  return !listed.empty();
}

bool IsAllowed(const OptionRow& row) {
  if (!row.keyword || !row.default_value) return false;
  const std::string value = row.value.value_or(*row.default_value);
  if (row.keyword == "QVSidePaperDeck") {
    return row.default_value == "None" && Contains({"None", "Small", "Large"}, value);
  }
  if (row.keyword == "QVSrcOption") return row.default_value == "None" && IsSourceValue(value);
  if (row.keyword == "QVEnvelopeFeeder") {
    return row.default_value == "False" && row.value && Contains({"True", "False"}, value);
  }
  return Contains(kKeywords, *row.keyword) && row.default_value == "PlainPaper" && row.value &&
         (value == "PlainPaper" || Contains(kMedia, value));
}

std::ptrdiff_t Occurrences(const OptionRows& rows, const char* keyword) {
  return std::count_if(rows.begin(), rows.end(),
                       [&](const OptionRow& row) { return row.keyword == keyword; });
}

class AnyInputOptions : public InputHandlers {
 protected:
  AnyInputOptions() {
    SetAnyFlags(&AnalyzeContext::input_tray_flags, kSlots, kAliases);
    SetAnyFlags(&AnalyzeContext::slot_media_info_flags, kSlots, kKeywords);
    SetAnyFlags(&AnalyzeContext::media_type_flags, kMedia, {"0", "1", "7", "x"});
    SetAnyFlags(&AnalyzeContext::src_option_flags, kSources, kAliases);
  }

  OptionRows RowsOf(Text model, const Trays& trays) {
    context_.driver_name = model ? model->data() : nullptr;
    const auto extra_trays = std::count_if(trays.begin(), trays.end(), [](const TrayEntry& tray) {
      return tray.type == 3 || tray.type == 6;
    });
    Trays exact = trays;
    exact.shrink_to_fit();
    exact.reserve(1);  // not null when there are none
    RowArray rows(trays.size());
    analyze_GetInputOptions(&context_, exact.data(), static_cast<std::int32_t>(trays.size()),
                            static_cast<std::int32_t>(extra_trays), rows.data(), &rows.count);
    context_.driver_name = nullptr;
    return rows.Appended();
  }

 private:
  void SetAnyFlags(FlagInfo* AnalyzeContext::* store, const Words& names, const Words& values) {
    if (auto flags = *AnyFlags(names, values)) SetFlags(store, *std::move(flags));
  }
};

RC_GTEST_FIXTURE_PROP(AnyInputOptions, AreOfTheKnownValuesAndFitTheRows, ()) {
  const Trays trays = *Few(AnyTray(), 9);
  const OptionRows rows = RowsOf(*AnyModel(), trays);
  RC_ASSERT(rows.size() <= trays.size() + 3);
  RC_ASSERT(std::all_of(rows.begin(), rows.end(), IsAllowed));
  RC_ASSERT(Occurrences(rows, "QVSrcOption") == 1);
  RC_ASSERT(Occurrences(rows, "QVSidePaperDeck") <= 1);
  RC_ASSERT(Occurrences(rows, "QVEnvelopeFeeder") <= 1);
}

RC_GTEST_FIXTURE_PROP(AnyInputOptions, AreTheSameForTheSameReport, ()) {
  const Trays trays = *Few(AnyTray(), 9);
  const Text model = *AnyModel();
  RC_ASSERT(RowsOf(model, trays) == RowsOf(model, trays));
}

// Finishers --------------------------------------------------------------------------------------

const Words kAccessories = {
    "Vorel Inner 2Way Tray-B1",   "Vorel 3 Way Unit-D1",       "Vorel 3 Way Unit-D2",
    "Vorel Inner 2Way Tray-R1",   "Vorel Inner 2 Way Tray-S1", "Vorel Inner 2way Tray-N1",
    "Vorel Inner 2way Tray",      "Vorel Inner 2way Tra",      "Vorel Finisher-Q1",
    "Vorel Finisher-A1",          "Vorel Finisher-T1",         "Vorel Saddle Finisher-T2",
    "Vorel Finisher-U3",          "Vorel Saddle Finisher-U4",  "Vorel Finisher-C1",
    "Vorel Finisher-U1/U3",       "Vorel Inner Finisher-F1",   "Vorel Inner Finisher-W1",
    "Vorel Inner Shift Sorter-D1"};
const Words kFinisherNames = {"Vorel", "Vorel Inner", "Vorel Finisher-U3", "Vorel Finisher-A1 x"};
const Words kFinisherValues = {"FINA", "FINB", ""};

rc::Gen<Unit> AnyUnit() {
  const auto name = rc::gen::map(
      rc::gen::pair(rc::gen::elementOf(kAccessories), rc::gen::element<std::string>("", " x")),
      [](const std::pair<std::string, std::string>& parts) {
        return Text(parts.first + parts.second);
      });
  return rc::gen::construct<Unit>(
      rc::gen::inRange(-1, 6),
      rc::gen::weightedOneOf<Text>({{12, name}, {1, rc::gen::element(Text(""), Text())}}));
}

rc::Gen<Aliases> AnyAliases() {
  return Few(rc::gen::element(0, 100, 101, 102, 105, 106, 118, 119, 120, 121, 122), 4);
}

class AnyFinisherOptions : public testing::Test {
 protected:
  std::vector<Value> ValuesOf(Text model, const Units& units, const Aliases& aliases) {
    context_.driver_name = model ? model->data() : nullptr;
    const FinisherReport report(units, aliases);
    FinisherRows rows;
    analyze_GetFinisherOption(&context_, report.finishers(), report.count(), report.aliases(),
                              report.alias_count(), rows.get());
    context_.driver_name = nullptr;
    for (std::size_t i = 0; i < units.size(); ++i) {
      const FinisherEntry& finisher = report.finishers()[i];
      EXPECT_EQ(finisher.binnum, units[i].bins);
      EXPECT_EQ(TextOf(finisher.name), units[i].name);
    }
    return rows.values();
  }

  AnyFinisherOptions() {
    if (flags_) context_.finisher_name_flags = store_.get();
  }

  const std::optional<Flags> flags_ = *AnyFlags(kFinisherNames, kFinisherValues);
  FlagStore store_{flags_.value_or(Flags())};
  AnalyzeContext context_ = {};
};

bool IsOneOf(const Value& value, const Words& words) { return !value || Contains(words, *value); }

RC_GTEST_FIXTURE_PROP(AnyFinisherOptions, AreOfTheKnownValues, ()) {
  const auto values = ValuesOf(*AnyModel(), *Few(AnyUnit(), 5), *AnyAliases());
  RC_ASSERT(IsOneOf(
      values[0], {"FINA", "FINB", "", "None", "IN2TRAY", "IN2TRAYF1", "IN2TRAYSFING1", "FINJ1"}));
  RC_ASSERT(IsOneOf(values[1], {"CPTU1"}));
  RC_ASSERT(IsOneOf(values[2], {"FNTU1", "EXTU1"}));
}

RC_GTEST_FIXTURE_PROP(AnyFinisherOptions, AreTheSameForTheSameReport, ()) {
  const Text model = *AnyModel();
  const Units units = *Few(AnyUnit(), 5);
  const Aliases aliases = *AnyAliases();
  RC_ASSERT(ValuesOf(model, units, aliases) == ValuesOf(model, units, aliases));
}

RC_GTEST_FIXTURE_PROP(AnyFinisherOptions, AreNotChangedByANamelessLastUnit, ()) {
  const Text model = *AnyModel();
  Units units =
      *rc::gen::suchThat(Few(AnyUnit(), 5), [](const Units& any) { return !any.empty(); });
  const Aliases aliases = *AnyAliases();
  const auto values = ValuesOf(model, units, aliases);
  units.push_back({*rc::gen::inRange(-1, 6), std::nullopt});
  RC_ASSERT(ValuesOf(model, units, aliases) == values);
}

RC_GTEST_FIXTURE_PROP(AnyFinisherOptions, AreTheDefaultsWithoutUnits, ()) {
  const std::vector<Value> defaults(3);
  RC_ASSERT(ValuesOf(*AnyModel(), {}, *AnyAliases()) == defaults);
}

}  // namespace
}  // namespace ia_test
