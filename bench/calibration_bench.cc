// The calibration questions: copying default curves, beside the floor of allocating and copying as
// many bytes, and reading a job's options, beside the floor of walking its option table.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "info_analyze/calibration.h"
#include "info_analyze/option_table.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// What a question may cost: this many times the bare work, and this much beside it.
constexpr double kBareFactor = 3;
constexpr double kSecondsBeside = 1e-6;
// Single calls are too short for the clock.
constexpr int kCallsPerTiming = 16;

constexpr std::size_t kSetBytes = IA_CALIB_SET_VALUES * sizeof(std::uint16_t);

class Analyser {
 public:
  explicit Analyser(std::string model) : model_(std::move(model)) {
    context_.driver_name = model_.data();
  }
  Analyser(const Analyser&) = delete;
  Analyser& operator=(const Analyser&) = delete;

  const AnalyzeContext* context() const { return &context_; }

 private:
  std::string model_;
  AnalyzeContext context_ = {};
};

// A table of other options whose last ones are the job's: nothing is found early.
class OptionTable {
 public:
  explicit OptionTable(std::int64_t entries) {
    for (const auto& [key, value] :
         {std::pair{"Resolution", "1200x600dpi"}, std::pair{"QVHTPattern9", "124"},
          std::pair{"QVHalftone", "pattern9"}, std::pair{"QVColorMode", "mono"}}) {
      info_common_optlist_additem_front(&head_, key, value);
    }
    for (std::int64_t i = 4; i < entries; ++i) Prepend("QVOther" + std::to_string(i));
  }
  ~OptionTable() { info_common_optlist_destroy(head_); }
  OptionTable(const OptionTable&) = delete;
  OptionTable& operator=(const OptionTable&) = delete;

  const OptTable* head() const { return head_; }

 private:
  // Without the search for the key that the library's insertion makes.
  void Prepend(const std::string& key) {
    OptTable* rest = std::exchange(head_, nullptr);
    info_common_optlist_additem_front(&head_, key.c_str(), "value");
    head_->next = rest;
  }

  OptTable* head_ = nullptr;
};

template <class Work>
double Time(Work work) {
  const auto start = Clock::now();
  for (int i = 0; i < kCallsPerTiming; ++i) work();
  return Seconds(Clock::now() - start).count() / kCallsPerTiming;
}

// The bare work runs in turn with the question, so that both see the machine in one state.
template <class Question, class Bare>
void Compare(benchmark::State& state, Question question, Bare bare_work) {
  double bare = 0;
  double asked = 0;
  for (auto _ : state) {
    bare += Time(bare_work);
    const double seconds = Time(question);
    asked += seconds;
    state.SetIterationTime(seconds);
  }
  const auto runs = static_cast<double>(state.iterations());
  state.counters["bare_ns"] = 1e9 * bare / runs;
  state.counters["times_bare"] = asked / bare;
  state.counters["of_limit"] = asked / runs / (kBareFactor * bare / runs + kSecondsBeside);
}

void CopyBytes(const std::uint16_t* values) {
  void* const set = std::malloc(kSetBytes);
  std::memcpy(set, values, kSetBytes);
  benchmark::DoNotOptimize(set);
  std::free(set);
}

void BM_CreateCalib3Defaults(benchmark::State& state) {
  const Analyser analyser("RB-J9");
  const OptionTable options(4);
  const auto create = [&] {
    Calib3Info info = {};
    Analyze_Info_CreateDefault_Calib3Info(analyser.context(), options.head(), &info);
    benchmark::DoNotOptimize(info);
    std::free(info.first_set);
    std::free(info.second_set);
  };
  Compare(state, create, [] {
    CopyBytes(PinePoplar_Def_Calib_2bit);
    CopyBytes(PinePoplar_Def_Calib_2bit + IA_CALIB_SET_VALUES);
  });
}
BENCHMARK(BM_CreateCalib3Defaults)->UseManualTime();

void WalkTable(const OptTable* head, const char* key) {
  for (const OptTable* node = head; node != nullptr; node = node->next) {
    benchmark::DoNotOptimize(std::strcmp(node->key, key));
  }
}

// Four options are read: the bare work is four walks.
void BM_GetCalib4Settings(benchmark::State& state) {
  const Analyser analyser("RA-H2-MLT-JP");
  const OptionTable options(state.range(0));
  const auto ask = [&] {
    std::uint32_t flag = 0;
    std::uint32_t x_dpi = 0;
    std::uint32_t y_dpi = 0;
    std::uint32_t words[IA_CALIB4_WORD_COUNT];
    Analyze_Info_GetCalib4Settings(analyser.context(), options.head(), &flag, &x_dpi, &y_dpi,
                                   words);
    benchmark::DoNotOptimize(words);
  };
  Compare(state, ask, [&] {
    for (const char* key : {"QVColorMode", "QVHalftone", "QVHTPattern9", "Resolution"}) {
      WalkTable(options.head(), key);
    }
  });
}
BENCHMARK(BM_GetCalib4Settings)->Arg(30)->Arg(300)->Arg(3000)->UseManualTime();

}  // namespace
