#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kTrays = IA_DOCUMENT_TRAY_LIST;
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

using Tray = std::vector<std::int32_t>;  // type, alias, capacity, medium type

std::string ItemOf(const Tray& tray) {
  return Number("type", tray[0]) + NumberArray("alias", {tray[1]}) + Number("capacity", tray[2]) +
         Number("medium_type", tray[3]);
}

class TrayList : public ListUpdates {
 protected:
  // What the mapping is handed for this list.
  InputMapping::Call MappedFor(const Items& trays) {
    Load(kTrays, trays);
    return Mapped();
  }
  InputMapping::Call Mapped() {
    InputMapping mapping;
    EXPECT_THAT(Appended(z_Update_Prn_tray_list), IsEmpty());
    EXPECT_THAT(mapping.calls, SizeIs(1));
    return mapping.calls.empty() ? InputMapping::Call{} : mapping.calls[0];
  }
};

TEST_F(TrayList, RefusesNullArguments) {
  Load(kTrays, {ItemOf({1, 101, 550, 1})});
  ListReads reads;
  InputMapping mapping;
  CallersList list;
  EXPECT_EQ(z_Update_Prn_tray_list(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_tray_list(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_tray_list(nullptr, nullptr), -1);
  EXPECT_THAT(reads.reads, IsEmpty());
  EXPECT_THAT(mapping.calls, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(TrayList, HandsTheTraysToTheMapping) {
  const std::vector<Tray> trays = {
      {1, 101, 550, 2}, {3, 161, 2000, 0}, {kLowest, kHighest, -1, kHighest}};
  const InputMapping::Call call = MappedFor({ItemOf(trays[0]), ItemOf(trays[1]), ItemOf(trays[2])});
  EXPECT_EQ(call.context, &context_);
  EXPECT_EQ(call.trays, trays);
  EXPECT_EQ(call.row_count, 0);
  EXPECT_TRUE(call.has_empty_rows);
}

TEST_F(TrayList, HandsAnEmptyListToTheMapping) {
  const InputMapping::Call call = MappedFor({});
  EXPECT_EQ(call.context, &context_);
  EXPECT_THAT(call.trays, IsEmpty());
  EXPECT_EQ(call.extra_trays, 0);
  EXPECT_TRUE(call.has_empty_rows);
}

TEST_F(TrayList, HandsAnEmptyListToTheMappingWithoutDocument) {
  EXPECT_THAT(Mapped().trays, IsEmpty());
}

TEST_F(TrayList, HandsAnEmptyListToTheMappingForANegativeCount) {
  Load(kTrays, {ItemOf({3, 161, 2000, 0})});
  for (const std::int32_t count : {-1, kLowest}) {
    context_.documents[kTrays].count = count;
    const InputMapping::Call call = Mapped();
    EXPECT_THAT(call.trays, IsEmpty());
    EXPECT_EQ(call.extra_trays, 0);
    EXPECT_TRUE(call.has_empty_rows);
  }
}

TEST_F(TrayList, FirstAliasCounts) {
  EXPECT_THAT(MappedFor({NumberArray("alias", {}), NumberArray("alias", {1}),
                         NumberArray("alias", {2, 3, 4, 5, 6}), Number("alias", 7)})
                  .trays,
              ElementsAre(Tray{0, 0, 0, 0}, Tray{0, 1, 0, 0}, Tray{0, 2, 0, 0}, Tray{0, 0, 0, 0}));
}

TEST_F(TrayList, AliasAfterAnUnreadableOneDoesNotCount) {
  EXPECT_THAT(MappedFor({NumberArray("alias", {9}), NumberArray("alias", {std::nullopt, 5})}).trays,
              ElementsAre(Tray{0, 9, 0, 0}, Tray{0, 0, 0, 0}));
}

TEST_F(TrayList, TakesThousandsOfAliases) {
  Numbers aliases(10000, 5);
  aliases.front() = 161;
  EXPECT_THAT(MappedFor({NumberArray("alias", aliases)}).trays, ElementsAre(Tray{0, 161, 0, 0}));
}

TEST_F(TrayList, WhatATrayDoesNotReportIsZero) {
  EXPECT_THAT(MappedFor({ItemOf({6, 161, 2000, 5}), "", Number("type", 3), Number("capacity", 10),
                         Number("medium_type", 4),
                         Text("type", "6") + Text("alias", "161") + Text("capacity", "1") +
                             Text("medium_type", "2")})
                  .trays,
              ElementsAre(Tray{6, 161, 2000, 5}, Tray{0, 0, 0, 0}, Tray{3, 0, 0, 0},
                          Tray{0, 0, 10, 0}, Tray{0, 0, 0, 4}, Tray{0, 0, 0, 0}));
}

TEST_F(TrayList, TraysOfTypes3And6AreExtraOnes) {
  for (const std::int32_t type : {kLowest, -3, 0, 1, 2, 3, 4, 5, 6, 7, 30, 36, 259, kHighest}) {
    EXPECT_EQ(MappedFor({Number("type", type)}).extra_trays, type == 3 || type == 6 ? 1 : 0)
        << type;
  }
}

TEST_F(TrayList, CountsTheExtraTrays) {
  EXPECT_EQ(MappedFor({Number("type", 3), Number("type", 1), Number("type", 6), "",
                       Number("type", 3), Number("capacity", 6)})
                .extra_trays,
            3);
  EXPECT_EQ(MappedFor(Items(500, Number("type", 6))).extra_trays, 500);
}

TEST_F(TrayList, TakesHundredsOfTrays) {
  Items items;
  for (std::int32_t i = 0; i < 500; ++i) items.push_back(ItemOf({i, 1000 + i, -i, 2 * i}));
  const InputMapping::Call call = MappedFor(items);
  ASSERT_THAT(call.trays, SizeIs(500));
  EXPECT_EQ(call.trays[499], (Tray{499, 1499, -499, 998}));
  EXPECT_TRUE(call.has_empty_rows);
}

// Rows -------------------------------------------------------------------------------------------

void Append(OptionSetter* rows, std::int32_t* count, const char* keyword, const char* value,
            const char* default_value) {
  rows[(*count)++] = {keyword != nullptr ? strdup(keyword) : nullptr,
                      value != nullptr ? strdup(value) : nullptr, nullptr, nullptr, default_value};
}

TEST_F(TrayList, AppendsTheMappingsRows) {
  Load(kTrays, {""});
  InputMapping mapping;
  mapping.answer = [](OptionSetter* rows, std::int32_t* count) {
    Append(rows, count, "QVA", "one", "default");
    Append(rows, count, "QVB", nullptr, "default");
    Append(rows, count, nullptr, nullptr, "default");
    Append(rows, count, "QVC", "", "default");
  };
  EXPECT_EQ(Appended(z_Update_Prn_tray_list),
            (Entries{{"QVA", "one"}, {"QVB", "default"}, {"QVC", ""}}));
}

TEST_F(TrayList, AppendsNothingThatTheMappingDoesNotCount) {
  Load(kTrays, {"", ""});
  InputMapping mapping;
  mapping.answer = [](OptionSetter* rows, std::int32_t* count) {
    Append(rows, count, "QVA", "one", "default");
    Append(rows, count, "QVB", nullptr, "default");
    *count = 1;
  };
  EXPECT_EQ(Appended(z_Update_Prn_tray_list), (Entries{{"QVA", "one"}}));
}

TEST_F(TrayList, ReleasesTheKeywordsOfAllRows) {
  Load(kTrays, {"", "", ""});
  InputMapping mapping;
  mapping.answer = [](OptionSetter* rows, std::int32_t* count) {
    for (int i = 0; i < 6; ++i) {
      Append(rows, count, ("QV" + std::to_string(i) + "x").c_str(), "v", "default");
    }
  };
  EXPECT_THAT(Appended(z_Update_Prn_tray_list), SizeIs(6));
}

TEST_F(TrayList, AppendsAfterExistingOptions) {
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  EXPECT_EQ(z_Update_Prn_tray_list(&context_, list.get()), 0);
  EXPECT_THAT(list.entries(),
              ElementsAre(Entry("QVOther", "kept"), Entry("QVSidePaperDeck", "None"),
                          Entry("QVSrcOption", "None")));
}

TEST_F(TrayList, AppendsWhatTheModelsHandlersDecide) {
  context_.driver_name = const_cast<char*>("RC-W0");
  Load(kTrays, {ItemOf({6, 161, 2000, 1}), ItemOf({1, 121, 550, 1}), ItemOf({1, 6, 100, 1})});
  EXPECT_EQ(Appended(z_Update_Prn_tray_list), (Entries{{"QVSidePaperDeck", "Large"},
                                                       {"QVSrcOption", "OptCas1"},
                                                       {"QVEnvelopeFeeder", "True"}}));
}

// This model's source option follows from the number of extra trays.
TEST_F(TrayList, CountOfExtraTraysReachesTheModelsHandlers) {
  context_.driver_name = const_cast<char*>("RA-Z4");
  for (const auto& [extra, value] : std::map<std::int32_t, std::string>{
           {0, "None"}, {4, "None"}, {5, "OptCas1"}, {6, "OptCas2"}, {8, "OptCas2"}, {9, "None"}}) {
    Items items;
    for (std::int32_t i = 0; i < extra; ++i) items.push_back(Number("type", i % 2 == 0 ? 3 : 6));
    items.insert(items.end(), 3, Number("type", 1));
    Load(kTrays, items);
    EXPECT_EQ(Appended(z_Update_Prn_tray_list),
              (Entries{{"QVSidePaperDeck", "None"}, {"QVSrcOption", value}}))
        << extra;
  }
}

// Reads that fail --------------------------------------------------------------------------------

TEST_F(TrayList, ReadsEachTrayOnceInOrder) {
  Load(kTrays, {"", "", ""});
  ListReads reads;
  Mapped();
  EXPECT_THAT(reads.reads, ElementsAre(ListReads::Item(kTrays, 0), ListReads::Item(kTrays, 1),
                                       ListReads::Item(kTrays, 2)));
}

TEST_F(TrayList, TrayThatCannotBeReadIsEmptyWhenTheLastOneCan) {
  const Tray tray = {3, 161, 2000, 1};
  const Tray empty = {0, 0, 0, 0};
  Load(kTrays, {ItemOf(tray), ItemOf(tray), ItemOf(tray)});
  for (const auto& [failing, expected] :
       std::map<std::vector<std::int32_t>, std::vector<Tray>>{{{0}, {empty, tray, tray}},
                                                              {{1}, {tray, empty, tray}},
                                                              {{0, 1}, {empty, empty, tray}}}) {
    ListReads reads;
    for (const std::int32_t item : failing) reads.results[{kTrays, item}] = 5;
    const InputMapping::Call call = Mapped();
    EXPECT_THAT(reads.reads, SizeIs(3));
    EXPECT_EQ(call.trays, expected);
    EXPECT_EQ(call.extra_trays, 3 - static_cast<std::int32_t>(failing.size()));
  }
}

TEST_F(TrayList, FailsWhenTheLastTrayCannotBeRead) {
  Load(kTrays, {ItemOf({3, 161, 2000, 1}), ItemOf({3, 161, 2000, 1})});
  for (const std::int32_t result : {-1, 5, kHighest, kLowest}) {
    ListReads reads;
    InputMapping mapping;
    reads.results = {{{kTrays, 1}, result}};
    EXPECT_EQ(OutcomeOf(z_Update_Prn_tray_list, context_), (Outcome{result, {}}));
    reads.results[{kTrays, 0}] = 77;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_tray_list, context_), (Outcome{result, {}}));
    EXPECT_THAT(reads.reads, SizeIs(4));
    EXPECT_THAT(mapping.calls, IsEmpty());
  }
}

TEST_F(TrayList, FailsForItemsOfADocumentThatIsNotLoaded) {
  for (const std::int32_t count : {1, 500}) {
    context_.documents[kTrays].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_tray_list, context_), (Outcome{-1, {}}));
  }
}

TEST_F(TrayList, MissingItemsAreEmptyTrays) {
  Load(kTrays, {ItemOf({3, 161, 2000, 1})});
  context_.documents[kTrays].count = 3;
  EXPECT_THAT(Mapped().trays,
              ElementsAre(Tray{3, 161, 2000, 1}, Tray{0, 0, 0, 0}, Tray{0, 0, 0, 0}));
}

// Calls to the communication library -------------------------------------------------------------

class LyingTrayList : public LyingLists {};

TEST_F(LyingTrayList, IsAskedForTheKeysOfEachTray) {
  Load(kTrays, {.dict_counts = {{"list", 2}}, .array_counts = {{"alias", 5}}});
  Appended(z_Update_Prn_tray_list);
  const std::vector<std::string> tray = {
      "qvxmlwrapGet_OpenDict list",    "qvxmlwrapGet_Long type",
      "qvxmlwrapGet_Long capacity",    "qvxmlwrapGet_Long medium_type",
      "qvxmlwrapGet_ArrayCount alias", "qvxmlwrapGet_OpenArray alias",
      "qvxmlwrapGet_LongFromArray 0",  "qvxmlwrapGet_CloseArray",
      "qvxmlwrapGet_CloseDict"};
  std::vector<std::string> expected = tray;
  expected.insert(expected.end(), tray.begin(), tray.end());
  EXPECT_EQ(Reading(), expected);
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_OpenDict")[1].arguments[2], ArgumentOf(1));
}

TEST_F(LyingTrayList, TakesAnyNumberOfAliases) {
  for (const std::int32_t count : {kLowest, -1, 0, 1, 2, kHighest}) {
    Load(kTrays, {.dict_counts = {{"list", 1}},
                  .array_counts = {{"alias", count}},
                  .long_elements = {{0, 161}}});
    InputMapping mapping;
    Appended(z_Update_Prn_tray_list);
    ASSERT_THAT(mapping.calls, SizeIs(1));
    EXPECT_THAT(mapping.calls[0].trays, ElementsAre(Tray{0, count > 0 ? 161 : 0, 0, 0})) << count;
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_LongFromArray"), SizeIs(count > 0 ? 1 : 0));
  }
}

TEST_F(LyingTrayList, HasNoTraysBelowZero) {
  for (const std::int32_t count : {-1, kLowest}) {
    Load(kTrays, {.longs = {{"type", 3}}, .dict_counts = {{"list", count}}});
    InputMapping mapping;
    Appended(z_Update_Prn_tray_list);
    ASSERT_THAT(mapping.calls, SizeIs(1));
    EXPECT_THAT(mapping.calls[0].trays, IsEmpty());
    EXPECT_THAT(recording_.calls, IsEmpty());
  }
}

TEST_F(LyingTrayList, EndsForAnyNumberOfTrays) {
  Load(kTrays, {.dict_counts = {{"list", kHighest}}});
  EXPECT_EQ(RunUnrecorded(z_Update_Prn_tray_list),
            (Outcome{0, {{"QVSidePaperDeck", "None"}, {"QVSrcOption", "None"}}}));
}

}  // namespace
}  // namespace ia_test
