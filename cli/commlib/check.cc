#include "cli/commlib/check.h"

#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "cli/commlib/clauses.h"
#include "cli/commlib/trial.h"
#include "cli/printer/child_process.h"

namespace ia::cli {
namespace {

// The first byte of a child's answer.
constexpr char kKeptMark = 'k';
constexpr char kBrokenMark = 'b';
constexpr char kNotTestedMark = 'n';

struct Unmapper {
  void operator()(LastStep* step) const noexcept { munmap(step, sizeof *step); }
};
using SharedStep = std::unique_ptr<LastStep, Unmapper>;

[[nodiscard]] SharedStep NewSharedStep() {
  void* const block =
      mmap(nullptr, sizeof(LastStep), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (block == MAP_FAILED) ThrowErrno();
  return SharedStep(new (block) LastStep);
}

// Of a child. A library that takes more is at fault.
constexpr rlim_t kMemory = rlim_t{1} << 30;

// The shadow memory of the sanitizers is larger than any limit.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kLimitsMemory = false;
#else
constexpr bool kLimitsMemory = true;
#endif

// What a library prints is no answer. A clause reads how much it is.
void PrepareChild() {
  const int file = memfd_create("output", MFD_CLOEXEC);
  if (file < 0) ThrowErrno();
  for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(file, stream);
  close(file);
  const rlimit no_core = {};
  setrlimit(RLIMIT_CORE, &no_core);
  const rlimit space = {.rlim_cur = kMemory, .rlim_max = kMemory};
  if (kLimitsMemory) setrlimit(RLIMIT_AS, &space);
}

void TryInChild(const Clause& clause, Trial& trial, int descriptor) {
  PrepareChild();
  std::string answer(1, kKeptMark);
  try {
    clause.try_library(trial);
  } catch (const Broken& fault) {
    answer = kBrokenMark + std::string(fault.what());
  } catch (const NotTested& reason) {
    answer = kNotTestedMark + std::string(reason.what());
  }
  WriteAll(descriptor, answer);
}

[[nodiscard]] std::string DescribeEnd(const ChildResult& end, std::chrono::seconds limit,
                                      const LastStep& step) {
  const std::string where = std::string(" in ") + step.Get();
  if (end.has_timed_out) {
    return "does not return within " + std::to_string(limit.count()) + " s" + where;
  }
  if (end.signal != 0) return "ends the process with " + NameOfSignal(end.signal) + where;
  return "ends the process with status " + std::to_string(end.status) + where;
}

[[nodiscard]] ClauseResult Try(const Clause& clause, const TriedLibrary& tried,
                               std::chrono::seconds limit) {
  const SharedStep step = NewSharedStep();
  const ChildResult end = RunInChild(limit, [&](int descriptor) {
    Trial trial(tried, *step);
    TryInChild(clause, trial, descriptor);
  });
  ClauseResult result = {.clause = clause, .outcome = Outcome::kBroken, .detail = ""};
  if (end.answer.empty() || end.has_timed_out) {
    result.detail = DescribeEnd(end, limit, *step);
    return result;
  }
  if (end.answer.front() == kKeptMark) result.outcome = Outcome::kKept;
  if (end.answer.front() == kNotTestedMark) result.outcome = Outcome::kNotTested;
  result.detail = end.answer.substr(1);
  return result;
}

}  // namespace

std::vector<ClauseResult> CheckLibrary(const TriedLibrary& tried, std::chrono::seconds limit) {
  std::vector<ClauseResult> results;
  const auto add = [&](const Clause& clause) {
    const bool can_be_loaded = std::ranges::none_of(results, [](const ClauseResult& earlier) {
      const std::string name = earlier.clause.name;
      return earlier.outcome == Outcome::kBroken &&
             (name == "load.library" || name == "load.entry-points");
    });
    results.push_back(can_be_loaded ? Try(clause, tried, limit)
                                    : ClauseResult{.clause = clause,
                                                   .outcome = Outcome::kNotTested,
                                                   .detail = "the library cannot be loaded"});
  };
  for (const auto family : {LoadingClauses(), ParsingClauses(), ReadingClauses(), WritingClauses(),
                            ProcessClauses(), DocumentClauses()}) {
    std::ranges::for_each(family, add);
  }
  return results;
}

}  // namespace ia::cli
