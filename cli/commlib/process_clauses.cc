#include <dlfcn.h>
#include <malloc.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <future>
#include <ios>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "cli/commlib/clauses.h"
#include "cli/commlib/reader.h"
#include "cli/commlib/sample_document.h"
#include "cli/commlib/trial.h"
#include "cli/printer/child_process.h"
#include "info_analyze/bidi.h"

namespace ia::cli {
namespace {

constexpr int kThreads = 4;
constexpr int kRoundsOfThread = 20;
constexpr int kWarmUps = 20;  // until caches of the library and of malloc() are full
constexpr int kRounds = 200;

// What the library must not change
// -----------------------------------------------------------------

void UseLibrary(Trial& trial) {
  BidiContext& library = trial.Load();
  const std::string sample = FindSample(trial);
  const Reader reader = Parse(trial, library, sample);
  ExpectSample(reader);
  reader.Destroy();
  trial.Unload(library);
}

void ExpectUnchanged(Trial& trial, const std::string& what, std::string (*state_of)()) {
  const std::string before = state_of();
  UseLibrary(trial);
  trial.Begin("using it changes the process:");
  const std::string after = state_of();
  if (after != before) throw Broken(what + " was " + before + " and is " + after);
}

[[nodiscard]] std::string Descriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::to_string(std::distance(begin(all), end(all)));
}

[[nodiscard]] std::string Locale() { return setlocale(LC_ALL, nullptr); }

[[nodiscard]] std::string Folder() { return std::filesystem::current_path(); }

[[nodiscard]] std::string Mask() {
  const mode_t mask = umask(0);
  umask(mask);
  std::ostringstream octal;
  octal << '0' << std::oct << mask;
  return octal.str();
}

[[nodiscard]] std::string Signals() {
  std::string state;
  for (int number = 1; number < SIGRTMIN; ++number) {
    struct sigaction action = {};
    if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_DFL) continue;
    const char* const how = action.sa_handler == SIG_IGN ? " ignored" : " handled";
    state += (state.empty() ? "" : ", ") + NameOfSignal(number) + how;
  }
  return state.empty() ? "none" : state;
}

[[nodiscard]] std::string Environment() {
  std::string state;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    state += *variable;
    state += '\n';
  }
  return state;
}

[[nodiscard]] std::string OutputSize() {
  std::fflush(nullptr);
  struct stat status = {};
  fstat(STDOUT_FILENO, &status);
  return std::to_string(status.st_size) + " bytes";
}

void TryDescriptors(Trial& trial) {
  ExpectUnchanged(trial, "the number of descriptors", Descriptors);
}
void TryLocale(Trial& trial) { ExpectUnchanged(trial, "the locale", Locale); }
void TryFolder(Trial& trial) { ExpectUnchanged(trial, "the working folder", Folder); }
void TryMask(Trial& trial) { ExpectUnchanged(trial, "the file mode mask", Mask); }
void TrySignals(Trial& trial) { ExpectUnchanged(trial, "the signals with an action", Signals); }
void TryOutput(Trial& trial) { ExpectUnchanged(trial, "the output", OutputSize); }

void TryEnvironment(Trial& trial) {
  const std::string before = Environment();
  UseLibrary(trial);
  if (Environment() != before) throw Broken("the environment is changed");
}

// Memory
// -------------------------------------------------------------------------------------------

// Under the address sanitizer, malloc() has no statistics of its own.
[[nodiscard]] std::size_t BytesInUse() {
  using Count = std::size_t (*)();
  static const auto sanitizer =
      reinterpret_cast<Count>(dlsym(RTLD_DEFAULT, "__sanitizer_get_current_allocated_bytes"));
  if (sanitizer != nullptr) return sanitizer();
  const auto heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

// A round that leaks loses the smallest block of malloc(), which has at least this size. What
// malloc() keeps for itself grows less.
constexpr std::size_t kSmallestBlock = 16;

template <class Round>
void ExpectNoLeak(Round round) {
  for (int i = 0; i < kWarmUps; ++i) round();
  const std::size_t before = BytesInUse();
  for (int i = 0; i < kRounds; ++i) round();
  const std::size_t after = BytesInUse();
  if (after >= before + kRounds * kSmallestBlock) {
    throw Broken("memory in use grows by " + std::to_string((after - before) / kRounds) +
                 " bytes each time");
  }
}

void TryLeakOfReaders(Trial& trial) {
  const std::string sample = FindSample(trial);
  ExpectNoLeak([&] {
    const Reader reader = Parse(trial, trial.library(), sample);
    reader.OpenDict("list", 0, true);
    reader.Destroy();
  });
}

void TryLeakOfValues(Trial& trial) {
  const Reader reader = OpenSample(trial);
  ExpectNoLeak([&] {
    ExpectSample(reader);
    reader.Text("absent", kMissing);
  });
}

void TryLeakOfRefused(Trial& trial) {
  const std::string noise(64, '\xff');
  trial.Begin("qvxmlwrapGet_New() of bytes that are no document");
  ExpectNoLeak([&] {
    (void)Bidi_qvxmlwrapGet_New(&trial.library(), noise.data(), static_cast<int>(noise.size()));
  });
}

void TryLeakOfWriters(Trial& trial) {
  ExpectNoLeak([&] {
    QvXmlWriter* const writer = Bidi_qvxmlwrapSet_New(&trial.library());
    if (writer == nullptr) throw NotTested("qvxmlwrapSet_New() gives no writer");
    (void)Bidi_qvxmlwrapSet_Long(&trial.library(), writer, "number", 1);
    (void)Bidi_qvxmlwrapSet_Destroy(&trial.library(), writer, 0, 0, 0);
  });
}

// Threads
// ------------------------------------------------------------------------------------------

void ReadOften(Trial& trial, BidiContext& library, const std::string& sample) {
  for (int round = 0; round < kRoundsOfThread; ++round) {
    const Reader reader = Parse(trial, library, sample);
    ExpectSample(reader);
    reader.Destroy();
  }
}

void TryThreads(Trial& trial) {
  BidiContext& library = trial.library();
  const std::string sample = FindSample(trial);
  std::vector<std::future<void>> threads;
  threads.reserve(kThreads);
  for (int i = 0; i < kThreads; ++i) {
    threads.push_back(std::async(std::launch::async, [&] { ReadOften(trial, library, sample); }));
  }
  for (std::future<void>& thread : threads) thread.get();
}

// A thread can read on what a different thread began.
void TryOtherThread(Trial& trial) {
  const Reader reader = OpenSample(trial);
  reader.OpenDict("list", 1, true);
  std::async(std::launch::async, [&] {
    reader.Long("number", "101");
    reader.CloseDict();
    ExpectSample(reader);
    reader.Destroy();
  }).get();
}

constexpr auto kClauses = std::to_array<Clause>({
    {"thread.readers", "Several threads can use readers of their own", TryThreads},
    {"thread.moved", "A reader can go from one thread to a different one", TryOtherThread},
    {"leak.readers", "qvxmlwrapGet_Destroy() releases all memory of a reader", TryLeakOfReaders},
    {"leak.values", "Reading values leaks no memory", TryLeakOfValues},
    {"leak.refused", "A refused document leaks no memory", TryLeakOfRefused},
    {"leak.writers", "qvxmlwrapSet_Destroy() releases all memory of a writer", TryLeakOfWriters},
    {"process.descriptors", "The library closes what it opens", TryDescriptors},
    {"process.output", "The library prints nothing", TryOutput},
    {"process.locale", "The library does not change the locale", TryLocale},
    {"process.signals", "The library does not change what signals do", TrySignals},
    {"process.folder", "The library does not change the working folder", TryFolder},
    {"process.mask", "The library does not change the file mode mask", TryMask},
    {"process.environment", "The library does not change the environment", TryEnvironment},
});

}  // namespace

std::span<const Clause> ProcessClauses() { return kClauses; }

}  // namespace ia::cli
