#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/recorded_handlers.h"

namespace ia_test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// Finisher, copy tray and fin tray; the handlers' names follow "analyze_GetQV".
using Handlers = std::array<std::string, 3>;

struct FinisherRow {
  const char* model;
  Handlers handlers;
};

void PrintTo(const FinisherRow& row, std::ostream* out) { *out << row.model; }

// clang-format off
const std::vector<FinisherRow> kTable = {
    {"RA-P9-1", {"Finisher_FIR", "CopyTray_FIR", "FinTray_FIR"}},
    {"RA-P9", {"Finisher_ASPEN", "CopyTray_ASPEN", "FinTray_ASPEN"}},
    {"RA-J0", {"FinisherCommon", "CopyTrayCommon", "FinTray_ALDER"}},
    {"RA-G1", {"Finisher_CEDAR", "CopyTray_CEDAR", "FinTrayCommon"}},
    {"RA-T7", {"Finisher_BEECH", "CopyTray_BEECH", "FinTray_BEECH"}},
    {"RA-X1", {"Finisher_BIRCH", "CopyTray_BIRCH", "FinTray_BIRCH"}},
    {"RA-T9", {"Finisher_HAZEL", "CopyTray_HAZEL", "FinTray_HAZEL"}},
    {"RA-G8", {"FinisherMAPLE", "CopyTrayMAPLE", "FinTrayMAPLE"}},
    {"RB-X1-1", {"FinisherCommon", "CopyTrayCommon", "FinTrayMYRTLE"}},
    {"RB-X1-2", {"FinisherCommon", "CopyTrayCommon", "FinTrayMYRTLE"}},
    {"RA-G7", {"FinisherSPRUCE", "CopyTrayMAPLE", "FinTrayMAPLE"}},
    {"RA-G4", {"FinisherSPRUCE", "CopyTrayMAPLE", "FinTrayMAPLE"}},
    {"RB-T9-1", {"FinisherCommon", "CopyTrayCommon", "FinTrayMYRTLE"}},
    {"RB-T9-2", {"FinisherCommon", "CopyTrayCommon", "FinTrayMYRTLE"}},
    {"RA-K8", {"FinisherWALNUT", "CopyTrayCommon", "FinTrayCommon"}},
    {"RA-H8", {"FinisherWILLOW", "CopyTrayCommon", "FinTrayWILLOW"}},
    {"RA-Z3", {"FinisherSUMAC", "CopyTrayMAPLE", "FinTraySUMAC"}},
    {"RA-T6", {"FinisherHICKORY", "CopyTrayMAPLE", "FinTrayCommon"}},
    {"RA-X6", {"FinisherSpecialIn2TrayCommon", "CopyTrayCommon", "FinTrayCommon"}},
    {"RA-H5", {"FinisherSUMAC", "CopyTrayMAPLE", "FinTrayHORNBEAM"}},
};
// clang-format on

class FinisherOptions : public testing::Test {
 protected:
  void Run(const char* model) {
    std::string name = model != nullptr ? model : "";
    AnalyzeContext* const context = analyzer_.get();
    context->driver_name = model != nullptr ? name.data() : nullptr;
    analyze_GetFinisherOption(context, report_.finishers(), report_.count(), report_.aliases(),
                              report_.alias_count(), rows_.get());
    context->driver_name = nullptr;
  }

  // The calls of the first `count` handlers of a row.
  std::vector<Call> CallsOf(const Handlers& handlers, std::size_t count = 3) {
    std::vector<Call> calls;
    for (std::size_t i = 0; i < count; ++i) {
      calls.push_back(CallTo("analyze_GetQV" + handlers[i], analyzer_.get(), report_.finishers(),
                             report_.count(), report_.aliases(), report_.alias_count(),
                             rows_.get() + i));
    }
    return calls;
  }

  std::vector<Call> CallsOfOtherModels() { return CallsOf({"FinisherCommon"}, 1); }

  FinisherAnalyzer analyzer_{""};
  FinisherReport report_{{{2, "Vorel Finisher-U1"}, {3, "Vorel Finisher-U3"}}, {119, 101, 121}};
  FinisherRows rows_;
  HandlerCalls recorded_;
};

class FinisherOptionRows : public FinisherOptions,
                           public testing::WithParamInterface<FinisherRow> {};

INSTANTIATE_TEST_SUITE_P(, FinisherOptionRows, testing::ValuesIn(kTable), ModelName<FinisherRow>);

TEST_P(FinisherOptionRows, CodeRunsTheHandlersInOrderEachWithItsRow) {
  Run(GetParam().model);
  EXPECT_EQ(recorded_.calls, CallsOf(GetParam().handlers));
}

TEST_P(FinisherOptionRows, CodeWithMoreBehindRunsTheHandlers) {
  for (const char* suffix : {"-MLT-JP", "0", " "}) {
    recorded_.calls.clear();
    Run((GetParam().model + std::string(suffix)).c_str());
    EXPECT_EQ(recorded_.calls, CallsOf(GetParam().handlers)) << suffix;
  }
}

TEST_P(FinisherOptionRows, ShortenedCodeIsAnotherModel) {
  const std::string code = WithoutLast(GetParam().model);
  Run(code.c_str());
  EXPECT_EQ(recorded_.calls, code == "RA-P9-"
                                 ? CallsOf({"Finisher_ASPEN", "CopyTray_ASPEN", "FinTray_ASPEN"})
                                 : CallsOfOtherModels());
}

TEST_P(FinisherOptionRows, CodeInOtherLetterCaseIsAnotherModel) {
  Run(InLowerCase(GetParam().model).c_str());
  EXPECT_EQ(recorded_.calls, CallsOfOtherModels());
}

TEST_P(FinisherOptionRows, CodeBehindOtherTextIsAnotherModel) {
  Run((std::string("X") + GetParam().model).c_str());
  EXPECT_EQ(recorded_.calls, CallsOfOtherModels());
}

TEST_P(FinisherOptionRows, FirstHandlerThatFailsEndsTheRun) {
  const Handlers& handlers = GetParam().handlers;
  for (std::size_t failing = 0; failing < handlers.size(); ++failing) {
    for (const std::int32_t result : {-1, 1, 12}) {
      recorded_.calls.clear();
      recorded_.results = {{"analyze_GetQV" + handlers[failing], result}};
      Run(GetParam().model);
      EXPECT_EQ(recorded_.calls, CallsOf(handlers, failing + 1))
          << handlers[failing] << " answers " << result;
    }
  }
}

TEST_F(FinisherOptions, LongerCodeOfARowComesBeforeTheShorterOne) {
  for (const char* model : {"RA-P9-1", "RA-P9-10", "RA-P9-1-MLT"}) {
    recorded_.calls.clear();
    Run(model);
    EXPECT_EQ(recorded_.calls, CallsOf({"Finisher_FIR", "CopyTray_FIR", "FinTray_FIR"})) << model;
  }
  for (const char* model : {"RA-P9", "RA-P9-", "RA-P9-2", "RA-P9-MLT", "RA-P91", "RA-P9 -1"}) {
    recorded_.calls.clear();
    Run(model);
    EXPECT_EQ(recorded_.calls, CallsOf({"Finisher_ASPEN", "CopyTray_ASPEN", "FinTray_ASPEN"}))
        << model;
  }
}

TEST_F(FinisherOptions, ModelWithoutCodeGetsTheCommonFinisherAndNoTrays) {
  Run(nullptr);
  EXPECT_EQ(recorded_.calls, CallsOfOtherModels());
}

TEST_F(FinisherOptions, UnknownModelGetsTheCommonFinisherAndNoTrays) {
  for (const char* model : {"", "R", "RA-", "RA-P", "RB-X1-", "RB-X1-3", "RB-P9", "RC-STD", "-"}) {
    recorded_.calls.clear();
    Run(model);
    EXPECT_EQ(recorded_.calls, CallsOfOtherModels()) << model;
  }
}

TEST_F(FinisherOptions, NullArgumentRunsNothing) {
  AnalyzeContext* const context = analyzer_.get();
  const FinisherEntry* const finishers = report_.finishers();
  const std::int32_t* const aliases = report_.aliases();
  analyze_GetFinisherOption(nullptr, finishers, 2, aliases, 3, rows_.get());
  analyze_GetFinisherOption(context, nullptr, 2, aliases, 3, rows_.get());
  analyze_GetFinisherOption(context, nullptr, 0, aliases, 3, rows_.get());
  analyze_GetFinisherOption(context, finishers, 2, aliases, 3, nullptr);
  EXPECT_THAT(recorded_.calls, IsEmpty());
}

TEST_F(FinisherOptions, NullAliasesAreHandedOn) {
  analyze_GetFinisherOption(analyzer_.get(), report_.finishers(), 2, nullptr, 0, rows_.get());
  const std::int32_t* const none = nullptr;
  EXPECT_THAT(recorded_.calls, ElementsAre(CallTo("analyze_GetQVFinisherCommon", analyzer_.get(),
                                                  report_.finishers(), 2, none, 0, rows_.get())));
}

TEST_F(FinisherOptions, WithoutFinishersNothingRuns) {
  for (const FinisherRow& row : kTable) {
    std::string name = row.model;
    analyzer_.get()->driver_name = name.data();
    analyze_GetFinisherOption(analyzer_.get(), report_.finishers(), 0, report_.aliases(), 3,
                              rows_.get());
    analyzer_.get()->driver_name = nullptr;
    EXPECT_THAT(recorded_.calls, IsEmpty()) << row.model;
  }
}

// What the real handlers set --------------------------------------------------------------------

using Values = std::vector<Value>;

Values ValuesOf(const char* model, const Units& units, const Aliases& aliases,
                const char* names = kMakersNames) {
  FinisherAnalyzer analyzer(names);
  std::string name = model != nullptr ? model : "";
  analyzer.get()->driver_name = model != nullptr ? name.data() : nullptr;
  const FinisherReport report(units, aliases);
  FinisherRows rows;
  analyze_GetFinisherOption(analyzer.get(), report.finishers(), report.count(), report.aliases(),
                            report.alias_count(), rows.get());
  return rows.values();
}

const Values kNothing = {std::nullopt, std::nullopt, std::nullopt};

TEST(FinisherOptionValues, ModelWithoutRowGetsTheNamedFinisherOnly) {
  const Units units = {{9, "Vorel Finisher-U3"}, {9, "Vorel Inner Finisher-F1"}};
  const Values expected = {"BYNAME", std::nullopt, std::nullopt};
  EXPECT_EQ(ValuesOf(nullptr, units, {101, 119, 121}), expected);
  EXPECT_EQ(ValuesOf("RA-H2", units, {101, 119, 121}), expected);
}

TEST(FinisherOptionValues, WithoutFinishersEveryModelKeepsTheDefaults) {
  EXPECT_EQ(ValuesOf(nullptr, {}, {101, 119, 121}), kNothing);
  for (const FinisherRow& row : kTable) {
    EXPECT_EQ(ValuesOf(row.model, {}, {101, 119, 121}), kNothing) << row.model;
  }
}

TEST(FinisherOptionValues, NegativeFinisherCountKeepsTheDefaults) {
  const FinisherReport report({{9, "Vorel Finisher-U3"}}, {101, 119, 121});
  for (const FinisherRow& row : kTable) {
    FinisherAnalyzer analyzer(kMakersNames);
    std::string name = row.model;
    analyzer.get()->driver_name = name.data();
    FinisherRows rows;
    analyze_GetFinisherOption(analyzer.get(), report.finishers(), -1, report.aliases(), 3,
                              rows.get());
    EXPECT_EQ(rows.values(), kNothing) << row.model;
  }
}

TEST(FinisherOptionValues, FinisherOfMoreBinsThanItsRuleHasAFinisherTray) {
  EXPECT_EQ(ValuesOf("RA-P9", {{3, "Vorel Finisher-U3 with staples"}}, {}),
            (Values{"BYNAME", std::nullopt, "FNTU1"}));
  EXPECT_EQ(ValuesOf("RA-P9", {{2, "Vorel Finisher-U3 with staples"}}, {}),
            (Values{"BYNAME", std::nullopt, std::nullopt}));
}

TEST(FinisherOptionValues, InnerTrayBesideItsAliasIsACopyTrayAndNoFinisher) {
  EXPECT_EQ(ValuesOf("RA-P9", {{2, "Vorel Inner 2Way Tray-B1"}}, {103}),
            (Values{std::nullopt, "CPTU1", std::nullopt}));
}

TEST(FinisherOptionValues, UnitOfOneBinIsNoFinisherWhateverItsName) {
  EXPECT_EQ(ValuesOf("RA-X1", {{1, "Vorel 3 Way Unit-D2"}}, {}),
            (Values{"None", std::nullopt, std::nullopt}));
}

TEST(FinisherOptionValues, InnerTrayInAnyLetterCaseIsATray) {
  EXPECT_EQ(ValuesOf("RA-X6", {{2, "VOREL inner 2WAY tRAY-Q1"}}, {119}),
            (Values{"IN2TRAY", std::nullopt, std::nullopt}));
}

TEST(FinisherOptionValues, WholeNameOrItsBeginningByModel) {
  EXPECT_EQ(ValuesOf("RA-H5", {{2, "Vorel Inner Finisher-W1 with staples"}}, {119}),
            (Values{"BYNAME", std::nullopt, std::nullopt}));
  EXPECT_EQ(ValuesOf("RA-H5", {{2, "Vorel Inner Finisher-W1"}}, {119}),
            (Values{"BYNAME", std::nullopt, "FNTU1"}));
  EXPECT_EQ(ValuesOf("RA-Z3", {{2, "Vorel Inner Finisher-F1 with staples"}}, {119}),
            (Values{"BYNAME", std::nullopt, "EXTU1"}));
}

TEST(FinisherOptionValues, FirstFinisherOfOtherBinsIsNoFinisherWhateverTheOthers) {
  EXPECT_EQ(ValuesOf("RA-K8", {{5, "Vorel A"}, {2, "Vorel B"}, {1, "Vorel C"}}, {119}),
            (Values{"None", std::nullopt, std::nullopt}));
}

TEST(FinisherOptionValues, LastNamedFinisherDecides) {
  EXPECT_EQ(ValuesOf("RA-J0", {{1, "Vorel A"}, {1, "Vorel B"}}, {}, "Vorel B:FINB,Vorel A:FINA"),
            (Values{"FINB", std::nullopt, std::nullopt}));
}

}  // namespace
}  // namespace ia_test
