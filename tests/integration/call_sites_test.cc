// Each place at which the file calls something that can fail, and whether it was made to fail.
#include "tests/integration/call_sites.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/integration/allocation_scenarios.h"
#include "tests/integration/call_faults.h"
#include "tests/integration/failing_call.h"
#include "tests/integration/fault_rounds.h"
#include "tests/integration/queue_setting.h"
#include "tests/integration/sample_setting.h"

namespace ia_test {
namespace {

void FailEverything() {
  for (const Scenario& scenario : AllocationScenarios()) {
    RunWithEachCallFailing(scenario, OutOfMemory(kOnce));
    // Some are made only when one before has failed.
    RunWithEachCallFailing(scenario, OutOfMemory(kFromThenOn));
  }
  for (const auto& calls : {DocumentAndPpdCalls(), QueueCalls()}) {
    for (const auto& [name, scenario, fault] : calls) RunWithEachCallFailing(scenario, fault);
  }
}

// A jump leaves no return address of its own. The jump to a function is the one place from which
// the function failed and that is not a call; two jumps could not be distinguished.
std::set<std::uintptr_t> PlacesOfJumps(Callee callee, const std::vector<CallSite>& sites) {
  const auto& failed = CallFaults::Instance().FailedPlaces();
  if (!failed.contains(callee)) return {};
  std::set<std::uintptr_t> places = failed.at(callee);
  for (const CallSite& site : sites) {
    if (site.callee == callee) places.erase(site.return_address);
  }
  return places;
}

bool HasFailedItself(const CallSite& site, const std::vector<CallSite>& sites) {
  if (site.return_address == 0) return !PlacesOfJumps(site.callee, sites).empty();
  const auto& failed = CallFaults::Instance().FailedPlaces();
  return failed.contains(site.callee) && failed.at(site.callee).contains(site.return_address);
}

// Some compilers copy a call into several branches; one of them is enough.
bool HasFailed(const CallSite& site, const std::vector<CallSite>& sites) {
  return std::ranges::any_of(sites, [&](const CallSite& copy) {
    return copy.callee == site.callee && copy.source == site.source && HasFailedItself(copy, sites);
  });
}

// Runs everything once more, in one process, and holds the calls that failed against those that
// the file has.
TEST(CallSites, EachFailedAtLeastOnce) {
#ifndef NDEBUG
  GTEST_SKIP() << "only the shipped build has no calls but those of the sources";
#endif
  SampleSetting::Get();
  QueueSetting::Get();
  FailEverything();
  const auto sites = FindCallSites(CallFaults::Instance().LibraryPath());
  ASSERT_FALSE(sites.empty()) << "objdump finds no call in the library";
  std::size_t failed = 0;
  std::map<Callee, int> jumps;
  for (const CallSite& site : sites) {
    const bool has_failed = HasFailed(site, sites);
    EXPECT_TRUE(has_failed) << site.text << " never failed";
    std::cout << (has_failed ? "failed " : "NEVER  ") << site.text << "\n";
    failed += has_failed ? 1 : 0;
    if (site.return_address == 0) {
      EXPECT_EQ(++jumps[site.callee], 1) << site.text << ": keep the compiler from this jump";
    }
  }
  std::cout << failed << " of " << sites.size() << " call sites failed at least once\n";
}

TEST(CallSites, EveryFunctionOfOthersFailsOrCannotFail) {
#ifndef NDEBUG
  GTEST_SKIP() << "only the shipped build calls nothing but what is written";
#endif
  EXPECT_EQ(FindUnknownImports(CallFaults::Instance().LibraryPath()), std::vector<std::string>());
}

}  // namespace
}  // namespace ia_test
