// Rules that every handler of finisher options follows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "info_analyze/model_options.h"
#include "tests/analyze/model/finisher_reports.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::ElementsAre;

// Building blocks, with a rule and a range that fit the report below, as handlers.
constexpr AccessoryBinRule kRule = {1, "Vorel"};

std::int32_t FinisherByAlias(AnalyzeContext* context, const FinisherEntry* finishers,
                             std::int32_t count, const std::int32_t* aliases,
                             std::int32_t alias_count, OptionSetter* row) {
  return analyze_GetQVFinisherByBinTrayAlias(context, finishers, count, &kRule, 1, aliases,
                                             alias_count, 101, 105, row);
}

std::int32_t CopyTrayByAlias(AnalyzeContext* context, const FinisherEntry* finishers,
                             std::int32_t count, const std::int32_t* aliases,
                             std::int32_t alias_count, OptionSetter* row) {
  return analyze_GetQVCopyTrayByBinTrayAlias(context, finishers, count, &kRule, 1, aliases,
                                             alias_count, 101, 105, row);
}

std::int32_t FinTrayByCount(AnalyzeContext* context, const FinisherEntry* finishers,
                            std::int32_t count, const std::int32_t* aliases,
                            std::int32_t alias_count, OptionSetter* row) {
  return analyze_GetQVFinTrayByBinTrayCount(context, finishers, count, &kRule, 1, aliases,
                                            alias_count, row);
}

// A handler, and a finisher for which it sets a value if all three types of aliases are present.
struct HandlerRow : NamedRow {
  FinisherOptionHandler handler;
  const char* unit;
  const char* value;
};

#define IA_ROW(handler, unit, value) \
  HandlerRow { {#handler}, analyze_GetQV##handler, unit, value }

class FinisherHandlers : public testing::TestWithParam<HandlerRow> {};

INSTANTIATE_TEST_SUITE_P(
    , FinisherHandlers,
    testing::Values(
        IA_ROW(FinisherCommon, "Vorel A", "BYNAME"),
        IA_ROW(FinisherSpecialIn2TrayCommon, "Vorel Inner 2way Tray", "IN2TRAY"),
        IA_ROW(Finisher_ASPEN, "Vorel A", "BYNAME"), IA_ROW(Finisher_FIR, "Vorel A", "BYNAME"),
        IA_ROW(Finisher_BEECH, "Vorel A", "BYNAME"), IA_ROW(Finisher_BIRCH, "Vorel A", "BYNAME"),
        IA_ROW(Finisher_CEDAR, "Vorel A", "BYNAME"), IA_ROW(Finisher_HAZEL, "Vorel A", "BYNAME"),
        IA_ROW(FinisherMAPLE, "Vorel A", "BYNAME"), IA_ROW(FinisherSPRUCE, "Vorel A", "IN2TRAYF1"),
        IA_ROW(FinisherWILLOW, "Vorel A", "BYNAME"),
        IA_ROW(FinisherSUMAC, "Vorel Inner 2way Tray-N1", "IN2TRAY"),
        IA_ROW(FinisherHICKORY, "Vorel Inner 2way Tray-N1", "IN2TRAY"),
        IA_ROW(FinisherWALNUT, "Vorel A", "None"),
        HandlerRow{{"FinisherByBinTrayAlias"}, FinisherByAlias, "Vorel A", "BYNAME"},
        IA_ROW(CopyTrayCommon, "Vorel A", nullptr),
        IA_ROW(CopyTray_ASPEN, "Vorel Finisher-Q1", "CPTU1"),
        IA_ROW(CopyTray_FIR, "Vorel Finisher-Q1", "CPTU1"),
        IA_ROW(CopyTray_CEDAR, "Vorel Finisher-A1", "CPTU1"),
        IA_ROW(CopyTray_BEECH, "Vorel A", "CPTU1"), IA_ROW(CopyTray_BIRCH, "Vorel A", "CPTU1"),
        IA_ROW(CopyTray_HAZEL, "Vorel A", "CPTU1"), IA_ROW(CopyTrayMAPLE, "Vorel A", "CPTU1"),
        HandlerRow{{"CopyTrayByBinTrayAlias"}, CopyTrayByAlias, "Vorel A", "CPTU1"},
        IA_ROW(FinTrayCommon, "Vorel A", nullptr),
        IA_ROW(FinTray_ALDER, "Vorel Finisher-T1", "FNTU1"),
        IA_ROW(FinTray_ASPEN, "Vorel Finisher-U3", "FNTU1"),
        IA_ROW(FinTray_FIR, "Vorel Finisher-U1/U3", "FNTU1"),
        IA_ROW(FinTray_BEECH, "Vorel A", "FNTU1"), IA_ROW(FinTray_BIRCH, "Vorel A", "FNTU1"),
        IA_ROW(FinTray_HAZEL, "Vorel A", "FNTU1"), IA_ROW(FinTrayMAPLE, "Vorel A", "FNTU1"),
        IA_ROW(FinTrayMYRTLE, "Vorel A", "FNTU1"), IA_ROW(FinTrayWILLOW, "Vorel A", "FNTU1"),
        IA_ROW(FinTraySUMAC, "Vorel Inner Finisher-F1", "EXTU1"),
        IA_ROW(FinTrayHORNBEAM, "Vorel Inner Finisher-W1", "FNTU1"),
        HandlerRow{{"FinTrayByBinTrayCount"}, FinTrayByCount, "Vorel A", "FNTU1"}),
    RowName<HandlerRow>);

// Calls the handler with a report for which it sets its value; a test changes parts of the report.
struct Arguments {
  explicit Arguments(const HandlerRow& row)
      : handler(row.handler), report({{9, row.unit}}, {101, 119, 121}) {}

  std::int32_t Call() {
    return handler(context, finishers, count, report.aliases(), report.alias_count(), row);
  }

  FinisherOptionHandler handler;
  FinisherReport report;
  FinisherAnalyzer analyzer{kMakersNames};
  FinisherRows rows;

  AnalyzeContext* context = analyzer.get();
  const FinisherEntry* finishers = report.finishers();
  std::int32_t count = 1;
  OptionSetter* row = rows.get() + 1;
};

Value ValueOf(const HandlerRow& row) {
  return row.value != nullptr ? Value(row.value) : std::nullopt;
}

TEST_P(FinisherHandlers, SetsNothingButTheValueOfItsRow) {
  Arguments arguments(GetParam());
  EXPECT_EQ(arguments.Call(), 0);
  EXPECT_THAT(arguments.rows.values(),
              ElementsAre(std::nullopt, ValueOf(GetParam()), std::nullopt));
}

TEST_P(FinisherHandlers, AnswersTheSameAgain) {
  Arguments arguments(GetParam());
  EXPECT_EQ(arguments.Call(), 0);
  EXPECT_EQ(arguments.Call(), 0);
  EXPECT_EQ(arguments.rows.values()[1], ValueOf(GetParam()));
}

TEST_P(FinisherHandlers, NullContextIsRefused) {
  Arguments arguments(GetParam());
  arguments.context = nullptr;
  EXPECT_EQ(arguments.Call(), -1);
  EXPECT_EQ(arguments.rows.values()[1], std::nullopt);
}

TEST_P(FinisherHandlers, NullFinishersAreRefused) {
  Arguments arguments(GetParam());
  arguments.finishers = nullptr;
  for (const std::int32_t count : {1, 0}) {
    arguments.count = count;
    EXPECT_EQ(arguments.Call(), -1) << count;
    EXPECT_EQ(arguments.rows.values()[1], std::nullopt);
  }
}

TEST_P(FinisherHandlers, NullRowIsRefused) {
  Arguments arguments(GetParam());
  arguments.row = nullptr;
  for (const std::int32_t count : {1, 0}) {
    arguments.count = count;
    EXPECT_EQ(arguments.Call(), -1) << count;
  }
}

TEST_P(FinisherHandlers, WithoutFinishersNothingIsSet) {
  Arguments arguments(GetParam());
  for (const std::int32_t count : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    arguments.count = count;
    EXPECT_EQ(arguments.Call(), 0) << count;
    EXPECT_EQ(arguments.rows.values()[1], std::nullopt) << count;
  }
}

TEST_P(FinisherHandlers, WithoutFinishersAnEarlierValueStays) {
  Arguments arguments(GetParam());
  arguments.row->value = strdup("EARLIER");
  arguments.count = 0;
  EXPECT_EQ(arguments.Call(), 0);
  EXPECT_EQ(arguments.rows.values()[1], "EARLIER");
}

TEST(FinisherHandler, WithoutAValueToGiveTheCommonOneClearsTheRow) {
  FinisherAnalyzer analyzer("");
  FinisherReport report({{1, "Vorel A"}}, {});
  FinisherRows rows;
  rows.get()->value = strdup("EARLIER");
  EXPECT_EQ(analyze_GetQVFinisherCommon(analyzer.get(), report.finishers(), 1, report.aliases(), 0,
                                        rows.get()),
            0);
  EXPECT_EQ(rows.values()[0], std::nullopt);
}

// The common finisher clears the row, WALNUT always has a value.
Value WhereEarlierValueWas(FinisherOptionHandler handler) {
  if (handler == analyze_GetQVFinisherCommon) return std::nullopt;
  return handler == analyze_GetQVFinisherWALNUT ? "None" : "earlier";
}

TEST_P(FinisherHandlers, WithoutAValueToGiveAnEarlierOneStays) {
  const FinisherReport nameless({{0, std::nullopt}}, {1});
  FinisherAnalyzer analyzer(kMakersNames);
  FinisherRows rows;
  rows.get()[1].value = strdup("earlier");
  EXPECT_EQ(GetParam().handler(analyzer.get(), nameless.finishers(), 1, nameless.aliases(), 1,
                               rows.get() + 1),
            0);
  EXPECT_THAT(rows.values(),
              ElementsAre(std::nullopt, WhereEarlierValueWas(GetParam().handler), std::nullopt));
}

TEST(FinisherHandler, WithoutATrayTheCommonOnesLeaveTheRow) {
  FinisherAnalyzer analyzer(kMakersNames);
  FinisherReport report({{9, "Vorel A"}}, {101, 119, 121});
  for (const FinisherOptionHandler handler :
       {analyze_GetQVCopyTrayCommon, analyze_GetQVFinTrayCommon}) {
    FinisherRows rows;
    rows.get()->value = strdup("EARLIER");
    EXPECT_EQ(handler(analyzer.get(), report.finishers(), 1, report.aliases(), 3, rows.get()), 0);
    EXPECT_EQ(rows.values()[0], "EARLIER");
  }
}

}  // namespace
}  // namespace ia_test
