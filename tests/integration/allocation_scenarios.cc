#include "tests/integration/allocation_scenarios.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/integration/sample_setting.h"

namespace ia_test {

std::vector<std::string> Lines(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

bool IsSomeOf(const std::string& some, const std::string& all) {
  const auto lines = Lines(all);
  auto next = lines.begin();
  for (const std::string& line : Lines(some)) {
    next = std::find(next, lines.end(), line);
    if (next == lines.end()) return false;
    ++next;
  }
  return true;
}

void ExpectText(Round& round, char* text, const std::string& right) {
  const std::string answer = Take(text);
  round.Expect(answer == right, answer == "(none)", answer);
}

std::vector<Scenario> AllocationScenarios() {
  std::vector<Scenario> scenarios;
  for (const auto& some : {ListScenarios(), SetterAndPathScenarios(), AnalyserScenarios(),
                           ModelScenarios(), QueueScenarios(), CalibrationScenarios()}) {
    scenarios.insert(scenarios.end(), some.begin(), some.end());
  }
  return scenarios;
}

}  // namespace ia_test
