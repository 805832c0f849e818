// Shows the medians of the benchmarks and whether they keep their limits.
#ifndef BENCH_LIMIT_REPORTER_H_
#define BENCH_LIMIT_REPORTER_H_

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/limits.h"

namespace ia_bench {

class LimitReporter : public benchmark::ConsoleReporter {
 public:
  // When all benchmarks are run, each limit must find its benchmark.
  explicit LimitReporter(bool runs_all);

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  [[nodiscard]] bool all_kept() const { return failures_ == 0; }

 private:
  void ReportMedian(const Run& run);
  // Returns what is said of a counter's limit: nothing when it has none.
  std::string Judge(const std::string& benchmark, const std::string& counter, double value);

  bool runs_all_;
  int failures_ = 0;
  std::vector<Limit> unmeasured_;
};

}  // namespace ia_bench

#endif  // BENCH_LIMIT_REPORTER_H_
