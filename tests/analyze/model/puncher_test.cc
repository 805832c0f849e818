#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>

#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "tests/analyze/model/function_queries.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/model_tables.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::Combine;
using testing::ValuesIn;

using Answer = std::optional<std::string>;

constexpr char kTwo[] = "punching_2_holes";
constexpr char kTwoOrThree[] = "punching_2or3_holes";
constexpr char kThree[] = "punching_3_holes";
constexpr char kFrench[] = "punching_French_4_holes";
constexpr char kSwedish[] = "punching_Swedish_4_holes";
constexpr char kMultiple[] = "punching_multiple_holes";

constexpr auto kDispatch = analyze_GetPuncherOptionString;
constexpr auto kTableOrder = analyze_GetPuncherOptionStringSearchTableListOrder;
constexpr auto kDeviceOrder = analyze_GetPuncherOptionStringDetailFuncListOrder;
constexpr auto kJuniper = analyze_GetPuncherOptionStringJUNIPER;
constexpr auto kJuniperMlt = analyze_GetPuncherOptionStringJUNIPER_MLT;
constexpr auto kMultipleHoles = analyze_GetPuncherOptionStringMultipleHoles;

// Dispatch ---------------------------------------------------------------------------------------

// What a model gets with a device that punches 2 holes and French 4 holes, one that punches 3, and
// one that punches as many as wanted. No two handlers answer alike.
using Answers = std::array<Answer, 3>;

const Answers kOfJuniper{"PUNU2", {}, {}};
const Answers kOfJuniperMlt{"PUNU24", "PUNU3", {}};
const Answers kOfMultipleHoles{"PUNU2", "PUNU3", "PUNM"};
const Answers kOfOtherModels{"PUNF24", "PUNU3", {}};

Answers AnswersFor(const char* model, FunctionStringHandler handler = kDispatch) {
  Answers answers;
  const std::array<Words, 3> devices{Words{kTwo, kFrench}, Words{kThree}, Words{kMultiple}};
  for (std::size_t i = 0; i < devices.size(); ++i) {
    Query query = Punching(devices[i]);
    query.record.driver_name = model;
    answers[i] = query.Ask(handler);
  }
  return answers;
}

struct PuncherRow {
  const char* model;
  Answers answers;
};

void PrintTo(const PuncherRow& row, std::ostream* out) { *out << row.model; }

class PuncherModel : public testing::TestWithParam<PuncherRow> {};

TEST_P(PuncherModel, HasTheHandlerOfItsRow) {
  EXPECT_EQ(AnswersFor(GetParam().model), GetParam().answers);
}

TEST_P(PuncherModel, LongerCodeIsTheSameModel) {
  for (const char* suffix : {"-MLT-JP", "2", " "}) {
    EXPECT_EQ(AnswersFor((GetParam().model + std::string(suffix)).c_str()), GetParam().answers)
        << suffix;
  }
}

TEST_P(PuncherModel, ShorterCodeIsADifferentModel) {
  EXPECT_EQ(AnswersFor(WithoutLast(GetParam().model).c_str()), kOfOtherModels);
}

TEST_P(PuncherModel, CodeInDifferentCaseIsADifferentModel) {
  EXPECT_EQ(AnswersFor(InLowerCase(GetParam().model).c_str()), kOfOtherModels);
}

TEST_P(PuncherModel, CodeAfterOtherTextIsADifferentModel) {
  EXPECT_EQ(AnswersFor((std::string("X") + GetParam().model).c_str()), kOfOtherModels);
}

TEST_P(PuncherModel, HasNoPuncherWhereTheDeviceReportsNone) {
  Query query("punch", {"staple"}, {kTwo, kFrench, kThree, kMultiple});
  query.record.driver_name = GetParam().model;
  EXPECT_EQ(query.Ask(kDispatch), std::nullopt);
}

const PuncherRow kModels[] = {
    {"RA-H2-JP", kOfJuniper},        {"RA-H2-MLT-JP", kOfJuniperMlt},
    {"RA-Z5-MLT-JP", kOfJuniperMlt}, {"RA-W8-MLT-JP", kOfJuniperMlt},
    {"RA-G5-MLT-JP", kOfJuniperMlt}, {"RA-T0-MLT-JP", kOfJuniperMlt},
    {"RA-T6-MLT-JP", kOfJuniperMlt}, {"RA-X6-MLT-JP", kOfJuniperMlt},
    {"RA-Z2-MLT-JP", kOfJuniperMlt}, {"RA-H5-MLT-JP", kOfJuniperMlt},
    {"RA-J3", kOfMultipleHoles},
};

INSTANTIATE_TEST_SUITE_P(Each, PuncherModel, ValuesIn(kModels), ModelName<PuncherRow>);

TEST(PuncherTable, HasAnExpectationForEachRow) {
  EXPECT_EQ(CodesOf(IA_FAMILY_PUNCHER), ModelsOf(kModels));
}

TEST(PuncherDispatch, SearchesForOtherModels) {
  for (const char* model : {"", "R", "RA-H2", "RA-Z5", "RA-J", "RA-J4", "RA-H2-MLT", "RC-T7"}) {
    EXPECT_EQ(AnswersFor(model), kOfOtherModels) << model;
  }
  EXPECT_EQ(AnswersFor(nullptr), kOfOtherModels);
}

TEST(PuncherDispatch, HandsTheHandlersAnswersOn) {
  EXPECT_EQ(AnswersFor(nullptr, kJuniper), kOfJuniper);
  EXPECT_EQ(AnswersFor(nullptr, kJuniperMlt), kOfJuniperMlt);
  EXPECT_EQ(AnswersFor(nullptr, kMultipleHoles), kOfMultipleHoles);
}

// Handlers do not depend on the model.
TEST(PuncherDispatch, IsNotRepeatedByHandlers) {
  EXPECT_EQ(AnswersFor("RA-J3", kJuniper), kOfJuniper);
  EXPECT_EQ(AnswersFor("RA-H2-JP", kJuniperMlt), kOfJuniperMlt);
  EXPECT_EQ(AnswersFor("RA-H2-JP", kMultipleHoles), kOfMultipleHoles);
  EXPECT_EQ(AnswersFor("RA-H2-JP", kTableOrder), (Answers{"PUNU2", "PUNU3", {}}));
}

TEST(PuncherDispatch, IsReachedThroughTheGetter) {
  EXPECT_EQ(zGetPuncherOptionString(nullptr), nullptr);
  for (const PuncherRow& row : kModels) {
    EXPECT_EQ(AnswersFor(row.model,
                         [](const FunctionQuery* query) { return zGetPuncherOptionString(query); }),
              row.answers)
        << row.model;
  }
  EXPECT_EQ(AnswersFor(nullptr,
                       [](const FunctionQuery* query) { return zGetPuncherOptionString(query); }),
            kOfOtherModels);
}

// 2 holes and French 4 holes ---------------------------------------------------------------------

struct PunchRow : NamedRow {
  FunctionStringHandler handler;
  Words details;
  Answer answer;
};

class Punches : public testing::TestWithParam<PunchRow> {};

TEST_P(Punches, HaveTheValue) {
  EXPECT_EQ(Punching(GetParam().details).Ask(GetParam().handler), GetParam().answer);
}

const PunchRow kPunches[] = {
    {{"OtherModelTwoThenFrench"}, kDispatch, {kTwo, kFrench}, "PUNF24"},
    {{"OtherModelFrenchThenTwo"}, kDispatch, {kFrench, kTwo}, "PUNF24"},
    {{"OtherModelAll"}, kDispatch, {kSwedish, kFrench, kThree, kTwoOrThree, kTwo}, "PUNF24"},
    {{"OtherModelPrefixes"}, kDispatch, {"punching_2_", "punching_F"}, "PUNF24"},
    {{"OtherModelPrefixOfAll"}, kDispatch, {"punching"}, "PUNF24"},
    {{"OtherModelNoLetters"}, kDispatch, {""}, "PUNF24"},
    {{"OtherModelTwo"}, kDispatch, {kTwo}, "PUNU2"},
    {{"OtherModelFrench"}, kDispatch, {kFrench}, "PUNF4"},
    {{"OtherModelTwoAndSwedish"}, kDispatch, {kSwedish, kTwo}, "PUNU2"},
    {{"OtherModelTwoOrThreeAndFrench"}, kDispatch, {kFrench, kTwoOrThree}, "PUNU23"},
    {{"OtherModelThreeAndFrench"}, kDispatch, {kFrench, kThree}, "PUNU3"},

    {{"JuniperTwo"}, kJuniper, {kTwo}, "PUNU2"},
    {{"JuniperTwoAndAll"}, kJuniper, {kFrench, kThree, kMultiple, kTwo}, "PUNU2"},
    {{"JuniperPrefix"}, kJuniper, {"punching_2"}, "PUNU2"},
    {{"JuniperTwoOrThree"}, kJuniper, {kTwoOrThree}, {}},
    {{"JuniperThree"}, kJuniper, {kThree}, {}},
    {{"JuniperFrench"}, kJuniper, {kFrench}, {}},
    {{"JuniperSwedish"}, kJuniper, {kSwedish}, {}},
    {{"JuniperMultiple"}, kJuniper, {kMultiple}, {}},

    {{"JuniperMltTwo"}, kJuniperMlt, {kTwo}, "PUNU2"},
    {{"JuniperMltTwoThenFrench"}, kJuniperMlt, {kTwo, kFrench}, "PUNU24"},
    {{"JuniperMltFrenchThenTwo"}, kJuniperMlt, {kFrench, kTwo}, "PUNU24"},
    {{"JuniperMltAll"}, kJuniperMlt, {kSwedish, kFrench, kThree, kTwoOrThree, kTwo}, "PUNU24"},
    {{"JuniperMltPrefixOfAll"}, kJuniperMlt, {"punching_"}, "PUNU24"},
    {{"JuniperMltTwoAndSwedish"}, kJuniperMlt, {kSwedish, kTwo}, "PUNU2"},
    {{"JuniperMltTwoAndThree"}, kJuniperMlt, {kThree, kTwo}, "PUNU2"},
    {{"JuniperMltFrench"}, kJuniperMlt, {kFrench}, "PUNF4"},
    {{"JuniperMltTwoOrThreeAndFrench"}, kJuniperMlt, {kFrench, kTwoOrThree}, "PUNU23"},
    {{"JuniperMltMultiple"}, kJuniperMlt, {kMultiple}, {}},

    {{"MultipleHoles"}, kMultipleHoles, {kMultiple}, "PUNM"},
    {{"MultipleHolesAndTwo"}, kMultipleHoles, {kTwo, kMultiple}, "PUNM"},
    {{"MultipleHolesAndAll"}, kMultipleHoles, {kTwo, kFrench, kThree, kMultiple}, "PUNM"},
    {{"MultipleHolesPrefix"}, kMultipleHoles, {"punching_m"}, "PUNM"},
    {{"MultipleHolesTwoAndFrench"}, kMultipleHoles, {kTwo, kFrench}, "PUNU2"},
    {{"MultipleHolesSwedish"}, kMultipleHoles, {kSwedish}, "PUNS4"},
};

INSTANTIATE_TEST_SUITE_P(Each, Punches, ValuesIn(kPunches), RowName<PunchRow>);

// A reported word matches the names that it is a prefix of, but no shorter name.
TEST(PunchesBesideATable, LongerWordsAreDifferent) {
  for (const char* more : {"~", "s", " "}) {
    const std::string two = std::string(kTwo) + more;
    const std::string french = std::string(kFrench) + more;
    const std::string multiple = std::string(kMultiple) + more;
    EXPECT_EQ(Punching({two, kFrench}).Ask(kDispatch), "PUNF4") << more;
    EXPECT_EQ(Punching({kTwo, french}).Ask(kDispatch), "PUNU2") << more;
    EXPECT_EQ(Punching({two}).Ask(kJuniper), Answer()) << more;
    EXPECT_EQ(Punching({two, kFrench}).Ask(kJuniperMlt), "PUNF4") << more;
    EXPECT_EQ(Punching({kTwo, french}).Ask(kJuniperMlt), "PUNU2") << more;
    EXPECT_EQ(Punching({multiple}).Ask(kMultipleHoles), Answer()) << more;
  }
}

// The fixed values do not come from the table.
TEST(PunchesBesideATable, HaveTheirOwnValues) {
  const SearchTable other{{kTwo, "X"}, {kFrench, "Y"}, {kMultiple, "Z"}};
  for (const auto& table : {std::optional<SearchTable>(other), std::optional<SearchTable>()}) {
    EXPECT_EQ(Punching({kTwo, kFrench}, table).Ask(kDispatch), "PUNF24");
    EXPECT_EQ(Punching({kTwo, kFrench}, table).Ask(kJuniper), "PUNU2");
    EXPECT_EQ(Punching({kTwo}, table).Ask(kJuniperMlt), "PUNU2");
    EXPECT_EQ(Punching({kTwo, kFrench}, table).Ask(kJuniperMlt), "PUNU24");
    EXPECT_EQ(Punching({kMultiple}, table).Ask(kMultipleHoles), "PUNM");
  }
  EXPECT_EQ(Punching({kTwo}, other).Ask(kDispatch), "X");
  EXPECT_EQ(Punching({kTwo}, other).Ask(kMultipleHoles), "X");
  EXPECT_EQ(Punching({kMultiple}, other).Ask(kJuniperMlt), "Z");
}

// Search in the order of the table ---------------------------------------------------------------

struct SearchHandler : NamedRow {
  FunctionStringHandler handler;
};

const SearchHandler kSearchHandlers[] = {{{"TableOrder"}, kTableOrder},
                                         {{"OtherModel"}, kDispatch},
                                         {{"JuniperMlt"}, kJuniperMlt},
                                         {{"MultipleHoles"}, kMultipleHoles}};

struct SearchRow : NamedRow {
  SearchTable table;
  Words details;
  Answer answer;
};

class PuncherSearch : public testing::TestWithParam<std::tuple<SearchHandler, SearchRow>> {};

TEST_P(PuncherSearch, HasTheValue) {
  const auto& [handler, row] = GetParam();
  EXPECT_EQ(Punching(row.details, row.table).Ask(handler.handler), row.answer);
}

const SearchTable kAbc{{"a", "A"}, {"b", "B"}, {"c", "C"}};

const SearchRow kSearchRows[] = {
    {{"Two"}, kPunchTable, {kTwo}, "PUNU2"},
    {{"TwoOrThree"}, kPunchTable, {kTwoOrThree}, "PUNU23"},
    {{"Three"}, kPunchTable, {kThree}, "PUNU3"},
    {{"French"}, kPunchTable, {kFrench}, "PUNF4"},
    {{"Swedish"}, kPunchTable, {kSwedish}, "PUNS4"},
    {{"ThreeThenTwo"}, kPunchTable, {kThree, kTwo}, "PUNU2"},
    {{"First"}, kAbc, {"a"}, "A"},
    {{"Last"}, kAbc, {"c"}, "C"},
    {{"None"}, kAbc, {"d", "ab", "A"}, {}},
    {{"InOrderOfTable"}, kAbc, {"c", "b"}, "B"},
    {{"AllInReverse"}, kAbc, {"c", "b", "a"}, "A"},
    {{"AfterNulls"}, kAbc, {{}, "c", {}, "b"}, "B"},
    {{"Prefix"}, {{"xa", "A"}, {"xb", "B"}}, {"x"}, "A"},
    {{"PrefixOfTheSecond"}, {{"xa", "A"}, {"xbc", "B"}}, {"xb"}, "B"},
    {{"LongerThanTheName"}, {{"xa", "A"}}, {"xab"}, {}},
    {{"FirstOfEqualNames"}, {{"a", "A"}, {"a", "B"}}, {"a"}, "A"},
    {{"NullName"}, {{nullptr, "X"}, {"a", "A"}}, {"a"}, "A"},
    {{"NullNamesOnly"}, {{nullptr, "X"}, {nullptr, nullptr}}, {"a"}, {}},
    {{"NullValue"}, {{"a", nullptr}, {"b", "B"}}, {"b", "a"}, {}},
    {{"NullValueOfEqualNames"}, {{"a", nullptr}, {"a", "A"}}, {"a"}, {}},
    {{"NullValueUnreported"}, {{"a", nullptr}, {"b", "B"}}, {"b"}, "B"},
    {{"EmptyValue"}, {{"a", ""}, {"b", "B"}}, {"b", "a"}, ""},
    {{"EmptyTable"}, {}, {"a"}, {}},
};

INSTANTIATE_TEST_SUITE_P(Each, PuncherSearch,
                         Combine(ValuesIn(kSearchHandlers), ValuesIn(kSearchRows)),
                         [](const auto& info) {
                           return std::string(std::get<0>(info.param).name) +
                                  std::get<1>(info.param).name;
                         });

TEST(PuncherSearchInTable, ReadsNoMoreRowsThanTheCount) {
  Query query = Punching({"b", "c"}, kAbc);
  query.record.search_rows = 1;
  EXPECT_EQ(query.Ask(kTableOrder), std::nullopt);
  EXPECT_EQ(query.Ask(kDeviceOrder), std::nullopt);
  query.record.search_rows = 2;
  EXPECT_EQ(query.Ask(kTableOrder), "B");
  EXPECT_EQ(query.Ask(kDeviceOrder), "B");
}

TEST(PuncherSearchInTable, TakesAnEmptyDetailForEachName) {
  EXPECT_EQ(Punching({""}, kAbc).Ask(kTableOrder), "A");
  EXPECT_EQ(Punching({""}, SearchTable{{nullptr, "X"}, {"b", "B"}}).Ask(kTableOrder), "B");
}

// Search in the order of the device --------------------------------------------------------------

class PuncherSearchOfDevice : public testing::TestWithParam<SearchRow> {};

TEST_P(PuncherSearchOfDevice, HasTheValue) {
  EXPECT_EQ(Punching(GetParam().details, GetParam().table).Ask(kDeviceOrder), GetParam().answer);
}

const SearchRow kDeviceRows[] = {
    {{"ThreeThenTwo"}, kPunchTable, {kThree, kTwo}, "PUNU3"},
    {{"TwoThenThree"}, kPunchTable, {kTwo, kThree}, "PUNU2"},
    {{"TwoAndFrench"}, kPunchTable, {kTwo, kFrench}, "PUNU2"},
    {{"First"}, kAbc, {"a"}, "A"},
    {{"Last"}, kAbc, {"c"}, "C"},
    {{"None"}, kAbc, {"d", "ab", "A"}, {}},
    {{"InOrderOfDevice"}, kAbc, {"d", "c", "a"}, "C"},
    {{"AfterNulls"}, kAbc, {{}, "c", {}, "b"}, "C"},
    {{"NullsOnly"}, kAbc, {{}, {}}, {}},
    {{"Prefix"}, {{"xa", "A"}, {"xb", "B"}}, {"x"}, "A"},
    {{"PrefixOfTheSecond"}, {{"xa", "A"}, {"xbc", "B"}}, {"xb"}, "B"},
    {{"LongerThanTheName"}, {{"xa", "A"}}, {"xab"}, {}},
    {{"LongerThanTheNameThenName"}, {{"xa", "A"}}, {"xab", "xa"}, "A"},
    {{"OtherCase"}, {{"xa", "A"}}, {"X"}, {}},
    {{"NoLetters"}, kAbc, {""}, "A"},
    {{"FirstOfEqualNames"}, {{"a", "A"}, {"a", "B"}}, {"a"}, "A"},
    {{"NullName"}, {{nullptr, "X"}, {"a", "A"}}, {"a"}, "A"},
    {{"NullNameForNoLetters"}, {{nullptr, "X"}, {"a", "A"}}, {""}, "A"},
    {{"NullNamesOnly"}, {{nullptr, "X"}, {nullptr, nullptr}}, {"a"}, {}},
    {{"NullValueThenNextDetail"}, {{"a", nullptr}, {"b", "B"}}, {"a", "b"}, "B"},
    {{"NullValueOnly"}, {{"a", nullptr}, {"b", "B"}}, {"a"}, {}},
    {{"NullValueHidesTheNextRow"}, {{"xa", nullptr}, {"xb", "B"}}, {"x"}, {}},
    {{"NullValueHidesTheNextRowForOneDetail"},
     {{"xa", nullptr}, {"xb", "B"}, {"y", "Y"}},
     {"x", "y"},
     "Y"},
    {{"EmptyValue"}, {{"a", ""}, {"b", "B"}}, {"a", "b"}, ""},
    {{"EmptyTable"}, {}, {"a"}, {}},
};

INSTANTIATE_TEST_SUITE_P(Each, PuncherSearchOfDevice, ValuesIn(kDeviceRows), RowName<SearchRow>);

}  // namespace
}  // namespace ia_test
