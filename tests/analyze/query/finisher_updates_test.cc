#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kFinishers = IA_DOCUMENT_FINISHER_LIST;
constexpr std::int32_t kBins = IA_DOCUMENT_BIN_LIST;
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

const Entries kDefaults = {{"QVOptionStaple", "False"},
                           {"QVPuncher", "None"},
                           {"QVFolder", "None"},
                           {"QVTrimmer", "None"},
                           {"QVInnerTrimmer", "None"},
                           {"QVInsertUnit", "None"},
                           {"QVEnableMultiInserter", "False"},
                           {"QVStacker", "None"},
                           {"QVBinderOption", "None"},
                           {"QVProPuncher", "None"},
                           {"QVTopBottomTrimmer", "None"}};

std::string Type(std::int32_t type) { return Number("type", type); }
std::string Name(const std::string& name) { return Text("name", name); }
std::string Functions(const Texts& words) { return TextArray("func", words); }
std::string Details(const Texts& words) { return TextArray("detail_func", words); }

// Finisher list ----------------------------------------------------------------------------------

class FinisherList : public ListUpdates {
 protected:
  Entries AppendedFor(const Items& units) {
    Load(kFinishers, units);
    return Appended(z_Update_Prn_finisher_list);
  }
  void SetModel(const char* model) { context_.driver_name = const_cast<char*>(model); }
};

TEST_F(FinisherList, RefusesNullArguments) {
  Load(kFinishers, {Type(15)});
  ListReads reads;
  CallersList list;
  EXPECT_EQ(z_Update_Prn_finisher_list(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_finisher_list(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_finisher_list(nullptr, nullptr), -1);
  EXPECT_THAT(reads.reads, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(FinisherList, HasDefaultsWithoutUnits) { EXPECT_EQ(AppendedFor({}), kDefaults); }

TEST_F(FinisherList, HasDefaultsForAUnitThatReportsNothing) {
  EXPECT_EQ(AppendedFor({""}), kDefaults);
}

TEST_F(FinisherList, HasDefaultsWithoutDocument) {
  EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
}

TEST_F(FinisherList, HasDefaultsForANegativeCount) {
  Load(kFinishers, {Type(15)});
  for (const std::int32_t count : {-1, kLowest}) {
    context_.documents[kFinishers].count = count;
    EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
  }
}

TEST_F(FinisherList, AppendsAfterExistingOptions) {
  Load(kFinishers, {Type(18)});
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  OptionList_Add(list.get(), "QVStacker", "old");
  EXPECT_EQ(z_Update_Prn_finisher_list(&context_, list.get()), 0);
  const Entries entries = list.entries();
  ASSERT_THAT(entries, SizeIs(12));
  EXPECT_EQ(entries[0], Entry("QVOther", "kept"));
  EXPECT_EQ(entries[1], Entry("QVStacker", "None"));
  EXPECT_EQ(entries[2], Entry("QVOptionStaple", "False"));
  EXPECT_EQ(entries[9], Entry("QVBinderOption", "BIDU1"));
}

// One unit, and what it changes of the defaults.
struct UnitRow {
  const char* label;
  const char* model;  // or null
  std::string unit;
  Entries values;
};

void PrintTo(const UnitRow& row, std::ostream* out) { *out << row.label; }

class OneFinisher : public FinisherList, public testing::WithParamInterface<UnitRow> {};

TEST_P(OneFinisher, ChangesItsOptions) {
  SetModel(GetParam().model);
  EXPECT_EQ(AppendedFor({GetParam().unit}), With(kDefaults, GetParam().values));
}

TEST_P(OneFinisher, ChangesItsOptionsAmongUnitsThatReportNothing) {
  SetModel(GetParam().model);
  const std::string none = Type(0);
  EXPECT_EQ(AppendedFor({none, none, GetParam().unit, none}), With(kDefaults, GetParam().values));
}

std::string Punching(const Texts& details) { return Functions({"punch"}) + Details(details); }

const std::vector<UnitRow>& Units() {
  static const std::vector<UnitRow> units = {
      {"StapleOfElm", "RC-T7", Functions({"staple"}), {{"QVOptionStaple", "True"}}},
      {"StapleOfMagnolia", "RD-T7-JP", Functions({"staple"}), {{"QVOptionStaple", "True"}}},
      {"StapleOfOtherModel", "RA-H2", Functions({"staple"}), {}},
      {"StapleWithoutModel", nullptr, Functions({"staple"}), {}},
      {"StapleUnreported", "RC-T7", Functions({"punch"}) + Details({"staple"}), {}},
      {"Punch2", nullptr, Punching({"punching_2_holes"}), {{"QVPuncher", "PUNU2"}}},
      {"Punch2or3", nullptr, Punching({"punching_2or3_holes"}), {{"QVPuncher", "PUNU23"}}},
      {"Punch3", nullptr, Punching({"punching_3_holes"}), {{"QVPuncher", "PUNU3"}}},
      {"PunchFrench4", nullptr, Punching({"punching_French_4_holes"}), {{"QVPuncher", "PUNF4"}}},
      {"PunchSwedish4", nullptr, Punching({"punching_Swedish_4_holes"}), {{"QVPuncher", "PUNS4"}}},
      {"Punch2AndFrench4",
       nullptr,
       Punching({"punching_French_4_holes", "punching_2_holes"}),
       {{"QVPuncher", "PUNF24"}}},
      {"PunchOtherHoles", nullptr, Punching({"punching_5_holes", "Punching_2_holes"}), {}},
      {"PunchWithoutFunction", nullptr, Functions({"staple"}) + Details({"punching_2_holes"}), {}},
      {"PunchWithoutDetails", nullptr, Functions({"punch"}), {}},
      {"PunchAnyHoles", nullptr, Punching({"punching_S"}), {{"QVPuncher", "PUNS4"}}},
      {"PunchOfJuniper", "RA-H2-JP", Punching({"punching_3_holes"}), {}},
      {"PunchOfJuniper2",
       "RA-H2-JP",
       Punching({"punching_2_holes", "punching_French_4_holes"}),
       {{"QVPuncher", "PUNU2"}}},
      {"PunchOfJuniperMlt",
       "RA-T6-MLT-JP",
       Punching({"punching_2_holes", "punching_French_4_holes"}),
       {{"QVPuncher", "PUNU24"}}},
      {"PunchOfMultipleHoles",
       "RA-J3",
       Punching({"punching_multiple_holes", "punching_2_holes"}),
       {{"QVPuncher", "PUNM"}}},
      {"Folding", nullptr, Functions({"folding"}), {{"QVFolder", "FLDU1"}}},
      {"FoldingOfAnyModel", "RA-H2", Functions({"folding"}), {{"QVFolder", "FLDU1"}}},
      // The model's own handler would answer for staples alone.
      {"FoldingOfElm", "RC-T7", Functions({"folding"}), {{"QVFolder", "FLDU1"}}},
      {"FoldingOfMagnolia", "RD-T7", Functions({"folding"}), {{"QVFolder", "FLDU1"}}},
      {"FoldingInDetail", nullptr, Details({"folding"}), {}},
      {"Trimming",
       nullptr,
       Name("Vorel Saddle Finisher-W4") + Functions({"trimming"}),
       {{"QVTrimmer", "TRMU1"}}},
      {"InnerTrimming",
       nullptr,
       Name("Vorel Booklet Finisher-Z1") + Functions({"trimming"}),
       {{"QVInnerTrimmer", "ITRMU1"}}},
      {"TrimmingWithoutName", nullptr, Functions({"trimming"}), {}},
      {"Inserter", nullptr, Functions({"inserter"}), {{"QVInsertUnit", "INSU1"}}},
      {"MultiInserter",
       nullptr,
       Functions({"inserter"}) + Details({"inserting_multiple_sheet"}),
       {{"QVInsertUnit", "INSU1"}, {"QVEnableMultiInserter", "True"}}},
      {"Stacker", nullptr, Type(15), {{"QVStacker", "STKU1"}}},
      {"Binder", nullptr, Type(18), {{"QVBinderOption", "BIDU1"}}},
      {"BinderWithInserter",
       nullptr,
       Type(18) + Functions({"inserter"}) + Details({"inserting_multiple_sheet"}),
       {{"QVBinderOption", "BIDU1"}}},
      {"ProPuncher",
       nullptr,
       Name("Vorel Professional Puncher-B1") + Details({"punching_multiple_holes"}),
       {{"QVProPuncher", "PUNU1"}}},
      {"TopBottomTrimmer",
       nullptr,
       Type(12) + Details({"trimming_3_direction"}),
       {{"QVTopBottomTrimmer", "TBTU1"}}},
      {"ArraysWithoutElements", nullptr, Type(1) + Functions({}) + Details({}), {}},
      // An empty word is a prefix of every word.
      {"EmptyWords",
       nullptr,
       Type(1) + Functions({""}) + Details({""}),
       {{"QVPuncher", "PUNF24"},
        {"QVFolder", "FLDU1"},
        {"QVInsertUnit", "INSU1"},
        {"QVEnableMultiInserter", "True"}}},
      {"Everything",
       "RC-T7",
       Type(12) + Name("Vorel Booklet Finisher-D1 with tray") +
           Functions({"inserter", "trimming", "folding", "punch", "staple"}) +
           Details({"trimming_3_direction", "punching_multiple_holes", "inserting_multiple_sheet",
                    "punching_3_holes"}),
       {{"QVOptionStaple", "True"},
        {"QVPuncher", "PUNU3"},
        {"QVFolder", "FLDU1"},
        {"QVTrimmer", "TRMU1"},
        {"QVInsertUnit", "INSU1"},
        {"QVEnableMultiInserter", "True"},
        {"QVProPuncher", "PUNU1"},
        {"QVTopBottomTrimmer", "TBTU1"}}},
      {"LongName",
       nullptr,
       Name("Vorel Saddle Finisher-X2" + std::string(100 * 1024, 'x')) + Functions({"trimming"}),
       {{"QVTrimmer", "TRMU1"}}},
      {"LongWords",
       nullptr,
       Functions({std::string(100 * 1024, 'p'), "punch"}) +
           Details({std::string(100 * 1024, 'q'), "punching_3_holes"}),
       {{"QVPuncher", "PUNU3"}}},
      {"TextWhereNumberIsWanted", nullptr, Text("type", "18"), {}},
      {"NumberWhereTextIsWanted",
       nullptr,
       Number("name", 1) + Number("func", 1) + Number("detail_func", 1),
       {}},
  };
  return units;
}

INSTANTIATE_TEST_SUITE_P(Units, OneFinisher, testing::ValuesIn(Units()),
                         [](const auto& info) { return std::string(info.param.label); });

// The table's order is the priority, whatever the device's.
TEST_F(FinisherList, TakesLongerWordsForOthers) {
  SetModel("RC-T7");
  for (const char* more : {"~", "s", " "}) {
    for (const char* function : {"staple", "punch", "folding"}) {
      EXPECT_EQ(
          AppendedFor({Functions({std::string(function) + more}) + Details({"punching_2_holes"})}),
          kDefaults)
          << function << more;
    }
    for (const char* holes : {"punching_2_holes", "punching_2or3_holes", "punching_3_holes",
                              "punching_French_4_holes", "punching_Swedish_4_holes"}) {
      EXPECT_EQ(AppendedFor({Punching({std::string(holes) + more})}), kDefaults) << holes << more;
    }
  }
}

TEST_F(FinisherList, TakesThePuncherThatComesFirstInTheTable) {
  constexpr auto kTable = std::to_array<std::array<const char*, 2>>({
      {"punching_2_holes", "PUNU2"},
      {"punching_2or3_holes", "PUNU23"},
      {"punching_3_holes", "PUNU3"},
      {"punching_French_4_holes", "PUNF4"},
      {"punching_Swedish_4_holes", "PUNS4"},
  });
  for (unsigned set = 1; set < 32; ++set) {
    Texts words;
    const char* first = nullptr;
    for (std::size_t i = 0; i < kTable.size(); ++i) {
      if ((set >> i & 1) == 0) continue;
      words.insert(words.begin(), kTable[i][0]);
      if (first == nullptr) first = kTable[i][1];
    }
    const bool is_2_and_french_4 = (set & 1) != 0 && (set & 8) != 0;
    EXPECT_EQ(AppendedFor({Punching(words)}),
              With(kDefaults, {{"QVPuncher", is_2_and_french_4 ? "PUNF24" : first}}))
        << set;
  }
}

TEST_F(FinisherList, KeepsAValueUntilALaterUnitGivesOne) {
  EXPECT_EQ(AppendedFor({Punching({"punching_3_holes"}), Functions({"punch"}), Type(1)}),
            With(kDefaults, {{"QVPuncher", "PUNU3"}}));
  EXPECT_EQ(AppendedFor({Punching({"punching_3_holes"}), Punching({"punching_2_holes"})}),
            With(kDefaults, {{"QVPuncher", "PUNU2"}}));
  EXPECT_EQ(AppendedFor({Punching({"punching_2_holes"}), Punching({"punching_3_holes"})}),
            With(kDefaults, {{"QVPuncher", "PUNU3"}}));
}

TEST_F(FinisherList, CollectsTheValuesOfAllUnits) {
  EXPECT_EQ(
      AppendedFor({Type(15) + Functions({"inserter"}),
                   Type(18) + Functions({"inserter"}) + Details({"inserting_multiple_sheet"}),
                   Type(1) + Name("Vorel Saddle Finisher-W3") + Functions({"trimming", "folding"}),
                   Type(12) + Details({"trimming_3_direction"})}),
      With(kDefaults, {{"QVFolder", "FLDU1"},
                       {"QVTrimmer", "TRMU1"},
                       {"QVInsertUnit", "INSU1"},
                       {"QVStacker", "STKU1"},
                       {"QVBinderOption", "BIDU1"},
                       {"QVTopBottomTrimmer", "TBTU1"}}));
}

TEST_F(FinisherList, SecondStackerReplacesTheFirst) {
  EXPECT_EQ(AppendedFor({Type(15), Type(15)}), With(kDefaults, {{"QVStacker", "STKU2"}}));
  EXPECT_EQ(AppendedFor({Type(15), Type(1), Type(15), Type(15)}),
            With(kDefaults, {{"QVStacker", "STKU2"}}));
}

TEST_F(FinisherList, CountsStackersAnewInEachRun) {
  Load(kFinishers, {Type(15)});
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(Appended(z_Update_Prn_finisher_list), With(kDefaults, {{"QVStacker", "STKU1"}}));
  }
}

TEST_F(FinisherList, BinderSuppressesItsOwnInserterOnly) {
  const std::string inserter = Functions({"inserter"}) + Details({"inserting_multiple_sheet"});
  for (const Items& units :
       {Items{Type(18) + inserter, Type(1) + inserter}, Items{Type(1) + inserter, Type(18)}}) {
    EXPECT_EQ(AppendedFor(units), With(kDefaults, {{"QVInsertUnit", "INSU1"},
                                                   {"QVEnableMultiInserter", "True"},
                                                   {"QVBinderOption", "BIDU1"}}));
  }
}

// Of one unit to the next ------------------------------------------------------------------------

TEST_F(FinisherList, UnitWithoutTypeHasThatOfTheUnitBefore) {
  EXPECT_EQ(AppendedFor({Type(15), ""}), With(kDefaults, {{"QVStacker", "STKU2"}}));
  EXPECT_EQ(AppendedFor({Type(18), Functions({"inserter"})}),
            With(kDefaults, {{"QVBinderOption", "BIDU1"}}));
  EXPECT_EQ(AppendedFor({Type(12), Details({"trimming_3_direction"})}),
            With(kDefaults, {{"QVTopBottomTrimmer", "TBTU1"}}));
  EXPECT_EQ(AppendedFor({"", Type(15)}), With(kDefaults, {{"QVStacker", "STKU1"}}));
}

TEST_F(FinisherList, UnitWithoutNameHasNone) {
  EXPECT_EQ(AppendedFor({Name("Vorel Booklet Finisher-D1"),
                         Functions({"trimming"}) + Details({"punching_multiple_holes"})}),
            kDefaults);
}

TEST_F(FinisherList, UnitWithoutFunctionsHasNone) {
  EXPECT_EQ(AppendedFor({Type(18) + Functions({"inserter"}), Type(1)}),
            With(kDefaults, {{"QVBinderOption", "BIDU1"}}));
}

TEST_F(FinisherList, UnitWithoutDetailsHasNone) {
  EXPECT_EQ(AppendedFor({Details({"punching_2_holes"}), Functions({"punch"})}), kDefaults);
}

// An element that cannot be read is no text of the unit before.
TEST_F(FinisherList, UnreadableWordsAreNone) {
  EXPECT_EQ(AppendedFor({Type(18) + Functions({"inserter", "punch"}),
                         Type(1) + Functions({std::nullopt, std::nullopt}) +
                             Details({"punching_2_holes"})}),
            With(kDefaults, {{"QVBinderOption", "BIDU1"}}));
  EXPECT_EQ(AppendedFor({Details({"punching_2_holes", "punching_3_holes"}),
                         Functions({"punch"}) + Details({std::nullopt, std::nullopt})}),
            kDefaults);
}

TEST_F(FinisherList, WordsAfterAnUnreadableOneCount) {
  EXPECT_EQ(AppendedFor({Functions({std::nullopt, "punch"}) +
                         Details({std::nullopt, "punching_3_holes", std::nullopt})}),
            With(kDefaults, {{"QVPuncher", "PUNU3"}}));
}

// Long arrays and lists --------------------------------------------------------------------------

TEST_F(FinisherList, SeesTheFirst1024Words) {
  Texts functions(1024, "other");
  Texts details(1024, "other");
  functions.back() = "punch";
  details.back() = "punching_3_holes";
  EXPECT_EQ(AppendedFor({Functions(functions) + Details(details)}),
            With(kDefaults, {{"QVPuncher", "PUNU3"}}));
}

TEST_F(FinisherList, DoesNotSeeFurtherWords) {
  Texts words(1025, "other");
  words.back() = "punch";
  EXPECT_EQ(AppendedFor({Functions(words) + Details({"punching_3_holes"})}), kDefaults);
  words.back() = "punching_3_holes";
  EXPECT_EQ(AppendedFor({Functions({"punch"}) + Details(words)}), kDefaults);
}

TEST_F(FinisherList, TakesThousandsOfWords) {
  Texts functions(10000, "other");
  Texts details(10000, "other");
  functions[500] = "punch";
  details[500] = "punching_3_holes";
  EXPECT_EQ(AppendedFor({Functions(functions) + Details(details), Functions({"folding"})}),
            With(kDefaults, {{"QVPuncher", "PUNU3"}, {"QVFolder", "FLDU1"}}));
}

TEST_F(FinisherList, TakesHundredsOfUnits) {
  Items units(500, Type(1) + Name("Vorel Finisher") + Functions({"other"}));
  units.front() += Details({"punching_3_holes"});
  units[250] = Punching({"punching_2_holes"});
  units.back() = Type(15) + Punching({"punching_Swedish_4_holes"});
  EXPECT_EQ(AppendedFor(units), With(kDefaults, {{"QVPuncher", "PUNS4"}, {"QVStacker", "STKU1"}}));
}

// Reads that fail --------------------------------------------------------------------------------

TEST_F(FinisherList, EndsWithTheFirstReadThatFails) {
  const std::string unit = Type(15) + Name("Vorel Booklet Finisher-D1") +
                           Functions({"trimming", "punch"}) + Details({"punching_2_holes"});
  Load(kFinishers, {unit, unit, unit});
  for (std::int32_t failing = 0; failing < 3; ++failing) {
    for (const std::int32_t result : {-1, 5, kHighest, kLowest}) {
      ListReads reads;
      reads.results = {{{kFinishers, failing}, result}};
      EXPECT_EQ(OutcomeOf(z_Update_Prn_finisher_list, context_), (Outcome{result, {}})) << failing;
      EXPECT_THAT(reads.reads, SizeIs(failing + 1));
    }
  }
}

TEST_F(FinisherList, ReadsEachUnitOnceInOrder) {
  Load(kFinishers, {"", "", ""});
  ListReads reads;
  Appended(z_Update_Prn_finisher_list);
  EXPECT_THAT(reads.reads,
              ElementsAre(ListReads::Item(kFinishers, 0), ListReads::Item(kFinishers, 1),
                          ListReads::Item(kFinishers, 2)));
}

TEST_F(FinisherList, FailsAtOnceForItemsOfADocumentThatIsNotLoaded) {
  for (const std::int32_t count : {1, 500, kHighest}) {
    context_.documents[kFinishers].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_finisher_list, context_), (Outcome{-1, {}})) << count;
  }
}

TEST_F(FinisherList, HasDefaultsForMissingItems) {
  Load(kFinishers, {Type(1)});
  context_.documents[kFinishers].count = 100;
  EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
}

// Calls to the communication library -------------------------------------------------------------

class LyingFinisherList : public LyingLists {};

TEST_F(LyingFinisherList, IsAskedForTheKeysOfEachUnitInOrder) {
  Load(kFinishers, {.longs = {{"type", 15}},
                    .strings = {{"name", "Name"}},
                    .dict_counts = {{"list", 2}},
                    .array_counts = {{"func", 2}, {"detail_func", 1}},
                    .string_elements = {{0, "punch"}, {1, "staple"}}});
  Appended(z_Update_Prn_finisher_list);
  const std::vector<std::string> unit = {"qvxmlwrapGet_Long type",
                                         "qvxmlwrapGet_String name",
                                         "qvxmlwrapGet_ArrayCount func",
                                         "qvxmlwrapGet_OpenArray func",
                                         "qvxmlwrapGet_StringFromArray 0",
                                         "qvxmlwrapGet_StringFromArray 1",
                                         "qvxmlwrapGet_CloseArray",
                                         "qvxmlwrapGet_ArrayCount detail_func",
                                         "qvxmlwrapGet_OpenArray detail_func",
                                         "qvxmlwrapGet_StringFromArray 0",
                                         "qvxmlwrapGet_CloseArray",
                                         "qvxmlwrapGet_CloseDict"};
  std::vector<std::string> expected;
  for (int item = 0; item < 2; ++item) {
    expected.push_back("qvxmlwrapGet_OpenDict list");
    expected.insert(expected.end(), unit.begin(), unit.end());
  }
  EXPECT_EQ(Reading(), expected);
  const std::vector<Call> opened = recording_.CallsTo("qvxmlwrapGet_OpenDict");
  ASSERT_THAT(opened, SizeIs(2));
  EXPECT_EQ(opened[0].arguments[2], ArgumentOf(0));
  EXPECT_EQ(opened[1].arguments[2], ArgumentOf(1));
  for (const Call& call : recording_.CallsTo("qvxmlwrapGet_String")) {
    EXPECT_EQ(call.arguments[4], ArgumentOf("UTF-8"));
  }
  for (const Call& call : recording_.CallsTo("qvxmlwrapGet_StringFromArray")) {
    EXPECT_EQ(call.arguments[4], ArgumentOf("UTF-8"));
  }
}

TEST_F(LyingFinisherList, FindsNothingWhereNothingIsReported) {
  Load(kFinishers, {.strings = {{"name", std::nullopt}},
                    .dict_counts = {{"list", 3}},
                    .array_counts = {{"func", 2}, {"detail_func", 2}},
                    .string_elements = {{0, std::nullopt}}});
  EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
}

TEST_F(LyingFinisherList, IsAskedForNoMoreWordsThanThereIsRoomFor) {
  for (const std::int32_t count : {1024, 1025, kHighest}) {
    Load(kFinishers, {.dict_counts = {{"list", 1}},
                      .array_counts = {{"func", count}, {"detail_func", count}},
                      .string_elements = {{0, "inserter"}, {1023, "inserting_multiple_sheet"}}});
    EXPECT_EQ(Appended(z_Update_Prn_finisher_list),
              With(kDefaults, {{"QVInsertUnit", "INSU1"}, {"QVEnableMultiInserter", "True"}}));
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_StringFromArray"), SizeIs(2 * 1024));
  }
}

TEST_F(LyingFinisherList, IsNotAskedForWordsBelowZero) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    Load(kFinishers, {.dict_counts = {{"list", 1}},
                      .array_counts = {{"func", count}, {"detail_func", count}},
                      .string_elements = {{0, ""}}});
    EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_StringFromArray"), IsEmpty());
  }
}

TEST_F(LyingFinisherList, HasNoUnitsBelowZero) {
  for (const std::int32_t count : {-1, kLowest}) {
    Load(kFinishers, {.longs = {{"type", 15}}, .dict_counts = {{"list", count}}});
    EXPECT_EQ(Appended(z_Update_Prn_finisher_list), kDefaults);
    EXPECT_THAT(recording_.calls, IsEmpty());
  }
}

TEST_F(LyingFinisherList, EndsForAnyNumberOfUnits) {
  Load(kFinishers, {.dict_counts = {{"list", kHighest}}});
  EXPECT_EQ(RunUnrecorded(z_Update_Prn_finisher_list), (Outcome{0, kDefaults}));
}

// Combined pass ----------------------------------------------------------------------------------

const Entries kNone = {{"QVFinisher", "None"}, {"QVCopyTray", "None"}, {"QVFinTray", "None"}};

std::string Bins(std::int32_t count) { return Number("binnum", count); }

std::string Aliases(const Numbers& codes) { return NumberArray("alias", codes); }

using Unit = FinisherMapping::Finisher;

class CombinedPass : public ListUpdates {};

TEST_F(CombinedPass, RefusesNullArguments) {
  Load(kFinishers, {Bins(1)});
  Load(kBins, {Aliases({101})});
  ListReads reads;
  CallersList list;
  EXPECT_EQ(z_Update_Prn_Complex_FinisherInformations(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_Complex_FinisherInformations(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_Complex_FinisherInformations(nullptr, nullptr), -1);
  EXPECT_THAT(reads.reads, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(CombinedPass, HasNoneWithoutFinishersAndBins) {
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  Load(kFinishers, {});
  Load(kBins, {});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
}

TEST_F(CombinedPass, HasNoneForNegativeCounts) {
  Load(kFinishers, {Bins(1)});
  Load(kBins, {Aliases({101})});
  for (const std::int32_t count : {-1, kLowest}) {
    context_.documents[kFinishers].count = context_.documents[kBins].count = count;
    EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  }
}

TEST_F(CombinedPass, ReadsTheBinsAndThenTheFinishers) {
  Load(kFinishers, {"", ""});
  Load(kBins, {"", "", ""});
  ListReads reads;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  EXPECT_THAT(reads.reads, ElementsAre(ListReads::Item(kBins, 0), ListReads::Item(kBins, 1),
                                       ListReads::Item(kBins, 2), ListReads::Item(kFinishers, 0),
                                       ListReads::Item(kFinishers, 1)));
}

TEST_F(CombinedPass, HandsTheFinishersAndAliasesToTheMapping) {
  Load(kFinishers, {Name("Vorel Finisher-U3") + Bins(3), Name("") + Bins(-1),
                    Bins(kHighest) + Name(std::string(100 * 1024, 'x'))});
  Load(kBins, {Aliases({119}), "", Aliases({103, 0, 101})});
  FinisherMapping mapping;
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_EQ(mapping.calls[0].context, &context_);
  EXPECT_THAT(mapping.calls[0].finishers,
              ElementsAre(Unit{3, "Vorel Finisher-U3"}, Unit{-1, ""},
                          Unit{kHighest, std::string(100 * 1024, 'x')}));
  EXPECT_THAT(mapping.calls[0].aliases, ElementsAre(119, 103, 101));
}

TEST_F(CombinedPass, HandsTenAliasesToTheMapping) {
  Load(kBins, {Aliases({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), Aliases({12})});
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_THAT(mapping.calls[0].aliases, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));
}

TEST_F(CombinedPass, FinisherWithoutNameHasAnEmptyOne) {
  Load(kFinishers, {Name("Vorel Finisher-U3") + Bins(3), Bins(2), Number("name", 5) + Bins(1)});
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_THAT(mapping.calls[0].finishers,
              ElementsAre(Unit{3, "Vorel Finisher-U3"}, Unit{2, ""}, Unit{1, ""}));
}

TEST_F(CombinedPass, FinisherWithoutNumberOfBinsHasThatOfTheFinisherBefore) {
  Load(kFinishers, {Name("A"), Name("B") + Bins(3), Name("C"), Name("D") + Text("binnum", "7"),
                    Name("E") + Bins(0), Name("F")});
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_THAT(mapping.calls[0].finishers, ElementsAre(Unit{0, "A"}, Unit{3, "B"}, Unit{3, "C"},
                                                      Unit{3, "D"}, Unit{0, "E"}, Unit{0, "F"}));
}

TEST_F(CombinedPass, TypesAndFunctionsAreNotRead) {
  Load(kFinishers, {Type(9) + Name("A") + Bins(2) + Functions({"punch"}) + Number("number", 4)});
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_THAT(mapping.calls[0].finishers, ElementsAre(Unit{2, "A"}));
}

TEST_F(CombinedPass, AppendsTheMappingsValues) {
  Load(kFinishers, {Bins(1)});
  FinisherMapping mapping;
  constexpr auto kKeywords = std::to_array<const char*>({"QVFinisher", "QVCopyTray", "QVFinTray"});
  for (unsigned set = 0; set < 8; ++set) {
    mapping.answer = [&](OptionSetter* rows) {
      for (std::size_t i = 0; i < kKeywords.size(); ++i) {
        EXPECT_STREQ(rows[i].keyword, kKeywords[i]);
        EXPECT_STREQ(rows[i].default_value, "None");
        EXPECT_EQ(rows[i].value, nullptr);
        EXPECT_EQ(rows[i].getter, nullptr);
        if ((set >> i & 1) != 0) rows[i].value = strdup(("V" + std::to_string(i)).c_str());
      }
    };
    Entries expected = kNone;
    for (std::size_t i = 0; i < kKeywords.size(); ++i) {
      if ((set >> i & 1) != 0) expected[i].second = "V" + std::to_string(i);
    }
    EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), expected) << set;
  }
}

TEST_F(CombinedPass, AppendsWhatTheModelsHandlersDecide) {
  context_.driver_name = const_cast<char*>("RA-P9");
  Load(kBins, {Aliases({103})});
  Load(kFinishers,
       {Name("Vorel Inner 2Way Tray-B1") + Bins(2), Name("Vorel Finisher-U3") + Bins(3)});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations),
            With(kNone, {{"QVCopyTray", "CPTU1"}, {"QVFinTray", "FNTU1"}}));
  context_.driver_name = const_cast<char*>("RA-K8");
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations),
            With(kNone, {{"QVFinisher", "IN2TRAY"}}));
}

// This model has the inner tray if there are two alias codes in all, one of them 119.
TEST_F(CombinedPass, CountsThePresentAliases) {
  context_.driver_name = const_cast<char*>("RA-H8");
  Load(kFinishers, {Name("A") + Bins(1)});
  const auto with_tray = With(kNone, {{"QVFinisher", "IN2TRAYF1"}});
  Load(kBins, {Aliases({119}), Aliases({0}), Aliases({1})});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), with_tray);
  Load(kBins, {Aliases({119}), Aliases({std::nullopt}), Aliases({1})});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), with_tray);
  Load(kBins, {Aliases({119}), Aliases({std::nullopt})});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  Load(kBins, {Aliases({119}), Aliases({2}), Aliases({1})});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
}

TEST_F(CombinedPass, AppendsAfterExistingOptions) {
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  OptionList_Add(list.get(), "QVFinTray", "old");
  EXPECT_EQ(z_Update_Prn_Complex_FinisherInformations(&context_, list.get()), 0);
  EXPECT_THAT(list.entries(),
              ElementsAre(Entry("QVOther", "kept"), Entry("QVFinTray", "None"),
                          Entry("QVFinisher", "None"), Entry("QVCopyTray", "None")));
}

TEST_F(CombinedPass, EndsAtOnceWhenABinCannotBeRead) {
  Load(kFinishers, {Bins(1)});
  Load(kBins, {Aliases({101}), Aliases({102}), Aliases({103})});
  for (std::int32_t failing = 0; failing < 3; ++failing) {
    for (const std::int32_t result : {-1, 5}) {
      ListReads reads;
      FinisherMapping mapping;
      reads.results = {{{kBins, failing}, result}};
      EXPECT_EQ(OutcomeOf(z_Update_Prn_Complex_FinisherInformations, context_),
                (Outcome{result, {}}));
      EXPECT_THAT(reads.reads, SizeIs(failing + 1));
      EXPECT_THAT(mapping.calls, IsEmpty());
    }
  }
}

TEST_F(CombinedPass, FailsAtOnceForBinsOfADocumentThatIsNotLoaded) {
  Load(kFinishers, {Bins(1)});
  for (const std::int32_t count : {1, kHighest}) {
    context_.documents[kBins].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_Complex_FinisherInformations, context_), (Outcome{-1, {}}));
  }
}

TEST_F(CombinedPass, FinisherThatCannotBeReadIsEmptyWhenALaterOneCan) {
  Load(kFinishers, {Name("A") + Bins(1), Name("B") + Bins(2), Name("C") + Bins(3)});
  for (const auto& [failing, expected] :
       std::vector<std::pair<std::vector<std::int32_t>, std::vector<Unit>>>{
           {{0}, {Unit{0, std::nullopt}, Unit{2, "B"}, Unit{3, "C"}}},
           {{1}, {Unit{1, "A"}, Unit{0, std::nullopt}, Unit{3, "C"}}},
           {{0, 1}, {Unit{0, std::nullopt}, Unit{0, std::nullopt}, Unit{3, "C"}}}}) {
    ListReads reads;
    FinisherMapping mapping;
    for (const std::int32_t item : failing) reads.results[{kFinishers, item}] = 5;
    EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
    EXPECT_THAT(reads.reads, SizeIs(3));
    ASSERT_THAT(mapping.calls, SizeIs(1));
    EXPECT_EQ(mapping.calls[0].finishers, expected);
  }
}

TEST_F(CombinedPass, BinsOfAFinisherThatCannotBeReadAreThoseOfTheNextThatLacksThem) {
  Load(kFinishers, {Name("A") + Bins(4), Name("B")});
  ListReads reads;
  FinisherMapping mapping;
  reads.results[{kFinishers, 0}] = 5;
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_EQ(mapping.calls[0].finishers, (std::vector<Unit>{Unit{0, std::nullopt}, Unit{4, "B"}}));
}

TEST_F(CombinedPass, FailsWhenTheLastFinisherCannotBeRead) {
  Load(kFinishers, {Name("A") + Bins(1), Name("B") + Bins(2)});
  for (const std::int32_t result : {-1, 5, kHighest, kLowest}) {
    ListReads reads;
    FinisherMapping mapping;
    mapping.answer = [](OptionSetter* rows) { rows[0].value = strdup("not applied"); };
    reads.results = {{{kFinishers, 1}, result}};
    EXPECT_EQ(OutcomeOf(z_Update_Prn_Complex_FinisherInformations, context_),
              (Outcome{result, {}}));
    reads.results[{kFinishers, 0}] = 77;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_Complex_FinisherInformations, context_),
              (Outcome{result, {}}));
  }
}

TEST_F(CombinedPass, FailsForFinishersOfADocumentThatIsNotLoaded) {
  for (const std::int32_t count : {1, 500}) {
    context_.documents[kFinishers].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_Complex_FinisherInformations, context_), (Outcome{-1, {}}));
  }
}

TEST_F(CombinedPass, TakesHundredsOfFinishers) {
  Items units;
  for (std::int32_t i = 0; i < 500; ++i) units.push_back(Name("N" + std::to_string(i)) + Bins(i));
  Load(kFinishers, units);
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  ASSERT_THAT(mapping.calls[0].finishers, SizeIs(500));
  EXPECT_EQ(mapping.calls[0].finishers[499], (Unit{499, "N499"}));
}

class LyingCombinedPass : public LyingLists {};

TEST_F(LyingCombinedPass, IsAskedForTheKeysInOrder) {
  Load(kFinishers, {.dict_counts = {{"list", 1}}});
  Load(kBins, {.dict_counts = {{"list", 1}}, .array_counts = {{"alias", 1}}});
  Appended(z_Update_Prn_Complex_FinisherInformations);
  EXPECT_THAT(Reading(), ElementsAre("qvxmlwrapGet_OpenDict list", "qvxmlwrapGet_ArrayCount alias",
                                     "qvxmlwrapGet_OpenArray alias", "qvxmlwrapGet_LongFromArray 0",
                                     "qvxmlwrapGet_CloseArray", "qvxmlwrapGet_CloseDict",
                                     "qvxmlwrapGet_OpenDict list", "qvxmlwrapGet_String name",
                                     "qvxmlwrapGet_Long binnum", "qvxmlwrapGet_CloseDict"));
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_String")[0].arguments[4], ArgumentOf("UTF-8"));
}

TEST_F(LyingCombinedPass, NameThatIsFoundAsNullIsEmpty) {
  Load(kFinishers, {.strings = {{"name", std::nullopt}}, .dict_counts = {{"list", 1}}});
  FinisherMapping mapping;
  Appended(z_Update_Prn_Complex_FinisherInformations);
  ASSERT_THAT(mapping.calls, SizeIs(1));
  EXPECT_THAT(mapping.calls[0].finishers, ElementsAre(Unit{0, ""}));
}

TEST_F(LyingCombinedPass, EndsForAnyNumberOfItems) {
  Load(kFinishers, {.dict_counts = {{"list", kHighest}}});
  Load(kBins, {.dict_counts = {{"list", kHighest}}});
  EXPECT_EQ(RunUnrecorded(z_Update_Prn_Complex_FinisherInformations), (Outcome{0, kNone}));
}

TEST_F(LyingCombinedPass, HasNoItemsBelowZero) {
  Load(kFinishers, {.dict_counts = {{"list", -1}}});
  Load(kBins, {.dict_counts = {{"list", kLowest}}});
  EXPECT_EQ(Appended(z_Update_Prn_Complex_FinisherInformations), kNone);
  EXPECT_THAT(recording_.calls, IsEmpty());
}

}  // namespace
}  // namespace ia_test
