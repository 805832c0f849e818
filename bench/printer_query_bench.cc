// Asking a printer, beside the floor: the same calls of the communication library alone. The rest
// is the library's own share.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "bench/document_calls.h"
#include "bench/document_replay.h"
#include "bench/sample_printer.h"
#include "bench/server_root.h"
#include "info_analyze/info_analyze.h"

namespace {

using ia_bench::DocumentCall;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr char kQueue[] = "sample";
constexpr std::uint32_t kFunctionVersion = 0x310;

template <auto kRelease>
struct Releaser {
  template <class T>
  void operator()(T* object) const {
    kRelease(object);
  }
};
using BidiPtr = std::unique_ptr<BidiContext, Releaser<Bidi_Destroy>>;
using AnalyzerPtr = std::unique_ptr<AnalyzeContext, Releaser<Analyze_Destroy>>;

// The documents of the sample printer, in the form of one of the communication libraries.

struct XmlValue {
  std::string attribute;

  std::string operator()(std::int32_t number) const {
    return "<long" + attribute + ">" + std::to_string(number) + "</long>";
  }
  std::string operator()(const char* text) const {
    return "<string" + attribute + ">" + text + "</string>";
  }
  template <class Element>
  std::string operator()(std::span<Element> elements) const {
    std::string xml = "<array" + attribute + ">";
    for (const Element& element : elements) xml += XmlValue{""}(element);
    return xml + "</array>";
  }
};

std::string ToXml(const ia_bench::Fields& fields) {
  std::string xml;
  for (const auto& [key, value] : fields) {
    xml += std::visit(XmlValue{" key=\"" + std::string(key) + "\""}, value) + "\n";
  }
  return xml;
}

std::string ToXml(const ia_bench::SampleDocument& document) {
  std::string xml = "<document version=\"1\">" + ToXml(document.fields);
  for (const ia_bench::Fields& item : document.list) {
    xml += "<dict key=\"list\">" + ToXml(item) + "</dict>\n";
  }
  return xml + "</document>\n";
}

std::string ToDigit(const ia_bench::SampleDocument& document) {
  return std::to_string(&document - ia_bench::kDocuments.data());
}

struct Library {
  const char* driver_folder;
  const char* document_folder;
  std::string (*content)(const ia_bench::SampleDocument& document);

  [[nodiscard]] std::string Path() const {
    return std::string(driver_folder) + "/Bidi/libmqpd_util.so";
  }
  [[nodiscard]] std::string WriteDocuments() const {
    const ia_bench::ServerRoot& root = ia_bench::ServerRoot::Get();
    for (const ia_bench::SampleDocument& document : ia_bench::kDocuments) {
      root.WriteFile(document_folder + ("/" + std::string(document.file)), content(document));
    }
    return root.folder() / document_folder;
  }
};

const Library kReference{IA_REFERENCE_DRIVER, "reference", ToXml};
const Library kFixedAnswers{IA_FIXED_ANSWERS_DRIVER, "fixed-answers", ToDigit};

class Analyzer {
 public:
  explicit Analyzer(const Library& library) : Analyzer(library, library.driver_folder) {}
  Analyzer(const Library& library, const char* driver_folder)
      : documents_(library.WriteDocuments()), bidi_(Bidi_Create(driver_folder)) {
    ia_bench::ServerRoot::Get().WritePpd(kQueue, ia_bench::kPpd);
    analyzer_ = Create();
  }

  [[nodiscard]] AnalyzerPtr Create() const {
    return AnalyzerPtr(Analyze_Create(bidi_.get(), kQueue, documents_.c_str()));
  }

  // Runs action(analyser, list) with a fresh list and returns what it took, without the list.
  template <class Action>
  double Time(Action action) {
    OptionList* list = nullptr;
    info_common_optlist_additem_front(&list, "", "");
    const auto start = Clock::now();
    const std::int32_t status = action(analyzer_.get(), list);
    const double seconds = Seconds(Clock::now() - start).count();
    OptionList_Terminate(&list);
    if (status != 0) std::abort();
    return seconds;
  }

 private:
  std::string documents_;
  BidiPtr bidi_;
  AnalyzerPtr analyzer_;
};

double TimeQuery(Analyzer& analyzer, std::uint8_t reload) {
  return analyzer.Time([&](AnalyzeContext* context, OptionList* list) {
    return Analyze_Info_FromPrinter(context, list, reload);
  });
}

// Records the calls of a library.
class Recorder {
 public:
  explicit Recorder(const Library& library)
      : environment_(setenv(ia_bench::kRecordedLibrary, library.Path().c_str(), 1)),
        handle_(dlopen(IA_RECORDING_DRIVER "/Bidi/libmqpd_util.so", RTLD_NOW)),
        analyzer_(library, IA_RECORDING_DRIVER) {}
  ~Recorder() { dlclose(handle_); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  std::vector<DocumentCall> Query(std::uint8_t reload) {
    auto* const calls =
        reinterpret_cast<ia_bench::RecordedCallsFunction>(dlsym(handle_, ia_bench::kRecordedCalls));
    calls().clear();
    TimeQuery(analyzer_, reload);
    return calls();
  }

 private:
  int environment_;
  void* handle_;
  Analyzer analyzer_;
};

void Replay(ia_bench::DocumentReplay& replay, std::span<const DocumentCall> calls) {
  for (const DocumentCall& call : calls) replay.Make(call);
}

double TimeReplay(ia_bench::DocumentReplay& replay, std::span<const DocumentCall> calls) {
  const auto start = Clock::now();
  Replay(replay, calls);
  return Seconds(Clock::now() - start).count();
}

void BM_Query(benchmark::State& state, const Library& library, std::uint8_t reload) {
  std::vector<DocumentCall> load;
  std::vector<DocumentCall> calls;
  {
    Recorder recorder(library);
    load = recorder.Query(0);
    calls = recorder.Query(reload);
  }
  ia_bench::DocumentReplay replay(library.Path());
  Replay(replay, load);
  Analyzer analyzer(library);
  TimeQuery(analyzer, 0);
  double query = 0;
  double alone = 0;
  for (auto _ : state) {
    alone += TimeReplay(replay, calls);
    const double seconds = TimeQuery(analyzer, reload);
    query += seconds;
    state.SetIterationTime(seconds);
  }
  const auto runs = static_cast<double>(state.iterations());
  state.counters["calls"] = static_cast<double>(calls.size());
  state.counters["calls_us"] = 1e6 * alone / runs;
  state.counters["own_us"] = 1e6 * (query - alone) / runs;
  state.counters["times_calls"] = query / alone;
}
BENCHMARK_CAPTURE(BM_Query, reload_reference, kReference, 1)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, plain_reference, kReference, 0)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, reload_fixed_answers, kFixedAnswers, 1)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_Query, plain_fixed_answers, kFixedAnswers, 0)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void BM_CreateAnalyzer(benchmark::State& state, const Library& library) {
  const Analyzer analyzer(library);
  for (auto _ : state) benchmark::DoNotOptimize(analyzer.Create());
}
BENCHMARK_CAPTURE(BM_CreateAnalyzer, reference, kReference)->Unit(benchmark::kMicrosecond);

// One pass over the option table: what looking at every key takes.
double TimePass(const AnalyzeContext& context) {
  const auto start = Clock::now();
  for (const OptTable* node = context.ppd_options; node != nullptr; node = node->next) {
    benchmark::DoNotOptimize(std::strstr(node->key, "QVAnlz_FuncVer_UI"));
  }
  return Seconds(Clock::now() - start).count();
}

void BM_FunctionVersion(benchmark::State& state) {
  Analyzer analyzer(kReference);
  double pass = 0;
  double total = 0;
  for (auto _ : state) {
    const double seconds = analyzer.Time([&](AnalyzeContext* context, OptionList* list) {
      return Analyze_Info_FromFunctionVersion(context, kFunctionVersion, list);
    });
    total += seconds;
    state.SetIterationTime(seconds);
    analyzer.Time([&](AnalyzeContext* context, OptionList*) {
      pass += TimePass(*context);
      return 0;
    });
  }
  state.counters["times_pass"] = total / pass;
}
BENCHMARK(BM_FunctionVersion)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
