// The verb "explain": why each option has its value.
#ifndef INFO_ANALYZE_CLI_EXPLAIN_EXPLAIN_H_
#define INFO_ANALYZE_CLI_EXPLAIN_EXPLAIN_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineExplain(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_EXPLAIN_EXPLAIN_H_
