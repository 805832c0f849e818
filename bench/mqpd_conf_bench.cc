// Finding the last queue of a daemon configuration, and listing all queues, compared with reading
// the same file into memory and searching it once.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/allocations.h"
#include "bench/sample_conf.h"
#include "bench/timings.h"

namespace {

using ia_bench::SampleConf;
using ia_bench::Timings;

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};

// The quickest way to a file's bytes: its size is known beforehand.
void ReadAndSearch(const std::string& path, const std::string& wanted) {
  std::FILE* const file = std::fopen(path.c_str(), "r");
  struct stat status;
  fstat(fileno(file), &status);
  const auto size = static_cast<std::size_t>(status.st_size);
  const std::unique_ptr<char, FreeDeleter> text(static_cast<char*>(std::malloc(size)));
  const std::size_t length = std::fread(text.get(), 1, size, file);
  std::fclose(file);
  if (memmem(text.get(), length, wanted.data(), wanted.size()) == nullptr) std::abort();
}

template <class Work>
void BesideFloor(benchmark::State& state, const SampleConf& conf, const std::string& wanted,
                 Work work) {
  Timings floor;
  Timings timings;
  for (auto _ : state) {
    floor.Add([&] { ReadAndSearch(conf.file(), wanted); });
    state.SetIterationTime(timings.Add([&] { work(conf); }));
  }
  state.counters["file_kB"] = static_cast<double>(std::filesystem::file_size(conf.file())) / 1e3;
  state.counters["floor_us"] = 1e6 * floor.Median();
  state.counters["times_floor"] = timings.Median() / floor.Median();
  state.counters["ns_per_queue"] = 1e9 * timings.Median() / static_cast<double>(state.range(0));
  state.counters["allocations"] = ia_bench::CountAllocations([&] { work(conf); });
}

void BM_LookupByUri(benchmark::State& state) {
  const SampleConf conf(state.range(0));
  BesideFloor(state, conf, conf.last_uri(), ia_bench::FindByUri);
}

void BM_LookupByName(benchmark::State& state) {
  const SampleConf conf(state.range(0));
  BesideFloor(state, conf, conf.last_name(), ia_bench::FindByName);
}

// Linear: what a queue costs stays about the same.
void BM_ListQueues(benchmark::State& state) {
  const SampleConf conf(state.range(0));
  BesideFloor(state, conf, conf.last_name(), ia_bench::ListQueues);
}

BENCHMARK(BM_LookupByUri)
    ->Name("lookup_by_uri")
    ->Arg(10)
    ->Arg(1000)
    ->Arg(100'000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_LookupByName)
    ->Name("lookup_by_name")
    ->Arg(10)
    ->Arg(1000)
    ->Arg(100'000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ListQueues)
    ->Name("list_queues")
    ->Arg(1000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
