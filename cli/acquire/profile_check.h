#ifndef INFO_ANALYZE_CLI_ACQUIRE_PROFILE_CHECK_H_
#define INFO_ANALYZE_CLI_ACQUIRE_PROFILE_CHECK_H_

#include <CLI/CLI.hpp>

namespace ia::cli {

// Adds the verb "profile" to the command line.
void DefineProfile(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_ACQUIRE_PROFILE_CHECK_H_
