// The verb "calibration": settings and defaults of a job, and the default curves.
#ifndef INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_H_
#define INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_H_

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds the verb's options to its part of the command line and sets the callback that does the work.
void DefineCalibration(CLI::App& verb);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CALIBRATION_CALIBRATION_H_
