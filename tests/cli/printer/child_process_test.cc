#include "cli/printer/child_process.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

using ia::cli::ChildResult;
using ia::cli::NameOfSignal;
using ia::cli::RunInChild;
using ia::cli::WriteAll;
using std::chrono::seconds;
using std::chrono::steady_clock;

// A process that has ended, but was not waited for, has the state Z.
bool Runs(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string number;
  std::string name;
  std::string state;
  return file >> number >> name >> state && state != "Z";
}

TEST(ChildProcess, ReturnsWhatItWrites) {
  const std::string text = std::string(1'000'000, 'x') + '\0' + "end";
  const ChildResult child = RunInChild(seconds(20), [&](int pipe) { WriteAll(pipe, text); });
  EXPECT_EQ(child.answer, text);
  EXPECT_FALSE(child.has_timed_out);
  EXPECT_EQ(child.signal, 0);
  EXPECT_EQ(child.status, 0);
}

TEST(ChildProcess, EndsAtItsTimeLimitWithWhatItWrote) {
  const auto start = steady_clock::now();
  const ChildResult child = RunInChild(seconds(1), [](int descriptor) {
    WriteAll(descriptor, "first");
    for (;;) pause();
  });
  EXPECT_TRUE(child.has_timed_out);
  EXPECT_EQ(child.answer, "first");
  EXPECT_LT(steady_clock::now() - start, seconds(2));
}

TEST(ChildProcess, EndsAtItsTimeLimitAfterClosingThePipe) {
  const ChildResult child = RunInChild(seconds(1), [](int descriptor) {
    close(descriptor);
    for (;;) pause();
  });
  EXPECT_TRUE(child.has_timed_out);
}

TEST(ChildProcess, ReportsTheSignalThatEndedIt) {
  const ChildResult child = RunInChild(seconds(20), [](int) {
    signal(SIGSEGV, SIG_DFL);
    raise(SIGSEGV);
  });
  EXPECT_EQ(NameOfSignal(child.signal), "SIGSEGV");
  EXPECT_FALSE(child.has_timed_out);
}

TEST(ChildProcess, ReportsItsExitStatus) {
  EXPECT_EQ(RunInChild(seconds(20), [](int) { _exit(7); }).status, 7);
  EXPECT_EQ(RunInChild(seconds(20), [](int) { throw std::runtime_error(""); }).status, 1);
}

// A grandchild that holds the pipe keeps nobody waiting, and is ended.
TEST(ChildProcess, TakesItsOwnChildrenWithIt) {
  const auto start = steady_clock::now();
  const ChildResult child = RunInChild(seconds(20), [](int descriptor) {
    const pid_t grandchild = fork();
    if (grandchild == 0) {
      for (;;) pause();
    }
    WriteAll(descriptor, std::to_string(grandchild));
  });
  EXPECT_LT(steady_clock::now() - start, seconds(5));
  const pid_t grandchild = std::stoi(child.answer);
  for (int i = 0; i < 500 && Runs(grandchild); ++i) usleep(10'000);
  EXPECT_FALSE(Runs(grandchild));
}

TEST(ChildProcess, IsEndedWhenItWritesWithoutEnd) {
  const ChildResult child = RunInChild(seconds(60), [](int descriptor) {
    const std::string text(1'000'000, 'x');
    for (;;) WriteAll(descriptor, text);
  });
  EXPECT_LT(child.answer.size(), std::size_t{80} << 20);
}

}  // namespace
