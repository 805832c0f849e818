// A job's print options, as the calibration verbs pass them to the library.
#ifndef INFO_ANALYZE_CLI_CALIBRATION_JOB_OPTIONS_H_
#define INFO_ANALYZE_CLI_CALIBRATION_JOB_OPTIONS_H_

#include <string>
#include <utility>
#include <vector>

#include "info_analyze/option_table.h"

namespace CLI {
class App;
}  // namespace CLI

namespace ia::cli {

// Adds "--option KEY=VALUE", which may be given several times.
void AddJobOptions(CLI::App& verb, std::vector<std::string>& texts);

// The options of the command line, the later ones first, and then those of the queue's PPD:
// the library takes the first that has the key.
class JobOptions {
 public:
  // Each text has a "=". The table is borrowed, and not changed.
  JobOptions(const std::vector<std::string>& texts, OptTable* of_ppd);
  JobOptions(const JobOptions&) = delete;
  JobOptions& operator=(const JobOptions&) = delete;

  [[nodiscard]] const OptTable* table() const noexcept { return head_; }

 private:
  std::vector<std::pair<std::string, std::string>> chosen_;
  std::vector<OptTable> nodes_;
  OptTable* head_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_CALIBRATION_JOB_OPTIONS_H_
