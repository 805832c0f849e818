#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <ostream>
#include <string>
#include <utility>

#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"
#include "tests/analyze/model/function_queries.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/model_tables.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

using Answer = std::optional<std::string>;

constexpr auto kDispatch = analyze_GetFinishingFunctionOptionString;
constexpr auto kCommon = analyze_GetFinishingFunctionOptionStringCommon;
constexpr auto kElm = analyze_GetFinishingFunctionOptionString_ELM;
constexpr auto kMagnolia = analyze_GetFinishingFunctionOptionStringMagnolia;

char* AskGetter(const FunctionQuery* query) { return zGetFinishingFunctionOptionString(query); }

// Dispatch ---------------------------------------------------------------------------------------

// What a model gets for stapling, and for folding with a default.
using Answers = std::array<Answer, 2>;

const Answers kOfStapleModels{"True", {}};
const Answers kOfOtherModels{std::nullopt, "FLDU1"};

Answers AnswersFor(const char* model, FunctionStringHandler handler = kDispatch) {
  Query staple("staple", {"staple", "folding"}, {}, std::nullopt);
  staple.record.driver_name = model;
  Query folding("folding", {"staple", "folding"}, {}, std::nullopt);
  folding.record.driver_name = model;
  folding.record.default_value = "FLDU1";
  return {staple.Ask(handler), folding.Ask(handler)};
}

struct FunctionRow {
  const char* model;
};

void PrintTo(const FunctionRow& row, std::ostream* out) { *out << row.model; }

class FinishingFunctionModel : public testing::TestWithParam<FunctionRow> {};

TEST_P(FinishingFunctionModel, HasAHandlerThatKnowsStaplingOnly) {
  EXPECT_EQ(AnswersFor(GetParam().model), kOfStapleModels);
  EXPECT_EQ(AnswersFor(GetParam().model, AskGetter), kOfStapleModels);
}

TEST_P(FinishingFunctionModel, LongerCodeIsTheSameModel) {
  for (const char* suffix : {"-MLT-JP", "2", " "}) {
    EXPECT_EQ(AnswersFor((GetParam().model + std::string(suffix)).c_str()), kOfStapleModels)
        << suffix;
  }
}

TEST_P(FinishingFunctionModel, ShorterCodeIsADifferentModel) {
  EXPECT_EQ(AnswersFor(WithoutLast(GetParam().model).c_str()), kOfOtherModels);
}

TEST_P(FinishingFunctionModel, CodeInDifferentCaseIsADifferentModel) {
  EXPECT_EQ(AnswersFor(InLowerCase(GetParam().model).c_str()), kOfOtherModels);
}

TEST_P(FinishingFunctionModel, CodeAfterOtherTextIsADifferentModel) {
  EXPECT_EQ(AnswersFor((std::string("X") + GetParam().model).c_str()), kOfOtherModels);
}

constexpr FunctionRow kModels[] = {{"RC-T7"}, {"RD-T7"}};

INSTANTIATE_TEST_SUITE_P(Each, FinishingFunctionModel, ValuesIn(kModels), ModelName<FunctionRow>);

TEST(FinishingFunctionTable, HasAnExpectationForEachRow) {
  EXPECT_EQ(CodesOf(IA_FAMILY_FINISHING_FUNCTION), ModelsOf(kModels));
}

TEST(FinishingFunctionDispatch, TakesTheCommonHandlerForOtherModels) {
  for (const char* model : {"", "R", "RA-T7", "RB-T7", "RE-T7", "RC-T8", "RA-H2-JP"}) {
    EXPECT_EQ(AnswersFor(model), kOfOtherModels) << model;
  }
  EXPECT_EQ(AnswersFor(nullptr), kOfOtherModels);
}

TEST(FinishingFunctionDispatch, SearchesLikeTheCommonHandler) {
  const Query query = Punching({"punching_2_holes", "punching_French_4_holes"});
  EXPECT_EQ(query.Ask(kDispatch), "PUNF4");
  EXPECT_EQ(query.Ask(AskGetter), "PUNF4");
}

TEST(FinishingFunctionDispatch, IsNotRepeatedByHandlers) {
  EXPECT_EQ(AnswersFor("RC-T7", kCommon), kOfOtherModels);
  EXPECT_EQ(AnswersFor(nullptr, kElm), kOfStapleModels);
  EXPECT_EQ(AnswersFor("RA-H2", kMagnolia), kOfStapleModels);
}

TEST(FinishingFunctionDispatch, IsReachedThroughTheGetter) {
  EXPECT_EQ(zGetFinishingFunctionOptionString(nullptr), nullptr);
  EXPECT_EQ(AnswersFor(nullptr, AskGetter), kOfOtherModels);
}

// The last pair ----------------------------------------------------------------------------------

struct SearchRow : NamedRow {
  SearchTable table;
  Words details;
  Answer answer;
};

class FinishingFunctionSearch : public testing::TestWithParam<SearchRow> {};

TEST_P(FinishingFunctionSearch, HasTheValueOfTheLastPairReported) {
  EXPECT_EQ(Punching(GetParam().details, GetParam().table).Ask(kCommon), GetParam().answer);
  EXPECT_EQ(Punching(GetParam().details, GetParam().table).Ask(kDispatch), GetParam().answer);
}

const SearchTable kAbc{{"a", "A"}, {"b", "B"}, {"c", "C"}};

const SearchRow kSearchRows[] = {
    {{"First"}, kAbc, {"a"}, "A"},
    {{"Last"}, kAbc, {"c"}, "C"},
    {{"None"}, kAbc, {"d", "ab", "A"}, {}},
    {{"OfTwo"}, kAbc, {"a", "b"}, "B"},
    {{"OfTwoInReverse"}, kAbc, {"b", "a"}, "B"},
    {{"OfFirstAndLast"}, kAbc, {"c", "a"}, "C"},
    {{"OfAll"}, kAbc, {"c", "b", "a"}, "C"},
    {{"NoLetters"}, kAbc, {""}, "C"},
    {{"AfterNulls"}, kAbc, {{}, "b", {}, "a"}, "B"},
    {{"Prefix"}, {{"xa", "A"}, {"xb", "B"}, {"y", "Y"}}, {"x"}, "B"},
    {{"LongerThanTheName"}, {{"xa", "A"}, {"xb", "B"}}, {"xa", "xbc"}, "A"},
    {{"LastOfEqualNames"}, {{"a", "A"}, {"a", "B"}}, {"a"}, "B"},
    {{"NullName"}, {{"a", "A"}, {nullptr, "X"}}, {"a", ""}, "A"},
    {{"NullValueLast"}, {{"a", "A"}, {"b", nullptr}}, {"a", "b"}, {}},
    {{"NullValueFirst"}, {{"a", nullptr}, {"b", "B"}}, {"a", "b"}, "B"},
    {{"NullValueUnreported"}, {{"a", "A"}, {"b", nullptr}}, {"a"}, "A"},
    {{"EmptyValue"}, {{"a", "A"}, {"b", ""}}, {"a", "b"}, ""},
    {{"EmptyTable"}, {}, {"a"}, {}},
};

INSTANTIATE_TEST_SUITE_P(Each, FinishingFunctionSearch, ValuesIn(kSearchRows), RowName<SearchRow>);

TEST(FinishingFunctionSearchInTable, ReadsNoMoreRowsThanTheCount) {
  Query query = Punching({"a", "b", "c"}, kAbc);
  query.record.search_rows = 2;
  EXPECT_EQ(query.Ask(kCommon), "B");
}

TEST(FinishingFunctionSearchInTable, DoesNotTakeTheDefault) {
  Query query = Punching({"d"}, kAbc);
  query.record.default_value = "DEF";
  EXPECT_EQ(query.Ask(kCommon), std::nullopt);
}

// Stapling ---------------------------------------------------------------------------------------

struct StapleHandler : NamedRow {
  FunctionStringHandler handler;
};

class Stapling : public testing::TestWithParam<StapleHandler> {
 protected:
  Answer AnswerFor(const std::string& function, Words functions) {
    return Query(function, std::move(functions), {"a"}, SearchTable{{"a", "A"}})
        .Ask(GetParam().handler);
  }
};

TEST_P(Stapling, IsTrueWhenReported) {
  EXPECT_EQ(AnswerFor("staple", {"staple"}), "True");
  EXPECT_EQ(AnswerFor("staple", {"punch", {}, "stap"}), "True");
}

TEST_P(Stapling, IsNothingWhenNotReported) {
  EXPECT_EQ(AnswerFor("staple", {}), std::nullopt);
  EXPECT_EQ(AnswerFor("staple", {"punch", "staples"}), std::nullopt);
}

TEST_P(Stapling, IsTheOnlyFunction) {
  for (const char* function : {"staples", "staple_booklet", "staple ", "Staple", "STAPLE", "stapl",
                               "punch", "folding", ""}) {
    EXPECT_EQ(AnswerFor(function, {"", function, "staple"}), std::nullopt) << function;
  }
}

constexpr StapleHandler kStapleHandlers[] = {{{"Elm"}, kElm}, {{"Magnolia"}, kMagnolia}};

INSTANTIATE_TEST_SUITE_P(Handlers, Stapling, ValuesIn(kStapleHandlers), RowName<StapleHandler>);

}  // namespace
}  // namespace ia_test
