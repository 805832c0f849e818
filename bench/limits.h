// The limits of all benchmarks.
#ifndef BENCH_LIMITS_H_
#define BENCH_LIMITS_H_

#include <span>
#include <string>

namespace ia_bench {

struct Limit {
  std::string benchmark;
  std::string counter;
  double at_most;  // for the median over the repetitions
};

std::span<const Limit> Limits();

}  // namespace ia_bench

#endif  // BENCH_LIMITS_H_
