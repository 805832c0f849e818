#include "cli/printer/worker_pool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using ia::cli::RunInWorkers;
using ia::cli::TaskResult;
using ia::cli::WorkerLimits;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Results = std::vector<std::pair<std::string, TaskResult>>;

Results DoTasks(const WorkerLimits& limits, const std::vector<std::string>& tasks,
                const ia::cli::Work& work) {
  Results results;
  auto next = tasks.begin();
  RunInWorkers(
      limits, work, [&] { return next != tasks.end() ? std::optional(*next++) : std::nullopt; },
      [&](const std::string& task, const TaskResult& result) {
        results.emplace_back(task, result);
      });
  return results;
}

// Does what its task says.
std::string Obey(const std::string& task) {
  if (task == "crash") {
    signal(SIGSEGV, SIG_DFL);
    raise(SIGSEGV);
  }
  if (task == "hang") {
    for (;;) pause();
  }
  if (task == "leave") _exit(3);
  if (task == "throw") throw std::runtime_error("");
  if (task == "short") throw std::bad_alloc();
  if (task == "print") (void)!write(STDOUT_FILENO, "printed", 7);
  return "done " + task;
}

TEST(WorkerPool, AnswersInTheOrderOfTheTasks) {
  std::vector<std::string> tasks;
  for (int i = 0; i < 1000; ++i) tasks.push_back(std::to_string(i));
  for (const int workers : {1, 2, 7}) {
    const Results results = DoTasks(
        {.workers = workers, .seconds = seconds(20), .memory = 0}, tasks, [](const auto& task) {
          usleep(static_cast<useconds_t>(std::atoi(task.c_str()) % 7 * 100));
          return Obey(task);
        });
    ASSERT_THAT(results, SizeIs(tasks.size()));
    for (std::size_t i = 0; i < tasks.size(); ++i) {
      ASSERT_EQ(results[i].first, tasks[i]);
      ASSERT_EQ(results[i].second.answer, "done " + tasks[i]);
      ASSERT_EQ(results[i].second.fault, "");
    }
  }
}

TEST(WorkerPool, LongAnswersArrive) {
  const std::string text(3'000'000, 'x');
  const Results results =
      DoTasks({.workers = 2, .seconds = seconds(20), .memory = 0}, {"a", text, "b"},
              [](const std::string& task) { return task + "!"; });
  EXPECT_EQ(results.at(1).second.answer, text + "!");
}

TEST(WorkerPool, WithoutTasksNothingRuns) {
  EXPECT_THAT(DoTasks({.workers = 3, .seconds = seconds(1), .memory = 0}, {}, Obey), IsEmpty());
}

TEST(WorkerPool, ATaskThatFailsCostsNoOther) {
  for (const int workers : {1, 2}) {
    const Results results = DoTasks(
        {.workers = workers, .seconds = seconds(2), .memory = 0},
        {"1", "crash", "2", "leave", "3", "hang", "4", "throw", "5", "short", "print", "6"}, Obey);
    ASSERT_THAT(results, SizeIs(12));
    for (const auto& [task, result] : results) {
      EXPECT_EQ(result.answer, result.fault.empty() ? "done " + task : "");
    }
    EXPECT_EQ(results[1].second.fault, "it was ended by SIGSEGV");
    EXPECT_EQ(results[3].second.fault, "it ended with status 3");
    EXPECT_EQ(results[5].second.fault, "it took longer than 2 s");
    EXPECT_EQ(results[7].second.fault, "it ended with status 1");
    EXPECT_THAT(results[9].second.fault, HasSubstr("memory"));
    for (const std::size_t good : {0, 2, 4, 6, 8, 10, 11})
      EXPECT_EQ(results[good].second.fault, "");
  }
}

// The worker that did other tasks before may have been damaged by one of them.
TEST(WorkerPool, ACrashAfterOtherTasksIsTriedAgain) {
  int done = 0;  // of each worker
  const Results results = DoTasks({.workers = 1, .seconds = seconds(5), .memory = 0},
                                  {"1", "2", "3", "4"}, [&](const std::string& task) {
                                    if (++done > 1) Obey("crash");
                                    return Obey(task);
                                  });
  for (const auto& [task, result] : results) EXPECT_EQ(result.answer, "done " + task);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(WorkerPool, MemoryIsLimited) {
  constexpr std::size_t kLimit = std::size_t{1} << 30;
  const Results results = DoTasks({.workers = 1, .seconds = seconds(20), .memory = kLimit},
                                  {"grab", "1"}, [](const std::string& task) {
                                    while (task == "grab") {
                                      void* const memory = std::malloc(1 << 20);
                                      if (memory == nullptr) std::abort();
                                      std::memset(memory, 1, 1 << 20);
                                    }
                                    return Obey(task);
                                  });
  EXPECT_EQ(results.at(0).second.fault, "it needed more than 1024 MiB of memory");
  EXPECT_EQ(results.at(1).second.answer, "done 1");
}
#endif

}  // namespace
