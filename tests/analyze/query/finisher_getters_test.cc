#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "info_analyze/list_getters.h"
#include "info_analyze/model_options.h"

namespace ia_test {
namespace {

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// The answers of getters; "-" means null.
constexpr char kNull[] = "-";

std::string TakeText(char* text) {
  std::string copy = text != nullptr ? text : kNull;
  std::free(text);
  return copy;
}

// A list of words, a null one where it has no value.
class Words {
 public:
  Words(std::initializer_list<std::optional<std::string>> words)
      : Words(std::vector<std::optional<std::string>>(words)) {}
  explicit Words(std::vector<std::optional<std::string>> words) : words_(std::move(words)) {
    for (auto& word : words_) texts_.push_back(word ? word->data() : nullptr);
    count = static_cast<std::int32_t>(words_.size());
  }
  Words(const Words&) = delete;
  Words& operator=(const Words&) = delete;

  char* const* data() { return texts_.data(); }

  std::int32_t count = 0;

 private:
  std::vector<std::optional<std::string>> words_;
  std::vector<char*> texts_;
};

FinisherUnit UnitOf(std::int32_t type, const char* name, Words& functions, Words& details) {
  return {type, name, functions.data(), &functions.count, details.data(), &details.count, nullptr};
}

std::string InOtherCase(std::string text) {
  for (char& letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    letter = static_cast<char>(std::islower(byte) != 0 ? std::toupper(byte) : std::tolower(byte));
  }
  return text;
}

// zStringExistenceCheck --------------------------------------------------------------------------

bool Finds(Words words, const char* word) {
  return zStringExistenceCheck(words.data(), word, words.count) == 1;
}

TEST(StringExistence, FindsTheWord) {
  EXPECT_TRUE(Finds({"punch"}, "punch"));
  EXPECT_TRUE(Finds({"staple", "punch"}, "punch"));
  EXPECT_TRUE(Finds({"punch", "staple"}, "punch"));
  EXPECT_TRUE(Finds({std::nullopt, "staple", std::nullopt, "punch"}, "punch"));
}

TEST(StringExistence, FindsEveryWordThatBeginsWithAnElement) {
  EXPECT_TRUE(Finds({"punc"}, "punch"));
  EXPECT_TRUE(Finds({"p"}, "punch"));
  EXPECT_TRUE(Finds({""}, "punch"));
  EXPECT_TRUE(Finds({""}, ""));
}

TEST(StringExistence, DoesNotFindAnElementThatGoesOnOrDiffers) {
  EXPECT_FALSE(Finds({"punch "}, "punch"));
  EXPECT_FALSE(Finds({"punching_2_holes"}, "punch"));
  EXPECT_FALSE(Finds({"unch"}, "punch"));
  EXPECT_FALSE(Finds({"pinch"}, "punch"));
  EXPECT_FALSE(Finds({"Punch"}, "punch"));
  EXPECT_FALSE(Finds({"punch"}, ""));
}

TEST(StringExistence, AnswersOneOrZero) {
  Words words = {"punch"};
  EXPECT_EQ(zStringExistenceCheck(words.data(), "punch", 1), 1);
  EXPECT_EQ(zStringExistenceCheck(words.data(), "staple", 1), 0);
}

TEST(StringExistence, ReadsNoMoreThanTheCount) {
  Words words = {"staple", "punch"};
  EXPECT_EQ(zStringExistenceCheck(words.data(), "punch", 1), 0);
  EXPECT_EQ(zStringExistenceCheck(words.data(), "punch", 2), 1);
}

TEST(StringExistence, FindsNothingInNothing) {
  Words words = {"punch"};
  Words nulls = {std::nullopt, std::nullopt};
  EXPECT_EQ(zStringExistenceCheck(nullptr, "punch", 1), 0);
  EXPECT_EQ(zStringExistenceCheck(words.data(), nullptr, 1), 0);
  EXPECT_EQ(zStringExistenceCheck(nullptr, nullptr, 1), 0);
  EXPECT_EQ(zStringExistenceCheck(nulls.data(), "punch", 2), 0);
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(zStringExistenceCheck(words.data(), "punch", count), 0) << count;
  }
}

// All getters ------------------------------------------------------------------------------------

struct GetterRow {
  const char* label;
  OptionGetter getter;
  const char* value;
  // A unit that the getter answers for.
  std::int32_t type;
  const char* name;
  const char* function;  // null: not used
  const char* detail;    // null: not used
};

void PrintTo(const GetterRow& row, std::ostream* out) { *out << row.label; }

constexpr auto kGetters = std::to_array<GetterRow>({
    {"Trimmer", zGetTrimmerFunctionOptionString, "TRMU1", 1, "Vorel Saddle Finisher-W4", "trimming",
     nullptr},
    {"InnerTrimmer", zGetInnerTrimmerFunctionOptionString, "ITRMU1", 1, "Vorel Booklet Finisher-P1",
     "trimming", nullptr},
    {"Inserter", zGetFinisherInserterOptionString, "INSU1", 1, nullptr, "inserter", nullptr},
    {"MultiInserter", zGetMultiInserterOptionString, "True", 1, nullptr, "inserter",
     "inserting_multiple_sheet"},
    {"Constitution", zGetFinisherConstitutionOptionString, "BIDU1", 18, nullptr, nullptr, nullptr},
    {"ProPuncher", zGetProPuncherOptionString, "PUNU1", 1, "Vorel Finisher-UH1", nullptr,
     "punching_multiple_holes"},
    {"TopBottomTrimmer", zGetTopBottomTrimmerOptionString, "TBTU1", 12, nullptr, nullptr,
     "trimming_3_direction"},
});

class EachFinisherGetter : public testing::TestWithParam<GetterRow> {
 protected:
  // The answer for a unit whose lists hold these words, or the getter's own.
  std::string Answer(Words functions, Words details) {
    return Answer(UnitOf(GetParam().type, GetParam().name, functions, details));
  }
  std::string Answer(const FinisherUnit& unit) { return TakeText(GetParam().getter(&unit)); }

  // The answer for the word `word` in the list that holds the getter's word `own`.
  std::string AnswerFor(const char* own, const std::string& word) {
    std::string function = OwnFunction();
    std::string detail = OwnDetail();
    (own == GetParam().function ? function : detail) = word;
    return Answer({function}, {detail});
  }

  static std::string OwnFunction() {
    return GetParam().function != nullptr ? GetParam().function : "?";
  }
  static std::string OwnDetail() { return GetParam().detail != nullptr ? GetParam().detail : "?"; }

  // The words that the getter looks for.
  static std::vector<const char*> OwnWords() {
    std::vector<const char*> words;
    for (const char* word : {GetParam().function, GetParam().detail}) {
      if (word != nullptr) words.push_back(word);
    }
    return words;
  }
};

// The getters that read words.
class FinisherGetterOfWords : public EachFinisherGetter {};

TEST_P(EachFinisherGetter, AnswersNullForNull) { EXPECT_EQ(GetParam().getter(nullptr), nullptr); }

TEST_P(EachFinisherGetter, AnswersForItsUnit) {
  EXPECT_EQ(Answer({OwnFunction()}, {OwnDetail()}), GetParam().value);
}

TEST_P(EachFinisherGetter, AnswersWithANewTextEachTime) {
  Words functions = {OwnFunction()};
  Words details = {OwnDetail()};
  const FinisherUnit unit = UnitOf(GetParam().type, GetParam().name, functions, details);
  char* first = GetParam().getter(&unit);
  char* second = GetParam().getter(&unit);
  EXPECT_NE(first, second);
  EXPECT_STREQ(first, second);
  std::free(first);
  std::free(second);
}

TEST_P(EachFinisherGetter, FindsItsWordAmongOthers) {
  EXPECT_EQ(Answer({"fax", std::nullopt, OwnFunction(), "scan"},
                   {std::nullopt, "fax", "scan", OwnDetail()}),
            GetParam().value);
}

TEST_P(EachFinisherGetter, TakesABeginningOfItsWord) {
  for (const char* own : OwnWords()) {
    const std::string word = own;
    for (const std::string& prefix :
         {word, word.substr(0, word.size() - 1), word.substr(0, 1), std::string()}) {
      EXPECT_EQ(AnswerFor(own, prefix), GetParam().value) << prefix;
    }
  }
}

TEST_P(EachFinisherGetter, RefusesAnotherWord) {
  for (const char* own : OwnWords()) {
    const std::string word = own;
    std::string changed = word;
    changed.back() = '#';
    for (const std::string& other :
         {word + "s", word + "~", word + " ", InOtherCase(word), " " + word, word.substr(1),
          changed, std::string("staple"), std::string(100 * 1024, word[0])}) {
      EXPECT_EQ(AnswerFor(own, other), kNull) << other.substr(0, 50);
    }
  }
}

TEST_P(FinisherGetterOfWords, LooksForEachWordInItsOwnList) {
  EXPECT_EQ(Answer({OwnDetail()}, {OwnFunction()}), kNull);
}

TEST_P(EachFinisherGetter, AnswersNullForNullLists) {
  Words functions = {OwnFunction()};
  Words details = {OwnDetail()};
  const FinisherUnit unit = UnitOf(GetParam().type, GetParam().name, functions, details);
  const char* without_functions = GetParam().function != nullptr ? kNull : GetParam().value;
  const char* without_details = GetParam().detail != nullptr ? kNull : GetParam().value;
  FinisherUnit other = unit;
  other.functions = nullptr;
  EXPECT_EQ(Answer(other), without_functions);
  other = unit;
  other.function_count = nullptr;
  EXPECT_EQ(Answer(other), without_functions);
  other = unit;
  other.detail_functions = nullptr;
  EXPECT_EQ(Answer(other), without_details);
  other = unit;
  other.detail_count = nullptr;
  EXPECT_EQ(Answer(other), without_details);
}

TEST_P(EachFinisherGetter, AnswersNullForListsWithoutWords) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    Words functions = {OwnFunction()};
    Words details = {OwnDetail()};
    functions.count = count;
    EXPECT_EQ(Answer(UnitOf(GetParam().type, GetParam().name, functions, details)),
              GetParam().function != nullptr ? kNull : GetParam().value)
        << count;
    functions.count = 1;
    details.count = count;
    EXPECT_EQ(Answer(UnitOf(GetParam().type, GetParam().name, functions, details)),
              GetParam().detail != nullptr ? kNull : GetParam().value)
        << count;
  }
}

TEST_P(FinisherGetterOfWords, ReadsNoMoreThanTheCount) {
  Words functions = {"fax", OwnFunction()};
  Words details = {"fax", OwnDetail()};
  EXPECT_EQ(Answer(UnitOf(GetParam().type, GetParam().name, functions, details)), GetParam().value);
  functions.count = details.count = 1;
  EXPECT_EQ(Answer(UnitOf(GetParam().type, GetParam().name, functions, details)), kNull);
}

TEST_P(EachFinisherGetter, ReadsTheNameOnlyWhereItMatters) {
  Words functions = {OwnFunction()};
  Words details = {OwnDetail()};
  const char* otherwise = GetParam().name != nullptr ? kNull : GetParam().value;
  for (const char* name : {static_cast<const char*>(nullptr), "", "Vorel", "Other"}) {
    EXPECT_EQ(Answer(UnitOf(GetParam().type, name, functions, details)), otherwise);
  }
}

INSTANTIATE_TEST_SUITE_P(Getters, EachFinisherGetter, testing::ValuesIn(kGetters),
                         [](const auto& info) { return std::string(info.param.label); });

std::vector<GetterRow> GettersOfWords() {
  std::vector<GetterRow> rows;
  std::ranges::copy_if(kGetters, std::back_inserter(rows), [](const GetterRow& row) {
    return row.function != nullptr || row.detail != nullptr;
  });
  return rows;
}

INSTANTIATE_TEST_SUITE_P(Getters, FinisherGetterOfWords, testing::ValuesIn(GettersOfWords()),
                         [](const auto& info) { return std::string(info.param.label); });

// Types ------------------------------------------------------------------------------------------

TEST(FinisherTypes, DecideOfInsertersBindersAndTopBottomTrimmers) {
  constexpr std::int32_t kTopBottomTrimmer = 12;
  constexpr std::int32_t kBinder = 18;
  Words functions = {"inserter"};
  Words details = {"inserting_multiple_sheet", "trimming_3_direction"};
  for (const std::int32_t type :
       {kLowest, -18, -12, -1, 0, 1, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 274, kHighest}) {
    const FinisherUnit unit = UnitOf(type, nullptr, functions, details);
    EXPECT_EQ(TakeText(zGetFinisherInserterOptionString(&unit)), type == kBinder ? kNull : "INSU1")
        << type;
    EXPECT_EQ(TakeText(zGetMultiInserterOptionString(&unit)), type == kBinder ? kNull : "True")
        << type;
    EXPECT_EQ(TakeText(zGetFinisherConstitutionOptionString(&unit)),
              type == kBinder ? "BIDU1" : kNull)
        << type;
    EXPECT_EQ(TakeText(zGetTopBottomTrimmerOptionString(&unit)),
              type == kTopBottomTrimmer ? "TBTU1" : kNull)
        << type;
  }
}

TEST(FinisherTypes, DoNotMatterToTrimmersAndPunchers) {
  Words functions = {"trimming"};
  Words details = {"punching_multiple_holes"};
  for (const std::int32_t type : {kLowest, -1, 0, 12, 15, 18, kHighest}) {
    const FinisherUnit outer = UnitOf(type, "Vorel Booklet Finisher-D1", functions, details);
    EXPECT_EQ(TakeText(zGetTrimmerFunctionOptionString(&outer)), "TRMU1") << type;
    EXPECT_EQ(TakeText(zGetProPuncherOptionString(&outer)), "PUNU1") << type;
    const FinisherUnit inner = UnitOf(type, "Vorel Booklet Finisher-Z1", functions, details);
    EXPECT_EQ(TakeText(zGetInnerTrimmerFunctionOptionString(&inner)), "ITRMU1") << type;
  }
}

// Multiple sheets --------------------------------------------------------------------------------

TEST(MultiInserter, NeedsBothWords) {
  Words inserter = {"inserter"};
  Words sheets = {"inserting_multiple_sheet"};
  Words none = {};
  Words other = {"other"};
  for (Words* lacking : {&none, &other}) {
    FinisherUnit unit = UnitOf(1, nullptr, inserter, *lacking);
    EXPECT_EQ(zGetMultiInserterOptionString(&unit), nullptr);
    unit = UnitOf(1, nullptr, *lacking, sheets);
    EXPECT_EQ(zGetMultiInserterOptionString(&unit), nullptr);
  }
}

// Stackers ---------------------------------------------------------------------------------------

class Stackers : public testing::Test {
 protected:
  std::string Answer(std::int32_t type) {
    FinisherUnit unit{};
    unit.type = type;
    unit.stacker_count = &count_;
    return TakeText(zGetStackerOptionString(&unit));
  }

  std::int32_t count_ = 0;
};

TEST_F(Stackers, AreOfType15) {
  for (const std::int32_t type : {kLowest, -15, 0, 1, 12, 14, 16, 18, 271, kHighest}) {
    EXPECT_EQ(Answer(type), kNull) << type;
    EXPECT_EQ(count_, 0) << type;
  }
  EXPECT_EQ(Answer(15), "STKU1");
}

TEST_F(Stackers, AreCounted) {
  EXPECT_EQ(Answer(15), "STKU1");
  EXPECT_EQ(count_, 1);
  EXPECT_EQ(Answer(15), "STKU2");
  EXPECT_EQ(count_, 2);
  for (std::int32_t count = 3; count < 20; ++count) {
    EXPECT_EQ(Answer(15), "STKU2") << count;
    EXPECT_EQ(count_, count);
  }
}

TEST_F(Stackers, AreCountedUpToTheHighestNumber) {
  count_ = kHighest - 1;
  EXPECT_EQ(Answer(15), "STKU2");
  EXPECT_EQ(count_, kHighest);
  EXPECT_EQ(Answer(15), "STKU2");
  EXPECT_EQ(count_, kHighest);
}

TEST_F(Stackers, OtherUnitsBetweenAreNotCounted) {
  EXPECT_EQ(Answer(15), "STKU1");
  EXPECT_EQ(Answer(18), kNull);
  EXPECT_EQ(Answer(14), kNull);
  EXPECT_EQ(count_, 1);
  EXPECT_EQ(Answer(15), "STKU2");
}

TEST_F(Stackers, NeedACounter) {
  FinisherUnit unit{};
  unit.type = 15;
  EXPECT_EQ(zGetStackerOptionString(&unit), nullptr);
  EXPECT_EQ(zGetStackerOptionString(nullptr), nullptr);
}

TEST_F(Stackers, NeedNeitherNameNorWords) {
  Words functions = {"trimming"};
  Words details = {"punching_multiple_holes"};
  FinisherUnit unit = UnitOf(15, "Vorel Finisher-UH1", functions, details);
  unit.stacker_count = &count_;
  EXPECT_EQ(TakeText(zGetStackerOptionString(&unit)), "STKU1");
}

// Names ------------------------------------------------------------------------------------------

using Names = std::vector<std::string_view>;

const Names kTrimmers = {
    "Vorel Saddle Finisher-X2",  "Vorel Saddle Finisher-X2/X2L", "Vorel Saddle Finisher-WM2",
    "Vorel Saddle Finisher-TC2", "Vorel Booklet Finisher-D1",    "Vorel Saddle Finisher-HB2",
    "Vorel Saddle Finisher-XU2", "Vorel Booklet Finisher-R1",    "Vorel Saddle Finisher-W3",
    "Vorel Saddle Finisher-W4",  "Vorel Booklet Finisher-W1",    "Vorel Booklet Finisher-U1",
    "Vorel Saddle Finisher-WE2", "Vorel Booklet Finisher-K1 PRO"};

const Names kInnerTrimmers = {"Vorel Saddle Finisher-UH2", "Vorel Booklet Finisher-S1",
                              "Vorel Booklet Finisher-Z1", "Vorel Booklet Finisher-P1"};

const Names kProPunchers = {"Vorel Professional Puncher-E1",
                            "Vorel Booklet Finisher-D1",
                            "Vorel Staple Finisher-D1",
                            "Vorel Finisher-UH1",
                            "Vorel Saddle Finisher-UH2",
                            "Vorel Staple Finisher-S1",
                            "Vorel Booklet Finisher-S1",
                            "Vorel Staple Finisher-R1",
                            "Vorel Booklet Finisher-R1",
                            "Vorel Professional Puncher-B1",
                            "Vorel Staple Finisher-W1",
                            "Vorel Booklet Finisher-W1",
                            "Vorel Staple Finisher-Z1",
                            "Vorel Booklet Finisher-Z1",
                            "Vorel Staple Finisher-U1",
                            "Vorel Booklet Finisher-U1",
                            "Vorel Staple Finisher-P1",
                            "Vorel Booklet Finisher-P1",
                            "Vorel Multi Function Professional Puncher-D1"};

bool HasPrefixIn(const Names& names, std::string_view name) {
  for (const std::string_view prefix : names) {
    if (name.starts_with(prefix)) return true;
  }
  return false;
}

class UnitNames : public testing::TestWithParam<std::string_view> {
 protected:
  // Each getter answers for the name exactly when one of its own names is a prefix of it.
  void Check(const std::string& name) {
    Words functions = {"trimming"};
    Words details = {"punching_multiple_holes"};
    const FinisherUnit unit = UnitOf(1, name.c_str(), functions, details);
    EXPECT_EQ(TakeText(zGetTrimmerFunctionOptionString(&unit)),
              HasPrefixIn(kTrimmers, name) ? "TRMU1" : kNull)
        << name.substr(0, 80);
    EXPECT_EQ(TakeText(zGetInnerTrimmerFunctionOptionString(&unit)),
              HasPrefixIn(kInnerTrimmers, name) ? "ITRMU1" : kNull)
        << name.substr(0, 80);
    EXPECT_EQ(TakeText(zGetProPuncherOptionString(&unit)),
              HasPrefixIn(kProPunchers, name) ? "PUNU1" : kNull)
        << name.substr(0, 80);
  }
};

TEST_P(UnitNames, AreKnownExactly) { Check(std::string(GetParam())); }

TEST_P(UnitNames, AreKnownWithAnyEnding) {
  const std::string name(GetParam());
  for (const std::string& ending :
       {std::string(" "), std::string("0"), std::string("/X2L"), std::string(100 * 1024, 'x')}) {
    Check(name + ending);
  }
}

TEST_P(UnitNames, AreNotKnownShortened) {
  std::string name(GetParam());
  while (!name.empty()) {
    name.pop_back();
    Check(name);
  }
}

TEST_P(UnitNames, AreNotKnownChanged) {
  const std::string name(GetParam());
  for (std::size_t i = 0; i < name.size(); ++i) {
    std::string changed = name;
    changed[i] = '#';
    Check(changed);
  }
}

TEST_P(UnitNames, AreNotKnownInOtherCase) {
  const std::string name(GetParam());
  Check(InOtherCase(name));
  for (std::size_t i = 0; i < name.size(); ++i) {
    std::string changed = name;
    changed[i] = InOtherCase(name.substr(i, 1))[0];
    Check(changed);
  }
}

TEST_P(UnitNames, AreNotKnownAfterOtherText) {
  Check(" " + std::string(GetParam()));
  Check("New " + std::string(GetParam()));
}

std::string LabelOf(const testing::TestParamInfo<std::string_view>& info) {
  std::string label;
  for (const char letter : info.param) {
    if (std::isalnum(static_cast<unsigned char>(letter)) != 0) label += letter;
  }
  return label;
}

INSTANTIATE_TEST_SUITE_P(Trimmers, UnitNames, testing::ValuesIn(kTrimmers), LabelOf);
INSTANTIATE_TEST_SUITE_P(InnerTrimmers, UnitNames, testing::ValuesIn(kInnerTrimmers), LabelOf);
INSTANTIATE_TEST_SUITE_P(ProPunchers, UnitNames, testing::ValuesIn(kProPunchers), LabelOf);
INSTANTIATE_TEST_SUITE_P(Others, UnitNames,
                         testing::Values("Vorel Saddle Finisher-W1", "Vorel Saddle Finisher-UH1",
                                         "Vorel Finisher-UH2", "Vorel Booklet Finisher-K1",
                                         "Vorel Booklet Finisher-K1PRO", "Vorel Saddle Finisher-S1",
                                         "Vorel Professional Puncher-D1", "Vorel Finisher-A1",
                                         "Vorel Saddle Finisher"),
                         LabelOf);

// Finishing functions and punchers ---------------------------------------------------------------

FunctionQuery QueryOf(const char* driver_name, const char* function, Words& functions,
                      Words& details) {
  return {driver_name, function,       functions.data(), &functions.count, nullptr,
          0,           details.data(), &details.count,   "Default"};
}

TEST(FunctionGetters, AnswerNullForNull) {
  EXPECT_EQ(zGetFinishingFunctionOptionString(nullptr), nullptr);
  EXPECT_EQ(zGetPuncherOptionString(nullptr), nullptr);
}

TEST(FunctionGetters, AnswerAsTheModelsHandlers) {
  Words functions = {"staple", "punch"};
  Words details = {"punching_2_holes", "punching_French_4_holes"};
  FunctionQuery query = QueryOf("RC-T7", "staple", functions, details);
  EXPECT_EQ(TakeText(zGetFinishingFunctionOptionString(&query)), "True");
  query = QueryOf(nullptr, "staple", functions, details);
  EXPECT_EQ(TakeText(zGetFinishingFunctionOptionString(&query)), "Default");
  query = QueryOf("RC-T7", "folding", functions, details);
  EXPECT_EQ(zGetFinishingFunctionOptionString(&query), nullptr);
  query = QueryOf("RA-H2-MLT-JP", "punch", functions, details);
  EXPECT_EQ(TakeText(zGetPuncherOptionString(&query)), "PUNU24");
  query = QueryOf(nullptr, "punch", functions, details);
  EXPECT_EQ(TakeText(zGetPuncherOptionString(&query)), "PUNF24");
  query = QueryOf(nullptr, "folding", functions, details);
  EXPECT_EQ(zGetPuncherOptionString(&query), nullptr);
}

}  // namespace
}  // namespace ia_test
