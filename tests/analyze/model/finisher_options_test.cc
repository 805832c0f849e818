#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "analyze/model/finisher_handlers.h"
#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/analyze/model/model_names.h"
#include "tests/analyze/model/model_tables.h"

namespace ia_test {
namespace {

using testing::ElementsAre;

constexpr std::array<std::int32_t, 3> kFamilies = {IA_FAMILY_FINISHER, IA_FAMILY_COPY_TRAY,
                                                   IA_FAMILY_FIN_TRAY};

// The handlers of these families; their names follow the prefix.
using Handlers = std::array<std::string, 3>;
constexpr std::string_view kPrefix = "analyze_GetQV";

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

// The handlers that decide for a code, which may be null; "" in an empty slot.
Handlers HandlersFor(const char* code) {
  Handlers handlers;
  for (std::size_t i = 0; i < handlers.size(); ++i) {
    const std::string name = HandlerOf(kFamilies[i], code);
    handlers[i] = name.substr(std::min(name.size(), kPrefix.size()));
  }
  return handlers;
}

const Handlers kOtherModels = {"FinisherCommon", "", ""};

TEST(FinisherOptionTable, HasAnExpectationForEachRow) {
  for (const std::int32_t family : kFamilies) EXPECT_EQ(CodesOf(family), ModelsOf(kTable));
}

class FinisherOptionRows : public testing::TestWithParam<FinisherRow> {};

INSTANTIATE_TEST_SUITE_P(, FinisherOptionRows, testing::ValuesIn(kTable), ModelName<FinisherRow>);

TEST_P(FinisherOptionRows, CodeSelectsTheHandlers) {
  EXPECT_EQ(HandlersFor(GetParam().model), GetParam().handlers);
}

TEST_P(FinisherOptionRows, LongerCodeSelectsTheHandlers) {
  for (const char* suffix : {"-MLT-JP", "0", " "}) {
    EXPECT_EQ(HandlersFor((GetParam().model + std::string(suffix)).c_str()), GetParam().handlers)
        << suffix;
  }
}

TEST_P(FinisherOptionRows, ShortenedCodeIsADifferentModel) {
  const std::string code = WithoutLast(GetParam().model);
  EXPECT_EQ(HandlersFor(code.c_str()),
            code == "RA-P9-" ? (Handlers{"Finisher_ASPEN", "CopyTray_ASPEN", "FinTray_ASPEN"})
                             : kOtherModels);
}

TEST_P(FinisherOptionRows, CodeInLowerCaseIsADifferentModel) {
  EXPECT_EQ(HandlersFor(InLowerCase(GetParam().model).c_str()), kOtherModels);
}

TEST_P(FinisherOptionRows, CodeAfterOtherTextIsADifferentModel) {
  EXPECT_EQ(HandlersFor((std::string("X") + GetParam().model).c_str()), kOtherModels);
}

TEST(FinisherOptionTable, LongerCodeOfARowComesBeforeTheShorterOne) {
  for (const char* model : {"RA-P9-1", "RA-P9-10", "RA-P9-1-MLT"}) {
    EXPECT_EQ(HandlersFor(model), (Handlers{"Finisher_FIR", "CopyTray_FIR", "FinTray_FIR"}))
        << model;
  }
  for (const char* model : {"RA-P9", "RA-P9-", "RA-P9-2", "RA-P9-MLT", "RA-P91", "RA-P9 -1"}) {
    EXPECT_EQ(HandlersFor(model), (Handlers{"Finisher_ASPEN", "CopyTray_ASPEN", "FinTray_ASPEN"}))
        << model;
  }
}

TEST(FinisherOptionTable, ModelWithoutCodeGetsTheCommonFinisherAndNoTrays) {
  EXPECT_EQ(HandlersFor(nullptr), kOtherModels);
}

TEST(FinisherOptionTable, UnknownModelGetsTheCommonFinisherAndNoTrays) {
  for (const char* model : {"", "R", "RA-", "RA-P", "RB-X1-", "RB-X1-3", "RB-P9", "RC-STD", "-"}) {
    EXPECT_EQ(HandlersFor(model), kOtherModels) << model;
  }
}

// Running the handlers of a row -------------------------------------------------------------------

std::vector<std::string> g_calls;
std::int32_t g_result_of_second = 0;
const FinisherReport kReport{{{2, "Vorel Finisher-U1"}, {3, "Vorel Finisher-U3"}}, {119, 101, 121}};

template <char kName>
std::int32_t Recorded(AnalyzeContext*, const FinisherEntry* finishers, std::int32_t count,
                      const std::int32_t* aliases, std::int32_t alias_count, OptionSetter* row) {
  EXPECT_EQ(finishers, kReport.finishers());
  EXPECT_EQ(count, 2);
  EXPECT_EQ(aliases, kReport.aliases());
  EXPECT_EQ(alias_count, 3);
  g_calls.push_back(std::string(1, kName) + " " + row->keyword);
  return kName == 'b' ? g_result_of_second : 0;
}

constexpr ia::FinisherHandler kFirst{IA_EXPORTED(Recorded<'a'>), .inputs = {}, .rule = nullptr};
constexpr ia::FinisherHandler kSecond{IA_EXPORTED(Recorded<'b'>), .inputs = {}, .rule = nullptr};
constexpr ia::FinisherHandler kThird{IA_EXPORTED(Recorded<'c'>), .inputs = {}, .rule = nullptr};

std::vector<std::string> CallsOf(std::initializer_list<const ia::FinisherHandler*> handlers) {
  AnalyzeContext context = {};
  OptionSetter rows[3] = {};
  rows[0].keyword = "0";
  rows[1].keyword = "1";
  rows[2].keyword = "2";
  g_calls.clear();
  ia::RunHandlers(handlers, {&context, kReport.finishers(), kReport.count(), kReport.aliases(),
                             kReport.alias_count(), rows});
  return g_calls;
}

TEST(RunningFinisherHandlers, GivesEachItsOptionRow) {
  g_result_of_second = 0;
  EXPECT_THAT(CallsOf({&kFirst, &kSecond, &kThird}), ElementsAre("a 0", "b 1", "c 2"));
  EXPECT_THAT(CallsOf({&kFirst, &kThird, &kSecond}), ElementsAre("a 0", "c 1", "b 2"));
}

TEST(RunningFinisherHandlers, SkipsTheRowOfAnEmptySlot) {
  EXPECT_THAT(CallsOf({nullptr, &kThird, nullptr}), ElementsAre("c 1"));
}

TEST(RunningFinisherHandlers, EndsWithTheFirstThatFails) {
  for (const std::int32_t result : {-1, 1, 12}) {
    g_result_of_second = result;
    EXPECT_THAT(CallsOf({&kFirst, &kSecond, &kThird}), ElementsAre("a 0", "b 1")) << result;
  }
  g_result_of_second = 0;
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

// What the handlers of a row set when each is called by itself.
Values ValuesOfHandlers(const Handlers& handlers, const FinisherReport& report) {
  FinisherAnalyzer analyzer(kMakersNames);
  FinisherRows rows;
  for (std::size_t i = 0; i < handlers.size(); ++i) {
    if (handlers[i].empty()) continue;
    const auto handler = FunctionOf<FinisherOptionHandler>(std::string(kPrefix) + handlers[i]);
    EXPECT_EQ(handler(analyzer.get(), report.finishers(), report.count(), report.aliases(),
                      report.alias_count(), rows.get() + i),
              0);
  }
  return rows.values();
}

TEST_P(FinisherOptionRows, QuerySetsWhatTheHandlersSet) {
  const std::vector<std::string> units = {
      "Vorel Inner 2Way Tray-B1", "Vorel Inner 2Way Tray-R1", "Vorel Finisher-T1",
      "Vorel Finisher-U3",        "Vorel Finisher-U1/U3",     "Vorel Inner Finisher-F1",
      "Vorel Inner Finisher-W1",  "Vorel Inner 2way Tray-N1", "Vorel 3 Way Unit-D1"};
  const std::vector<Aliases> all_aliases = {{}, {101}, {119}, {121}, {119, 7}, {101, 119, 121}};
  for (const std::string& unit : units) {
    for (const Aliases& aliases : all_aliases) {
      for (const std::int32_t bins : {1, 2, 3, 4}) {
        const Units reported = {{bins, unit.c_str()}};
        EXPECT_EQ(ValuesOf(GetParam().model, reported, aliases),
                  ValuesOfHandlers(GetParam().handlers, FinisherReport(reported, aliases)))
            << unit << " with " << bins << " bins";
      }
    }
  }
}

const Values kNothing = {std::nullopt, std::nullopt, std::nullopt};

TEST(FinisherOptionValues, ModelWithoutRowGetsTheNamedFinisherOnly) {
  const Units units = {{9, "Vorel Finisher-U3"}, {9, "Vorel Inner Finisher-F1"}};
  const Values expected = {"BYNAME", std::nullopt, std::nullopt};
  EXPECT_EQ(ValuesOf(nullptr, units, {101, 119, 121}), expected);
  EXPECT_EQ(ValuesOf("RA-H2", units, {101, 119, 121}), expected);
}

TEST(FinisherOptionValues, NullArgumentSetsNothing) {
  FinisherAnalyzer analyzer(kMakersNames);
  const FinisherReport report({{9, "Vorel Finisher-U3"}}, {101, 119, 121});
  FinisherRows rows;
  analyze_GetFinisherOption(nullptr, report.finishers(), 1, report.aliases(), 3, rows.get());
  analyze_GetFinisherOption(analyzer.get(), nullptr, 1, report.aliases(), 3, rows.get());
  analyze_GetFinisherOption(analyzer.get(), nullptr, 0, report.aliases(), 3, rows.get());
  analyze_GetFinisherOption(analyzer.get(), report.finishers(), 1, report.aliases(), 3, nullptr);
  EXPECT_EQ(rows.values(), kNothing);
}

TEST(FinisherOptionValues, NullAliasesAreNone) {
  FinisherAnalyzer analyzer(kMakersNames);
  const FinisherReport report({{9, "Vorel Finisher-U3"}}, {101, 119, 121});
  FinisherRows rows;
  analyze_GetFinisherOption(analyzer.get(), report.finishers(), 1, nullptr, 0, rows.get());
  EXPECT_EQ(rows.values(), (Values{"BYNAME", std::nullopt, std::nullopt}));
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

TEST(FinisherOptionValues, InnerTrayIsFoundCaseInsensitively) {
  EXPECT_EQ(ValuesOf("RA-X6", {{2, "VOREL inner 2WAY tRAY-Q1"}}, {119}),
            (Values{"IN2TRAY", std::nullopt, std::nullopt}));
}

TEST(FinisherOptionValues, WholeNameOrPrefixByModel) {
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
