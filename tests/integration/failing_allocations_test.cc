// Whatever allocation fails, a function returns the documented failure or the right answer, and
// leaks nothing.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>

#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/sample_setting.h"
#include "tests/support/build_folders.h"

namespace ia_test {
namespace {

class FailingAllocations : public testing::TestWithParam<std::tuple<Scenario, int>> {
 protected:
  static void SetUpTestSuite() { SampleSetting::Get(); }
};

TEST_P(FailingAllocations, GiveTheDocumentedFailureOrTheRightAnswer) {
  const auto& [scenario, times] = GetParam();
  EXPECT_GT(RunWithEachCallFailing(scenario, OutOfMemory(times)), 0) << "nothing was made to fail";
}

std::string NameOf(const testing::TestParamInfo<std::tuple<Scenario, int>>& info) {
  const auto& [scenario, times] = info.param;
  return std::string(scenario.name) + (times == kOnce ? "" : "WithLaterOnes");
}

INSTANTIATE_TEST_SUITE_P(Each, FailingAllocations,
                         testing::Combine(testing::ValuesIn(AllocationScenarios()),
                                          testing::Values(kOnce, kFromThenOn)),
                         NameOf);

// With the nth allocation of the call failing, and no other.
template <class Action>
auto WithoutMemoryOnce(int nth, Action action) {
  auto& faults = CallFaults::Instance();
  faults.Arm(OutOfMemory(kOnce), nth);
  auto answer = action();
  EXPECT_EQ(faults.Disarm(), 1);
  return answer;
}

TEST(WithoutMemoryOnce, PuncherIsLookedUpInTheTable) {
  SampleSetting::Get();
  std::string punch = "punch";
  std::string holes = "punching_";
  char* const functions[] = {punch.data()};
  char* const details[] = {holes.data()};
  const int32_t one = 1;
  const FunctionPair table[] = {{"punching_2_holes", "PUNU2"}};
  const FunctionQuery query{"RA-H9", "punch", functions, &one, table, 1, details, &one, nullptr};
  EXPECT_EQ(Take(analyze_GetPuncherOptionString(&query)), "PUNF24");
  EXPECT_EQ(Take(WithoutMemoryOnce(1, [&] { return analyze_GetPuncherOptionString(&query); })),
            "PUNU2");
}

// The list of units comes first; the name of the second unit is missing and made up.
TEST(WithoutMemoryOnce, RoomForFinishersOrANameEndsTheCombinedPass) {
  for (const int nth : {1, 2}) {
    const SampleAnalyser analyser;
    analyze_common_create_all_xmldata(analyser.context());
    const CallersList list;
    EXPECT_EQ(WithoutMemoryOnce(nth,
                                [&] {
                                  return z_Update_Prn_Complex_FinisherInformations(
                                      analyser.context(), list.head());
                                }),
              -1)
        << nth;
    EXPECT_EQ(list.Added(), "") << nth;
  }
}

// Trays and rows.
TEST(WithoutMemoryOnce, RoomForTraysEndsTheTrayList) {
  for (const int nth : {1, 2}) {
    const SampleAnalyser analyser;
    analyze_common_create_all_xmldata(analyser.context());
    const CallersList list;
    EXPECT_EQ(WithoutMemoryOnce(
                  nth, [&] { return z_Update_Prn_tray_list(analyser.context(), list.head()); }),
              -1)
        << nth;
    EXPECT_EQ(list.Added(), "") << nth;
  }
}

TEST(WithoutMemoryOnce, StackerIsCountedWhenItsTextCannotBeAllocated) {
  SampleSetting::Get();
  int32_t stackers = 0;
  FinisherUnit unit{};
  unit.type = 15;
  unit.stacker_count = &stackers;
  EXPECT_EQ(Take(WithoutMemoryOnce(1, [&] { return zGetStackerOptionString(&unit); })), "(none)");
  EXPECT_EQ(Take(zGetStackerOptionString(&unit)), "STKU2");
}

// The lines of a document as the fax handler has them, after the nth allocation failed.
std::string FaxLinesWithoutMemory(int nth, const std::string& lines) {
  const SampleAnalyser analyser;
  analyze_common_create_xmldata(analyser.context(), IA_DOCUMENT_DEVICENAME);
  const std::string document = "<document version=\"1\">" + lines + "</document>";
  analyze_common_initialize_xmldata(analyser.context(), IA_DOCUMENT_FAX_LINE_LIST, document.data(),
                                    static_cast<int32_t>(document.size()), "list");
  const CallersList list;
  EXPECT_EQ(WithoutMemoryOnce(
                nth, [&] { return z_Update_Prn_fax_line_list(analyser.context(), list.head()); }),
            0);
  return list.Added();
}

// Without a line the three texts for the device are the first that are made.
TEST(WithoutMemoryOnce, DialLineIsFalseWhenItsTextCannotBeAllocated) {
  for (int line = 0; line < 3; ++line) {
    const std::string added = FaxLinesWithoutMemory(1 + line, "");
    for (int other = 0; other < 3; ++other) {
      const std::string keyword = std::string("QVFAXDialLine") + static_cast<char>('A' + other);
      EXPECT_NE(added.find(keyword + (other == line ? "=False" : "=True")), std::string::npos)
          << added;
    }
  }
}

// Two lines of two texts each, and then the lower number of lines.
TEST(WithoutMemoryOnce, NumberOfLinesIsTheFirstOneWhenTheSecondFindsNone) {
  const std::string lines =
      "<dict key=\"list\"><long key=\"type\">3</long></dict>"
      "<dict key=\"list\"><long key=\"type\">3</long></dict>";
  EXPECT_EQ(FaxLinesWithoutMemory(4, lines).substr(0, 17), "QVFAXNumOfLine=1\n");
  EXPECT_EQ(FaxLinesWithoutMemory(5, lines).substr(0, 17), "QVFAXNumOfLine=2\n");
}

// The queues up to the one whose name found no memory are cut off already.
TEST(WithoutMemoryOnce, ListOfQueuesLosesThoseBeforeThatPoint) {
  SampleSetting::Get();
  std::string text = "<Printer a>\n<Printer b>\n<Printer c>\n";
  FolderConf conf{text.data(), static_cast<uint32_t>(text.size())};
  int32_t count = -1;
  // The list and its records come first.
  EXPECT_EQ(WithoutMemoryOnce(4, [&] { return MqpdQueueList_Initialize(&conf, &count); }), nullptr);
  EXPECT_EQ(count, 0);
  QueueList* const list = MqpdQueueList_Initialize(&conf, &count);
  ASSERT_EQ(count, 2);
  EXPECT_STREQ(CupsQueueList_GetQueueName(list, 0), "b");
  EXPECT_STREQ(CupsQueueList_GetQueueName(list, 1), "c");
  MqpdQueueList_Terminate(list);
}

// What a call leaves of a record that held another set in both places.
std::string SetsWithoutMemory(int nth, const char* model, const std::uint16_t* table) {
  SampleSetting::Get();
  std::string code = model;
  AnalyzeContext context = {};
  context.driver_name = code.data();
  const CallersList options;
  OptionList_Add(options.head(), "QVGradation", "High1");
  std::uint16_t old_set[1] = {};
  Calib3Info info = {.words = {1, 2, 3}, .first_set = old_set, .second_set = old_set};
  std::string answer = std::to_string(WithoutMemoryOnce(
      nth, [&] { return Analyze_Info_CreateDefault_Calib3Info(&context, options.head(), &info); }));
  const std::uint16_t* half = table;
  for (std::uint16_t* set : {info.first_set, info.second_set}) {
    answer += set == nullptr   ? " null"
              : set == old_set ? " old"
              : *set == *half  ? " copy"
                               : " other";
    if (set != old_set) CallFaults::Instance().Release(set);
    half += IA_CALIB_SET_VALUES;
  }
  for (const std::uint32_t word : info.words) EXPECT_EQ(word, 0u);
  return answer;
}

// One family clears the words alone, the others the pointers too.
TEST(WithoutMemoryOnce, RecordKeepsTheCurvesThatWereCopied) {
  EXPECT_EQ(SetsWithoutMemory(1, "RB-W7", LARCH_Def_Calib), "-1 null old");
  EXPECT_EQ(SetsWithoutMemory(2, "RB-W7", LARCH_Def_Calib), "-1 copy null");
  EXPECT_EQ(SetsWithoutMemory(1, "RB-P9", Linden_Def_Calib_2bit), "-1 null null");
  EXPECT_EQ(SetsWithoutMemory(2, "RB-P9", Linden_Def_Calib_2bit), "-1 copy null");
  EXPECT_EQ(SetsWithoutMemory(1, "RB-J9", PinePoplar_Def_Calib_2bit), "-1 null null");
  EXPECT_EQ(SetsWithoutMemory(2, "RB-J9", PinePoplar_Def_Calib_2bit), "-1 copy null");
}

// Also of an analyser whose documents were not all loaded.
TEST(Destroying, NeedsNoMemory) {
  auto& faults = CallFaults::Instance();
  const SampleSetting& setting = SampleSetting::Get();
  const std::size_t live_before = faults.LiveBlocks();
  AnalyzeContext* context = Analyze_Create(setting.bidi(), kQueue, setting.document_folder());
  BidiContext* bidi = Bidi_Create(ia_test::kReferenceDriver);
  faults.Arm(OutOfMemory(kOnce), 5);
  EXPECT_NE(analyze_common_create_all_xmldata(context), 0);
  EXPECT_EQ(faults.Disarm(), 1);
  faults.Arm(OutOfMemory(kFromThenOn), 1);
  Analyze_Destroy(context);
  Bidi_Destroy(bidi);
  EXPECT_EQ(faults.Disarm(), 0);
  EXPECT_EQ(faults.LiveBlocks(), live_before);
}

}  // namespace
}  // namespace ia_test
