// The verbs of the tool. A verb is a file with one such function and a row in main.cc.
#ifndef INFO_ANALYZE_CLI_VERBS_H_
#define INFO_ANALYZE_CLI_VERBS_H_

#include <CLI/CLI.hpp>

namespace ia::cli {

// Each adds the options of one verb to its part of the command line and sets the callback that
// does the work: the answer goes to standard output, a failure is thrown.
void DefineCalibration(CLI::App& verb);
void DefineCompletion(CLI::App& verb);
void DefineDiff(CLI::App& verb);
void DefineDoctor(CLI::App& verb);
void DefineExplain(CLI::App& verb);
void DefineFunctionVersion(CLI::App& verb);
void DefineModels(CLI::App& verb);
void DefineQuery(CLI::App& verb);
void DefineQueues(CLI::App& verb);
void DefineSnapshot(CLI::App& verb);
void DefineUri(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_VERBS_H_
