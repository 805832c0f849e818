#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/input_handlers.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/recorded_handlers.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Handlers = std::vector<std::string>;

// The handlers' names follow "analyze_GetQV"; an empty slot is left out.
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

class InputOptions : public testing::Test {
 protected:
  void Run(const char* model, std::int32_t tray_count = kTrayCount) {
    std::string name = model != nullptr ? model : "";
    context_.driver_name = model != nullptr ? name.data() : nullptr;
    analyze_GetInputOptions(&context_, trays_.data(), tray_count, kExtraTrays, rows_.data(),
                            &row_count_);
    context_.driver_name = nullptr;
  }

  std::vector<Call> CallsOf(const Handlers& handlers, std::int32_t tray_count = kTrayCount) {
    std::vector<Call> calls;
    for (const std::string& handler : handlers) {
      calls.push_back(CallTo("analyze_GetQV" + handler, &context_, trays_.data(), tray_count,
                             kExtraTrays, rows_.data(), &row_count_));
    }
    return calls;
  }

  static constexpr std::int32_t kTrayCount = 4;
  static constexpr std::int32_t kExtraTrays = 3;

  AnalyzeContext context_ = {};
  std::array<TrayEntry, kTrayCount> trays_ = {};
  std::array<OptionSetter, kTrayCount + 3> rows_ = {};
  std::int32_t row_count_ = 2;
  HandlerCalls recorded_;
};

class InputOptionRows : public InputOptions, public testing::WithParamInterface<InputRow> {};

INSTANTIATE_TEST_SUITE_P(, InputOptionRows, testing::ValuesIn(kRows), ModelName<InputRow>);

TEST_P(InputOptionRows, CodeRunsTheHandlersInOrderWithAllArguments) {
  Run(GetParam().model);
  EXPECT_EQ(recorded_.calls, CallsOf(GetParam().handlers));
}

TEST_P(InputOptionRows, CodeWithMoreBehindRunsTheHandlers) {
  for (const char* suffix : {"-MLT-JP", "0", " "}) {
    recorded_.calls.clear();
    Run((GetParam().model + std::string(suffix)).c_str());
    EXPECT_EQ(recorded_.calls, CallsOf(GetParam().handlers)) << suffix;
  }
}

TEST_P(InputOptionRows, ShortenedCodeIsAnotherModel) {
  Run(WithoutLast(GetParam().model).c_str());
  EXPECT_EQ(recorded_.calls, CallsOf(kOtherModels));
}

TEST_P(InputOptionRows, CodeInOtherLetterCaseIsAnotherModel) {
  Run(InLowerCase(GetParam().model).c_str());
  EXPECT_EQ(recorded_.calls, CallsOf(kOtherModels));
}

TEST_P(InputOptionRows, CodeBehindOtherTextIsAnotherModel) {
  Run((std::string("X") + GetParam().model).c_str());
  EXPECT_EQ(recorded_.calls, CallsOf(kOtherModels));
}

TEST_P(InputOptionRows, FirstHandlerThatFailsEndsTheRun) {
  const Handlers& handlers = GetParam().handlers;
  for (std::size_t failing = 0; failing < handlers.size(); ++failing) {
    for (const std::int32_t result : {-1, 1, 12}) {
      recorded_.calls.clear();
      recorded_.results = {{"analyze_GetQV" + handlers[failing], result}};
      Run(GetParam().model);
      EXPECT_EQ(recorded_.calls, CallsOf({handlers.begin(), handlers.begin() + failing + 1}))
          << handlers[failing] << " answers " << result;
    }
  }
}

TEST_F(InputOptions, ModelWithoutCodeRunsTheCommonHandlers) {
  Run(nullptr);
  EXPECT_EQ(recorded_.calls, CallsOf(kOtherModels));
}

TEST_F(InputOptions, UnknownModelRunsTheCommonHandlers) {
  for (const char* model : {"", "R", "RA-", "RA-H2", "RD-T7", "RB-X1-2", "RC-W", "-"}) {
    recorded_.calls.clear();
    Run(model);
    EXPECT_EQ(recorded_.calls, CallsOf(kOtherModels)) << model;
  }
}

TEST_F(InputOptions, FirstCommonHandlerThatFailsEndsTheRun) {
  for (std::size_t failing = 0; failing < kOtherModels.size(); ++failing) {
    recorded_.calls.clear();
    recorded_.results = {{"analyze_GetQV" + kOtherModels[failing], -1}};
    Run(nullptr);
    EXPECT_EQ(recorded_.calls, CallsOf({kOtherModels.begin(), kOtherModels.begin() + failing + 1}))
        << kOtherModels[failing];
  }
}

TEST_F(InputOptions, HandlersRunWithoutTraysToo) {
  Run("RC-W0", 0);
  EXPECT_EQ(recorded_.calls, CallsOf({"SidePaperDeckCommon", "SrcOptionREDWOOD",
                                      "XXXMediaTypeREDWOOD", "EnvelopeFeederCommon"},
                                     0));
}

TEST_F(InputOptions, NullArgumentRunsNothing) {
  TrayEntry* const trays = trays_.data();
  OptionSetter* const rows = rows_.data();
  analyze_GetInputOptions(nullptr, trays, kTrayCount, kExtraTrays, rows, &row_count_);
  analyze_GetInputOptions(&context_, nullptr, kTrayCount, kExtraTrays, rows, &row_count_);
  analyze_GetInputOptions(&context_, nullptr, 0, 0, rows, &row_count_);
  analyze_GetInputOptions(&context_, trays, kTrayCount, kExtraTrays, nullptr, &row_count_);
  analyze_GetInputOptions(&context_, trays, kTrayCount, kExtraTrays, rows, nullptr);
  EXPECT_THAT(recorded_.calls, IsEmpty());
  EXPECT_EQ(row_count_, 2);
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
