#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
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

constexpr bool kIs64Bit = sizeof(void*) == 8;
static_assert(std::is_standard_layout_v<Calib4Info> && std::is_standard_layout_v<Calib4Header> &&
              std::is_standard_layout_v<Calib4Entry>);
static_assert(sizeof(Calib4Entry) == 16 && offsetof(Calib4Entry, index) == 4 &&
              offsetof(Calib4Entry, words) == 8);
static_assert(offsetof(Calib4Header, first_model_value) == 4 &&
              offsetof(Calib4Header, second_model_value) == 8 &&
              offsetof(Calib4Header, entries) == (kIs64Bit ? 16 : 12));
static_assert(offsetof(Calib4Info, values) == 14 * 4 && offsetof(Calib4Info, bytes) == 18 * 4 &&
              offsetof(Calib4Info, header) == (kIs64Bit ? 80 : 76));

using Codes = std::array<std::uint32_t, 3>;

// A caller's record with its header and room for one entry more than there are, all used before.
class Record {
 public:
  Record() {
    std::memset(&info_, 0xA5, sizeof info_);
    std::memset(&header_, 0xA5, sizeof header_);
    std::memset(entries_.data(), 0xA5, sizeof entries_);
    info_.header = &header_;
    header_.entries = entries_.data();
  }
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  Calib4Info* info() { return &info_; }
  Calib4Header& header() { return header_; }

  void ExpectUntouched() const {
    EXPECT_THAT(info_.words, Each(Eq(kStale)));
    EXPECT_THAT(info_.values, Each(Eq(kStale)));
    EXPECT_THAT(info_.bytes, Each(Eq(0xA5)));
    EXPECT_EQ(header_.entry_count, kStale);
    EXPECT_EQ(header_.first_model_value, kStale);
    EXPECT_EQ(header_.second_model_value, kStale);
    for (const Calib4Entry& entry : entries_) ExpectEntry(entry, kStale, kStale, kStale);
  }
  void ExpectFilled(std::uint32_t first_model_value, const Codes& codes) const {
    EXPECT_THAT(info_.words, Each(Eq(0U)));
    EXPECT_THAT(info_.values, Each(Eq(100U)));
    EXPECT_THAT(info_.bytes, Each(Eq(0)));
    EXPECT_EQ(info_.header, &header_);
    EXPECT_EQ(header_.entry_count, 3U);
    EXPECT_EQ(header_.first_model_value, first_model_value);
    EXPECT_EQ(header_.second_model_value, 8U);
    EXPECT_EQ(header_.entries, entries_.data());
    for (std::uint32_t i = 0; i < codes.size(); ++i) ExpectEntry(entries_[i], codes[i], i, 0);
    ExpectEntry(entries_[3], kStale, kStale, kStale);
  }

 private:
  static constexpr std::uint32_t kStale = 0xA5A5A5A5;

  static void ExpectEntry(const Calib4Entry& entry, std::uint32_t code, std::uint32_t index,
                          std::uint32_t word) {
    EXPECT_EQ(entry.code, code);
    EXPECT_EQ(entry.index, index);
    EXPECT_THAT(entry.words, Each(Eq(word)));
  }

  Calib4Info info_;
  Calib4Header header_;
  std::array<Calib4Entry, 4> entries_;
};

// Model table ------------------------------------------------------------------------------------

// Gives the halftone values 2, 3, 4, for which all families differ.
const Entries kDistinctJob = {{"QVHalftone", "pattern1"}, {"QVHTPattern1", "432"}};
constexpr Codes kCommonCodes = {1, 0, 2};
constexpr Codes kBaobabCodes = {1, 1, 2};
constexpr Codes kZeros = {0, 0, 0};
constexpr Codes kTwos = {2, 2, 2};

struct ModelRow {
  const char* model;
  Calib4InfoHandler handler;
  std::uint32_t first_model_value;
  Codes codes;
};

std::ostream& operator<<(std::ostream& out, const ModelRow& row) { return out << row.model; }

class Calib4InfoOfModel : public testing::TestWithParam<ModelRow> {
 protected:
  const Job job_{kDistinctJob};
};

TEST_P(Calib4InfoOfModel, ComesFromItsHandler) {
  for (const std::string& code : CodesThatBeginWith(GetParam().model)) {
    const Analyser analyser(code);
    for (const Calib4InfoHandler create : std::initializer_list<Calib4InfoHandler>{
             Analyze_Info_CreateDefault_Calib4Info, analyze_CreateDefault_Calib4Info,
             GetParam().handler}) {
      SCOPED_TRACE(code);
      Record record;
      EXPECT_EQ(create(analyser.context(), job_.options(), record.info()), 0);
      record.ExpectFilled(GetParam().first_model_value, GetParam().codes);
    }
  }
}

TEST_P(Calib4InfoOfModel, IsTheCommonOneForANearCode) {
  for (const std::string& code : CodesNear(GetParam().model)) {
    SCOPED_TRACE(code);
    const Analyser analyser(code);
    Record record;
    EXPECT_EQ(
        Analyze_Info_CreateDefault_Calib4Info(analyser.context(), job_.options(), record.info()),
        0);
    record.ExpectFilled(8, kCommonCodes);
  }
}

const ModelRow kModels[] = {
    {"RB-X6", analyze_CreateDefault_Calib4InfoACACIA, 12, kCommonCodes},
    {"RB-X2", analyze_CreateDefault_Calib4InfoACACIA, 12, kCommonCodes},
    {"RB-X6-2", analyze_CreateDefault_Calib4InfoACACIA, 12, kCommonCodes},
    {"RA-H2", analyze_CreateDefault_Calib4InfoBAOBAB, 8, kBaobabCodes},
    {"RA-H8", analyze_CreateDefault_Calib4InfoBAOBAB, 8, kBaobabCodes},
    {"RA-Z6", analyze_CreateDefault_Calib4InfoBAOBAB, 8, kBaobabCodes},
    {"RC-STD", analyze_CreateDefault_Calib4InfoCHESTNUT, 12, kBaobabCodes},
    {"RC-J4", analyze_CreateDefault_Calib4InfoCHESTNUT, 12, kBaobabCodes},
    {"RB-J8", analyze_CreateDefault_Calib4InfoEBONY, 12, kZeros},
    {"RB-K7", analyze_CreateDefault_Calib4InfoEBONY, 12, kZeros},
    {"RA-H1", analyze_CreateDefault_Calib4InfoBAOBAB, 8, kBaobabCodes},
    {"RB-T3", analyze_CreateDefault_Calib4InfoEBONY, 12, kZeros},
    {"RB-X7", analyze_CreateDefault_Calib4InfoBAOBAB, 8, kBaobabCodes},
    {"RA-G5", analyze_CreateDefault_Calib4InfoTUPELO, 8, kTwos},
    {"RC-W0", analyze_CreateDefault_Calib4InfoREDWOOD, 12, kTwos},
    {"RA-X6", analyze_CreateDefault_Calib4InfoREDWOOD, 12, kTwos},
    {"RC-X8", analyze_CreateDefault_Calib4InfoREDWOOD, 12, kTwos},
};

INSTANTIATE_TEST_SUITE_P(Table, Calib4InfoOfModel, testing::ValuesIn(kModels), ModelName<ModelRow>);

TEST(Calib4InfoOfModelTable, HasAnExpectationForEachRow) {
  EXPECT_TRUE(std::ranges::equal(ia::kCalib4InfoModels, kModels, {},
                                 &ia::CalibModelEntry<Calib4InfoHandler>::model, &ModelRow::model));
}

TEST(Calib4Info, IsTheCommonOneWithoutAModel) {
  const Job job(kDistinctJob);
  for (const Calib4InfoHandler create : std::initializer_list<Calib4InfoHandler>{
           Analyze_Info_CreateDefault_Calib4Info, analyze_CreateDefault_Calib4Info,
           analyze_CreateDefault_Calib4InfoCommon}) {
    Record record;
    EXPECT_EQ(create(&kWithoutModel, job.options(), record.info()), 0);
    record.ExpectFilled(8, kCommonCodes);
  }
}

// Null arguments ---------------------------------------------------------------------------------

struct FunctionRow : NamedRow {
  Calib4InfoHandler function;
};

class Calib4InfoFunction : public testing::TestWithParam<FunctionRow> {
 protected:
  const Analyser analyser_{"RA-H2"};
  const Job job_{kDistinctJob};
};

TEST_P(Calib4InfoFunction, RefusesNullArgumentsAndWritesNothing) {
  Record record;
  EXPECT_EQ(GetParam().function(nullptr, job_.options(), record.info()), -1);
  EXPECT_EQ(GetParam().function(analyser_.context(), nullptr, record.info()), -1);
  EXPECT_EQ(GetParam().function(analyser_.context(), job_.options(), nullptr), -1);
  record.ExpectUntouched();
}

TEST_P(Calib4InfoFunction, RefusesAMissingHeaderAndWritesNothing) {
  Record record;
  record.info()->header = nullptr;
  EXPECT_EQ(GetParam().function(analyser_.context(), job_.options(), record.info()), -1);
  EXPECT_EQ(record.info()->header, nullptr);
  record.ExpectUntouched();
}

TEST_P(Calib4InfoFunction, RefusesMissingEntriesAndWritesNothing) {
  Record record;
  record.header().entries = nullptr;
  EXPECT_EQ(GetParam().function(analyser_.context(), job_.options(), record.info()), -1);
  EXPECT_EQ(record.header().entries, nullptr);
  record.ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(Each, Calib4InfoFunction,
                         Rows<FunctionRow>({{"Question", Analyze_Info_CreateDefault_Calib4Info},
                                            {"Dispatch", analyze_CreateDefault_Calib4Info},
                                            {"Common", analyze_CreateDefault_Calib4InfoCommon},
                                            {"Acacia", analyze_CreateDefault_Calib4InfoACACIA},
                                            {"Baobab", analyze_CreateDefault_Calib4InfoBAOBAB},
                                            {"Chestnut", analyze_CreateDefault_Calib4InfoCHESTNUT},
                                            {"Ebony", analyze_CreateDefault_Calib4InfoEBONY},
                                            {"Redwood", analyze_CreateDefault_Calib4InfoREDWOOD},
                                            {"Tupelo", analyze_CreateDefault_Calib4InfoTUPELO}}),
                         RowName<FunctionRow>);

TEST(Calib4Info, NullArgumentIsRefusedForAModelWithoutARow) {
  Record record;
  EXPECT_EQ(analyze_CreateDefault_Calib4Info(&kWithoutModel, nullptr, record.info()), -1);
  record.ExpectUntouched();
}

// Codes ------------------------------------------------------------------------------------------

struct TypeRow : NamedRow {
  std::uint32_t type;
  std::uint32_t common;
  std::uint32_t baobab;  // high resolution counts here, and not in the common one
};

class Calib4CodeOfHalftoneType : public testing::TestWithParam<TypeRow> {
 protected:
  static void ExpectCode(Calib4InfoHandler handler, std::uint32_t first_model_value,
                         std::uint32_t code, std::uint32_t code_of_none) {
    const std::string digit(1, static_cast<char>('0' + GetParam().type));
    const Job job(Entries{{"QVHalftone", "pattern9"}, {"QVHTPattern9", "0" + digit + "0"}});
    Record record;
    EXPECT_EQ(handler(&kWithoutModel, job.options(), record.info()), 0);
    record.ExpectFilled(first_model_value, {code_of_none, code, code_of_none});
  }
};

TEST_P(Calib4CodeOfHalftoneType, IsThatOfTheFamily) {
  const std::uint32_t common = GetParam().common;
  const std::uint32_t baobab = GetParam().baobab;
  ExpectCode(analyze_CreateDefault_Calib4InfoCommon, 8, common, 0);
  ExpectCode(analyze_CreateDefault_Calib4InfoACACIA, 12, common, 0);
  ExpectCode(analyze_CreateDefault_Calib4InfoBAOBAB, 8, baobab, 0);
  ExpectCode(analyze_CreateDefault_Calib4InfoCHESTNUT, 12, baobab, 0);
  ExpectCode(analyze_CreateDefault_Calib4InfoEBONY, 12, 0, 0);
  ExpectCode(analyze_CreateDefault_Calib4InfoREDWOOD, 12, 2, 2);
  ExpectCode(analyze_CreateDefault_Calib4InfoTUPELO, 8, 2, 2);
}

INSTANTIATE_TEST_SUITE_P(Types, Calib4CodeOfHalftoneType,
                         Rows<TypeRow>({{"None", 0, 0, 0},
                                        {"Gradation", 1, 0, 0},
                                        {"Resolution", 2, 1, 1},
                                        {"HighResolution", 3, 0, 1},
                                        {"ColorTone", 4, 2, 2},
                                        {"ErrorDiffusion", 5, 0, 0},
                                        {"Unknown", 6, 0, 0}}),
                         RowName<TypeRow>);

}  // namespace
}  // namespace ia_test
