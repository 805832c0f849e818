#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "info_analyze/list_getters.h"
#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kLines = IA_DOCUMENT_FAX_LINE_LIST;
constexpr std::int32_t kDevice = IA_DOCUMENT_DEVICENAME;
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::string TakeText(char* text) {
  std::string copy = text != nullptr ? text : "(null)";
  std::free(text);
  return copy;
}

// Getters of numbers -----------------------------------------------------------------------------

TEST(FaxOptionGetter, AnswersIsdnForType2AndPublicForAllOthers) {
  for (const std::int32_t type : {kLowest, -2, -1, 0, 1, 2, 3, 4, 258, kHighest}) {
    EXPECT_EQ(TakeText(zGetFaxOptionString(&type)), type == 2 ? "isdn" : "public") << type;
  }
}

TEST(FaxOptionGetter, AnswersNullForNull) { EXPECT_EQ(zGetFaxOptionString(nullptr), nullptr); }

struct LineRow {
  const char* keyword;
  OptionGetter getter;
  std::int32_t code;
};

void PrintTo(const LineRow& row, std::ostream* out) { *out << row.keyword; }

constexpr auto kLineGetters = std::to_array<LineRow>({
    {"QVFAXDialLineA", zGetLine1IDSupport, 18},
    {"QVFAXDialLineB", zGetLine2IDSupport, 19},
    {"QVFAXDialLineC", zGetLine3IDSupport, 20},
    {"QVFAXDialLineD", zGetLine4IDSupport, 21},
});

class LineGetter : public testing::TestWithParam<LineRow> {};

TEST_P(LineGetter, AnswersForItsCodeAlone) {
  for (const std::int32_t code :
       {kLowest, -18, 0, 1, 16, 17, 18, 19, 20, 21, 22, 146, 147, 148, 149, 274, kHighest}) {
    EXPECT_EQ(TakeText(GetParam().getter(&code)), code == GetParam().code ? "True" : "(null)")
        << code;
  }
}

TEST_P(LineGetter, AnswersNullForNull) { EXPECT_EQ(GetParam().getter(nullptr), nullptr); }

INSTANTIATE_TEST_SUITE_P(Lines, LineGetter, testing::ValuesIn(kLineGetters),
                         [](const auto& info) { return std::string(info.param.keyword); });

// Getters of communication modes -----------------------------------------------------------------

struct ModeRow {
  const char* keyword;
  OptionGetter getter;
  std::int32_t code;
};

void PrintTo(const ModeRow& row, std::ostream* out) { *out << row.keyword; }

constexpr auto kModeGetters = std::to_array<ModeRow>({
    {"QVFAXIPFAXINTRA", zGetIntranetSupport, 17},
    {"QVFAXIPFAXVoIP", zGetVoIPSupport, 18},
    {"QVFAXIPFAXNGN", zGetNGNSupport, 16},
    {"QVFAXIPFAXMyNumberNGN", zGetNGNMyNumberSupport, 69},
});

class ModeGetter : public testing::TestWithParam<ModeRow> {
 protected:
  std::string Answer(const std::vector<std::int32_t>& modes) {
    return Answer(modes, static_cast<std::int32_t>(modes.size()));
  }
  std::string Answer(const std::vector<std::int32_t>& modes, std::int32_t count) {
    const FaxModes datum{modes.data(), &count};
    return TakeText(GetParam().getter(&datum));
  }
};

TEST_P(ModeGetter, AnswersForItsCodeAndTheCodeWith128Added) {
  const std::int32_t code = GetParam().code;
  for (const std::int32_t mode :
       {kLowest,  code - 128, -code,      -1,         0,          1,          15,       16,
        17,       18,         19,         68,         69,         70,         code - 1, code,
        code + 1, code + 64,  code + 127, code + 128, code + 129, code + 256, 143,      144,
        145,      146,        147,        196,        197,        198,        kHighest}) {
    EXPECT_EQ(Answer({mode}), mode == code || mode == code + 128 ? "True" : "(null)") << mode;
  }
}

TEST_P(ModeGetter, FindsItsCodeAtAnyOfThe20Places) {
  for (std::size_t place = 0; place < 20; ++place) {
    for (const std::int32_t code : {GetParam().code, GetParam().code + 128}) {
      std::vector<std::int32_t> modes(20, 1);
      modes[place] = code;
      EXPECT_EQ(Answer(modes), "True") << place;
    }
  }
}

TEST_P(ModeGetter, DoesNotSeeThe21stMode) {
  std::vector<std::int32_t> modes(30, 1);
  for (std::size_t place = 20; place < modes.size(); ++place) modes[place] = GetParam().code;
  for (const std::int32_t count : {20, 21, 30, kHighest}) {
    EXPECT_EQ(Answer(modes, count), "(null)") << count;
  }
}

TEST_P(ModeGetter, ReadsNoMoreThanTheCount) {
  const std::vector<std::int32_t> modes = {1, 1, GetParam().code};
  EXPECT_EQ(Answer(modes, 2), "(null)");
  EXPECT_EQ(Answer(modes, 3), "True");
  for (const std::int32_t count : {0, -1, kLowest}) {
    EXPECT_EQ(Answer({GetParam().code}, count), "(null)") << count;
  }
}

TEST_P(ModeGetter, AnswersNullForNull) {
  const std::int32_t count = 1;
  EXPECT_EQ(GetParam().getter(nullptr), nullptr);
  FaxModes modes{nullptr, &count};
  EXPECT_EQ(GetParam().getter(&modes), nullptr);
  modes = {&GetParam().code, nullptr};
  EXPECT_EQ(GetParam().getter(&modes), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Modes, ModeGetter, testing::ValuesIn(kModeGetters),
                         [](const auto& info) { return std::string(info.param.keyword); });

// Handler ----------------------------------------------------------------------------------------

const Entries kNoLines = {{"QVFAXNumOfLine", "0"},      {"QVFAXLineType", "None"},
                          {"QVFAXDialLineA", "False"},  {"QVFAXDialLineB", "False"},
                          {"QVFAXDialLineC", "False"},  {"QVFAXDialLineD", "False"},
                          {"QVFAXIPFAXINTRA", "False"}, {"QVFAXIPFAXVoIP", "False"},
                          {"QVFAXIPFAXNGN", "False"},   {"QVFAXIPFAXMyNumberNGN", "False"}};

// The options of `count` public lines, with these values in place of their own.
Entries LinesWith(std::int32_t count, const Entries& values) {
  const Entries plain =
      With(kNoLines, {{"QVFAXNumOfLine", std::to_string(count)}, {"QVFAXLineType", "public"}});
  return With(plain, values);
}

std::string Type(std::int32_t type) { return Number("type", type); }
std::string IdSupport(std::int32_t code) { return Number("id_support", code); }
std::string Modes(const Numbers& modes) { return NumberArray("communication_mode", modes); }

class FaxLines : public ListUpdates {
 protected:
  void LoadDevice(const std::string& values) { LoadDocument(kDevice, Document(values), nullptr); }
  Entries AppendedFor(const Items& lines) {
    Load(kLines, lines);
    return Appended(z_Update_Prn_fax_line_list);
  }
};

TEST_F(FaxLines, RefuseNullArguments) {
  Load(kLines, {Type(1)});
  LoadDevice(Text("devicename", "HZL-A"));
  ListReads reads;
  CallersList list;
  EXPECT_EQ(z_Update_Prn_fax_line_list(&context_, nullptr), -1);
  EXPECT_EQ(z_Update_Prn_fax_line_list(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_fax_line_list(nullptr, nullptr), -1);
  EXPECT_THAT(reads.reads, IsEmpty());
  EXPECT_THAT(list.entries(), IsEmpty());
}

struct LinesRow {
  const char* label;
  Items lines;
  Entries entries;
};

void PrintTo(const LinesRow& row, std::ostream* out) { *out << row.label; }

class EachFaxLineList : public FaxLines, public testing::WithParamInterface<LinesRow> {};

TEST_P(EachFaxLineList, DecidesTheOptions) {
  EXPECT_EQ(AppendedFor(GetParam().lines), GetParam().entries);
}

TEST_P(EachFaxLineList, DecidesTheSameForAnUnknownDevice) {
  LoadDevice(Text("devicename", "Sample"));
  EXPECT_EQ(AppendedFor(GetParam().lines), GetParam().entries);
}

const std::vector<LinesRow>& LineLists() {
  static const Numbers kOther20(20, 1);
  static Numbers last_of_20 = kOther20;
  last_of_20.back() = 145;
  static Numbers last_of_21 = kOther20;
  last_of_21.push_back(145);
  static Numbers twentieth_of_21 = last_of_20;
  twentieth_of_21.push_back(1);
  static Numbers first_of_thousands(10000, 1);
  first_of_thousands.front() = 18;
  static const std::vector<LinesRow> lists = {
      {"None", {}, kNoLines},
      {"LineThatReportsNothing", {""}, LinesWith(1, {})},
      {"Public", {Type(1)}, LinesWith(1, {})},
      {"Isdn", {Type(2)}, LinesWith(1, {{"QVFAXLineType", "isdn"}})},
      {"PublicBeforeIsdn", {Type(1), Type(2)}, LinesWith(2, {{"QVFAXLineType", "isdn"}})},
      {"IsdnBeforePublic", {Type(2), Type(1)}, LinesWith(2, {})},
      {"Uncounted", {Type(3)}, LinesWith(0, {})},
      {"UncountedFirst", {Type(3), Type(1)}, LinesWith(1, {})},
      {"UncountedLast", {Type(2), Type(3)}, LinesWith(1, {})},
      {"UncountedBetween", {Type(1), Type(3), Type(2)}, LinesWith(2, {{"QVFAXLineType", "isdn"}})},
      {"SeveralUncounted", {Type(3), Type(1), Type(3), Type(1)}, LinesWith(3, {})},
      {"AllUncounted", {Type(3), Type(3), Type(3)}, LinesWith(2, {})},
      {"TypeNextToUncounted", {Type(4), Type(-3)}, LinesWith(2, {})},
      {"LineA", {IdSupport(18)}, LinesWith(1, {{"QVFAXDialLineA", "True"}})},
      {"LineB", {IdSupport(19)}, LinesWith(1, {{"QVFAXDialLineB", "True"}})},
      {"LineC", {IdSupport(20)}, LinesWith(1, {{"QVFAXDialLineC", "True"}})},
      {"LineD", {IdSupport(21)}, LinesWith(1, {{"QVFAXDialLineD", "True"}})},
      {"NoLineIsBelowA", {IdSupport(17)}, LinesWith(1, {})},
      {"NoLineIsAboveD", {IdSupport(22)}, LinesWith(1, {})},
      {"AllLines",
       {IdSupport(21), IdSupport(19), IdSupport(18), IdSupport(20)},
       LinesWith(4, {{"QVFAXDialLineA", "True"},
                     {"QVFAXDialLineB", "True"},
                     {"QVFAXDialLineC", "True"},
                     {"QVFAXDialLineD", "True"}})},
      {"LineOfAnUncountedOne",
       {Type(3) + IdSupport(18)},
       LinesWith(0, {{"QVFAXDialLineA", "True"}})},
      {"Intranet", {Modes({17})}, LinesWith(1, {{"QVFAXIPFAXINTRA", "True"}})},
      {"IntranetPlus128", {Modes({145})}, LinesWith(1, {{"QVFAXIPFAXINTRA", "True"}})},
      {"VoIP", {Modes({18})}, LinesWith(1, {{"QVFAXIPFAXVoIP", "True"}})},
      {"VoIPPlus128", {Modes({146})}, LinesWith(1, {{"QVFAXIPFAXVoIP", "True"}})},
      {"Ngn", {Modes({16})}, LinesWith(1, {{"QVFAXIPFAXNGN", "True"}})},
      {"NgnPlus128", {Modes({144})}, LinesWith(1, {{"QVFAXIPFAXNGN", "True"}})},
      {"MyNumber", {Modes({69})}, LinesWith(1, {{"QVFAXIPFAXMyNumberNGN", "True"}})},
      {"MyNumberPlus128", {Modes({197})}, LinesWith(1, {{"QVFAXIPFAXMyNumberNGN", "True"}})},
      {"AllModes",
       {Modes({1, 197, 144, 18}), Modes({17})},
       LinesWith(2, {{"QVFAXIPFAXINTRA", "True"},
                     {"QVFAXIPFAXVoIP", "True"},
                     {"QVFAXIPFAXNGN", "True"},
                     {"QVFAXIPFAXMyNumberNGN", "True"}})},
      {"OtherModes", {Modes({0, 15, 19, 68, 70, 143, 147, 196, 198, -17})}, LinesWith(1, {})},
      {"ModeAt20thPlace", {Modes(last_of_20)}, LinesWith(1, {{"QVFAXIPFAXINTRA", "True"}})},
      {"ModeAt20thPlaceOf21",
       {Modes(twentieth_of_21)},
       LinesWith(1, {{"QVFAXIPFAXINTRA", "True"}})},
      {"ModeAt21stPlaceIsNotSeen", {Modes(last_of_21)}, LinesWith(1, {})},
      {"ThousandsOfModes", {Modes(first_of_thousands)}, LinesWith(1, {{"QVFAXIPFAXVoIP", "True"}})},
      {"ModeAfterAnUnreadableOne",
       {Modes({std::nullopt, 17})},
       LinesWith(1, {{"QVFAXIPFAXINTRA", "True"}})},
      {"NoModes", {Modes({})}, LinesWith(1, {})},
      {"ValuesOfTheFirstLineStay",
       {IdSupport(18) + Modes({17}), Type(1) + IdSupport(0) + Modes({1}), Type(1) + IdSupport(0)},
       LinesWith(3, {{"QVFAXDialLineA", "True"}, {"QVFAXIPFAXINTRA", "True"}})},
      // Numbers that a line does not report are those of the line before.
      {"TypeOfTheLineBefore", {Type(2), ""}, LinesWith(2, {{"QVFAXLineType", "isdn"}})},
      {"UncountedAsTheLineBefore", {Type(3), ""}, LinesWith(1, {})},
      {"TextsAreNoNumbers",
       {Text("type", "2") + Text("id_support", "18") + Number("communication_mode", 17)},
       LinesWith(1, {})},
      {"IdIsNotUsed", {Number("id", 18), Number("id", 3)}, LinesWith(2, {})},
  };
  return lists;
}

INSTANTIATE_TEST_SUITE_P(Lists, EachFaxLineList, testing::ValuesIn(LineLists()),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(FaxLines, AreCounted) {
  for (const std::size_t count : {1U, 9U, 10U, 500U}) {
    EXPECT_EQ(AppendedFor(Items(count, Type(1))), LinesWith(static_cast<std::int32_t>(count), {}));
    EXPECT_EQ(AppendedFor(Items(count, Type(3))),
              LinesWith(static_cast<std::int32_t>(count) - 1, {}));
  }
}

TEST_F(FaxLines, AreNoneWithoutDocuments) {
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), kNoLines);
}

TEST_F(FaxLines, AreNoneForANegativeCount) {
  Load(kLines, {Type(3) + IdSupport(18)});
  for (const std::int32_t count : {-1, kLowest}) {
    context_.documents[kLines].count = count;
    EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), kNoLines);
  }
}

TEST_F(FaxLines, AreAppendedAfterExistingOptions) {
  CallersList list;
  OptionList_Add(list.get(), "QVOther", "kept");
  EXPECT_EQ(z_Update_Prn_fax_line_list(&context_, list.get()), 0);
  Entries expected = {{"QVOther", "kept"}};
  expected.insert(expected.end(), kNoLines.begin(), kNoLines.end());
  EXPECT_EQ(list.entries(), expected);
}

// Devices ----------------------------------------------------------------------------------------

const Entries kDialLinesAToC = {
    {"QVFAXDialLineA", "True"}, {"QVFAXDialLineB", "True"}, {"QVFAXDialLineC", "True"}};

struct DeviceRow {
  const char* label;
  std::string values;
  bool has_id_support;
};

void PrintTo(const DeviceRow& row, std::ostream* out) { *out << row.label; }

class FaxDevice : public FaxLines, public testing::WithParamInterface<DeviceRow> {};

TEST_P(FaxDevice, DecidesDialLinesAToC) {
  LoadDevice(GetParam().values);
  const Entries changed = GetParam().has_id_support ? kDialLinesAToC : Entries{};
  EXPECT_EQ(AppendedFor({}), With(kNoLines, changed));
  EXPECT_EQ(AppendedFor({Type(1), Type(3)}), LinesWith(1, changed));
}

const std::vector<DeviceRow>& Devices() {
  static const std::vector<DeviceRow> devices = {
      {"A", Text("devicename", "HZL-A"), true},
      {"BC", Text("devicename", "HZL-B/HZL-C"), true},
      {"BAlone", Text("devicename", "HZL-B"), false},
      {"CAlone", Text("devicename", "HZL-C"), false},
      {"Shortened", Text("devicename", "HZL-"), false},
      {"BCShortened", Text("devicename", "HZL-B/HZL-"), false},
      {"WithEnding", Text("devicename", "HZL-A2"), false},
      {"WithBlank", Text("devicename", "HZL-A "), false},
      {"BCWithEnding", Text("devicename", "HZL-B/HZL-C/HZL-D"), false},
      {"AfterText", Text("devicename", "XHZL-A"), false},
      {"AfterBlank", Text("devicename", " HZL-A"), false},
      {"OtherCase", Text("devicename", "hzl-a"), false},
      {"BCInOtherCase", Text("devicename", "hzl-b/hzl-c"), false},
      {"OtherOrder", Text("devicename", "HZL-C/HZL-B"), false},
      {"Empty", Text("devicename", ""), false},
      {"Long", Text("devicename", "HZL-A" + std::string(100 * 1024, 'A')), false},
      {"Missing", "", false},
      {"OtherKey", Text("name", "HZL-A"), false},
      {"Number", Number("devicename", 1), false},
  };
  return devices;
}

INSTANTIATE_TEST_SUITE_P(Names, FaxDevice, testing::ValuesIn(Devices()),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(FaxLines, DeviceKeepsWhatTheLinesReport) {
  LoadDevice(Text("devicename", "HZL-A"));
  EXPECT_EQ(AppendedFor({IdSupport(19)}), LinesWith(1, kDialLinesAToC));
  EXPECT_EQ(AppendedFor({IdSupport(21) + Modes({17})}),
            With(LinesWith(1, kDialLinesAToC),
                 {{"QVFAXDialLineD", "True"}, {"QVFAXIPFAXINTRA", "True"}}));
}

TEST_F(FaxLines, AreAppendedWithoutDevicename) {
  EXPECT_EQ(AppendedFor({IdSupport(18)}), LinesWith(1, {{"QVFAXDialLineA", "True"}}));
}

// Reads that fail --------------------------------------------------------------------------------

TEST_F(FaxLines, AreReadOnceInOrder) {
  Load(kLines, {"", "", ""});
  ListReads reads;
  Appended(z_Update_Prn_fax_line_list);
  EXPECT_THAT(reads.reads, ElementsAre(ListReads::Item(kLines, 0), ListReads::Item(kLines, 1),
                                       ListReads::Item(kLines, 2)));
}

TEST_F(FaxLines, UnreadableLineIsCountedButNotUsed) {
  Load(kLines, {Type(3) + IdSupport(18) + Modes({17}), Type(3) + IdSupport(19) + Modes({18}),
                Type(2) + IdSupport(20) + Modes({16})});
  ListReads reads;
  reads.results = {{{kLines, 0}, 5}};
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), LinesWith(2, {{"QVFAXLineType", "isdn"},
                                                                {"QVFAXDialLineB", "True"},
                                                                {"QVFAXDialLineC", "True"},
                                                                {"QVFAXIPFAXVoIP", "True"},
                                                                {"QVFAXIPFAXNGN", "True"}}));
  reads.results[{kLines, 1}] = -1;
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), LinesWith(3, {{"QVFAXLineType", "isdn"},
                                                                {"QVFAXDialLineC", "True"},
                                                                {"QVFAXIPFAXNGN", "True"}}));
  EXPECT_THAT(reads.reads, SizeIs(6));
}

TEST_F(FaxLines, NumbersOfALineThatCannotBeReadAreThoseOfTheNextThatLacksThem) {
  Load(kLines, {Type(3) + IdSupport(18), Modes({17})});
  ListReads reads;
  reads.results = {{{kLines, 0}, 5}};
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), LinesWith(1, {{"QVFAXLineType", "public"},
                                                                {"QVFAXDialLineA", "True"},
                                                                {"QVFAXIPFAXINTRA", "True"}}));
}

TEST_F(FaxLines, FailWhenTheLastCannotBeRead) {
  LoadDevice(Text("devicename", "HZL-A"));
  for (const std::int32_t type : {1, 3}) {
    Load(kLines, {Type(type) + IdSupport(18), Type(type) + IdSupport(19)});
    for (const std::int32_t result : {-1, 5, kHighest, kLowest}) {
      ListReads reads;
      reads.results = {{{kLines, 1}, result}};
      EXPECT_EQ(OutcomeOf(z_Update_Prn_fax_line_list, context_), (Outcome{result, {}}));
      reads.results[{kLines, 0}] = 77;
      EXPECT_EQ(OutcomeOf(z_Update_Prn_fax_line_list, context_), (Outcome{result, {}}));
    }
  }
}

TEST_F(FaxLines, FailForItemsOfADocumentThatIsNotLoaded) {
  LoadDevice(Text("devicename", "HZL-A"));
  for (const std::int32_t count : {1, 500}) {
    context_.documents[kLines].count = count;
    EXPECT_EQ(OutcomeOf(z_Update_Prn_fax_line_list, context_), (Outcome{-1, {}}));
  }
}

TEST_F(FaxLines, ThatAreMissingRepeatThePreviousOne) {
  Load(kLines, {Type(2) + IdSupport(18)});
  context_.documents[kLines].count = 3;
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list),
            LinesWith(3, {{"QVFAXLineType", "isdn"}, {"QVFAXDialLineA", "True"}}));
}

// Calls to the communication library -------------------------------------------------------------

class LyingFaxLines : public LyingLists {};

TEST_F(LyingFaxLines, AreReadByTheirKeysInOrderAndThenTheDevicename) {
  Load(kDevice, {});
  Load(kLines, {.dict_counts = {{"list", 2}},
                .array_counts = {{"communication_mode", 1}},
                .long_elements = {{0, 17}}});
  Appended(z_Update_Prn_fax_line_list);
  const std::vector<std::string> line = {"qvxmlwrapGet_OpenDict list",
                                         "qvxmlwrapGet_Long id",
                                         "qvxmlwrapGet_Long type",
                                         "qvxmlwrapGet_Long id_support",
                                         "qvxmlwrapGet_ArrayCount communication_mode",
                                         "qvxmlwrapGet_OpenArray communication_mode",
                                         "qvxmlwrapGet_LongFromArray 0",
                                         "qvxmlwrapGet_CloseArray",
                                         "qvxmlwrapGet_CloseDict"};
  std::vector<std::string> expected = line;
  expected.insert(expected.end(), line.begin(), line.end());
  expected.push_back("qvxmlwrapGet_String devicename");
  EXPECT_EQ(Reading(), expected);
  EXPECT_EQ(recording_.CallsTo("qvxmlwrapGet_OpenDict")[1].arguments[2], ArgumentOf(1));
  const std::vector<Call> names = recording_.CallsTo("qvxmlwrapGet_String");
  ASSERT_THAT(names, SizeIs(1));
  EXPECT_EQ(names[0].arguments[0], ArgumentOf(context_.documents[kDevice].xml));
  EXPECT_EQ(names[0].arguments[4], ArgumentOf("UTF-8"));
}

TEST_F(LyingFaxLines, DevicenameThatIsFoundAsNullIsNone) {
  Load(kDevice, {.strings = {{"devicename", std::nullopt}}});
  EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), kNoLines);
}

TEST_F(LyingFaxLines, AreAskedForNoMoreThan20Modes) {
  for (const std::int32_t count : {20, 21, kHighest}) {
    Load(kLines, {.dict_counts = {{"list", 1}},
                  .array_counts = {{"communication_mode", count}},
                  .long_elements = {{19, 197}}});
    EXPECT_EQ(Appended(z_Update_Prn_fax_line_list),
              LinesWith(1, {{"QVFAXIPFAXMyNumberNGN", "True"}}));
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_LongFromArray"), SizeIs(20));
  }
}

TEST_F(LyingFaxLines, AreNotAskedForModesBelowZero) {
  for (const std::int32_t count : {0, -1, kLowest}) {
    Load(kLines, {.dict_counts = {{"list", 1}},
                  .array_counts = {{"communication_mode", count}},
                  .long_elements = {{0, 17}}});
    EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), LinesWith(1, {}));
    EXPECT_THAT(recording_.CallsTo("qvxmlwrapGet_LongFromArray"), IsEmpty());
  }
}

TEST_F(LyingFaxLines, AreNoneBelowZero) {
  for (const std::int32_t count : {-1, kLowest}) {
    Load(kLines, {.longs = {{"type", 3}}, .dict_counts = {{"list", count}}});
    EXPECT_EQ(Appended(z_Update_Prn_fax_line_list), kNoLines);
    EXPECT_THAT(recording_.calls, IsEmpty());
  }
}

TEST_F(LyingFaxLines, EndForAnyNumber) {
  Load(kLines, {.dict_counts = {{"list", kHighest}}});
  EXPECT_EQ(RunUnrecorded(z_Update_Prn_fax_line_list), (Outcome{0, LinesWith(1 << 20, {})}));
}

}  // namespace
}  // namespace ia_test
