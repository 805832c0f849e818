#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <ios>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "info_analyze/analyzer.h"
#include "info_analyze/printer_updates.h"
#include "tests/analyze/intercepted_calls.h"
#include "tests/analyze/query/list_updates.h"
#include "tests/support/analyzer_ptr.h"
#include "tests/support/build_folders.h"
#include "tests/support/print_queues.h"

namespace ia_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

constexpr char kSource[] = "QVAnlz_FuncVer_CommonFlag";
constexpr char kTarget[] = "QV_Prot_CommonFlag";

class FunctionVersion : public testing::Test {
 protected:
  void TearDown() override { OptionList_Terminate(&context_.ppd_options); }

  // The PPD's entries, the last line first. A key follows the keys that it is a prefix of.
  void SetPpd(const Entries& entries) {
    OptionList_Terminate(&context_.ppd_options);
    context_.ppd_options = NewTable(entries);
  }

  Outcome ForVersion(std::uint32_t version, const Entries& before = {}) {
    CallersList list;
    for (const Entry& entry : before) {
      OptionList_Add(list.get(), entry.first.c_str(), entry.second.c_str());
    }
    const std::int32_t result = Analyze_Info_FromFunctionVersion(&context_, version, list.get());
    return {result, list.entries()};
  }

  Outcome Updated(const char* source, std::int32_t limit, const char* target) {
    CallersList list;
    const std::int32_t result = z_Update_FuncVer(&context_, source, limit, target, list.get());
    return {result, list.entries()};
  }

  AnalyzeContext context_ = {};
};

TEST_F(FunctionVersion, RefusesNullArguments) {
  SetPpd({{kSource, "A"}});
  CallersList list;
  EXPECT_EQ(Analyze_Info_FromFunctionVersion(nullptr, 1, list.get()), -1);
  EXPECT_EQ(Analyze_Info_FromFunctionVersion(&context_, 1, nullptr), -1);
  EXPECT_EQ(Analyze_Info_FromFunctionVersion(nullptr, 1, nullptr), -1);
  EXPECT_EQ(z_Update_FuncVer(nullptr, kSource, 1, kTarget, list.get()), -1);
  EXPECT_EQ(z_Update_FuncVer(&context_, nullptr, 1, kTarget, list.get()), -1);
  EXPECT_EQ(z_Update_FuncVer(&context_, kSource, 1, kTarget, nullptr), -1);
  EXPECT_EQ(z_Update_FuncVer(nullptr, nullptr, 1, nullptr, nullptr), -1);
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(FunctionVersion, SelectsNothingFromAPpdWithoutItsKeys) {
  const Outcome nothing = {0, {{"QVKept", "x"}}};
  EXPECT_EQ(ForVersion(0x310, {{"QVKept", "x"}}), nothing);
  SetPpd({{"QVAnlz_DriverName", "RA-Z5"},
          {"QVAnlz_FuncVer", "A"},
          {"QVAnlz_FuncVer_Common", "B"},
          {"QVAnlz_FuncVer_CommonFla_1", "C"},
          {"QV_Prot_CommonFlag", "D"}});
  EXPECT_EQ(ForVersion(0x310, {{"QVKept", "x"}}), nothing);
}

// Numbers in keys --------------------------------------------------------------------------------

struct VersionRow {
  std::uint32_t version;
  std::int32_t number;
};

void PrintTo(const VersionRow& row, std::ostream* out) {
  *out << std::hex << row.version << " as " << std::dec << row.number;
}

class VersionNumber : public FunctionVersion, public testing::WithParamInterface<VersionRow> {};

TEST_P(VersionNumber, IsItsHexadecimalDigitsReadAsDecimal) {
  const std::string key = std::string(kSource) + "_";
  SetPpd({{key + std::to_string(GetParam().number + 1), "Above"},
          {key + std::to_string(GetParam().number), "At"}});
  EXPECT_EQ(ForVersion(GetParam().version), (Outcome{0, {{kTarget, "At"}}}));
}

INSTANTIATE_TEST_SUITE_P(
    Versions, VersionNumber,
    testing::Values(VersionRow{0, 0}, VersionRow{1, 1}, VersionRow{9, 9}, VersionRow{0xA, 0},
                    VersionRow{0xF, 0}, VersionRow{0x10, 10}, VersionRow{0x1A, 1},
                    VersionRow{0x99, 99}, VersionRow{0xA0, 0}, VersionRow{0xB12, 0},
                    VersionRow{0x100, 100}, VersionRow{0x310, 310}, VersionRow{0x311, 311},
                    VersionRow{0x3A1, 3}, VersionRow{0x31E, 31}, VersionRow{310, 136},
                    VersionRow{0x1E5, 1}, VersionRow{0xC0FFEE, 0}, VersionRow{0x1000, 1000},
                    VersionRow{0x12345678, 12345678}, VersionRow{0x7FFFFFFF, 7},
                    VersionRow{0x80000000, 80000000}, VersionRow{0x99999999, 99999999},
                    VersionRow{0x9999999A, 9999999}, VersionRow{0xFFFFFFFF, 0}));

// Keys -------------------------------------------------------------------------------------------

struct KeyRow {
  const char* source;
  const char* target;
};
constexpr auto kKeys = std::to_array<KeyRow>({
    {"QVAnlz_FuncVer_CommonFlag", "QV_Prot_CommonFlag"},
    {"QVAnlz_FuncVer_JobScriptFlag", "QV_Prot_JobScriptFlag"},
    {"QVAnlz_FuncVer_BinderScriptFlag", "QV_Prot_BinderScriptFlag"},
    {"QVAnlz_FuncVer_DocumentScriptFlag", "QV_Prot_DocumentScriptFlag"},
    {"QVAnlz_FuncVer_CJLScriptFlag", "QV_Prot_CJLScriptFlag"},
});

TEST_F(FunctionVersion, PutsEachKeysValuesUnderItsProtocolKey) {
  for (const KeyRow& keys : kKeys) {
    SetPpd({{keys.source, "A,B"}});
    EXPECT_EQ(ForVersion(1),
              (Outcome{0, {{keys.target, "A"}, {std::string(keys.target) + "_1", "B"}}}));
  }
}

TEST_F(FunctionVersion, PutsUserInterfaceValuesUnderKeysOfTheirOwn) {
  SetPpd({{"QVAnlz_FuncVer_UI", "QVFirst:On_QVSecond:Off,QVThird:a:b,QVFourth"}});
  EXPECT_EQ(
      ForVersion(1),
      (Outcome{0, {{"QVFirst", "On"}, {"QVSecond", "Off"}, {"QVThird", "a:b"}, {"QVFourth", ""}}}));
}

TEST_F(FunctionVersion, PassesOverKeysThatLackAByteOfItsOwn) {
  Entries ppd;
  const auto add_shortened = [&](const std::string& source) {
    ppd.emplace_back(source.substr(0, source.size() - 1), "A");
    ppd.emplace_back(source.substr(1), "B");
  };
  add_shortened("QVAnlz_FuncVer_UI");
  for (const KeyRow& keys : kKeys) add_shortened(keys.source);
  SetPpd(ppd);
  EXPECT_EQ(ForVersion(1), (Outcome{0, {}}));
}

TEST_F(FunctionVersion, TakesTheKeysInItsOwnOrder) {
  Entries ppd = {{"QVAnlz_FuncVer_UI_1", "QVItem:0"}};
  Entries expected = {{"QVItem", "0"}};
  for (const KeyRow& keys : kKeys) {
    expected.emplace_back(keys.target, "Value" + std::to_string(expected.size()));
    ppd.emplace_back(std::string(keys.source) + "_1", expected.back().second);
  }
  for (const Entries& table : {ppd, Entries(ppd.rbegin(), ppd.rend())}) {
    SetPpd(table);
    EXPECT_EQ(ForVersion(1), (Outcome{0, expected}));
  }
}

TEST_F(FunctionVersion, TakesTheValuesOfAKeyInThePpdsOrder) {
  SetPpd({{"QVAnlz_FuncVer_CommonFlag_3", "C1,C2"},
          {"QVAnlz_FuncVer_CommonFlag_400", "no"},
          {"QVAnlz_FuncVer_CommonFlag_2", "B1_B2"},
          {"QVOther", "x"},
          {"QVAnlz_FuncVer_CommonFlag", "A"}});
  EXPECT_EQ(ForVersion(0x310), (Outcome{0,
                                        {{"QV_Prot_CommonFlag", "C1"},
                                         {"QV_Prot_CommonFlag_1", "C2"},
                                         {"QV_Prot_CommonFlag_2", "B1"},
                                         {"QV_Prot_CommonFlag_3", "B2"},
                                         {"QV_Prot_CommonFlag_4", "A"}}}));
}

TEST_F(FunctionVersion, KeysFollowThoseOfThePpd) {
  const Entries source = {{"QVAnlz_FuncVer_CommonFlag", "A,B"}};
  Entries ppd = source;
  ppd.emplace_back("QV_Prot_CommonFlag", "x");
  SetPpd(ppd);
  EXPECT_EQ(ForVersion(1),
            (Outcome{0, {{"QV_Prot_CommonFlag_1", "A"}, {"QV_Prot_CommonFlag_2", "B"}}}));
  ppd = source;
  ppd.emplace_back("QV_Prot_CommonFlag_7", "x");
  ppd.emplace_back("QV_Prot_CommonFlag_3", "y");
  SetPpd(ppd);
  EXPECT_EQ(ForVersion(1),
            (Outcome{0, {{"QV_Prot_CommonFlag_8", "A"}, {"QV_Prot_CommonFlag_9", "B"}}}));
}

TEST_F(FunctionVersion, KeysFollowThoseOfTheList) {
  SetPpd({{"QVAnlz_FuncVer_CommonFlag", "A"}});
  EXPECT_EQ(ForVersion(1, {{"QV_Prot_CommonFlag", "x"}}),
            (Outcome{0, {{"QV_Prot_CommonFlag", "x"}, {"QV_Prot_CommonFlag_1", "A"}}}));
  EXPECT_EQ(ForVersion(1, {{"QV_Prot_CommonFlag_9", "x"}}),
            (Outcome{0, {{"QV_Prot_CommonFlag_9", "x"}, {"QV_Prot_CommonFlag_10", "A"}}}));
}

TEST_F(FunctionVersion, KeysFollowTheHighestOfBothLists) {
  SetPpd({{"QVAnlz_FuncVer_CommonFlag", "A"}, {"QV_Prot_CommonFlag_7", "x"}});
  EXPECT_EQ(ForVersion(1, {{"QV_Prot_CommonFlag_3", "y"}}),
            (Outcome{0, {{"QV_Prot_CommonFlag_3", "y"}, {"QV_Prot_CommonFlag_8", "A"}}}));
  EXPECT_EQ(ForVersion(1, {{"QV_Prot_CommonFlag_11", "y"}}),
            (Outcome{0, {{"QV_Prot_CommonFlag_11", "y"}, {"QV_Prot_CommonFlag_12", "A"}}}));
}

TEST_F(FunctionVersion, KeysOfOtherFlagsDoNotMatter) {
  SetPpd({{"QVAnlz_FuncVer_JobScriptFlag", "A"}, {"QV_Prot_CommonFlag_7", "x"}});
  EXPECT_EQ(ForVersion(1), (Outcome{0, {{"QV_Prot_JobScriptFlag", "A"}}}));
}

TEST_F(FunctionVersion, LeavesThePpdAsItWas) {
  const Entries ppd = {{"QVAnlz_FuncVer_CommonFlag_1", "A,B_C"}, {"QVAnlz_FuncVer_UI", "K:v,L:w"}};
  SetPpd(ppd);
  const Outcome first = ForVersion(1);
  EXPECT_EQ(ForVersion(1), first);
  Entries entries;
  for (const OptTable* node = context_.ppd_options; node != nullptr; node = node->next) {
    entries.emplace_back(node->key, node->value);
  }
  EXPECT_EQ(entries, ppd);
}

TEST_F(FunctionVersion, ValuesWithoutItemsGiveNothing) {
  SetPpd({{"QVAnlz_FuncVer_CommonFlag", ",_,"}, {"QVAnlz_FuncVer_UI", "_,::,"}});
  EXPECT_EQ(ForVersion(1), (Outcome{0, {}}));
}

// Limits -----------------------------------------------------------------------------------------

TEST_F(FunctionVersion, IndexesUpToTheVersionApply) {
  SetPpd({{"QVAnlz_FuncVer_CommonFlag_311", "Above"},
          {"QVAnlz_FuncVer_CommonFlag_310", "Equal"},
          {"QVAnlz_FuncVer_CommonFlag_309", "Below"},
          {"QVAnlz_FuncVer_CommonFlag_1000", "More digits"},
          {"QVAnlz_FuncVer_CommonFlag_99", "Fewer digits"}});
  EXPECT_EQ(ForVersion(0x310), (Outcome{0,
                                        {{"QV_Prot_CommonFlag", "Equal"},
                                         {"QV_Prot_CommonFlag_1", "Below"},
                                         {"QV_Prot_CommonFlag_2", "Fewer digits"}}}));
}

TEST_F(FunctionVersion, KeyWithoutIndexAlwaysApplies) {
  SetPpd({{kSource, "A"}});
  for (const std::int32_t limit : {kLowest, -1, 0, 1, kHighest}) {
    EXPECT_EQ(Updated(kSource, limit, kTarget), (Outcome{0, {{kTarget, "A"}}})) << limit;
  }
}

struct IndexRow {
  const char* suffix;
  std::int32_t index;
};

void PrintTo(const IndexRow& row, std::ostream* out) { *out << "'" << row.suffix << "'"; }

class IndexOfKey : public FunctionVersion, public testing::WithParamInterface<IndexRow> {};

TEST_P(IndexOfKey, IsTheLowestVersionThatItAppliesTo) {
  SetPpd({{std::string(kSource) + GetParam().suffix, "A"}});
  const std::int32_t index = GetParam().index;
  for (const std::int32_t limit : {index, index < kHighest ? index + 1 : index, kHighest}) {
    EXPECT_EQ(Updated(kSource, limit, kTarget), (Outcome{0, {{kTarget, "A"}}})) << limit;
  }
  for (const std::int32_t limit : {kLowest, index - 1}) {
    EXPECT_EQ(Updated(kSource, limit, kTarget), (Outcome{0, {}})) << limit;
  }
}

INSTANTIATE_TEST_SUITE_P(Suffixes, IndexOfKey,
                         testing::Values(IndexRow{"_0", 0}, IndexRow{"_1", 1},
                                         IndexRow{"_310", 310}, IndexRow{"_-5", -5},
                                         IndexRow{"_", 0}, IndexRow{"_x", 0}, IndexRow{"_text", 0},
                                         IndexRow{"_12x", 12}, IndexRow{"_3_x", 3},
                                         IndexRow{"_3_400", 3}, IndexRow{"_400_3", 400},
                                         IndexRow{"__9", 0}, IndexRow{"_x_9", 0}, IndexRow{"-7", 7},
                                         IndexRow{"17", 7}, IndexRow{"_0310", 310},
                                         IndexRow{"_0x10", 0}, IndexRow{"_2147483647", kHighest}));

TEST_F(FunctionVersion, KeysThatContainTheSourceKeyApplyToo) {
  SetPpd({{"XQVAnlz_FuncVer_UI_999", "QVFirst:1"},
          {"qvanlz_funcver_ui_1", "QVSecond:2"},
          {"QVAnlz_FuncVer_UIExtra_999", "QVThird:3"},
          {"XQVAnlz_FuncVer_U_1", "QVFourth:4"}});
  EXPECT_EQ(ForVersion(1), (Outcome{0, {{"QVFirst", "1"}, {"QVSecond", "2"}, {"QVThird", "3"}}}));
}

TEST_F(FunctionVersion, EntryWithoutAValueEndsTheSearchForItsKey) {
  SetPpd({{"QVAnlz_FuncVer_UI_2", "QVSecond:2"},
          {"QVAnlz_FuncVer_CommonFlag", "A"},
          {"QVAnlz_FuncVer_UI_1", "QVFirst:1"}});
  std::free(std::exchange(context_.ppd_options->value, nullptr));
  EXPECT_EQ(ForVersion(2), (Outcome{0, {{kTarget, "A"}}}));
}

TEST_F(FunctionVersion, EntryWithoutAKeyIsSkipped) {
  SetPpd({{"QVAnlz_FuncVer_UI_2", "QVSecond:2"}, {"QVAnlz_FuncVer_UI_1", "QVFirst:1"}});
  std::free(std::exchange(context_.ppd_options->key, nullptr));
  EXPECT_THAT(ForVersion(2).entries, SizeIs(1));
}

TEST_F(FunctionVersion, ListMayBeThePpdsOwn) {
  SetPpd({{kSource, "A,B"}, {"QVAnlz_FuncVer_UI_1", "QVFirst:1"}});
  EXPECT_EQ(Analyze_Info_FromFunctionVersion(&context_, 1, context_.ppd_options), 0);
  const Entries entries = EntriesFrom(context_.ppd_options);
  EXPECT_THAT(entries, testing::IsSupersetOf<Entry>(
                           {{"QVFirst", "1"}, {kTarget, "A"}, {"QV_Prot_CommonFlag_1", "B"}}));
  EXPECT_THAT(entries, SizeIs(5));
}

// One source key ---------------------------------------------------------------------------------

TEST_F(FunctionVersion, UpdateTakesAnyKeys) {
  SetPpd({{"QVMine_1", "A,B"}, {"QVMine_2", "C"}});
  EXPECT_EQ(Updated("QVMine", 1, "QVTheirs"),
            (Outcome{0, {{"QVTheirs", "A"}, {"QVTheirs_1", "B"}}}));
  EXPECT_EQ(Updated("QVMine", 2, nullptr), (Outcome{0, {{"A", ""}, {"B", ""}, {"C", ""}}}));
  EXPECT_EQ(Updated("QVOther", 2, "QVTheirs"), (Outcome{0, {}}));
}

TEST_F(FunctionVersion, UpdateOfAnAnalyserWithoutPpdSelectsNothing) {
  EXPECT_EQ(Updated(kSource, 1, kTarget), (Outcome{0, {}}));
  EXPECT_EQ(Updated(kSource, 1, nullptr), (Outcome{0, {}}));
}

TEST_F(FunctionVersion, UpdateHandsTheValuesOn) {
  SetPpd({{"QVMine_1", "A,B"}, {"QVMine_9", "no"}, {"QVMine_2", "C"}});
  CallersList list;
  FlagSetting setting;
  EXPECT_EQ(z_Update_FuncVer(&context_, "QVMine", 2, "QVTheirs", list.get()), 0);
  EXPECT_EQ(z_Update_FuncVer(&context_, "QVMine", 1, nullptr, list.get()), 0);
  EXPECT_THAT(setting.calls,
              ElementsAre(FlagSetting::Call{context_.ppd_options, "QVTheirs", "A,B", list.get()},
                          FlagSetting::Call{context_.ppd_options, "QVTheirs", "C", list.get()},
                          FlagSetting::Call{nullptr, std::nullopt, "A,B", list.get()}));
}

TEST_F(FunctionVersion, UpdateEndsWithTheFirstValueThatCannotBeSet) {
  SetPpd({{"QVMine_1", "A"}, {"QVMine_2", "B"}, {"QVMine_3", "C"}});
  for (const char* target : {"QVTheirs", static_cast<const char*>(nullptr)}) {
    for (std::size_t failing = 0; failing < 3; ++failing) {
      for (const std::int32_t result : {-1, 5}) {
        FlagSetting setting;
        setting.results.resize(failing + 1);
        setting.results.back() = result;
        EXPECT_EQ(Updated("QVMine", 3, target).result, result);
        EXPECT_THAT(setting.calls, SizeIs(failing + 1));
      }
    }
  }
}

TEST_F(FunctionVersion, EndsWithTheFirstKeyThatFails) {
  Entries ppd = {{"QVAnlz_FuncVer_UI", "K:v"}};
  for (const KeyRow& keys : kKeys) ppd.emplace_back(keys.source, "A");
  SetPpd(ppd);
  for (const std::int32_t result : {-1, 5}) {
    FlagSetting setting;
    setting.results = {result};
    EXPECT_EQ(ForVersion(1), (Outcome{result, {}}));
  }
  EXPECT_THAT(ForVersion(1).entries, SizeIs(6));
}

// From a queue's PPD -----------------------------------------------------------------------------

TEST(FunctionVersionOfAQueue, SelectsTheFlagsOfItsPpd) {
  PrintQueues::Get().Add("function_version",
                         "*PPD-Adobe: \"4.3\"\n"
                         "*QVAnlz_FuncVer_CommonFlag: \"A1\"\n"
                         "*QVAnlz_FuncVer_CommonFlag_200: \"B1,B2\"\n"
                         "*QVAnlz_FuncVer_CommonFlag_400: \"C1\"\n"
                         "*QVAnlz_FuncVer_UI_310: \"QVItem:On\"\n"
                         "*QV_Prot_CommonFlag: \"x\"\n");
  const BidiPtr bidi(Bidi_Create(ia_test::kReferenceDriver));
  ASSERT_NE(bidi, nullptr);
  const AnalyzerPtr analyzer(Analyze_Create(bidi.get(), "function_version", nullptr));
  ASSERT_NE(analyzer, nullptr);
  CallersList list;
  EXPECT_EQ(Analyze_Info_FromFunctionVersion(analyzer.get(), 0x310, list.get()), 0);
  EXPECT_EQ(list.entries(), (Entries{{"QVItem", "On"},
                                     {"QV_Prot_CommonFlag_1", "B1"},
                                     {"QV_Prot_CommonFlag_2", "B2"},
                                     {"QV_Prot_CommonFlag_3", "A1"}}));
}

// Extra options ----------------------------------------------------------------------------------

class ExtraOptions : public ListUpdates {
 protected:
  Entries AppendedFor(const char* model) {
    context_.driver_name = const_cast<char*>(model);
    return Appended(z_Update_Prn_extra);
  }
};

TEST_F(ExtraOptions, RefuseNullArguments) {
  CallersList list;
  for (const char* model : {static_cast<const char*>(nullptr), "RA-H2", "RA-Z5"}) {
    context_.driver_name = const_cast<char*>(model);
    EXPECT_EQ(z_Update_Prn_extra(&context_, nullptr), -1);
  }
  EXPECT_EQ(z_Update_Prn_extra(nullptr, list.get()), -1);
  EXPECT_EQ(z_Update_Prn_extra(nullptr, nullptr), -1);
  EXPECT_THAT(list.entries(), IsEmpty());
}

TEST_F(ExtraOptions, AreOfOneModel) {
  EXPECT_EQ(AppendedFor("RA-Z5"), (Entries{{"QVInsertUnit", "None"}}));
}

TEST_F(ExtraOptions, AreNotOfOtherModels) {
  Load(IA_DOCUMENT_TRAY_LIST, {NumberArray("alias", {196})});
  for (const char* model : {"", "RA-Z", "RA-Z4", "RA-Z6", "RA-Z55", "RA-Z5-MLT-JP", "RA-Z5 ",
                            " RA-Z5", "ra-z5", "RB-Z5", "RA-z5"}) {
    EXPECT_THAT(AppendedFor(model), IsEmpty()) << model;
  }
  EXPECT_THAT(AppendedFor(nullptr), IsEmpty());
}

TEST_F(ExtraOptions, FollowFromTheTrays) {
  Load(IA_DOCUMENT_TRAY_LIST, {NumberArray("alias", {101}), NumberArray("alias", {198})});
  EXPECT_EQ(AppendedFor("RA-Z5"), (Entries{{"QVInsertUnit", "MINSU1"}}));
}

TEST_F(ExtraOptions, HandTheReadersFailureOn) {
  context_.driver_name = const_cast<char*>("RA-Z5");
  Load(IA_DOCUMENT_TRAY_LIST, {NumberArray("alias", {101})});
  ListReads reads;
  reads.results = {{{IA_DOCUMENT_TRAY_LIST, 0}, 5}};
  EXPECT_EQ(OutcomeOf(z_Update_Prn_extra, context_), (Outcome{5, {{"QVInsertUnit", "None"}}}));
}

}  // namespace
}  // namespace ia_test
