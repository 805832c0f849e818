// Runs the benchmarks; the exit status is 1 when one of them exceeds its limit.
#include <benchmark/benchmark.h>

#include "bench/limits.h"

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return ia_bench::g_is_limit_exceeded ? 1 : 0;
}
