// The verb "commlib": help for people who write a communication library.
#ifndef INFO_ANALYZE_CLI_COMMLIB_COMMLIB_H_
#define INFO_ANALYZE_CLI_COMMLIB_COMMLIB_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's verbs to its part of the command line.
void DefineCommlib(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_COMMLIB_H_
