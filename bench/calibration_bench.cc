// Calibration: copying default curves, compared with allocating and copying as many bytes; and
// reading a job's options, compared with walking its option table.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "bench/allocations.h"
#include "bench/sample_job.h"
#include "bench/timings.h"

namespace {

using ia_bench::SampleJob;
using ia_bench::Timings;

// What a question may cost: this many times the bare work, and this much beside it.
constexpr double kBareFactor = 3;
constexpr double kSecondsBeside = 1e-6;
constexpr int kCallsPerTiming = 16;
constexpr double kMinTime = 0.2 / kCallsPerTiming;

constexpr std::size_t kSetBytes = IA_CALIB_SET_VALUES * sizeof(std::uint16_t);

template <class Question, class Bare>
void Compare(benchmark::State& state, Question question, Bare bare_work) {
  Timings bare;
  Timings asked;
  for (auto _ : state) {
    bare.Add(bare_work, kCallsPerTiming);
    state.SetIterationTime(asked.Add(question, kCallsPerTiming));
  }
  state.counters["bare_ns"] = 1e9 * bare.Median();
  state.counters["times_bare"] = asked.Median() / bare.Median();
  state.counters["of_allowed"] = asked.Median() / (kBareFactor * bare.Median() + kSecondsBeside);
  state.counters["allocations"] = ia_bench::CountAllocations(question);
}

void CopyBytes(const std::uint16_t* values) {
  void* const set = std::malloc(kSetBytes);
  std::memcpy(set, values, kSetBytes);
  benchmark::DoNotOptimize(set);
  std::free(set);
}

void BM_CalibrationDefaults(benchmark::State& state) {
  const SampleJob job("RB-J9", 4);
  Compare(
      state, [&] { job.CreateDefaults(); },
      [] {
        CopyBytes(PinePoplar_Def_Calib_2bit);
        CopyBytes(PinePoplar_Def_Calib_2bit + IA_CALIB_SET_VALUES);
      });
}
BENCHMARK(BM_CalibrationDefaults)->Name("calibration_defaults")->MinTime(kMinTime)->UseManualTime();

void WalkTable(const OptTable* head, const char* key) {
  for (const OptTable* node = head; node != nullptr; node = node->next) {
    benchmark::DoNotOptimize(std::strcmp(node->key, key));
  }
}

// Four options are read: the bare work is four walks.
void BM_CalibrationSettings(benchmark::State& state) {
  const SampleJob job("RA-H2-MLT-JP", state.range(0));
  Compare(
      state, [&] { job.GetSettings(); },
      [&] {
        for (const char* key : {"QVColorMode", "QVHalftone", "QVHTPattern9", "Resolution"}) {
          WalkTable(job.options(), key);
        }
      });
}
BENCHMARK(BM_CalibrationSettings)
    ->Name("calibration_settings")
    ->MinTime(kMinTime)
    ->Arg(30)
    ->Arg(300)
    ->Arg(3000)
    ->UseManualTime();

}  // namespace
