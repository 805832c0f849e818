// The verb "doctor": what is wrong with the setup of a printer, and how to fix it.
#ifndef INFO_ANALYZE_CLI_DOCTOR_DOCTOR_H_
#define INFO_ANALYZE_CLI_DOCTOR_DOCTOR_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineDoctor(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_DOCTOR_DOCTOR_H_
