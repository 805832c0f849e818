#include "bench/limit_reporter.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <ostream>

namespace ia_bench {
namespace {

// The name that the limits use, such as "option_table/300".
std::string NameOf(const benchmark::BenchmarkReporter::Run& run) {
  const benchmark::BenchmarkName& name = run.run_name;
  return name.args.empty() ? name.function_name : name.function_name + "/" + name.args;
}

bool IsMedian(const benchmark::BenchmarkReporter::Run& run) {
  return run.aggregate_name == "median" || run.repetitions == 1;
}

[[gnu::format(printf, 1, 2)]] std::string Format(const char* format, ...) {
  char text[128];
  va_list values;
  va_start(values, format);
  std::vsnprintf(text, sizeof text, format, values);
  va_end(values);
  return text;
}

}  // namespace

LimitReporter::LimitReporter(bool runs_all)
    : runs_all_(runs_all), unmeasured_(Limits().begin(), Limits().end()) {}

bool LimitReporter::ReportContext(const Context& context) {
  PrintBasicContext(&GetErrorStream(), context);
  GetOutputStream() << Format("%-36s %14s  %-16s %12s  %10s\n", "benchmark", "median time",
                              "counter", "median", "at most")
                    << std::string(100, '-') << "\n";
  return true;
}

void LimitReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.error_occurred) {
      ++failures_;
      GetOutputStream() << NameOf(run) << " FAILED: " << run.error_message << "\n";
    } else if (IsMedian(run)) {
      ReportMedian(run);
    }
  }
}

void LimitReporter::ReportMedian(const Run& run) {
  const std::string name = NameOf(run);
  std::string head = Format("%-36s %11.2f %s", name.c_str(), run.GetAdjustedRealTime(),
                            benchmark::GetTimeUnitString(run.time_unit));
  head.resize(51, ' ');
  if (run.counters.empty()) GetOutputStream() << head << "\n";
  for (const auto& [counter, value] : run.counters) {
    GetOutputStream() << head
                      << Format("  %-16s %12.*f", counter.c_str(), value.value < 100 ? 3 : 0,
                                value.value)
                      << Judge(name, counter, value.value) << "\n";
    head.assign(head.size(), ' ');
  }
  GetOutputStream().flush();
}

std::string LimitReporter::Judge(const std::string& benchmark, const std::string& counter,
                                 double value) {
  const auto limit = std::ranges::find_if(unmeasured_, [&](const Limit& row) {
    return row.benchmark == benchmark && row.counter == counter;
  });
  if (limit == unmeasured_.end()) return "";
  const bool is_kept = value <= limit->at_most;
  std::string judgement = Format("  %10.2f  %s", limit->at_most, is_kept ? "kept" : "EXCEEDED");
  if (!is_kept) ++failures_;
  unmeasured_.erase(limit);
  return judgement;
}

void LimitReporter::Finalize() {
  if (runs_all_) {
    for (const Limit& limit : unmeasured_) {
      ++failures_;
      GetOutputStream() << "NOT MEASURED: " << limit.benchmark << " " << limit.counter << "\n";
    }
  }
  GetOutputStream() << (all_kept() ? "All limits are kept.\n"
                                   : Format("Limits not kept: %d\n", failures_));
}

}  // namespace ia_bench
