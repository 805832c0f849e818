// A process that uses the library for years does not grow and leaks no descriptors, mappings or
// temporary files.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/integration/sample_users.h"

namespace ia_test {
namespace {

constexpr int kWarmUpRounds = 50;

// The heap may grow by this much in all, because of fragmentation.
constexpr std::size_t kPadding = 16 << 10;

// A sanitizer's allocator keeps mapping memory for itself.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#elif defined(__has_feature)
constexpr bool kIsSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kIsSanitized = false;
#endif

int Rounds() {
  const char* const rounds = std::getenv("IA_LONG_RUN_ROUNDS");
  return rounds != nullptr ? std::atoi(rounds) : 1000;
}

struct Holdings {
  std::ptrdiff_t descriptors;
  std::ptrdiff_t mappings;
  std::ptrdiff_t temporary_files;
  std::size_t heap;

  static Holdings Now() {
    const auto entries = [](const std::string& folder) {
      return std::distance(std::filesystem::directory_iterator(folder), {});
    };
    std::ifstream maps("/proc/self/maps");
    const auto lines = std::count(std::istreambuf_iterator<char>(maps), {}, '\n');
    maps.close();
    return {entries("/proc/self/fd"), lines, entries(PrintQueues::Get().temporary_folder()),
            mallinfo2().uordblks};
  }
};

std::ostream& operator<<(std::ostream& out, const Holdings& holdings) {
  return out << holdings.descriptors << " descriptors, " << holdings.mappings << " mappings, "
             << holdings.temporary_files << " temporary files, " << holdings.heap
             << " bytes of heap";
}

TEST(LongRun, LeaksNothing) {
  const std::vector<SampleQueue> queues = SampleQueue::All();
  const auto ask = [&](int rounds) {
    for (int round = 0; round < rounds; ++round) {
      ASSERT_TRUE(AskOnce(queues[static_cast<std::size_t>(round) % queues.size()])) << round;
    }
  };
  ask(kWarmUpRounds);
  const Holdings before = Holdings::Now();
  ask(Rounds());
  const Holdings after = Holdings::Now();
  std::cout << Rounds() << " rounds: " << after << "\n";
  EXPECT_EQ(after.descriptors, before.descriptors);
  if (!kIsSanitized) {
    EXPECT_LE(after.mappings, before.mappings);
  }
  EXPECT_EQ(after.temporary_files, before.temporary_files);
  EXPECT_LE(after.heap, before.heap + kPadding);
}

}  // namespace
}  // namespace ia_test
