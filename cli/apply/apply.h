// The verb "apply": sets the PPD defaults of queues to what their devices have.
#ifndef INFO_ANALYZE_CLI_APPLY_APPLY_H_
#define INFO_ANALYZE_CLI_APPLY_APPLY_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineApply(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_APPLY_APPLY_H_
