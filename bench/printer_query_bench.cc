// Whole queries of a printer, and the flags of a function version.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/allocations.h"
#include "bench/sample_analyzer.h"
#include "bench/timings.h"

namespace {

using ia_bench::CountAllocations;
using ia_bench::Library;
using ia_bench::PpdStyle;
using ia_bench::ResultList;
using ia_bench::SampleAnalyzer;
using ia_bench::SamplePpd;
using ia_bench::Timings;
using ia_bench::WallTimings;

constexpr std::int64_t kEntries = 300;
constexpr int kQueriesPerThread = 200;

// With the fewest system calls that get the bytes.
void ReadDocuments(const std::string& folder) {
  char buffer[1 << 16];
  for (const ia_bench::SampleDocument& document : ia_bench::kDocuments) {
    const int descriptor = open((folder + "/" + document.file).c_str(), O_RDONLY | O_CLOEXEC);
    if (read(descriptor, buffer, sizeof buffer) <= 0) std::abort();
    close(descriptor);
  }
}

void BM_Query(benchmark::State& state, const Library& library, std::uint8_t reload) {
  SampleAnalyzer analyzer(library, {kEntries, PpdStyle::kUniform});
  analyzer.Query(ResultList(), 0);
  const std::string folder = library.WriteDocuments();
  Timings files;
  Timings query;
  for (auto _ : state) {
    files.Add([&] { ReadDocuments(folder); });
    const ResultList list;
    state.SetIterationTime(query.Add([&] { analyzer.Query(list, reload); }));
  }
  state.counters["read_files_us"] = 1e6 * files.Median();
  const ResultList list;
  state.counters["allocations"] = CountAllocations([&] { analyzer.Query(list, reload); });
}
BENCHMARK_CAPTURE(BM_Query, reload_reference, ia_bench::kReference, 1)
    ->Name("query/reload_reference")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, plain_reference, ia_bench::kReference, 0)
    ->Name("query/plain_reference")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, reload_fixed_answers, ia_bench::kFixedAnswers, 1)
    ->Name("query/reload_fixed_answers")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, plain_fixed_answers, ia_bench::kFixedAnswers, 0)
    ->Name("query/plain_fixed_answers")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void QueryOften(SampleAnalyzer& analyzer) {
  for (int i = 0; i < kQueriesPerThread; ++i) analyzer.Query(ResultList(), 1);
}

// Threads with an analyser each, beside one thread. When nothing is shared, they take as long as it
// does, times the threads for each core.
void BM_Threads(benchmark::State& state) {
  const auto count = static_cast<unsigned>(state.range(0));
  const SamplePpd ppd(kEntries, PpdStyle::kDriver);
  std::vector<std::unique_ptr<SampleAnalyzer>> analyzers;
  for (unsigned i = 0; i < count; ++i) {
    analyzers.push_back(std::make_unique<SampleAnalyzer>(ia_bench::kReference, ppd));
  }
  WallTimings one;
  WallTimings all;
  for (auto _ : state) {
    one.Add([&] { const std::jthread only(QueryOften, std::ref(*analyzers.front())); });
    state.SetIterationTime(all.Add([&] {
      std::vector<std::jthread> threads;
      for (const auto& analyzer : analyzers) threads.emplace_back(QueryOften, std::ref(*analyzer));
    }));
  }
  const unsigned cores = std::max(std::thread::hardware_concurrency(), 1U);
  state.counters["cores"] = cores;
  state.counters["times_one"] = all.Median() / one.Median();
  state.counters["times_ideal"] = all.Median() / one.Median() / std::max(1.0, 1.0 * count / cores);
}
BENCHMARK(BM_Threads)
    ->Name("threads")
    ->Arg(2)
    ->Arg(8)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// One pass over the option table: looking for one key in each, by the rule of the search.
void Pass(const AnalyzeContext& context) {
  for (const OptTable* node = context.ppd_options; node != nullptr; node = node->next) {
    benchmark::DoNotOptimize(strcasestr(node->key, "QVAnlz_FuncVer_UI"));
  }
}

void BM_FunctionVersion(benchmark::State& state, PpdStyle style) {
  SampleAnalyzer analyzer(ia_bench::kReference, {state.range(0), style});
  Timings pass;
  Timings version;
  for (auto _ : state) {
    pass.Add([&] { Pass(analyzer.context()); });
    const ResultList list;
    state.SetIterationTime(version.Add([&] { analyzer.FunctionVersion(list); }));
  }
  state.counters["pass_us"] = 1e6 * pass.Median();
  state.counters["times_pass"] = version.Median() / pass.Median();
  const ResultList list;
  state.counters["allocations"] = CountAllocations([&] { analyzer.FunctionVersion(list); });
}
BENCHMARK_CAPTURE(BM_FunctionVersion, uniform, PpdStyle::kUniform)
    ->Name("function_version")
    ->Arg(0)
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_FunctionVersion, driver, PpdStyle::kDriver)
    ->Name("function_version/driver")
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
