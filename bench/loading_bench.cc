// Loading and unloading the library, beside doing so with a library that holds nothing.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "bench/limits.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr double kMostTimesEmpty = 2.2;

double TimeLoad(const char* path) {
  const auto start = Clock::now();
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr || dlclose(library) != 0) std::abort();
  return Seconds(Clock::now() - start).count();
}

void BM_Load(benchmark::State& state) {
  double empty = 0;
  double library = 0;
  for (auto _ : state) {
    empty += TimeLoad(IA_EMPTY_LIBRARY);
    const double seconds = TimeLoad(IA_SHIPPED_LIBRARY);
    library += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["times_empty"] = library / empty;
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(IA_SHIPPED_LIBRARY));
  state.counters["empty_bytes"] = static_cast<double>(std::filesystem::file_size(IA_EMPTY_LIBRARY));
  if (library <= kMostTimesEmpty * empty) return;
  ia_bench::g_is_limit_exceeded = true;
  state.SetLabel("TOO SLOW");
}
BENCHMARK(BM_Load)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
