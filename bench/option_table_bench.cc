// Reading a queue's PPD into an option table, beside libcups reading the same lines and beside
// libcups taking the same PPD apart.
#include <benchmark/benchmark.h>
#include <cups/cups.h>
#include <cups/file.h>
#include <cups/ppd.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <utility>

#include "bench/limits.h"
#include "bench/server_root.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/bidi.h"
#include "info_analyze/option_table.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// What a table may cost, without the fetching of the PPD: so many times the bare loop over its
// lines, and of what libcups needs to take it apart.
struct Limit {
  int64_t entries;
  double times_bare;
  double times_libcups;
};
constexpr Limit kLimits[] = {{300, 2.0, 0.25}, {3000, 4.4, 0.42}, {30000, 8, 0.27}};

constexpr double kMostTimesFetchAndBare = 1.3;
constexpr int64_t kFirstNumber = 1'000'000;
constexpr int kOrdinaryBlocks = 100;
constexpr int kChoicesOfABlock = 22;

std::string QueueName(int64_t entries) { return "bench-" + std::to_string(entries); }

// A PPD as drivers have them: some 2,500 lines of ordinary options and so many of the analyser's.
std::string Ppd(int64_t entries) {
  std::string ppd =
      "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*FileVersion: \"1.0\"\n"
      "*LanguageVersion: English\n*LanguageEncoding: ISOLatin1\n*PCFileName: \"BENCH.PPD\"\n"
      "*Manufacturer: \"Sample\"\n*Product: \"(Sample)\"\n*ModelName: \"Sample\"\n"
      "*ShortNickName: \"Sample\"\n*NickName: \"Sample\"\n*PSVersion: \"(3010.0) 0\"\n"
      "*LanguageLevel: \"3\"\n*ColorDevice: True\n*DefaultColorSpace: RGB\n"
      "*FileSystem: False\n*Throughput: \"1\"\n";
  for (int block = 0; block < kOrdinaryBlocks; ++block) {
    const std::string option = "Option" + std::to_string(block);
    ppd += "*OpenUI *" + option + "/Option " + std::to_string(block) + ": PickOne\n*Default" +
           option + ": Choice0\n";
    for (int choice = 0; choice < kChoicesOfABlock; ++choice) {
      ppd += "*" + option + " Choice" + std::to_string(choice) + "/Choice " +
             std::to_string(choice) + ": \"<</Setting " + std::to_string(choice) +
             ">>setpagedevice\"\n";
    }
    ppd += "*CloseUI: *" + option + "\n";
  }
  for (int64_t i = 0; i < entries; ++i) {
    // Of one width, so that no key begins another, and in no order.
    ppd += "*QVAnlz_Entry" + std::to_string(kFirstNumber + i * 7919 % entries) + ": \"value " +
           std::to_string(i) + "\"\n";
  }
  return ppd;
}

fs::path WritePpd(int64_t entries) {
  return ia_bench::ServerRoot::Get().WritePpd(QueueName(entries), Ppd(entries));
}

void ReadLines(const fs::path& path) {
  cups_file_t* const file = cupsFileOpen(path.c_str(), "r");
  char line[512];
  while (cupsFileGets(file, line, sizeof line) != nullptr) benchmark::DoNotOptimize(line[0]);
  cupsFileClose(file);
}

// libcups 2 deprecates these calls without offering other ways to a queue's whole PPD.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

void Fetch(const std::string& queue) { unlink(cupsGetPPD(queue.c_str())); }

void TakeApart(const fs::path& path) {
  ppd_file_t* const ppd = ppdOpenFile(path.c_str());
  if (ppd == nullptr) std::abort();
  ppdClose(ppd);
}

#pragma GCC diagnostic pop

template <class Work>
double Time(Work work) {
  const auto start = Clock::now();
  work();
  return Seconds(Clock::now() - start).count();
}

void CheckLimit(benchmark::State& state, bool is_kept) {
  if (is_kept) return;
  ia_bench::g_is_limit_exceeded = true;
  state.SetLabel("TOO SLOW");
}

// All of them run in turn, so that they see the machine in one state.
void BM_CreateOptionTable(benchmark::State& state) {
  const Limit& limit = kLimits[state.range(0)];
  const std::string queue = QueueName(limit.entries);
  const fs::path ppd = WritePpd(limit.entries);
  double bare = 0;
  double fetch = 0;
  double libcups = 0;
  double table = 0;
  for (auto _ : state) {
    bare += Time([&] { ReadLines(ppd); });
    fetch += Time([&] { Fetch(queue); });
    libcups += Time([&] { TakeApart(ppd); });
    const double seconds =
        Time([&] { info_common_optlist_destroy(info_common_optlist_create(queue.c_str())); });
    table += seconds;
    state.SetIterationTime(seconds);
  }
  const double own = table - fetch;
  state.counters["entries"] = static_cast<double>(limit.entries);
  state.counters["times_bare"] = own / bare;
  state.counters["times_libcups"] = own / libcups;
  state.counters["ns_per_entry"] =
      1e9 * own / static_cast<double>(state.iterations()) / static_cast<double>(limit.entries);
  CheckLimit(state, own <= limit.times_bare * bare && own <= limit.times_libcups * libcups);
}
BENCHMARK(BM_CreateOptionTable)->DenseRange(0, 2)->UseManualTime()->Unit(benchmark::kMillisecond);

// An analyser for the middle one of them, beside fetching the PPD and the bare loop.
void BM_CreateAnalyzerOfLargePpd(benchmark::State& state) {
  const Limit& limit = kLimits[0];
  const std::string queue = QueueName(limit.entries);
  const fs::path ppd = WritePpd(limit.entries);
  BidiContext* const bidi = Bidi_Create(IA_REFERENCE_DRIVER);
  double floor = 0;
  double analyzer = 0;
  for (auto _ : state) {
    floor += Time([&] {
      Fetch(queue);
      ReadLines(ppd);
    });
    AnalyzeContext* created = nullptr;
    const double seconds = Time([&] { created = Analyze_Create(bidi, queue.c_str(), "/nowhere"); });
    Analyze_Destroy(created);
    analyzer += seconds;
    state.SetIterationTime(seconds);
  }
  Bidi_Destroy(bidi);
  state.counters["times_floor"] = analyzer / floor;
  CheckLimit(state, analyzer <= kMostTimesFetchAndBare * floor);
}
BENCHMARK(BM_CreateAnalyzerOfLargePpd)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
