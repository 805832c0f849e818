// Whatever allocation fails: the told failure or the right answer, nothing leaked.
#include <gtest/gtest.h>

#include <iostream>
#include <set>
#include <string>
#include <tuple>

#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/allocation_sites.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

Fault OutOfMemory(int times) { return {.callees = AllocatingCallees(), .times = times}; }

class FailingAllocations : public testing::TestWithParam<std::tuple<Scenario, int>> {
 protected:
  static void SetUpTestSuite() { SampleSetting::Get(); }
};

TEST_P(FailingAllocations, GiveTheToldFailureOrTheRightAnswer) {
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

TEST(WithoutMemoryOnce, FinisherWithoutNameEndsTheCombinedPass) {
  const SampleAnalyser analyser;
  analyze_common_create_all_xmldata(analyser.context());
  const CallersList list;
  // The list of units comes first; the name of the second unit is missing and made up.
  EXPECT_EQ(WithoutMemoryOnce(2,
                              [&] {
                                return z_Update_Prn_Complex_FinisherInformations(analyser.context(),
                                                                                 list.head());
                              }),
            -1);
  EXPECT_EQ(list.Added(), "");
}

// Also of an analyser whose documents were not all loaded.
TEST(Destroying, NeedsNoMemory) {
  auto& faults = CallFaults::Instance();
  const SampleSetting& setting = SampleSetting::Get();
  const std::size_t live_before = faults.LiveBlocks();
  AnalyzeContext* context = Analyze_Create(setting.bidi(), kQueue, setting.document_folder());
  BidiContext* bidi = Bidi_Create(IA_TEST_DRIVER_FOLDER);
  faults.Arm(OutOfMemory(kOnce), 5);
  EXPECT_NE(analyze_common_create_all_xmldata(context), 0);
  EXPECT_EQ(faults.Disarm(), 1);
  faults.Arm(OutOfMemory(kFromThenOn), 1);
  Analyze_Destroy(context);
  Bidi_Destroy(bidi);
  EXPECT_EQ(faults.Disarm(), 0);
  EXPECT_EQ(faults.LiveBlocks(), live_before);
}

// Runs everything once more, in one process, and holds the calls that failed against those that
// the file has.
TEST(AllocationSites, EachFailedAtLeastOnce) {
  auto& faults = CallFaults::Instance();
  SampleSetting::Get();
  for (const Scenario& scenario : AllocationScenarios()) {
    RunWithEachCallFailing(scenario, OutOfMemory(kOnce));
    // Some are made only when one before has failed.
    RunWithEachCallFailing(scenario, OutOfMemory(kFromThenOn));
  }
  const auto sites = FindAllocationSites(faults.LibraryPath());
  ASSERT_FALSE(sites.empty()) << "objdump finds no call in " << faults.LibraryPath();
  std::size_t failed = 0;
  for (const AllocationSite& site : sites) {
    EXPECT_NE(site.return_address, 0u)
        << site.text << ": a jump does not tell where it stands; keep the compiler from it";
    const auto places = faults.FailedPlaces().find(site.callee);
    const bool has_failed =
        places != faults.FailedPlaces().end() && places->second.contains(site.return_address);
    EXPECT_TRUE(has_failed) << site.text << " never failed";
    std::cout << (has_failed ? "failed " : "NEVER  ") << site.text << "\n";
    failed += has_failed ? 1 : 0;
  }
  std::cout << failed << " of " << sites.size() << " allocation sites failed at least once\n";
}

}  // namespace
}  // namespace ia_test
