#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ValuesIn;

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

constexpr auto kCommon = analyze_GetQVSidePaperDeckCommon;
constexpr auto kCypress = analyze_GetQVSidePaperDeck_CYPRESS;
constexpr auto kOak = analyze_GetQVSidePaperDeckOAK;

TrayEntry Deck(std::int32_t type) { return {type, 161, 0, 0}; }
TrayEntry SecondDeck(std::int32_t type) { return {type, 162, 0, 0}; }

struct DeckRow : NamedRow {
  InputOptionHandler handler;
  Trays trays;
  Text value;
};

class SidePaperDeck : public InputHandlers, public testing::WithParamInterface<DeckRow> {};

TEST_P(SidePaperDeck, HasTheValue) {
  EXPECT_EQ(Appended(GetParam().handler, GetParam().trays),
            (OptionRows{{"QVSidePaperDeck", GetParam().value, "None"}}));
}

const DeckRow kDecks[] = {
    {{"CommonOfType6"}, kCommon, {Deck(6)}, "Large"},
    {{"CommonOfType3"}, kCommon, {Deck(3)}, "Small"},
    {{"CommonOfType5"}, kCommon, {Deck(5)}, "Small"},
    {{"CommonOfType7"}, kCommon, {Deck(7)}, "Small"},
    {{"CommonOfType0"}, kCommon, {Deck(0)}, "Small"},
    {{"CommonOfNegativeType"}, kCommon, {Deck(-6)}, "Small"},
    {{"CommonOfLowestType"}, kCommon, {Deck(kLowest)}, "Small"},
    {{"CommonAfterOthers"}, kCommon, {{3, 101, 0, 0}, {3, 102, 0, 0}, Deck(6)}, "Large"},
    {{"CommonFirstOfTwoIsSmall"}, kCommon, {Deck(3), Deck(6)}, "Small"},
    {{"CommonFirstOfTwoIsLarge"}, kCommon, {Deck(6), Deck(3)}, "Large"},
    {{"CommonBesideSecondDeck"}, kCommon, {SecondDeck(3), Deck(6), SecondDeck(6)}, "Large"},
    {{"CommonWithoutDeck"}, kCommon, {{6, 160, 0, 0}, SecondDeck(6), {161, 6, 161, 161}}, {}},

    {{"CypressOfType6"}, kCypress, {Deck(6)}, "Large"},
    {{"CypressOfType3"}, kCypress, {Deck(3)}, {}},
    {{"CypressOfType5"}, kCypress, {Deck(5)}, {}},
    {{"CypressOfType7"}, kCypress, {Deck(7)}, {}},
    {{"CypressOfType0"}, kCypress, {Deck(0)}, {}},
    {{"CypressAfterOthers"}, kCypress, {{3, 101, 0, 0}, Deck(6)}, "Large"},
    {{"CypressFirstOfTwoIsNotLarge"}, kCypress, {Deck(3), Deck(6)}, {}},
    {{"CypressFirstOfTwoIsLarge"}, kCypress, {Deck(6), Deck(3)}, "Large"},
    {{"CypressBesideSecondDeck"}, kCypress, {SecondDeck(6), Deck(6)}, "Large"},
    {{"CypressWithoutDeck"}, kCypress, {{6, 160, 0, 0}, SecondDeck(6), {161, 6, 161, 161}}, {}},

    {{"OakOfType6"}, kOak, {Deck(6)}, "Large"},
    {{"OakOfType6BeforeSecondDeck"}, kOak, {Deck(6), SecondDeck(3)}, "None"},
    {{"OakOfType6AfterSecondDeck"}, kOak, {SecondDeck(0), Deck(6)}, "None"},
    {{"OakOfType6BesideOthers"}, kOak, {{162, 160, 162, 162}, {6, 163, 0, 0}, Deck(6)}, "Large"},
    {{"OakOfType3"}, kOak, {Deck(3)}, "Small"},
    {{"OakOfType3BesideSecondDeck"}, kOak, {Deck(3), SecondDeck(6)}, "Small"},
    {{"OakOfType2"}, kOak, {Deck(2)}, {}},
    {{"OakOfType4"}, kOak, {Deck(4)}, {}},
    {{"OakOfType5"}, kOak, {Deck(5)}, {}},
    {{"OakOfType7"}, kOak, {Deck(7)}, {}},
    {{"OakOfType0"}, kOak, {Deck(0)}, {}},
    {{"OakOfType0BesideSecondDeck"}, kOak, {Deck(0), SecondDeck(6)}, {}},
    {{"OakFirstOfTwoIsSmall"}, kOak, {Deck(3), Deck(6)}, "Small"},
    {{"OakFirstOfTwoIsLarge"}, kOak, {Deck(6), Deck(3)}, "Large"},
    {{"OakFirstOfTwoIsOther"}, kOak, {Deck(1), Deck(6)}, {}},
    {{"OakSecondDeckOnly"}, kOak, {SecondDeck(6)}, {}},
    {{"OakWithoutDeck"}, kOak, {{6, 160, 0, 0}, {161, 6, 161, 161}}, {}},
};

INSTANTIATE_TEST_SUITE_P(Each, SidePaperDeck, ValuesIn(kDecks), RowName<DeckRow>);

}  // namespace
}  // namespace ia_test
