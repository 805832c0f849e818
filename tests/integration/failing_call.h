// Failing calls on files, libraries and a print server, each with the scenario that makes it.
#ifndef TESTS_INTEGRATION_FAILING_CALL_H_
#define TESTS_INTEGRATION_FAILING_CALL_H_

#include <ostream>
#include <vector>

#include "tests/integration/fault_rounds.h"

namespace ia_test {

struct FailingCall {
  const char* name;
  Scenario scenario;
  Fault fault;
};

inline void PrintTo(const FailingCall& call, std::ostream* out) { *out << call.name; }

std::vector<FailingCall> DocumentAndPpdCalls();
std::vector<FailingCall> QueueCalls();

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_FAILING_CALL_H_
