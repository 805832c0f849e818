// Timings of an operation. The median counts, because other programs use the machine as well, and
// so does the thread's own time, without that in which others run. Operations that are compared run
// in turn, so that all see the machine in one state.
#ifndef BENCH_TIMINGS_H_
#define BENCH_TIMINGS_H_

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace ia_bench {

// Of the thread alone.
struct ThreadClock {
  static std::chrono::nanoseconds now() {
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  }
};

template <class Clock>
class TimingsBy {
 public:
  // Returns the seconds of one call. Calls too short for the clock are made several times.
  template <class Work>
  double Add(Work work, int calls = 1) {
    const auto start = Clock::now();
    for (int i = 0; i < calls; ++i) work();
    seconds_.push_back(std::chrono::duration<double>(Clock::now() - start).count() / calls);
    return seconds_.back();
  }

  [[nodiscard]] double Median() const {
    std::vector<double> seconds = seconds_;
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::ranges::nth_element(seconds, middle);
    return *middle;
  }

 private:
  std::vector<double> seconds_;
};

using Timings = TimingsBy<ThreadClock>;
using WallTimings = TimingsBy<std::chrono::steady_clock>;  // for work of several threads

}  // namespace ia_bench

#endif  // BENCH_TIMINGS_H_
