// Every way in which the library allocates, each as a scenario that knows the right answer and the
// failures that the headers allow.
#ifndef TESTS_INTEGRATION_ALLOCATION_SCENARIOS_H_
#define TESTS_INTEGRATION_ALLOCATION_SCENARIOS_H_

#include <span>
#include <string>
#include <vector>

#include "tests/integration/fault_rounds.h"

namespace ia_test {

std::span<const Scenario> ListScenarios();
std::span<const Scenario> SetterAndPathScenarios();
std::span<const Scenario> AnalyserScenarios();
std::span<const Scenario> ModelScenarios();
std::span<const Scenario> QueueScenarios();
std::span<const Scenario> CalibrationScenarios();
// All of them.
std::vector<Scenario> AllocationScenarios();

std::vector<std::string> Lines(const std::string& text);

// True when some of the lines, in their order, make the other text.
bool IsSomeOf(const std::string& some, const std::string& all);

// True when every entry that a query of the sample setting added has its right text, or one that
// its handler falls back to.
bool AreOptions(const std::string& added);

// Expects this text, or null as the failure. Releases the text.
void ExpectText(Round& round, char* text, const std::string& right);

}  // namespace ia_test

#endif  // TESTS_INTEGRATION_ALLOCATION_SCENARIOS_H_
