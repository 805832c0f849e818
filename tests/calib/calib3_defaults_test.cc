#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <ostream>
#include <string>
#include <type_traits>

#include "calib/model_table.h"
#include "info_analyze/calibration.h"
#include "tests/calib/job.h"
#include "tests/info_common/named_row.h"

namespace ia_test {
namespace {

using testing::Each;
using testing::Eq;

constexpr std::size_t kPointer = sizeof(void*);
constexpr std::size_t kSetBytes = 8192;
static_assert(std::is_standard_layout_v<Calib3Info>);
static_assert(offsetof(Calib3Info, words) == 0 && sizeof(Calib3Info::words) == 12 * 4);
static_assert(offsetof(Calib3Info, first_set) == 48);
static_assert(offsetof(Calib3Info, second_set) == 48 + kPointer);
static_assert(sizeof(Calib3Info) == 48 + 2 * kPointer);

constexpr std::uint32_t kStaleWord = 0xA5A5A5A5;

// A record that a caller used before; its pointers are dangling.
class Record {
 public:
  Record() {
    std::ranges::fill(info_.words, kStaleWord);
    info_.first_set = &stale_first_;
    info_.second_set = &stale_second_;
  }
  ~Record() {
    if (info_.first_set != &stale_first_) std::free(info_.first_set);
    if (info_.second_set != &stale_second_) std::free(info_.second_set);
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  Calib3Info* info() { return &info_; }

  void ExpectUntouched() const {
    EXPECT_THAT(info_.words, Each(Eq(kStaleWord)));
    EXPECT_EQ(info_.first_set, &stale_first_);
    EXPECT_EQ(info_.second_set, &stale_second_);
  }
  void ExpectZero() const {
    EXPECT_THAT(info_.words, Each(Eq(0U)));
    EXPECT_EQ(info_.first_set, nullptr);
    EXPECT_EQ(info_.second_set, nullptr);
  }
  // The halves of a table; null: no curve sets.
  void ExpectHalvesOf(const std::uint16_t* table) const {
    if (table == nullptr) return ExpectZero();
    EXPECT_THAT(info_.words, Each(Eq(0U)));
    ExpectCopy(info_.first_set, table);
    ExpectCopy(info_.second_set, table + kSetBytes / sizeof *table);
  }

 private:
  // All of its bytes are readable and the caller's to change, which the address sanitizer checks.
  static void ExpectCopy(std::uint16_t* set, const std::uint16_t* half) {
    ASSERT_NE(set, nullptr);
    ASSERT_NE(set, half);
    EXPECT_EQ(std::memcmp(set, half, kSetBytes), 0);
    std::memset(set, 0, kSetBytes);
  }

  std::uint16_t stale_first_ = 0;
  std::uint16_t stale_second_ = 0;
  Calib3Info info_ = {};
};

// Model table ------------------------------------------------------------------------------------

struct ModelRow {
  const char* model;
  Calib3InfoHandler handler;
  const std::uint16_t* table;  // without a gradation
};

std::ostream& operator<<(std::ostream& out, const ModelRow& row) { return out << row.model; }

class Calib3InfoOfModel : public testing::TestWithParam<ModelRow> {};

TEST_P(Calib3InfoOfModel, ComesFromItsHandler) {
  const Job job;
  for (const std::string& code : CodesThatBeginWith(GetParam().model)) {
    const Analyser analyser(code);
    for (const Calib3InfoHandler create : std::initializer_list<Calib3InfoHandler>{
             Analyze_Info_CreateDefault_Calib3Info, analyze_CreateDefault_Calib3Info,
             GetParam().handler}) {
      SCOPED_TRACE(code);
      Record record;
      EXPECT_EQ(create(analyser.context(), job.options(), record.info()), 0);
      record.ExpectHalvesOf(GetParam().table);
    }
  }
}

TEST_P(Calib3InfoOfModel, IsZeroForANearCode) {
  const Job job;
  for (const std::string& code : CodesNear(GetParam().model)) {
    SCOPED_TRACE(code);
    const Analyser analyser(code);
    Record record;
    EXPECT_EQ(
        Analyze_Info_CreateDefault_Calib3Info(analyser.context(), job.options(), record.info()), 0);
    record.ExpectZero();
  }
}

const ModelRow kModels[] = {
    {"RB-W7", analyze_CreateDefault_Calib3InfoLARCH, LARCH_Def_Calib},
    {"RB-Z4", analyze_CreateDefault_Calib3InfoLARCH, LARCH_Def_Calib},
    {"RC-T9", analyze_CreateDefault_Calib3InfoLARCH, LARCH_Def_Calib},
    {"RB-P9", analyze_CreateDefault_Calib3InfoLINDEN, Linden_Def_Calib_2bit},
    {"RB-J9", analyze_CreateDefault_Calib3InfoPINE_POPLAR, PinePoplar_Def_Calib_2bit},
};

INSTANTIATE_TEST_SUITE_P(Table, Calib3InfoOfModel, testing::ValuesIn(kModels), ModelName<ModelRow>);

TEST(Calib3InfoOfModelTable, HasAnExpectationForEachRow) {
  EXPECT_TRUE(std::ranges::equal(ia::kCalib3InfoModels, kModels, {},
                                 &ia::CalibModelEntry<Calib3InfoHandler>::model, &ModelRow::model));
}

TEST(Calib3Info, IsZeroWithoutAModel) {
  const Job job;
  Record record;
  EXPECT_EQ(Analyze_Info_CreateDefault_Calib3Info(&kWithoutModel, job.options(), record.info()), 0);
  record.ExpectZero();
}

TEST(Calib3Info, IsZeroForAModelThatHasSettingsOnly) {
  const Job job;
  const Analyser analyser("RC-STD");
  Record record;
  EXPECT_EQ(Analyze_Info_CreateDefault_Calib3Info(analyser.context(), job.options(), record.info()),
            0);
  record.ExpectZero();
}

TEST(Calib3InfoCommon, ClearsTheWholeRecord) {
  Record record;
  EXPECT_EQ(analyze_CreateDefault_Calib3InfoCommon(&kWithoutModel, record.info()), 0);
  record.ExpectZero();
}

TEST(Calib3InfoCommon, NullArgumentIsRefusedAndNothingWritten) {
  Record record;
  EXPECT_EQ(analyze_CreateDefault_Calib3InfoCommon(nullptr, record.info()), -1);
  EXPECT_EQ(analyze_CreateDefault_Calib3InfoCommon(&kWithoutModel, nullptr), -1);
  record.ExpectUntouched();
}

// Null arguments ---------------------------------------------------------------------------------

struct FunctionRow : NamedRow {
  Calib3InfoHandler function;
};

class Calib3InfoFunction : public testing::TestWithParam<FunctionRow> {};

TEST_P(Calib3InfoFunction, RefusesNullArgumentsAndWritesNothing) {
  const Analyser analyser("RB-W7");
  const Job job;
  Record record;
  EXPECT_EQ(GetParam().function(nullptr, job.options(), record.info()), -1);
  EXPECT_EQ(GetParam().function(analyser.context(), nullptr, record.info()), -1);
  EXPECT_EQ(GetParam().function(analyser.context(), job.options(), nullptr), -1);
  record.ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Each, Calib3InfoFunction,
                         Rows<FunctionRow>({{"Question", Analyze_Info_CreateDefault_Calib3Info},
                                            {"Dispatch", analyze_CreateDefault_Calib3Info},
                                            {"Larch", analyze_CreateDefault_Calib3InfoLARCH},
                                            {"Linden", analyze_CreateDefault_Calib3InfoLINDEN},
                                            {"PinePoplar",
                                             analyze_CreateDefault_Calib3InfoPINE_POPLAR}}),
                         RowName<FunctionRow>);

TEST(Calib3Info, NullArgumentIsRefusedForAModelWithoutARow) {
  const Job job;
  Record record;
  EXPECT_EQ(Analyze_Info_CreateDefault_Calib3Info(&kWithoutModel, nullptr, record.info()), -1);
  EXPECT_EQ(analyze_CreateDefault_Calib3Info(&kWithoutModel, job.options(), nullptr), -1);
  record.ExpectUntouched();
}

// Handlers ---------------------------------------------------------------------------------------

TEST(Calib3InfoLarch, DoesNotDependOnTheGradation) {
  const Job job(Entries{{"QVGradation", "Normal"}});
  Record record;
  EXPECT_EQ(analyze_CreateDefault_Calib3InfoLARCH(&kWithoutModel, job.options(), record.info()), 0);
  record.ExpectHalvesOf(LARCH_Def_Calib);
}

struct GradationRow : NamedRow {
  Entries options;
  const std::uint16_t* linden;
  const std::uint16_t* pine_poplar;
};

class Gradation : public testing::TestWithParam<GradationRow> {
 protected:
  void ExpectCurves(Calib3InfoHandler create, const std::uint16_t* table) const {
    const Job job(GetParam().options);
    Record record;
    EXPECT_EQ(create(&kWithoutModel, job.options(), record.info()), 0);
    record.ExpectHalvesOf(table);
  }
};

TEST_P(Gradation, ChoosesTheCurvesOfLinden) {
  ExpectCurves(analyze_CreateDefault_Calib3InfoLINDEN, GetParam().linden);
}

TEST_P(Gradation, ChoosesTheCurvesOfPinePoplar) {
  ExpectCurves(analyze_CreateDefault_Calib3InfoPINE_POPLAR, GetParam().pine_poplar);
}

GradationRow TwoBit(const char* name, const Entries& options) {
  return {{name}, options, Linden_Def_Calib_2bit, PinePoplar_Def_Calib_2bit};
}

GradationRow FourBit(const char* name, const Entries& options) {
  return {{name}, options, Linden_Def_Calib_4bit, PinePoplar_Def_Calib_4bit};
}

GradationRow NoCurves(const char* name, const Entries& options) {
  return {{name}, options, nullptr, nullptr};
}

INSTANTIATE_TEST_SUITE_P(Options, Gradation,
                         testing::Values(FourBit("High2", {{"QVGradation", "High2"}}),
                                         FourBit("LongerHigh2", {{"QVGradation", "High2x"}}),
                                         TwoBit("LowerCaseHigh2", {{"QVGradation", "high2"}}),
                                         TwoBit("High1", {{"QVGradation", "High1"}}),
                                         TwoBit("LongerHigh1", {{"QVGradation", "High12"}}),
                                         TwoBit("High", {{"QVGradation", "High"}}),
                                         TwoBit("Other", {{"QVGradation", "Fine"}}),
                                         TwoBit("Empty", {{"QVGradation", ""}}), TwoBit("None", {}),
                                         TwoBit("LowerCaseNormal", {{"QVGradation", "normal"}}),
                                         NoCurves("Normal", {{"QVGradation", "Normal"}}),
                                         NoCurves("LongerNormal", {{"QVGradation", "Normal2"}})),
                         RowName<GradationRow>);

TEST(Calib3Info, NormalGradationOfALindenModelHasNoCurves) {
  const Analyser analyser("RB-P9");
  const Job job(Entries{{"QVGradation", "Normal"}});
  Record record;
  EXPECT_EQ(Analyze_Info_CreateDefault_Calib3Info(analyser.context(), job.options(), record.info()),
            0);
  record.ExpectZero();
}

}  // namespace
}  // namespace ia_test
