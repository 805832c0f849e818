#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "analyze/model/input_handlers.h"
#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/model_tables.h"

namespace ia_test {
namespace {

using testing::ElementsAre;

constexpr std::array<std::int32_t, 4> kFamilies = {IA_FAMILY_SIDE_PAPER_DECK,
                                                   IA_FAMILY_SOURCE_OPTION, IA_FAMILY_MEDIA_TYPE,
                                                   IA_FAMILY_ENVELOPE_FEEDER};

// The handlers of these families, without empty slots; their names follow the prefix.
using Handlers = std::vector<std::string>;
constexpr std::string_view kPrefix = "analyze_GetQV";

struct InputRow {
  const char* model;
  Handlers handlers;
};

void PrintTo(const InputRow& row, std::ostream* out) { *out << row.model; }

// clang-format off
const std::vector<InputRow> kRows = {
    {"RA-Z2", {"SidePaperDeckOAK", "SrcOptionOAK", "XXXMediaType_CYPRESS"}},
    {"RC-Z9", {"SidePaperDeckCommon", "SrcOptionOLIVE", "XXXMediaTypeCommon"}},
    {"RA-Z4", {"SidePaperDeck_CYPRESS", "SrcOption_CYPRESS", "XXXMediaType_CYPRESS"}},
    {"RC-T7", {"SidePaperDeckCommon", "SrcOption_ELM", "XXXMediaTypeCommon"}},
    {"RC-X1", {"SidePaperDeckCommon", "SrcOptionLAUREL", "XXXMediaTypeCommon"}},
    {"RB-X1-1", {"SidePaperDeckCommon", "SrcOptionMYRTLE", "XXXMediaTypeCommon"}},
    {"RA-Z5", {"SidePaperDeckCommon", "SrcOptionROWAN", "XXXMediaTypeCommon"}},
    {"RC-J4", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RA-G7", {"SidePaperDeckCommon", "SrcOptionSPRUCE", "XXXMediaTypeCommon"}},
    {"RA-G4", {"SidePaperDeckCommon", "SrcOptionSPRUCE", "XXXMediaTypeCommon"}},
    {"RB-T9-1", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeYEW"}},
    {"RC-X5", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RC-W5", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RC-STD", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RA-H1", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RA-W8", {"SrcOptionHOLLY", "XXXMediaTypeCommon"}},
    {"RB-X7", {"SidePaperDeckCommon", "SrcOptionCommonByCount", "XXXMediaTypeCommon"}},
    {"RC-W0", {"SidePaperDeckCommon", "SrcOptionREDWOOD", "XXXMediaTypeREDWOOD", "EnvelopeFeederCommon"}},
    {"RA-T0", {"SrcOptionHOLLY", "XXXMediaTypeCommon"}},
    {"RA-T6", {"SidePaperDeckCommon", "SrcOptionREDWOOD", "XXXMediaTypeCommon"}},
    {"RA-X6", {"SidePaperDeckCommon", "SrcOptionREDWOOD", "XXXMediaTypeCommon"}},
    {"RC-X8", {"SidePaperDeckCommon", "SrcOptionOLIVE", "XXXMediaTypeCommon"}},
};
// clang-format on

const Handlers kOtherModels = {"SidePaperDeckCommon", "SrcOptionCommon", "XXXMediaTypeCommon"};

// The handlers that decide for a code, which may be null.
Handlers HandlersFor(const char* code) {
  Handlers handlers;
  for (const std::int32_t family : kFamilies) {
    const std::string name = HandlerOf(family, code);
    if (!name.empty()) handlers.push_back(name.substr(std::min(name.size(), kPrefix.size())));
  }
  return handlers;
}

TEST(InputOptionTable, HasAnExpectationForEachRow) {
  for (const std::int32_t family : kFamilies) EXPECT_EQ(CodesOf(family), ModelsOf(kRows));
}

class InputOptionRows : public testing::TestWithParam<InputRow> {};

INSTANTIATE_TEST_SUITE_P(, InputOptionRows, testing::ValuesIn(kRows), ModelName<InputRow>);

TEST_P(InputOptionRows, CodeSelectsTheHandlers) {
  EXPECT_EQ(HandlersFor(GetParam().model), GetParam().handlers);
}

TEST_P(InputOptionRows, LongerCodeSelectsTheHandlers) {
  for (const char* suffix : {"-MLT-JP", "0", " "}) {
    EXPECT_EQ(HandlersFor((GetParam().model + std::string(suffix)).c_str()), GetParam().handlers)
        << suffix;
  }
}

TEST_P(InputOptionRows, ShortenedCodeIsADifferentModel) {
  EXPECT_EQ(HandlersFor(WithoutLast(GetParam().model).c_str()), kOtherModels);
}

TEST_P(InputOptionRows, CodeInLowerCaseIsADifferentModel) {
  EXPECT_EQ(HandlersFor(InLowerCase(GetParam().model).c_str()), kOtherModels);
}

TEST_P(InputOptionRows, CodeAfterOtherTextIsADifferentModel) {
  EXPECT_EQ(HandlersFor((std::string("X") + GetParam().model).c_str()), kOtherModels);
}

TEST(InputOptionTable, ModelWithoutCodeHasTheCommonHandlers) {
  EXPECT_EQ(HandlersFor(nullptr), kOtherModels);
}

TEST(InputOptionTable, UnknownModelHasTheCommonHandlers) {
  for (const char* model : {"", "R", "RA-", "RA-H2", "RD-T7", "RB-X1-2", "RC-W", "-"}) {
    EXPECT_EQ(HandlersFor(model), kOtherModels) << model;
  }
}

// Running the handlers of a row -------------------------------------------------------------------

std::string g_calls;
std::int32_t g_result_of_second = 0;

class RunningInputHandlers : public testing::Test {
 protected:
  template <char kName>
  static std::int32_t Recorded(AnalyzeContext* context, const TrayEntry* trays, std::int32_t count,
                               std::int32_t extra_count, OptionSetter* rows,
                               std::int32_t* row_count) {
    EXPECT_EQ(context, &context_);
    EXPECT_EQ(trays, trays_.data());
    EXPECT_EQ(count, 4);
    EXPECT_EQ(extra_count, 3);
    EXPECT_EQ(rows, rows_.data());
    EXPECT_EQ(row_count, &row_count_);
    g_calls += kName;
    return kName == 'b' ? g_result_of_second : 0;
  }

  static constexpr ia::InputHandler kFirst{IA_EXPORTED(Recorded<'a'>), .inputs = {},
                                           .rule = nullptr};
  static constexpr ia::InputHandler kSecond{IA_EXPORTED(Recorded<'b'>), .inputs = {},
                                            .rule = nullptr};
  static constexpr ia::InputHandler kThird{IA_EXPORTED(Recorded<'c'>), .inputs = {},
                                           .rule = nullptr};

  static std::string CallsOf(std::initializer_list<const ia::InputHandler*> handlers) {
    g_calls.clear();
    ia::RunHandlers(handlers, {&context_, trays_.data(), 4, 3, rows_.data(), &row_count_});
    return g_calls;
  }

  static inline AnalyzeContext context_ = {};
  static inline std::array<TrayEntry, 4> trays_ = {};
  static inline std::array<OptionSetter, 7> rows_ = {};
  static inline std::int32_t row_count_ = 2;
};

TEST_F(RunningInputHandlers, KeepsTheirOrderAndSkipsEmptySlots) {
  EXPECT_EQ(CallsOf({&kFirst, &kSecond, &kThird}), "abc");
  EXPECT_EQ(CallsOf({&kThird, nullptr, &kFirst, nullptr}), "ca");
}

TEST_F(RunningInputHandlers, EndsWithTheFirstThatFails) {
  for (const std::int32_t result : {-1, 1, 12}) {
    g_result_of_second = result;
    EXPECT_EQ(CallsOf({&kFirst, &kSecond, &kThird}), "ab") << result;
  }
  g_result_of_second = 0;
}

// What the real handlers append, in the order of the columns ------------------------------------

class AppendedInputOptions : public InputHandlers {
 protected:
  void SetUp() override {
    SetFlags(&AnalyzeContext::input_tray_flags, Flags{{"Cas1", "101"}});
    SetFlags(&AnalyzeContext::slot_media_info_flags, Flags{{"Cas1", "QVCas1MediaType"}});
    SetFlags(&AnalyzeContext::media_type_flags, Flags{{"Thick", "7"}});
    SetFlags(&AnalyzeContext::src_option_flags, Flags{{"Word1", "101"}});
  }

  const Trays kTrays = {{3, 101, 500, 7}, {6, 6, 500, 0}};
  const OptionRow kSideDeck = {"QVSidePaperDeck", std::nullopt, "None"};
  const OptionRow kMediaType = {"QVCas1MediaType", "Thick", "PlainPaper"};
};

TEST_F(AppendedInputOptions, ModelWithoutRowGetsSideDeckSourceAndMediaTypes) {
  EXPECT_THAT(AppendedFor("RA-H2", kTrays),
              ElementsAre(kSideDeck, OptionRow{"QVSrcOption", "Word1", "None"}, kMediaType));
}

TEST_F(AppendedInputOptions, ModelWithoutSideDeckSlotGetsNoSideDeck) {
  for (const char* model : {"RA-W8", "RA-T0"}) {
    EXPECT_THAT(AppendedFor(model, kTrays),
                ElementsAre(OptionRow{"QVSrcOption", "OptCas1", "None"}, kMediaType))
        << model;
  }
}

TEST_F(AppendedInputOptions, ModelWithEnvelopeFeederSlotGetsItLast) {
  EXPECT_THAT(AppendedFor("RC-W0", kTrays),
              ElementsAre(kSideDeck, OptionRow{"QVSrcOption", "None", "None"}, kMediaType,
                          OptionRow{"QVEnvelopeFeeder", "True", "False"}));
}

// What a query appends for a model is what its handlers append one after the other.
TEST_F(AppendedInputOptions, QueryAppendsWhatTheHandlersAppend) {
  const std::vector<Trays> reports = {
      {},
      kTrays,
      {{3, 161, 1999, 7}, {1, 101, 500, 0}, {6, 162, 2000, 7}},
      {{6, 161, 2000, 0}, {6, 164, 2000, 7}, {6, 167, 9, 7}, {1, 102, 1, 1}},
      {{1, 121, 1, 7}, {1, 122, 1, 7}, {1, 123, 1, 7}, {1, 124, 1, 7}, {3, 7, 1, 7}}};
  for (const InputRow& row : kRows) {
    for (const Trays& trays : reports) {
      OptionRows expected;
      for (const std::string& handler : row.handlers) {
        std::ranges::copy(Appended(FunctionOf<InputOptionHandler>(std::string(kPrefix) + handler),
                                   trays, ExtraTraysOf(trays)),
                          std::back_inserter(expected));
      }
      EXPECT_EQ(AppendedFor(row.model, trays), expected) << row.model;
    }
  }
}

TEST_F(AppendedInputOptions, NullArgumentAppendsNothing) {
  std::array<OptionSetter, 5> rows = {};
  std::int32_t count = 2;
  const TrayEntry* const trays = kTrays.data();
  analyze_GetInputOptions(nullptr, trays, 2, 2, rows.data(), &count);
  analyze_GetInputOptions(&context_, nullptr, 2, 2, rows.data(), &count);
  analyze_GetInputOptions(&context_, nullptr, 0, 0, rows.data(), &count);
  analyze_GetInputOptions(&context_, trays, 2, 2, nullptr, &count);
  analyze_GetInputOptions(&context_, trays, 2, 2, rows.data(), nullptr);
  EXPECT_EQ(count, 2);
  for (const OptionSetter& setter : rows) EXPECT_EQ(setter.keyword, nullptr);
}

TEST_F(AppendedInputOptions, CodeOfAnotherTableThatIsLongerIsOfTheSameRow) {
  EXPECT_THAT(AppendedFor("RA-Z2-MLT-JP", kTrays),
              ElementsAre(kSideDeck, OptionRow{"QVSrcOption", "None", "None"}, kMediaType));
}

TEST_F(AppendedInputOptions, NegativeRowCountAppendsNothing) {
  for (const InputRow& row : kRows) {
    std::string name = row.model;
    context_.driver_name = name.data();
    std::array<OptionSetter, 5> rows = {};
    std::int32_t count = -1;
    analyze_GetInputOptions(&context_, kTrays.data(), 2, 2, rows.data(), &count);
    context_.driver_name = nullptr;
    EXPECT_EQ(count, -1) << row.model;
    for (const OptionSetter& setter : rows) EXPECT_EQ(setter.keyword, nullptr) << row.model;
  }
}

}  // namespace
}  // namespace ia_test
