// Runs a call again and again, each time with a different one of the calls that it makes failing.
#ifndef TESTS_INTEGRATION_FAULT_ROUNDS_H_
#define TESTS_INTEGRATION_FAULT_ROUNDS_H_

#include <functional>
#include <ostream>
#include <string>

#include "tests/integration/call_faults.h"

namespace ia_test {

// One run of a scenario.
class Round {
 public:
  // An undisturbed one.
  Round() = default;
  // The nth call that the fault is about goes wrong.
  Round(const Fault& fault, int nth) : fault_(&fault), nth_(nth) {}

  // Makes the one call that the scenario is about.
  template <class Action>
  auto Try(Action action) {
    auto& faults = CallFaults::Instance();
    if (fault_ != nullptr) faults.Arm(*fault_, nth_);
    auto answer = action();
    if (fault_ != nullptr) fired_ += faults.Disarm();
    return answer;
  }

  // The answer must be the right one or, when a call failed, the documented failure.
  void Expect(bool is_right, bool is_documented_failure, const std::string& answer) const;

  [[nodiscard]] bool HasFired() const { return fired_ > 0; }

 private:
  const Fault* fault_ = nullptr;
  int nth_ = 0;
  int fired_ = 0;
};

// Prepares, makes one call through Round::Try(), judges the answer and releases everything.
struct Scenario {
  const char* name;
  std::function<void(Round& round)> run;
  // Files that stay in the temporary folder because the fault is that they cannot be deleted.
  bool leaves_files = false;
};

void PrintTo(const Scenario& scenario, std::ostream* out);

// Runs the scenario with the 1st, 2nd, 3rd, ... call going wrong until it makes no such call any
// more. After each round no block, descriptor, library or temporary file is left over, nothing has
// been waited for, and an undisturbed run gives the right answer. Returns the number of rounds with
// a failing call.
int RunWithEachCallFailing(const Scenario& scenario, const Fault& fault);

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_FAULT_ROUNDS_H_
