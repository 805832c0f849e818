// The model tables as callers see them, and that handlers read their inputs and nothing else: each
// is asked about many printers, with one input changed at a time.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "analyze/inputs.h"
#include "info_analyze/model_options.h"
#include "info_analyze/provenance.h"
#include "tests/analyze/model/model_tables.h"

namespace ia_test {
namespace {

using ia::Input;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

// Tables -----------------------------------------------------------------------------------------

TEST(ModelMatrix, CodeOfARowSelectsThatRow) {
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    const auto rows = RowsOf(family);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      EXPECT_EQ(Analyze_Provenance_FindModelRow(family, rows[i].code), static_cast<std::int32_t>(i))
          << family << " " << rows[i].code;
    }
  }
}

TEST(ModelMatrix, FirstRowInTableOrderWins) {
  EXPECT_EQ(HandlerOf(IA_FAMILY_FINISHER, "RA-P9-1"), "analyze_GetQVFinisher_FIR");
  EXPECT_EQ(HandlerOf(IA_FAMILY_FINISHER, "RA-P9-2"), "analyze_GetQVFinisher_ASPEN");
  EXPECT_EQ(HandlerOf(IA_FAMILY_COPY_TRAY, "RA-P9-10"), "analyze_GetQVCopyTray_FIR");
}

TEST(ModelMatrix, OtherModelsHaveTheCommonHandlers) {
  EXPECT_EQ(HandlerOf(IA_FAMILY_FINISHER, "ZZ"), "analyze_GetQVFinisherCommon");
  EXPECT_EQ(HandlerOf(IA_FAMILY_COPY_TRAY, "ZZ"), "");
  EXPECT_EQ(HandlerOf(IA_FAMILY_FIN_TRAY, "ZZ"), "");
  EXPECT_EQ(HandlerOf(IA_FAMILY_SIDE_PAPER_DECK, "ZZ"), "analyze_GetQVSidePaperDeckCommon");
  EXPECT_EQ(HandlerOf(IA_FAMILY_SOURCE_OPTION, "ZZ"), "analyze_GetQVSrcOptionCommon");
  EXPECT_EQ(HandlerOf(IA_FAMILY_MEDIA_TYPE, "ZZ"), "analyze_GetQVXXXMediaTypeCommon");
  EXPECT_EQ(HandlerOf(IA_FAMILY_ENVELOPE_FEEDER, "ZZ"), "");
  EXPECT_EQ(HandlerOf(IA_FAMILY_PUNCHER, "ZZ"), "analyze_GetPuncherOptionString");
  EXPECT_EQ(HandlerOf(IA_FAMILY_FINISHING_FUNCTION, "ZZ"),
            "analyze_GetFinishingFunctionOptionStringCommon");
  EXPECT_EQ(HandlerOf(IA_FAMILY_EXTRA_OPTIONS, "ZZ"), "");
}

TEST(ModelMatrix, NoCodeIsThatOfOtherModels) {
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    EXPECT_EQ(Analyze_Provenance_FindModelRow(family, nullptr), IA_OTHER_MODELS) << family;
    EXPECT_STREQ(RowOf(family, IA_OTHER_MODELS).code, "") << family;
    EXPECT_EQ(RowOf(family, IA_OTHER_MODELS).whole_code, 0) << family;
  }
}

TEST(ModelMatrix, ExtraOptionsAreThoseOfOneWholeCode) {
  EXPECT_EQ(Analyze_Provenance_FindModelRow(IA_FAMILY_EXTRA_OPTIONS, "RA-Z5"), 0);
  EXPECT_EQ(Analyze_Provenance_FindModelRow(IA_FAMILY_EXTRA_OPTIONS, "RA-Z5-1"), IA_OTHER_MODELS);
  EXPECT_EQ(RowOf(IA_FAMILY_EXTRA_OPTIONS, 0).whole_code, 1);
  EXPECT_EQ(RowOf(IA_FAMILY_EXTRA_OPTIONS, IA_OTHER_MODELS).input_count, 0);
  EXPECT_EQ(RowOf(IA_FAMILY_FINISHER, 0).whole_code, 0);
}

TEST(ModelMatrix, OnlySlotsThatAreEmptyHaveNoHandler) {
  std::set<std::string> empty;
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    if (family == IA_FAMILY_ENVELOPE_FEEDER) continue;
    for (const ModelRow& row : RowsOf(family)) {
      if (row.handler == nullptr) empty.insert(std::to_string(family) + " " + row.code);
    }
  }
  EXPECT_THAT(empty, UnorderedElementsAre("3 RA-W8", "3 RA-T0"));
  std::vector<std::string> feeders;
  for (const ModelRow& row : RowsOf(IA_FAMILY_ENVELOPE_FEEDER)) {
    if (row.handler != nullptr) feeders.emplace_back(row.code);
  }
  EXPECT_THAT(feeders, ElementsAre("RC-W0"));
}

TEST(ModelMatrix, RowsOutOfRangeLeaveTheRecordAlone) {
  const ModelRow kept = {.code = "kept", .handler = "kept", .whole_code = 7, .input_count = 9};
  ModelRow row = kept;
  const auto expect_none = [&](std::int32_t family, std::int32_t index) {
    EXPECT_EQ(Analyze_Provenance_GetModelRow(family, index, &row, sizeof row), 0)
        << family << " " << index;
    EXPECT_EQ(Analyze_Provenance_GetModelRowInput(family, index, 0), IA_NO_INPUT)
        << family << " " << index;
  };
  for (const std::int32_t family : {-1, int{IA_FAMILY_COUNT}, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(Analyze_Provenance_FindModelRow(family, "RA-P9"), IA_OTHER_MODELS) << family;
    expect_none(family, 0);
  }
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    const auto end = static_cast<std::int32_t>(RowsOf(family).size());
    for (const std::int32_t index : {-2, end, INT32_MAX, INT32_MIN}) expect_none(family, index);
    EXPECT_EQ(Analyze_Provenance_GetModelRow(family, 0, nullptr, sizeof row), 0) << family;
  }
  EXPECT_EQ(row.code, kept.code);
  EXPECT_EQ(row.input_count, kept.input_count);
}

TEST(ModelMatrix, InputsRiseAndEndWithTheirCount) {
  for (std::int32_t family = 0; family < IA_FAMILY_COUNT; ++family) {
    const auto rows = static_cast<std::int32_t>(RowsOf(family).size());
    for (std::int32_t row = IA_OTHER_MODELS; row < rows; ++row) {
      std::int32_t last = -1;
      const std::int32_t count = RowOf(family, row).input_count;
      for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t input = Analyze_Provenance_GetModelRowInput(family, row, i);
        EXPECT_GT(input, last) << family << " " << row;
        last = input;
      }
      for (const std::int32_t index : {-1, count, INT32_MAX, INT32_MIN}) {
        EXPECT_EQ(Analyze_Provenance_GetModelRowInput(family, row, index), IA_NO_INPUT);
      }
    }
  }
}

// What handlers read -----------------------------------------------------------------------------

// Picks from what makes a difference to some handler.
class Dice {
 public:
  int Below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine_); }
  template <class T>
  const T& Of(const std::vector<T>& pool) {
    return pool[static_cast<std::size_t>(Below(static_cast<int>(pool.size())))];
  }

 private:
  std::mt19937 engine_{20261121};
};

const std::vector<std::string> kNames = {
    "Vorel Inner 2Way Tray-B1",    "Vorel Finisher-Q1",           "Vorel Inner 2 Way Tray-S1",
    "Vorel Finisher-A1",           "Vorel Finisher-T1",           "Vorel Saddle Finisher-U4",
    "Vorel Finisher-U1/U3",        "Vorel Inner Finisher-F1",     "Vorel Inner Finisher-W1",
    "Vorel Inner 2way Tray-N1",    "Vorel 3 Way Unit-D1",         "Vorel Inner 2Way Tray-R1",
    "Vorel Saddle Finisher-U2/U4", "Vorel Inner Shift Sorter-D1", "Other"};
const std::vector<std::string> kFinisherTexts = {
    "Vorel Finisher-Q1:A,Other:B,Vorel Inner 2:C,Vorel Finisher-U1:D,Vorel 3:F",
    "Vorel Inner:D,Other:E,Vorel Finisher:G"};
const std::vector<std::int32_t> kBinAliases = {100, 101, 103, 119, 121};

const std::vector<std::int32_t> kTrayAliases = {6,   7,   101, 102, 121, 122,
                                                123, 124, 161, 162, 164, 167};
const std::vector<std::int32_t> kTrayTypes = {1, 2, 3, 6, 6};
const std::vector<std::string> kMediaTexts = {"Plain:0,Heavy:2,Thick:3", "Thin:0,Heavy:3"};
const std::vector<std::string> kSlotTexts = {
    "Manual:QVM,Cas1:QV1,Cas2:QV2,Cas3:QV3,Cas4:QV4,Cas6:QV6,Cas7:QV7",
    "Manual:QVX,Cas1:QVY,Cas3:QVZ,Cas8:QVW,Cas9:QV9,Cas10:QV10"};
const std::vector<std::string> kTrayTexts = {
    "Manual:7,Cas1:101,Cas2:102,Cas3:121,Cas6:161,Cas7:161,Cas4:122",
    "Manual:101,Cas1:7,Cas2:161,Cas3:161,Cas4:121"};
const std::vector<std::string> kSourceTexts = {"Cas3:121,Cas34:122,Deck:161", "Box:121,Deck:162"};

// The flags of one text, as an analyser keeps them.
class Flags {
 public:
  explicit Flags(const std::string& text) : store_(zflaginfo_init("flags", 64)) {
    zflaginfo_get(text.c_str(), store_);
  }
  ~Flags() { zflaginfo_term(store_); }
  Flags(const Flags&) = delete;
  Flags& operator=(const Flags&) = delete;
  FlagInfo* get() const { return store_; }

 private:
  FlagInfo* store_;
};

std::string TextOf(char* text) {
  std::string copy = text != nullptr ? text : "(none)";
  std::free(text);
  return copy;
}

// Calls the handlers with changed inputs, and returns the inputs that made a difference.
template <class Report>
std::set<Input> InputsThatMatter(
    const std::function<Report(Dice&)>& roll,
    const std::map<Input, std::function<void(Report&, Dice&)>>& changes,
    const std::function<std::string(const Report&)>& ask) {
  constexpr int kRounds = 3000;
  Dice dice;
  std::set<Input> matter;
  for (int round = 0; round < kRounds; ++round) {
    const Report report = roll(dice);
    const std::string answer = ask(report);
    for (const auto& [input, change] : changes) {
      Report changed = report;
      change(changed, dice);
      if (ask(changed) != answer) matter.insert(input);
    }
  }
  return matter;
}

struct Finishers {
  std::vector<std::string> names;
  std::vector<std::int32_t> bins;
  std::vector<std::int32_t> aliases;
  std::string flags;
};

Finishers RollFinishers(Dice& dice) {
  Finishers report;
  for (int i = dice.Below(3) + 1; i > 0; --i) {
    report.names.push_back(dice.Of(kNames));
    report.bins.push_back(dice.Below(5));
  }
  for (int i = dice.Below(4); i > 0; --i) report.aliases.push_back(dice.Of(kBinAliases));
  report.flags = dice.Of(kFinisherTexts);
  return report;
}

const std::map<Input, std::function<void(Finishers&, Dice&)>> kFinisherChanges = {
    {Input::kFinisherName, [](Finishers& it, Dice& dice) { it.names[0] = dice.Of(kNames); }},
    {Input::kFinisherBins, [](Finishers& it, Dice& dice) { it.bins[0] = dice.Below(5); }},
    {Input::kBinAlias, [](Finishers& it, Dice& dice) { it.aliases = RollFinishers(dice).aliases; }},
    {Input::kFinisherNameFlags,
     [](Finishers& it, Dice& dice) { it.flags = dice.Of(kFinisherTexts); }},
};

std::string AskFinisher(FinisherOptionHandler handler, const Finishers& report) {
  const Flags flags(report.flags);
  AnalyzeContext context = {};
  context.finisher_name_flags = flags.get();
  std::vector<FinisherEntry> finishers;
  for (std::size_t i = 0; i < report.names.size(); ++i) {
    finishers.push_back({report.bins[i], const_cast<char*>(report.names[i].c_str())});
  }
  OptionSetter row = {};
  EXPECT_EQ(handler(&context, finishers.data(), static_cast<std::int32_t>(finishers.size()),
                    report.aliases.data(), static_cast<std::int32_t>(report.aliases.size()), &row),
            0);
  return TextOf(row.value);
}

struct Trays {
  std::vector<TrayEntry> trays;
  std::string media;
  std::string slots;
  std::string inputs;
  std::string sources;
};

TrayEntry RollTray(Dice& dice) {
  return {dice.Of(kTrayTypes), dice.Of(kTrayAliases), dice.Below(2) * 2000, dice.Below(5)};
}

Trays RollTrays(Dice& dice) {
  Trays report;
  for (int i = dice.Below(9) + 1; i > 0; --i) report.trays.push_back(RollTray(dice));
  report.media = dice.Of(kMediaTexts);
  report.slots = dice.Of(kSlotTexts);
  report.inputs = dice.Of(kTrayTexts);
  report.sources = dice.Of(kSourceTexts);
  return report;
}

std::string AskTrays(InputOptionHandler handler, const Trays& report) {
  const Flags media(report.media);
  const Flags slots(report.slots);
  const Flags inputs(report.inputs);
  const Flags sources(report.sources);
  AnalyzeContext context = {};
  context.media_type_flags = media.get();
  context.slot_media_info_flags = slots.get();
  context.input_tray_flags = inputs.get();
  context.src_option_flags = sources.get();
  std::int32_t extra = 0;
  for (const TrayEntry& tray : report.trays) extra += tray.type == 3 || tray.type == 6 ? 1 : 0;
  std::vector<OptionSetter> rows(report.trays.size() + 3);
  std::int32_t count = 0;
  EXPECT_EQ(handler(&context, report.trays.data(), static_cast<std::int32_t>(report.trays.size()),
                    extra, rows.data(), &count),
            0);
  std::string answer;
  for (std::int32_t i = 0; i < count; ++i) {
    OptionSetter& row = rows[static_cast<std::size_t>(i)];
    answer += TextOf(const_cast<char*>(row.keyword)) + "=" + TextOf(row.value) + "\n";
  }
  return answer;
}

using TrayChanges = std::map<Input, std::function<void(Trays&, Dice&)>>;
const TrayChanges kTrayChanges = {
    {Input::kTrayType, [](Trays& it, Dice& dice) { it.trays[0].type = dice.Of(kTrayTypes); }},
    {Input::kTrayAlias, [](Trays& it, Dice& dice) { it.trays[0].alias = dice.Of(kTrayAliases); }},
    {Input::kTrayCapacity, [](Trays& it, Dice& dice) { it.trays[0].capacity = dice.Below(4000); }},
    {Input::kTrayMedium, [](Trays& it, Dice& dice) { it.trays[0].medium_type = dice.Below(5); }},
    {Input::kMediaTypeFlags, [](Trays& it, Dice& dice) { it.media = dice.Of(kMediaTexts); }},
    {Input::kSlotMediaFlags, [](Trays& it, Dice& dice) { it.slots = dice.Of(kSlotTexts); }},
    {Input::kInputTrayFlags, [](Trays& it, Dice& dice) { it.inputs = dice.Of(kTrayTexts); }},
    {Input::kSourceOptionFlags, [](Trays& it, Dice& dice) { it.sources = dice.Of(kSourceTexts); }},
};

// A tray of no alias and no type counts as a tray, and is nothing else.
TrayChanges WithCount(TrayChanges changes) {
  changes[Input::kTrays] = [](Trays& it, Dice&) { it.trays.push_back({}); };
  return changes;
}

struct Functions {
  std::vector<std::string> functions;
  std::vector<std::string> details;
};

const std::vector<std::string> kFunctionWords = {"staple", "punch", "folding"};
const std::vector<std::string> kDetailWords = {"punching_2_holes", "punching_French_4_holes",
                                               "punching_multiple_holes", "punching_3_holes"};

std::vector<std::string> RollWords(Dice& dice, const std::vector<std::string>& pool) {
  std::vector<std::string> words;
  for (int i = dice.Below(3); i > 0; --i) words.push_back(dice.Of(pool));
  return words;
}

Functions RollFunctions(Dice& dice) {
  return {RollWords(dice, kFunctionWords), RollWords(dice, kDetailWords)};
}

const std::map<Input, std::function<void(Functions&, Dice&)>> kFunctionChanges = {
    {Input::kFunctions,
     [](Functions& it, Dice& dice) { it.functions = RollWords(dice, kFunctionWords); }},
    {Input::kDetailFunctions,
     [](Functions& it, Dice& dice) { it.details = RollWords(dice, kDetailWords); }},
};

std::vector<char*> Pointers(const std::vector<std::string>& words) {
  std::vector<char*> pointers;
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  return pointers;
}

// As a query calls them: punchers with a table of details, staplers and folders without details.
std::string AskPunch(FunctionStringHandler handler, const Functions& report) {
  static constexpr FunctionPair kTable[] = {{"punching_2_holes", "2"}, {"punching_3_holes", "3"}};
  const auto functions = Pointers(report.functions);
  const auto details = Pointers(report.details);
  const auto function_count = static_cast<std::int32_t>(functions.size());
  const auto detail_count = static_cast<std::int32_t>(details.size());
  const FunctionQuery query = {.driver_name = nullptr,
                               .function = "punch",
                               .functions = functions.data(),
                               .function_count = &function_count,
                               .search_table = kTable,
                               .search_rows = 2,
                               .detail_functions = details.data(),
                               .detail_count = &detail_count,
                               .default_value = nullptr};
  return TextOf(handler(&query));
}

std::string AskFunction(FunctionStringHandler handler, const Functions& report) {
  const auto functions = Pointers(report.functions);
  const auto function_count = static_cast<std::int32_t>(functions.size());
  const FunctionQuery query = {.driver_name = nullptr,
                               .function = "staple",
                               .functions = functions.data(),
                               .function_count = &function_count,
                               .search_table = nullptr,
                               .search_rows = 0,
                               .detail_functions = nullptr,
                               .detail_count = nullptr,
                               .default_value = "default"};
  return TextOf(handler(&query));
}

std::set<std::string> KeysOf(const std::set<Input>& inputs) {
  std::set<std::string> keys;
  for (const Input input : inputs) {
    InputKey key = {};
    EXPECT_EQ(Analyze_Provenance_GetInput(static_cast<std::int32_t>(input), &key, sizeof key), 1);
    keys.insert(std::to_string(key.document) + " " + key.key);
  }
  return keys;
}

std::set<Input> InputsOf(std::int32_t family, std::int32_t row) {
  std::set<Input> inputs;
  for (std::int32_t i = 0; i < RowOf(family, row).input_count; ++i) {
    inputs.insert(static_cast<Input>(Analyze_Provenance_GetModelRowInput(family, row, i)));
  }
  return inputs;
}

std::set<Input> DescribedInputs(std::int32_t family, const std::string& handler) {
  const auto rows = static_cast<std::int32_t>(RowsOf(family).size());
  for (std::int32_t row = IA_OTHER_MODELS; row < rows; ++row) {
    const char* const name = RowOf(family, row).handler;
    if (name != nullptr && handler == name) return InputsOf(family, row);
  }
  ADD_FAILURE() << handler << " is in no row of family " << family;
  return {};
}

// Holds the inputs of every handler of a family against those that matter to its answers.
template <class Function, class Report, class Roll, class Changes, class Asking>
void ExpectInputsThatMatter(std::int32_t family, Roll roll, const Changes& changes, Asking asking) {
  const std::set<std::string> handlers = HandlersOf(family);
  ASSERT_THAT(handlers, Not(IsEmpty()));
  for (const std::string& name : handlers) {
    const auto handler = FunctionOf<Function>(name);
    EXPECT_EQ(KeysOf(DescribedInputs(family, name)),
              KeysOf(InputsThatMatter<Report>(
                  roll, changes, [&](const Report& report) { return asking(handler, report); })))
        << name;
  }
}

class FinisherInputs : public testing::TestWithParam<std::int32_t> {};
INSTANTIATE_TEST_SUITE_P(, FinisherInputs,
                         testing::Values(IA_FAMILY_FINISHER, IA_FAMILY_COPY_TRAY,
                                         IA_FAMILY_FIN_TRAY));

TEST_P(FinisherInputs, AreThoseThatMatter) {
  ExpectInputsThatMatter<FinisherOptionHandler, Finishers>(GetParam(), RollFinishers,
                                                           kFinisherChanges, AskFinisher);
}

class TrayInputs : public testing::TestWithParam<std::int32_t> {};
INSTANTIATE_TEST_SUITE_P(, TrayInputs,
                         testing::Values(IA_FAMILY_SIDE_PAPER_DECK, IA_FAMILY_SOURCE_OPTION,
                                         IA_FAMILY_ENVELOPE_FEEDER));

TEST_P(TrayInputs, AreThoseThatMatter) {
  ExpectInputsThatMatter<InputOptionHandler, Trays>(GetParam(), RollTrays, WithCount(kTrayChanges),
                                                    AskTrays);
}

// One more tray is one more option here, whatever it reports.
TEST(MediaTypeInputs, AreThoseThatMatter) {
  ExpectInputsThatMatter<InputOptionHandler, Trays>(IA_FAMILY_MEDIA_TYPE, RollTrays, kTrayChanges,
                                                    AskTrays);
}

TEST(PuncherInputs, AreThoseThatMatter) {
  ExpectInputsThatMatter<FunctionStringHandler, Functions>(IA_FAMILY_PUNCHER, RollFunctions,
                                                           kFunctionChanges, AskPunch);
}

TEST(FinishingFunctionInputs, AreThoseThatMatter) {
  ExpectInputsThatMatter<FunctionStringHandler, Functions>(
      IA_FAMILY_FINISHING_FUNCTION, RollFunctions, kFunctionChanges, AskFunction);
}

}  // namespace
}  // namespace ia_test
