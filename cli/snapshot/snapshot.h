// The verb "snapshot": saves a PPD and documents in a folder that other verbs read.
#ifndef INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineSnapshot(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_SNAPSHOT_H_
