// The clauses of the contract of communication libraries.
#ifndef INFO_ANALYZE_CLI_COMMLIB_CLAUSES_H_
#define INFO_ANALYZE_CLI_COMMLIB_CLAUSES_H_

#include <span>

#include "cli/commlib/trial.h"

namespace ia::cli {

struct Clause {
  const char* name;
  const char* sentence;               // what it says
  void (*try_library)(Trial& trial);  // throws Broken or NotTested
};

// Of each family, in the order in which they are tried.
[[nodiscard]] std::span<const Clause> LoadingClauses();
[[nodiscard]] std::span<const Clause> ParsingClauses();
[[nodiscard]] std::span<const Clause> ReadingClauses();
[[nodiscard]] std::span<const Clause> WritingClauses();
[[nodiscard]] std::span<const Clause> ProcessClauses();
[[nodiscard]] std::span<const Clause> DocumentClauses();

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_CLAUSES_H_
