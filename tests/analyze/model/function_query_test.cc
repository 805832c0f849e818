#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <string>
#include <type_traits>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/function_queries.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

constexpr std::size_t kPointer = sizeof(void*);
static_assert(std::is_standard_layout_v<FunctionQuery>);
static_assert(offsetof(FunctionQuery, driver_name) == 0);
static_assert(offsetof(FunctionQuery, function) == kPointer);
static_assert(offsetof(FunctionQuery, functions) == 2 * kPointer);
static_assert(offsetof(FunctionQuery, function_count) == 3 * kPointer);
static_assert(offsetof(FunctionQuery, search_table) == 4 * kPointer);
static_assert(offsetof(FunctionQuery, search_rows) == 5 * kPointer);
static_assert(offsetof(FunctionQuery, detail_functions) == 6 * kPointer);
static_assert(offsetof(FunctionQuery, detail_count) == 7 * kPointer);
static_assert(offsetof(FunctionQuery, default_value) == 8 * kPointer);
static_assert(sizeof(FunctionQuery) == 9 * kPointer);
static_assert(std::is_same_v<decltype(FunctionQuery::search_rows), std::int32_t>);
static_assert(offsetof(FunctionPair, detail_function) == 0);
static_assert(offsetof(FunctionPair, value) == kPointer);
static_assert(sizeof(FunctionPair) == 2 * kPointer);

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// zStringExistenceCheck --------------------------------------------------------------------------

struct WordRow : NamedRow {
  Words list;
  const char* word;
  std::int32_t found;
};

class WordTest : public testing::TestWithParam<WordRow> {};

TEST_P(WordTest, FindsAnElementThatIsAPrefixOfTheWord) {
  const WordList list(GetParam().list);
  EXPECT_EQ(zStringExistenceCheck(list.texts(), GetParam().word, *list.count()), GetParam().found);
}

const WordRow kWordRows[] = {
    {{"Equal"}, {"staple"}, "staple", 1},
    {{"Prefix"}, {"sta"}, "staple", 1},
    {{"FirstLetter"}, {"s"}, "staple", 1},
    {{"EmptyElement"}, {""}, "staple", 1},
    {{"EmptyElementForEmptyWord"}, {""}, "", 1},
    {{"LongerElement"}, {"staples"}, "staple", 0},
    {{"MuchLongerElement"}, {"staple_and_punch"}, "staple", 0},
    {{"EndOfWord"}, {"taple", "e"}, "staple", 0},
    {{"OtherWord"}, {"punch"}, "staple", 0},
    {{"OtherCase"}, {"Staple", "STA"}, "staple", 0},
    {{"ElementForEmptyWord"}, {"staple"}, "", 0},
    {{"FirstOfSeveral"}, {"staple", "x", "y"}, "staple", 1},
    {{"LastOfSeveral"}, {"x", "y", "staple"}, "staple", 1},
    {{"NoneOfSeveral"}, {"x", "y", "z"}, "staple", 0},
    {{"NullElementsBefore"}, {{}, {}, "staple"}, "staple", 1},
    {{"NullElementsAfter"}, {"staple", {}}, "staple", 1},
    {{"NullElementsOnly"}, {{}, {}}, "staple", 0},
    {{"NullElementForEmptyWord"}, {{}}, "", 0},
    {{"NullWord"}, {"staple", ""}, nullptr, 0},
    {{"NoElements"}, {}, "staple", 0},
    {{"NoElementsForEmptyWord"}, {}, "", 0},
};

INSTANTIATE_TEST_SUITE_P(Each, WordTest, ValuesIn(kWordRows), RowName<WordRow>);

TEST(WordTestOfCounts, ReadsNoMoreElementsThanTheCount) {
  const WordList list({"x", "staple"});
  EXPECT_EQ(zStringExistenceCheck(list.texts(), "staple", 2), 1);
  EXPECT_EQ(zStringExistenceCheck(list.texts(), "staple", 1), 0);
  EXPECT_EQ(zStringExistenceCheck(list.texts(), "xy", 1), 1);
}

TEST(WordTestOfCounts, FindsNothingForACountBelowOne) {
  const WordList list({"staple"});
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(zStringExistenceCheck(list.texts(), "staple", count), 0) << count;
  }
}

TEST(WordTestOfCounts, FindsNothingWithoutList) {
  EXPECT_EQ(zStringExistenceCheck(nullptr, "staple", 1), 0);
  EXPECT_EQ(zStringExistenceCheck(nullptr, "staple", 0), 0);
  EXPECT_EQ(zStringExistenceCheck(nullptr, nullptr, 1), 0);
}

// All handlers -----------------------------------------------------------------------------------

using Answer = std::optional<std::string>;

struct HandlerRow : NamedRow {
  FunctionStringHandler handler;
  Answer usual;            // of a stapler with some punches
  Answer without_details;  // of a stapler without them
  Answer by_default;       // of such a stapler, without search table and with the default "DEF"
};

const HandlerRow kHandlers[] = {
    {{"Puncher"}, analyze_GetPuncherOptionString, "PUNU2", {}, "DEF"},
    {{"PuncherSearchTableListOrder"},
     analyze_GetPuncherOptionStringSearchTableListOrder,
     "PUNU2",
     {},
     "DEF"},
    {{"PuncherDetailFuncListOrder"},
     analyze_GetPuncherOptionStringDetailFuncListOrder,
     "PUNU2",
     {},
     "DEF"},
    {{"PuncherJuniper"}, analyze_GetPuncherOptionStringJUNIPER, "PUNU2", {}, {}},
    {{"PuncherJuniperMlt"}, analyze_GetPuncherOptionStringJUNIPER_MLT, "PUNU2", {}, "DEF"},
    {{"PuncherMultipleHoles"}, analyze_GetPuncherOptionStringMultipleHoles, "PUNM", {}, "DEF"},
    {{"FinishingFunction"}, analyze_GetFinishingFunctionOptionString, "PUNU3", {}, "DEF"},
    {{"FinishingFunctionCommon"},
     analyze_GetFinishingFunctionOptionStringCommon,
     "PUNU3",
     {},
     "DEF"},
    {{"FinishingFunctionElm"},
     analyze_GetFinishingFunctionOptionString_ELM,
     "True",
     "True",
     "True"},
    {{"FinishingFunctionMagnolia"},
     analyze_GetFinishingFunctionOptionStringMagnolia,
     "True",
     "True",
     "True"},
};

const Words kDetails{"punching_2_holes", "punching_3_holes", "punching_multiple_holes"};

class EachFunctionHandler : public testing::TestWithParam<HandlerRow> {
 protected:
  Answer Ask(const Query& query) { return query.Ask(GetParam().handler); }

  Query stapler_{"staple", {"staple"}, kDetails};
};

TEST_P(EachFunctionHandler, AnswersNullForNull) { EXPECT_EQ(GetParam().handler(nullptr), nullptr); }

TEST_P(EachFunctionHandler, AnswersForAFunctionThatIsReported) {
  EXPECT_EQ(Ask(stapler_), GetParam().usual);
  EXPECT_EQ(Ask(Query("staple", {"punch", {}, "staple"}, kDetails)), GetParam().usual);
}

TEST_P(EachFunctionHandler, AnswersForAFunctionWhosePrefixIsReported) {
  EXPECT_EQ(Ask(Query("staple", {"sta"}, kDetails)), GetParam().usual);
  EXPECT_EQ(Ask(Query("staple", {""}, kDetails)), GetParam().usual);
}

TEST_P(EachFunctionHandler, AnswersWithANewText) {
  char* const first = GetParam().handler(&stapler_.record);
  char* const second = GetParam().handler(&stapler_.record);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  std::memset(first, 'x', std::strlen(first));
  EXPECT_EQ(Answer(second), GetParam().usual);
  EXPECT_EQ(Ask(stapler_), GetParam().usual);
  std::free(first);
  std::free(second);
}

TEST_P(EachFunctionHandler, AnswersNothingForAFunctionThatIsNotReported) {
  for (const Words& functions :
       {Words{}, Words{{}}, Words{"punch", "folding"}, Words{"staples"}, Words{"Staple"}}) {
    EXPECT_EQ(Ask(Query("staple", functions, kDetails)), std::nullopt);
    Query with_default("staple", functions, kDetails, std::nullopt);
    with_default.record.default_value = "DEF";
    EXPECT_EQ(Ask(with_default), std::nullopt);
  }
}

TEST_P(EachFunctionHandler, AnswersNothingWithoutFunctions) {
  stapler_.record.functions = nullptr;
  EXPECT_EQ(Ask(stapler_), std::nullopt);
}

TEST_P(EachFunctionHandler, AnswersNothingForACountOfFunctionsBelowOne) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    stapler_.record.function_count = &count;
    EXPECT_EQ(Ask(stapler_), std::nullopt) << count;
  }
  stapler_.record.function_count = nullptr;
  EXPECT_EQ(Ask(stapler_), std::nullopt);
}

TEST_P(EachFunctionHandler, ReadsNoMoreFunctionsThanTheCount) {
  Query query("staple", {"punch", "staple"}, kDetails);
  constexpr std::int32_t kOne = 1;
  query.record.function_count = &kOne;
  EXPECT_EQ(Ask(query), std::nullopt);
}

TEST_P(EachFunctionHandler, AnswersNothingWithoutFunctionWord) {
  Query query("staple", {"staple", ""}, kDetails);
  query.record.function = nullptr;
  EXPECT_EQ(Ask(query), std::nullopt);
}

TEST_P(EachFunctionHandler, ReadsNoDetailsWhereNoneAreReported) {
  EXPECT_EQ(Ask(Query("staple", {"staple"}, {})), GetParam().without_details);
  EXPECT_EQ(Ask(Query("staple", {"staple"}, {{}, {}})), GetParam().without_details);
  EXPECT_EQ(Ask(Query("staple", {"staple"}, {"Punching_2_holes", "punching_2_holes_more"})),
            GetParam().without_details);
  stapler_.record.detail_functions = nullptr;
  EXPECT_EQ(Ask(stapler_), GetParam().without_details);
}

TEST_P(EachFunctionHandler, ReadsNoDetailsForACountBelowOne) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    stapler_.record.detail_count = &count;
    EXPECT_EQ(Ask(stapler_), GetParam().without_details) << count;
  }
  stapler_.record.detail_count = nullptr;
  EXPECT_EQ(Ask(stapler_), GetParam().without_details);
}

TEST_P(EachFunctionHandler, ReadsNoMoreDetailsThanTheCount) {
  Query query("staple", {"staple"},
              {"x", "punching_2_holes", "punching_French_4_holes", "punching_multiple_holes"});
  constexpr std::int32_t kOne = 1;
  query.record.detail_count = &kOne;
  EXPECT_EQ(Ask(query), GetParam().without_details);
}

TEST_P(EachFunctionHandler, KeepsToTheTableWhereThereIsOne) {
  Query query("staple", {"staple"}, {"x"});
  query.record.default_value = "DEF";
  EXPECT_EQ(Ask(query), GetParam().without_details);
  for (const std::int32_t rows : {0, -1, kLowest}) {
    Query first_row("staple", {"staple"}, {"a"}, SearchTable{{"a", "A"}});
    first_row.record.search_rows = rows;
    first_row.record.default_value = "DEF";
    EXPECT_EQ(Ask(first_row), GetParam().without_details) << rows;
  }
}

TEST_P(EachFunctionHandler, TakesTheDefaultWithoutTable) {
  for (const Words& details : {Words{}, Words{"punching_3_holes", "a"}}) {
    Query query("staple", {"staple"}, details, std::nullopt);
    EXPECT_EQ(Ask(query), GetParam().without_details);
    query.record.default_value = "DEF";
    EXPECT_EQ(Ask(query), GetParam().by_default);
    query.record.search_rows = 5;
    EXPECT_EQ(Ask(query), GetParam().by_default);
    query.record.detail_functions = nullptr;
    query.record.detail_count = nullptr;
    EXPECT_EQ(Ask(query), GetParam().by_default);
  }
}

INSTANTIATE_TEST_SUITE_P(Handlers, EachFunctionHandler, ValuesIn(kHandlers), RowName<HandlerRow>);

}  // namespace
}  // namespace ia_test
