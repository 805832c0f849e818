// Trying a communication library against its contract.
#ifndef INFO_ANALYZE_CLI_COMMLIB_CHECK_H_
#define INFO_ANALYZE_CLI_COMMLIB_CHECK_H_

#include <chrono>
#include <string>
#include <vector>

#include "cli/commlib/clauses.h"
#include "cli/commlib/trial.h"

namespace ia::cli {

enum class Outcome { kKept, kBroken, kNotTested };

struct ClauseResult {
  Clause clause;
  Outcome outcome = Outcome::kKept;
  std::string detail;  // how it is broken, or why it is not tested; else empty
};

// Tries each clause in a child process, which ends at the time limit. So a library that crashes or
// hangs breaks the clause, and the other clauses are tried.
[[nodiscard]] std::vector<ClauseResult> CheckLibrary(const TriedLibrary& tried,
                                                     std::chrono::seconds limit);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_CHECK_H_
