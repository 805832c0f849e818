// The verbs that need no module of their own. Each other verb has a header in its module.
#ifndef INFO_ANALYZE_CLI_VERBS_H_
#define INFO_ANALYZE_CLI_VERBS_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Each adds the options of one verb to its part of the command line and sets the callback that
// does the work: the answer goes to standard output, a failure is thrown.
void DefineCompletion(CLI::App& verb);
void DefineConfig(CLI::App& verb);
void DefineFunctionVersion(CLI::App& verb);
void DefineModels(CLI::App& verb);
void DefineProfile(CLI::App& verb);
void DefineQuery(CLI::App& verb);
void DefineQueues(CLI::App& verb);
void DefineUri(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_VERBS_H_
