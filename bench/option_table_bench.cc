// Reading a queue's PPD into an option table, beside the floor: libcups reading the same lines.
#include <benchmark/benchmark.h>
#include <cups/file.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "bench/server_root.h"
#include "info_analyze/option_table.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// What a table of n entries may cost: this many times the bare loop, and this much an entry.
constexpr double kBareLoopFactor = 2.5;
constexpr double kSecondsPerEntry = 1e-6;

constexpr int64_t kFirstNumber = 1'000'000;

std::string QueueName(int64_t entries) { return "bench-" + std::to_string(entries); }

std::string Ppd(int64_t entries) {
  std::string ppd = "*PPD-Adobe: \"4.3\"\n";
  for (int64_t i = 0; i < entries; ++i) {
    // Of one width, so that no key begins another, and in no order.
    ppd += "*QVAnlz_Entry" + std::to_string(kFirstNumber + i * 7919 % entries) + ": \"value " +
           std::to_string(i) + "\"\n";
  }
  return ppd;
}

void ReadLines(const fs::path& path) {
  cups_file_t* const file = cupsFileOpen(path.c_str(), "r");
  char line[512];
  while (cupsFileGets(file, line, sizeof line) != nullptr) benchmark::DoNotOptimize(line[0]);
  cupsFileClose(file);
}

template <class Work>
double Time(Work work) {
  const auto start = Clock::now();
  work();
  return Seconds(Clock::now() - start).count();
}

// The bare loop runs in turn with the table, so that both see the machine in one state.
void BM_CreateOptionTable(benchmark::State& state) {
  const int64_t entries = state.range(0);
  const std::string queue = QueueName(entries);
  const fs::path ppd = ia_bench::ServerRoot::Get().WritePpd(queue, Ppd(entries));
  double bare = 0;
  double table = 0;
  for (auto _ : state) {
    bare += Time([&] { ReadLines(ppd); });
    const double seconds =
        Time([&] { info_common_optlist_destroy(info_common_optlist_create(queue.c_str())); });
    table += seconds;
    state.SetIterationTime(seconds);
  }
  const auto runs = static_cast<double>(state.iterations());
  const double limit =
      kBareLoopFactor * bare / runs + kSecondsPerEntry * static_cast<double>(entries);
  state.counters["bare_ms"] = 1e3 * bare / runs;
  state.counters["times_bare"] = table / bare;
  state.counters["of_limit"] = table / runs / limit;
  state.counters["ns_per_entry"] = 1e9 * table / runs / static_cast<double>(entries);
}
BENCHMARK(BM_CreateOptionTable)
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
