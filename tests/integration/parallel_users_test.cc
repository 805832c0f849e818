// Different analysers are used by different threads at the same time, each as if it were alone.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <thread>
#include <vector>

#include "tests/integration/sample_users.h"

namespace ia_test {
namespace {

int Rounds() {
  const char* const rounds = std::getenv("IA_PARALLEL_ROUNDS");
  return rounds != nullptr ? std::atoi(rounds) : 100;
}

TEST(ParallelUsers, EachGetItsOwnRightAnswers) {
  const std::vector<SampleQueue> queues = SampleQueue::All();
  std::atomic<int> right = 0;
  std::array<std::thread, 8> users;
  for (std::size_t user = 0; user < users.size(); ++user) {
    users[user] = std::thread([&, user] {
      for (int round = 0; round < Rounds(); ++round) {
        right += AskOnce(queues[(user + static_cast<std::size_t>(round)) % queues.size()]);
      }
    });
  }
  for (std::thread& user : users) user.join();
  EXPECT_EQ(right, static_cast<int>(users.size()) * Rounds());
}

}  // namespace
}  // namespace ia_test
