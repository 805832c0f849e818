// Runs the benchmarks; the exit status is 1 when one of them exceeds its limit.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>
#include <vector>

#include "bench/limit_reporter.h"

namespace {

// Defaults first, so that the user's arguments override them. "--json FILE" is short for
// writing the library's own form to a file.
std::vector<std::string> Arguments(int argc, char** argv) {
  std::vector<std::string> arguments = {argv[0], "--benchmark_repetitions=5",
                                        "--benchmark_min_time=0.2"};
  for (int i = 1; i < argc; ++i) {
    if (argv[i] == std::string_view("--json") && i + 1 < argc) {
      arguments.push_back("--benchmark_out_format=json");
      arguments.push_back("--benchmark_out=" + std::string(argv[++i]));
    } else {
      arguments.emplace_back(argv[i]);
    }
  }
  return arguments;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments = Arguments(argc, argv);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  int count = static_cast<int>(pointers.size());
  pointers.push_back(nullptr);
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;
  ia_bench::LimitReporter reporter(benchmark::GetBenchmarkFilter().empty());
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.all_kept() ? 0 : 1;
}
