// Finding the last queue of a daemon configuration, and listing all of them, beside the floor:
// reading the same file into memory and searching it once.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <string>

#include "bench/limits.h"
#include "info_analyze/queue_list.h"
#include "queue/mqpd_conf.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

// How often the floor a lookup may cost.
constexpr double kMostTimesFloor = 2;

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};

// A cache folder whose configuration has so many queues.
class CacheFolder {
 public:
  explicit CacheFolder(int64_t queues)
      : folder_(fs::temp_directory_path() / ("info_analyze_bench_" + std::to_string(queues))),
        queues_(queues) {
    fs::create_directories(folder_ / "MQPD");
    std::ofstream conf(file());
    conf << "# Printer daemon configuration\n";
    for (int64_t i = 1; i <= queues; ++i) {
      conf << "<Printer " << QueueName(i) << ">\nDevicePath " << Uri(i)
           << "\nState Idle\nInfo Printer on the second floor\n</Printer>\n";
    }
  }
  ~CacheFolder() { fs::remove_all(folder_); }
  CacheFolder(const CacheFolder&) = delete;
  CacheFolder& operator=(const CacheFolder&) = delete;

  std::string path() const { return folder_; }
  std::string file() const { return folder_ / "MQPD/mqpd.conf"; }
  std::string last_name() const { return QueueName(queues_); }
  std::string last_uri() const { return Uri(queues_); }

 private:
  static std::string QueueName(int64_t i) { return "queue-" + std::to_string(i); }
  static std::string Uri(int64_t i) {
    return "net:printer-" + std::to_string(i) + ".example.com/PDLType=kappa2";
  }

  fs::path folder_;
  int64_t queues_;
};

// The quickest way to a file's bytes: its size is known beforehand.
std::size_t ReadAndSearch(const std::string& path, const std::string& wanted) {
  std::FILE* const file = std::fopen(path.c_str(), "r");
  struct stat status;
  fstat(fileno(file), &status);
  const auto size = static_cast<std::size_t>(status.st_size);
  const std::unique_ptr<char, FreeDeleter> text(static_cast<char*>(std::malloc(size)));
  const std::size_t length = std::fread(text.get(), 1, size, file);
  std::fclose(file);
  const void* const found = memmem(text.get(), length, wanted.data(), wanted.size());
  if (found == nullptr) std::abort();
  return length;
}

void FindByUri(const CacheFolder& cache) {
  char* name = nullptr;
  const std::string uri = cache.last_uri();
  if (ia::FindQueueOfUri(cache.path(), uri, &name) != 0) std::abort();
  if (name != cache.last_name()) std::abort();
  std::free(name);
}

void FindByName(const CacheFolder& cache) {
  FolderConf* const conf = ia::NewConf(cache.path());
  char* address = nullptr;
  char* protocol = nullptr;
  if (FolderPathForConf_GetAddressAndProtocol(conf, cache.last_name().c_str(), &address,
                                              &protocol) != 1) {
    std::abort();
  }
  std::free(address);
  std::free(protocol);
  FolderPathForConf_Terminate(conf);
}

void ListAll(const CacheFolder& cache) {
  FolderConf* const conf = ia::NewConf(cache.path());
  int32_t count = 0;
  MqpdQueueList_Terminate(MqpdQueueList_Initialize(conf, &count));
  if (count == 0) std::abort();
  FolderPathForConf_Terminate(conf);
}

template <class Work>
double Time(Work work) {
  const auto start = Clock::now();
  work();
  return Seconds(Clock::now() - start).count();
}

// Floor and work run in turn, so that both see the machine in one state; the shortest time of each
// is that without disturbance by others.
class BesideFloor {
 public:
  template <class Work>
  BesideFloor(benchmark::State& state, const CacheFolder& cache, Work work) {
    const std::string wanted = cache.last_uri();
    const std::string file = cache.file();
    for (auto _ : state) {
      floor_ = std::min(floor_, Time([&] { ReadAndSearch(file, wanted); }));
      const double seconds = Time([&] { work(cache); });
      shortest_ = std::min(shortest_, seconds);
      state.SetIterationTime(seconds);
    }
    state.counters["file_MB"] = static_cast<double>(fs::file_size(file)) / 1e6;
    state.counters["floor_us"] = 1e6 * floor_;
    state.counters["best_us"] = 1e6 * shortest_;
    state.counters["times_floor"] = times();
    state.counters["ns_per_queue"] = 1e9 * shortest_ / static_cast<double>(state.range(0));
  }

  double times() const { return shortest_ / floor_; }

 private:
  double floor_ = std::numeric_limits<double>::max();
  double shortest_ = std::numeric_limits<double>::max();
};

template <class Work>
void FindLast(benchmark::State& state, Work work) {
  const CacheFolder cache(state.range(0));
  const BesideFloor measured(state, cache, work);
  if (measured.times() <= kMostTimesFloor) return;
  ia_bench::g_is_limit_exceeded = true;
  state.SetLabel("TOO SLOW");
}

void BM_FindLastQueueByUri(benchmark::State& state) { FindLast(state, FindByUri); }
void BM_FindLastQueueByName(benchmark::State& state) { FindLast(state, FindByName); }

// Linear: what a queue costs stays about the same.
void BM_ListQueues(benchmark::State& state) {
  const CacheFolder cache(state.range(0));
  BesideFloor(state, cache, ListAll);
}

BENCHMARK(BM_FindLastQueueByUri)->Arg(10)->Arg(1000)->Arg(100'000)->UseManualTime();
BENCHMARK(BM_FindLastQueueByName)->Arg(10)->Arg(1000)->Arg(100'000)->UseManualTime();
BENCHMARK(BM_ListQueues)->Arg(1000)->Arg(10'000)->Arg(100'000)->UseManualTime();

}  // namespace
