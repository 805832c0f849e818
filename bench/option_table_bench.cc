// Reading a queue's PPD, compared with libcups reading the same lines and libcups parsing the same
// PPD.
#include <benchmark/benchmark.h>
#include <cups/ppd.h>
#include <string.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>

#include "bench/allocations.h"
#include "bench/sample_analyzer.h"
#include "bench/sample_ppd.h"
#include "bench/timings.h"
#include "info_analyze/option_table.h"

namespace {

using ia_bench::CountAllocations;
using ia_bench::FetchPpd;
using ia_bench::PpdStyle;
using ia_bench::ReadLines;
using ia_bench::SamplePpd;
using ia_bench::Timings;

void CreateTable(const SamplePpd& ppd) {
  OptTable* const table = info_common_optlist_create(ppd.queue().c_str());
  if (table == nullptr) std::abort();
  info_common_optlist_destroy(table);
}

// libcups 2 deprecates these calls without offering other ways to take a PPD apart.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void TakeApart(const SamplePpd& ppd) {
  ppd_file_t* const file = ppdOpenFile(ppd.file().c_str());
  if (file == nullptr) std::abort();
  ppdClose(file);
}

#pragma GCC diagnostic pop

// What no table can do without: reading the file, and the list's own allocations. The texts are
// copied from a list.
void ReadAndAllocate(const SamplePpd& ppd, const OptTable* table) {
  std::ifstream file(ppd.file(), std::ios::binary);
  std::string bytes(std::filesystem::file_size(ppd.file()), '\0');
  if (!file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) std::abort();
  OptTable* copy = nullptr;
  for (; table != nullptr; table = table->next) {
    auto* const node = static_cast<OptTable*>(std::malloc(sizeof(OptTable)));
    *node = {.key = strdup(table->key), .value = strdup(table->value), .next = copy};
    copy = node;
  }
  info_common_optlist_destroy(copy);
}

// The fetching is libcups' own and is taken off.
void BM_OptionTable(benchmark::State& state, PpdStyle style) {
  const SamplePpd ppd(state.range(0), style);
  OptTable* const model = info_common_optlist_create(ppd.queue().c_str());
  Timings physical;
  Timings bare;
  Timings fetch;
  Timings libcups;
  Timings table;
  for (auto _ : state) {
    physical.Add([&] { ReadAndAllocate(ppd, model); });
    bare.Add([&] { ReadLines(ppd); });
    fetch.Add([&] { FetchPpd(ppd); });
    libcups.Add([&] { TakeApart(ppd); });
    state.SetIterationTime(table.Add([&] { CreateTable(ppd); }));
  }
  info_common_optlist_destroy(model);
  const double own = table.Median() - fetch.Median();
  state.counters["fetch_us"] = 1e6 * fetch.Median();
  state.counters["physical_us"] = 1e6 * physical.Median();
  state.counters["libcups_us"] = 1e6 * libcups.Median();
  state.counters["own_us"] = 1e6 * own;
  state.counters["bare_us"] = 1e6 * bare.Median();
  state.counters["times_bare"] = own / bare.Median();
  state.counters["times_libcups"] = own / libcups.Median();
  state.counters["ns_per_entry"] = 1e9 * own / static_cast<double>(state.range(0));
  state.counters["allocations"] = CountAllocations([&] { CreateTable(ppd); });
}
BENCHMARK_CAPTURE(BM_OptionTable, uniform, PpdStyle::kUniform)
    ->Name("option_table")
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_OptionTable, driver, PpdStyle::kDriver)
    ->Name("option_table/driver")
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

constexpr int kGrowth = 10;  // of the entries, from 3,000 to 30,000

// As many small tables as make a large one: what the large one left in the heap, and drove out of
// the caches, slows the first of them.
void BM_OptionTableGrowth(benchmark::State& state, PpdStyle style) {
  const SamplePpd small(3000, style);
  const SamplePpd large(3000 * kGrowth, style);
  Timings small_fetch;
  Timings small_table;
  Timings large_fetch;
  Timings large_table;
  for (auto _ : state) {
    small_fetch.Add([&] { FetchPpd(small); }, kGrowth);
    small_table.Add([&] { CreateTable(small); }, kGrowth);
    large_fetch.Add([&] { FetchPpd(large); });
    state.SetIterationTime(large_table.Add([&] { CreateTable(large); }));
  }
  state.counters["times"] =
      (large_table.Median() - large_fetch.Median()) / (small_table.Median() - small_fetch.Median());
}
BENCHMARK_CAPTURE(BM_OptionTableGrowth, uniform, PpdStyle::kUniform)
    ->Name("option_table_growth")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_OptionTableGrowth, driver, PpdStyle::kDriver)
    ->Name("option_table_growth/driver")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// An analyser, beside fetching its PPD and reading the lines.
void BM_Create(benchmark::State& state, PpdStyle style) {
  const SamplePpd ppd(state.range(0), style);
  const ia_bench::SampleAnalyzer analyzer(ia_bench::kReference, ppd);
  Timings floor;
  Timings create;
  for (auto _ : state) {
    floor.Add([&] {
      FetchPpd(ppd);
      ReadLines(ppd);
    });
    ia_bench::AnalyzerPtr created;
    state.SetIterationTime(create.Add([&] { created = analyzer.Create(); }));
  }
  state.counters["times_floor"] = create.Median() / floor.Median();
  state.counters["allocations"] = CountAllocations([&] { return analyzer.Create(); });
}
BENCHMARK_CAPTURE(BM_Create, uniform, PpdStyle::kUniform)
    ->Name("create")
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Create, driver, PpdStyle::kDriver)
    ->Name("create/driver")
    ->Arg(300)
    ->Arg(3000)
    ->Arg(30000)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

}  // namespace
