// The verb "diff": what has changed between two printers, or between then and now.
#ifndef INFO_ANALYZE_CLI_DIFF_DIFF_H_
#define INFO_ANALYZE_CLI_DIFF_DIFF_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineDiff(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DIFF_DIFF_H_
