#include "tests/integration/fault_rounds.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>

#include "tests/support/print_queues.h"
#include "tests/support/temp_folder.h"

namespace ia_test {
namespace {

constexpr int kTooManyRounds = 100'000;

// The resources that a call must leave unchanged.
struct Balance {
  std::size_t live_blocks = CallFaults::Instance().LiveBlocks();
  int unknown_releases = CallFaults::Instance().UnknownReleases();
  int open_libraries = CallFaults::Instance().OpenLibraries();
  unsigned seconds_slept = CallFaults::Instance().SecondsSlept();
  std::ptrdiff_t descriptors = CountOpenDescriptors();
  std::ptrdiff_t temporary_files = CountEntries(PrintQueues::Get().temporary_folder());
};

void ExpectUnchanged(const Balance& before, bool leaves_files) {
  const Balance after;
  EXPECT_EQ(after.live_blocks, before.live_blocks) << "blocks leaked";
  EXPECT_EQ(after.unknown_releases, before.unknown_releases) << "foreign blocks released";
  EXPECT_EQ(after.open_libraries, before.open_libraries) << "libraries left open";
  EXPECT_EQ(after.seconds_slept, before.seconds_slept) << "the library slept";
  EXPECT_EQ(after.descriptors, before.descriptors) << "descriptors leaked";
  if (!leaves_files) {
    EXPECT_EQ(after.temporary_files, before.temporary_files) << "temporary files left";
  }
}

int FailuresSoFar() {
  return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

void RunAndExpectBalance(const Scenario& scenario, Round& round) {
  const Balance before;
  scenario.run(round);
  ExpectUnchanged(before, scenario.leaves_files);
}

}  // namespace

void Round::Expect(bool is_right, bool is_documented_failure, const std::string& answer) const {
  EXPECT_TRUE(is_right || (HasFired() && is_documented_failure))
      << (HasFired() ? "neither the right answer nor the documented failure: " : "not right: ")
      << answer;
}

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

int RunWithEachCallFailing(const Scenario& scenario, const Fault& fault) {
  const int failures_before = FailuresSoFar();
  Round first;  // what is set up once in a process is not this scenario's
  scenario.run(first);
  for (int nth = 1; nth < kTooManyRounds; ++nth) {
    SCOPED_TRACE(std::string(scenario.name) + ", call " + std::to_string(nth) +
                 (fault.times == kOnce ? "" : " and later ones"));
    Round round(fault, nth);
    RunAndExpectBalance(scenario, round);
    {
      SCOPED_TRACE("undisturbed afterwards");
      Round next;
      RunAndExpectBalance(scenario, next);
    }
    if (!round.HasFired() || FailuresSoFar() > failures_before) return nth - 1;
  }
  ADD_FAILURE() << scenario.name << " never ends";
  return kTooManyRounds;
}

}  // namespace ia_test
