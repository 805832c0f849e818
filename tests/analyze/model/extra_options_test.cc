#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/model_options.h"
#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/model/model_tables.h"
#include "tests/analyze/query/list_updates.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ValuesIn;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

constexpr auto kHandler = analyze_GetExtraOptionStringROWAN;

Outcome InsertUnit(const std::string& value, std::int32_t result = 0) {
  return {result, {{"QVInsertUnit", value}}};
}

std::string OfAliases(const Numbers& aliases) { return NumberArray("alias", aliases); }

// Values -----------------------------------------------------------------------------------------

struct TraysRow : NamedRow {
  Items trays;
  std::string value;
};

class InsertUnitOfTrays : public ListUpdates, public testing::WithParamInterface<TraysRow> {};

TEST_P(InsertUnitOfTrays, HasTheValue) {
  Load(IA_DOCUMENT_TRAY_LIST, GetParam().trays);
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit(GetParam().value));
}

const TraysRow kTrays[] = {
    {{"Alias196"}, {OfAliases({196})}, "INSU1"},
    {{"Alias198"}, {OfAliases({198})}, "MINSU1"},
    {{"Alias196Then198"}, {OfAliases({196}), OfAliases({198})}, "INSU1"},
    {{"Alias198Then196"}, {OfAliases({198}), OfAliases({196})}, "MINSU1"},
    {{"Alias196AfterOthers"}, {OfAliases({101}), OfAliases({102}), OfAliases({196})}, "INSU1"},
    {{"Alias198AfterOthers"}, {OfAliases({101}), OfAliases({198}), OfAliases({102})}, "MINSU1"},
    {{"NextAliases"},
     {OfAliases({195}), OfAliases({197}), OfAliases({199}), OfAliases({0}), OfAliases({-196})},
     "None"},
    {{"NoTrays"}, {}, "None"},
    {{"FirstOfItsAliases"}, {OfAliases({196, 101, 198})}, "INSU1"},
    {{"NotItsSecondAlias"}, {OfAliases({101, 196}), OfAliases({101, 102, 198})}, "None"},
    {{"FirstAliasAfterATrayThatHasItSecond"},
     {OfAliases({101, 196}), OfAliases({198, 196})},
     "MINSU1"},
    {{"NoAliases"}, {OfAliases({}), OfAliases({})}, "None"},
    {{"AfterATrayWithoutAliases"}, {OfAliases({}), Number("type", 3), OfAliases({198})}, "MINSU1"},
    {{"NotTheAliasOfTheTrayBefore"}, {OfAliases({101}), OfAliases({}), ""}, "None"},
    {{"FirstAliasThatIsNoNumber"}, {OfAliases({{}, 196})}, "None"},
    {{"AliasThatIsNoArray"}, {Number("alias", 196)}, "None"},
    {{"OtherKeys"},
     {Number("type", 196) + Number("capacity", 198) + Number("medium_type", 196) +
      NumberArray("Alias", {196})},
     "None"},
};

INSTANTIATE_TEST_SUITE_P(Each, InsertUnitOfTrays, ValuesIn(kTrays), RowName<TraysRow>);

class InsertUnitOption : public ListUpdates {};

TEST_F(InsertUnitOption, RefusesNullArguments) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({196})});
  CallersList list;
  EXPECT_EQ(kHandler(nullptr, list.get()), -1);
  EXPECT_EQ(kHandler(&context_, nullptr), -1);
  EXPECT_EQ(kHandler(nullptr, nullptr), -1);
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(InsertUnitOption, IsNoneWithoutDocument) {
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("None"));
}

TEST_F(InsertUnitOption, IsNoneForANegativeNumberOfTrays) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({196})});
  for (const std::int32_t count : {0, -1, kLowest}) {
    context_.documents[IA_DOCUMENT_TRAY_LIST].count = count;
    EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("None")) << count;
  }
}

TEST_F(InsertUnitOption, CountsOnlyTheTraysOfTheList) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({101}), OfAliases({196})});
  context_.documents[IA_DOCUMENT_TRAY_LIST].count = 1;
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("None"));
}

TEST_F(InsertUnitOption, DoesNotDependOnOtherLists) {
  for (std::int32_t index = 0; index < IA_DOCUMENT_COUNT; ++index) {
    if (index != IA_DOCUMENT_TRAY_LIST) Load(index, {OfAliases({196}), OfAliases({196})});
  }
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("None"));
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({101}), OfAliases({198})});
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("MINSU1"));
}

TEST_F(InsertUnitOption, ReplacesTheOneThatTheListHas) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({198})});
  CallersList list;
  OptionList_Add(list.get(), "QVInsertUnit", "INSU1");
  OptionList_Add(list.get(), "QVFinisher", "FIN");
  EXPECT_EQ(kHandler(&context_, list.get()), 0);
  EXPECT_EQ(list.entries(), (Entries{{"QVInsertUnit", "MINSU1"}, {"QVFinisher", "FIN"}}));
}

// Reads ------------------------------------------------------------------------------------------

class InsertUnitReads : public ListUpdates {
 protected:
  // Loads trays of these aliases; the reads in `failures` fail.
  Outcome OutcomeFor(const std::vector<std::int32_t>& aliases,
                     const std::vector<std::pair<std::int32_t, std::int32_t>>& failures) {
    Items trays;
    for (const std::int32_t alias : aliases) trays.push_back(OfAliases({alias}));
    Load(IA_DOCUMENT_TRAY_LIST, trays);
    reads_.reads.clear();
    reads_.results.clear();
    for (const auto& [tray, result] : failures) {
      reads_.results[{IA_DOCUMENT_TRAY_LIST, tray}] = result;
    }
    return OutcomeOf(kHandler, context_);
  }

  std::vector<std::int32_t> TraysRead() const {
    std::vector<std::int32_t> trays;
    for (const auto& [document, tray] : reads_.reads) {
      EXPECT_EQ(document, IA_DOCUMENT_TRAY_LIST);
      trays.push_back(tray);
    }
    return trays;
  }

  ListReads reads_;
};

TEST_F(InsertUnitReads, GoThroughTheTraysInOrder) {
  EXPECT_EQ(OutcomeFor({101, 102, 103}, {}), InsertUnit("None"));
  EXPECT_THAT(TraysRead(), ElementsAre(0, 1, 2));
}

TEST_F(InsertUnitReads, StopAtTheFirstInsertUnit) {
  EXPECT_EQ(OutcomeFor({101, 196, 198, 101}, {}), InsertUnit("INSU1"));
  EXPECT_THAT(TraysRead(), ElementsAre(0, 1));
  EXPECT_EQ(OutcomeFor({198, 196, 101}, {}), InsertUnit("MINSU1"));
  EXPECT_THAT(TraysRead(), ElementsAre(0));
}

TEST_F(InsertUnitReads, ThatFailAreSkipped) {
  EXPECT_EQ(OutcomeFor({101, 101, 198}, {{0, -1}, {1, 12}}), InsertUnit("MINSU1"));
  EXPECT_THAT(TraysRead(), ElementsAre(0, 1, 2));
}

TEST_F(InsertUnitReads, ThatFailGiveNoAlias) {
  EXPECT_EQ(OutcomeFor({196, 101}, {{0, -1}}), InsertUnit("None"));
  EXPECT_EQ(OutcomeFor({196, 198}, {{0, -1}}), InsertUnit("MINSU1"));
}

TEST_F(InsertUnitReads, AnswerWithTheResultOfTheLastOne) {
  EXPECT_EQ(OutcomeFor({101, 102}, {{1, 12}}), InsertUnit("None", 12));
  EXPECT_EQ(OutcomeFor({101, 102}, {{0, -1}, {1, 12}}), InsertUnit("None", 12));
  EXPECT_EQ(OutcomeFor({101, 196}, {{1, -1}}), InsertUnit("None", -1));
  EXPECT_EQ(OutcomeFor({101, 102}, {{0, 12}}), InsertUnit("None", 0));
}

TEST_F(InsertUnitReads, AnswerWithSuccessWhenAnInsertUnitWasFound) {
  EXPECT_EQ(OutcomeFor({101, 196, 102}, {{0, -1}, {2, -1}}), InsertUnit("INSU1", 0));
}

// Lies -------------------------------------------------------------------------------------------

class InsertUnitLies : public LyingLists {};

TEST_F(InsertUnitLies, OfALengthDoNoHarm) {
  for (const std::int32_t count : {-1, kLowest, 2, 11, kHighest}) {
    Load(IA_DOCUMENT_TRAY_LIST, {.dict_counts = {{"list", 2}},
                                 .array_counts = {{"alias", count}},
                                 .long_elements = {{0, 198}, {1, 196}}});
    EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit(count > 0 ? "MINSU1" : "None")) << count;
  }
}

TEST_F(InsertUnitLies, OfElementsDoNoHarm) {
  Load(IA_DOCUMENT_TRAY_LIST,
       {.dict_counts = {{"list", 2}}, .array_counts = {{"alias", 2}}, .long_elements = {{1, 196}}});
  EXPECT_EQ(OutcomeOf(kHandler, context_), InsertUnit("None"));
}

// z_Update_Prn_extra -----------------------------------------------------------------------------

class ExtraUpdate : public ListUpdates {
 protected:
  Outcome OutcomeOfModel(const char* model) {
    std::string name = model;
    context_.driver_name = name.data();
    const Outcome outcome = OutcomeOf(z_Update_Prn_extra, context_);
    context_.driver_name = nullptr;
    return outcome;
  }
};

TEST(ExtraOptionTable, HasOneRow) {
  EXPECT_EQ(CodesOf(IA_FAMILY_EXTRA_OPTIONS), std::vector<std::string>{"RA-Z5"});
}

TEST_F(ExtraUpdate, SetsTheInsertUnitOfOneModel) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({198})});
  EXPECT_EQ(OutcomeOfModel("RA-Z5"), InsertUnit("MINSU1"));
}

TEST_F(ExtraUpdate, SetsNothingForOtherModels) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({198})});
  for (const char* model : {"", "RA-Z5-MLT-JP", "RA-Z5 ", " RA-Z5", "ra-z5", "RA-z5", "RA-Z",
                            "RA-Z4", "XRA-Z5", "RA-Z50"}) {
    EXPECT_EQ(OutcomeOfModel(model), (Outcome{0, {}})) << model;
  }
}

TEST_F(ExtraUpdate, SetsNothingWithoutModel) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({198})});
  EXPECT_EQ(OutcomeOf(z_Update_Prn_extra, context_), (Outcome{0, {}}));
}

TEST_F(ExtraUpdate, AnswersWithTheFailedRead) {
  Load(IA_DOCUMENT_TRAY_LIST, {OfAliases({101})});
  ListReads reads;
  reads.results[{IA_DOCUMENT_TRAY_LIST, 0}] = 12;
  EXPECT_EQ(OutcomeOfModel("RA-Z5"), InsertUnit("None", 12));
  EXPECT_EQ(OutcomeOfModel("RA-H2"), (Outcome{0, {}}));
}

TEST_F(ExtraUpdate, RefusesNullArguments) {
  CallersList list;
  EXPECT_EQ(z_Update_Prn_extra(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_extra(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_extra(nullptr, nullptr), -1);
  std::string model = "RA-Z5";
  context_.driver_name = model.data();
  EXPECT_EQ(z_Update_Prn_extra(&context_, nullptr), -1);
  context_.driver_name = nullptr;
  EXPECT_THAT(list.entries(), IsEmpty());
}

}  // namespace
}  // namespace ia_test
