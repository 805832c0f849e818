// The flag store at its capacity. Filling it is compared with one pass over the text that finds
// where names and values end. Finding a flag is compared with walking the names with strcmp(),
// which is all that an array in order of first appearance allows.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "bench/allocations.h"
#include "bench/sample_flags.h"
#include "bench/timings.h"

namespace {

using ia_bench::FlagName;
using ia_bench::FlagStore;
using ia_bench::kFlags;
using ia_bench::Timings;

constexpr int kCallsPerTiming = 16;
constexpr double kMinTime = 0.2 / kCallsPerTiming;

void Tokenise(const std::string& text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  while (at < end) {
    const auto left = static_cast<std::size_t>(end - at);
    const auto* const comma = static_cast<const char*>(std::memchr(at, ',', left));
    benchmark::DoNotOptimize(std::memchr(at, ':', static_cast<std::size_t>(comma - at)));
    at = comma + 1;
  }
}

void BM_FlagStoreFill(benchmark::State& state) {
  const std::string text = ia_bench::FlagText();
  Timings pass;
  Timings fill;
  for (auto _ : state) {
    pass.Add([&] { Tokenise(text); });
    FlagStore store;
    state.SetIterationTime(fill.Add([&] { store = ia_bench::FillFlagStore(text); }));
  }
  state.counters["pass_us"] = 1e6 * pass.Median();
  state.counters["times_pass"] = fill.Median() / pass.Median();
  state.counters["ns_per_flag"] = 1e9 * fill.Median() / kFlags;
  state.counters["allocations"] =
      ia_bench::CountAllocations([&] { ia_bench::FillFlagStore(text); });
}
BENCHMARK(BM_FlagStoreFill)
    ->Name("flag_store_fill")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

const FlagPair* Walk(const FlagInfo& store, const char* name) {
  for (const FlagPair* pair = store.entries; pair < store.entries + store.count; ++pair) {
    if (std::strcmp(pair->name, name) == 0) return pair;
  }
  return nullptr;
}

void BM_FlagStoreFind(benchmark::State& state, int number) {
  const FlagStore store = ia_bench::FillFlagStore(ia_bench::FlagText());
  const std::string name = FlagName(number);
  Timings walk;
  Timings find;
  for (auto _ : state) {
    walk.Add([&] { benchmark::DoNotOptimize(Walk(*store, name.c_str())); }, kCallsPerTiming);
    state.SetIterationTime(
        find.Add([&] { benchmark::DoNotOptimize(zflaginfo_find(store.get(), name.c_str())); },
                 kCallsPerTiming));
  }
  state.counters["walk_ns"] = 1e9 * walk.Median();
  state.counters["times_walk"] = find.Median() / walk.Median();
}
BENCHMARK_CAPTURE(BM_FlagStoreFind, first, 0)
    ->Name("flag_store_find/first")
    ->MinTime(kMinTime)
    ->UseManualTime();
BENCHMARK_CAPTURE(BM_FlagStoreFind, last, kFlags - 1)
    ->Name("flag_store_find/last")
    ->MinTime(kMinTime)
    ->UseManualTime();
BENCHMARK_CAPTURE(BM_FlagStoreFind, absent, kFlags)
    ->Name("flag_store_find/absent")
    ->MinTime(kMinTime)
    ->UseManualTime();

}  // namespace
