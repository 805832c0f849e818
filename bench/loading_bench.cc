// Loading and unloading the installed library, and its size, compared with an empty library.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>

#include "bench/timings.h"

namespace {

using ia_bench::Timings;

void Load(const char* path) {
  void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr || dlclose(library) != 0) std::abort();
}

void BM_Load(benchmark::State& state) {
  Timings empty;
  Timings library;
  for (auto _ : state) {
    empty.Add([] { Load(IA_EMPTY_LIBRARY); });
    state.SetIterationTime(library.Add([] { Load(IA_INSTALLED_LIBRARY); }));
  }
  const auto bytes = static_cast<double>(std::filesystem::file_size(IA_INSTALLED_LIBRARY));
  const auto empty_bytes = static_cast<double>(std::filesystem::file_size(IA_EMPTY_LIBRARY));
  state.counters["times_empty"] = library.Median() / empty.Median();
  state.counters["kB"] = bytes / 1e3;
  state.counters["kB_beside_empty"] = (bytes - empty_bytes) / 1e3;
}
BENCHMARK(BM_Load)->Name("load")->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
