#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

static_assert(std::is_standard_layout_v<TrayEntry>);
static_assert(std::is_same_v<decltype(TrayEntry::type), std::int32_t>);
static_assert(offsetof(TrayEntry, type) == 0);
static_assert(offsetof(TrayEntry, alias) == 4);
static_assert(offsetof(TrayEntry, capacity) == 8);
static_assert(offsetof(TrayEntry, medium_type) == 12);
static_assert(sizeof(TrayEntry) == 16);

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

// All handlers -----------------------------------------------------------------------------------

constexpr TrayEntry kDeck{6, 161, 2000, 2};
constexpr TrayEntry kCassette{3, 101, 550, 2};

// Trays that would change an answer, were they seen.
constexpr auto kUnseen = std::to_array<TrayEntry>({{6, 162, 0, 0},
                                                   {6, 167, 0, 0},
                                                   {6, 164, 0, 0},
                                                   {6, 124, 0, 0},
                                                   {6, 123, 0, 0},
                                                   {6, 121, 0, 2},
                                                   {6, 6, 0, 0},
                                                   {6, 102, 0, 2},
                                                   {6, 101, 0, 2}});

struct HandlerRow : NamedRow {
  InputOptionHandler handler;
  TrayEntry tray;
  OptionRow of_tray;
  OptionRows without_trays;
};

HandlerRow Deck(const char* name, InputOptionHandler handler) {
  return {{name},
          handler,
          kDeck,
          {"QVSidePaperDeck", "Large", "None"},
          {{"QVSidePaperDeck", {}, "None"}}};
}

HandlerRow Source(const char* name, InputOptionHandler handler, const char* value,
                  Text value_without_trays) {
  return {{name},
          handler,
          kDeck,
          {"QVSrcOption", value, "None"},
          {{"QVSrcOption", std::move(value_without_trays), "None"}}};
}

HandlerRow Media(const char* name, InputOptionHandler handler, const TrayEntry& tray,
                 const char* keyword) {
  return {{name}, handler, tray, {keyword, "Thick", "PlainPaper"}, {}};
}

const HandlerRow kHandlers[] = {
    Deck("SidePaperDeckCommon", analyze_GetQVSidePaperDeckCommon),
    Deck("SidePaperDeckCypress", analyze_GetQVSidePaperDeck_CYPRESS),
    Deck("SidePaperDeckOak", analyze_GetQVSidePaperDeckOAK),
    Source("SrcOptionCommon", analyze_GetQVSrcOptionCommon, "Deck", {}),
    Source("SrcOptionCommonByCount", analyze_GetQVSrcOptionCommonByCount, "None", "None"),
    Source("SrcOptionLaurel", analyze_GetQVSrcOptionLAUREL, "None", "None"),
    Source("SrcOptionMyrtle", analyze_GetQVSrcOptionMYRTLE, "None", "None"),
    Source("SrcOptionElm", analyze_GetQVSrcOption_ELM, "None", "None"),
    Source("SrcOptionOlive", analyze_GetQVSrcOptionOLIVE, "None", "None"),
    Source("SrcOptionSpruce", analyze_GetQVSrcOptionSPRUCE, "None", "None"),
    Source("SrcOptionCypress", analyze_GetQVSrcOption_CYPRESS, "None", "None"),
    Source("SrcOptionHolly", analyze_GetQVSrcOptionHOLLY, "OptCas1", "None"),
    Source("SrcOptionOak", analyze_GetQVSrcOptionOAK, "None", "None"),
    Source("SrcOptionRowan", analyze_GetQVSrcOptionROWAN, "MltDeck1", {}),
    Source("SrcOptionRedwood", analyze_GetQVSrcOptionREDWOOD, "None", "None"),
    {{"EnvelopeFeederCommon"},
     analyze_GetQVEnvelopeFeederCommon,
     kDeck,
     {"QVEnvelopeFeeder", "False", "False"},
     {{"QVEnvelopeFeeder", "False", "False"}}},
    Media("MediaTypeCommon", analyze_GetQVXXXMediaTypeCommon, kDeck, "QVDeckMediaType"),
    Media("MediaTypeCypress", analyze_GetQVXXXMediaType_CYPRESS, kDeck, "QVDeck2MediaType"),
    Media("MediaTypeYew", analyze_GetQVXXXMediaTypeYEW, kCassette, "QVCas1MediaType"),
    Media("MediaTypeRedwood", analyze_GetQVXXXMediaTypeREDWOOD, kDeck, "QVCas6MediaType"),
};

class EachInputHandler : public InputHandlers, public testing::WithParamInterface<HandlerRow> {
 protected:
  void SetUp() override {
    SetFlags(&AnalyzeContext::src_option_flags, {{"Deck", "161"}});
    SetFlags(&AnalyzeContext::media_type_flags, {{"Thick", "2"}});
    SetFlags(&AnalyzeContext::input_tray_flags, {{"Deck", "161"}, {"Second", "161"}});
    SetFlags(&AnalyzeContext::slot_media_info_flags, {{"Deck", "QVDeckMediaType"},
                                                      {"Second", "QVDeck2MediaType"},
                                                      {"Cas1", "QVCas1MediaType"},
                                                      {"Cas6", "QVCas6MediaType"}});
  }
};

TEST_P(EachInputHandler, RefusesNullArguments) {
  const InputOptionHandler handler = GetParam().handler;
  const TrayEntry tray = GetParam().tray;
  RowArray rows(1);
  EXPECT_EQ(handler(nullptr, &tray, 1, 1, rows.data(), &rows.count), -1);
  EXPECT_EQ(handler(&context_, nullptr, 1, 1, rows.data(), &rows.count), -1);
  EXPECT_EQ(handler(&context_, nullptr, 0, 0, rows.data(), &rows.count), -1);
  EXPECT_EQ(handler(&context_, &tray, 1, 1, nullptr, &rows.count), -1);
  EXPECT_EQ(handler(&context_, &tray, 1, 1, rows.data(), nullptr), -1);
  EXPECT_EQ(rows.count, RowArray::kInUse);
  EXPECT_EQ(rows.Appended(), OptionRows{});
}

TEST_P(EachInputHandler, WritesNoRowBeforeTheFirst) {
  const TrayEntry tray = GetParam().tray;
  for (const std::int32_t negative : {-1, -2, kLowest}) {
    RowArray rows(1);
    std::int32_t count = negative;
    EXPECT_EQ(GetParam().handler(&context_, &tray, 1, 1, rows.data() + 1, &count), -1) << negative;
    EXPECT_EQ(count, negative);
    EXPECT_EQ(rows.Appended(), OptionRows{}) << negative;
  }
}

TEST_P(EachInputHandler, AppendsItsRowAfterThoseInUse) {
  EXPECT_EQ(Appended(GetParam().handler, {GetParam().tray}, 1), (OptionRows{GetParam().of_tray}));
}

TEST_P(EachInputHandler, AppendsItsRowFirstWhereNoneIsInUse) {
  const TrayEntry tray = GetParam().tray;
  std::array<OptionSetter, 4> rows = {};
  std::int32_t count = 0;
  EXPECT_EQ(GetParam().handler(&context_, &tray, 1, 1, rows.data(), &count), 0);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(TextOf(rows[0].keyword), GetParam().of_tray.keyword);
  EXPECT_EQ(TextOf(rows[0].value), GetParam().of_tray.value);
  std::free(const_cast<char*>(rows[0].keyword));
  std::free(rows[0].value);
}

TEST_P(EachInputHandler, MakesNewTextsForEachRow) {
  const TrayEntry tray = GetParam().tray;
  RowArray rows(1);
  for (int times = 0; times < 2; ++times) {
    ASSERT_EQ(GetParam().handler(&context_, &tray, 1, 1, rows.data(), &rows.count), 0);
  }
  EXPECT_EQ(rows.Appended(), (OptionRows{GetParam().of_tray, GetParam().of_tray}));
  OptionSetter& first = rows.At(RowArray::kInUse);
  std::memset(const_cast<char*>(first.keyword), 'x', std::strlen(first.keyword));
  std::memset(first.value, 'x', std::strlen(first.value));
  const OptionSetter& second = rows.At(RowArray::kInUse + 1);
  EXPECT_EQ(TextOf(second.keyword), GetParam().of_tray.keyword);
  EXPECT_EQ(TextOf(second.value), GetParam().of_tray.value);
  EXPECT_EQ(Appended(GetParam().handler, {tray}, 1), (OptionRows{GetParam().of_tray}));
}

TEST_P(EachInputHandler, AnswersWithoutTrays) {
  EXPECT_EQ(Appended(GetParam().handler, {}), GetParam().without_trays);
}

TEST_P(EachInputHandler, TakesANegativeNumberOfTraysAsNone) {
  const TrayEntry tray = GetParam().tray;
  for (const std::int32_t negative : {-1, kLowest}) {
    RowArray rows(1);
    EXPECT_EQ(GetParam().handler(&context_, &tray, negative, 0, rows.data(), &rows.count), 0);
    EXPECT_EQ(rows.Appended(), GetParam().without_trays) << negative;
  }
}

TEST_P(EachInputHandler, ReadsNoMoreTraysThanTheCount) {
  std::array<TrayEntry, 1 + kUnseen.size()> trays;
  trays[0] = GetParam().tray;
  std::copy(kUnseen.begin(), kUnseen.end(), trays.begin() + 1);
  RowArray rows(1);
  EXPECT_EQ(GetParam().handler(&context_, trays.data(), 1, 1, rows.data(), &rows.count), 0);
  EXPECT_EQ(rows.Appended(), (OptionRows{GetParam().of_tray}));
}

INSTANTIATE_TEST_SUITE_P(Handlers, EachInputHandler, ValuesIn(kHandlers), RowName<HandlerRow>);

TEST(InputHandlerTable, HoldsEachHandlerOnce) {
  for (const HandlerRow& row : kHandlers) {
    EXPECT_EQ(std::ranges::count(kHandlers, row.handler, &HandlerRow::handler), 1) << row.name;
  }
  EXPECT_EQ(std::size(kHandlers), 20U);
}

// zFindTrayByAlias -------------------------------------------------------------------------------

constexpr auto kTrays = std::to_array<TrayEntry>(
    {{101, 7, 102, 103}, {3, 101, 0, 0}, {6, 101, 5, 5}, {0, -1, 0, 0}, {0, 0, 0, 0}});

TEST(TrayByAlias, IsTheFirstOfItsAlias) {
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 5, 7), 0);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 5, 101), 1);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 5, -1), 3);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 5, 0), 4);
}

TEST(TrayByAlias, IsNotFoundByOtherFields) {
  for (const std::int32_t number : {3, 6, 5, 102, 103, kHighest, kLowest}) {
    EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 5, number), -1) << number;
  }
}

TEST(TrayByAlias, IsSearchedInNoMoreTraysThanTheCount) {
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 4, 0), -1);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 1, 101), -1);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 2, 101), 1);
  EXPECT_EQ(zFindTrayByAlias(kTrays.data(), 1, 7), 0);
}

TEST(TrayByAlias, IsNotFoundAmongNoTrays) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(zFindTrayByAlias(kTrays.data(), count, 7), -1) << count;
  }
  EXPECT_EQ(zFindTrayByAlias(nullptr, 5, 7), -1);
  EXPECT_EQ(zFindTrayByAlias(nullptr, 0, 7), -1);
}

}  // namespace
}  // namespace ia_test
