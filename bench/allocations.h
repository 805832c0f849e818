// Counts the allocations of the code that is linked into the program: the linker redirects them
// here. Allocations by libc, libcups or a communication library do not count.
#ifndef BENCH_ALLOCATIONS_H_
#define BENCH_ALLOCATIONS_H_

#include <cstddef>

namespace ia_bench {

// Of this thread since its start.
[[nodiscard]] std::size_t AllocationsSoFar();

template <class Work>
[[nodiscard]] double CountAllocations(Work work) {
  const std::size_t before = AllocationsSoFar();
  work();
  return static_cast<double>(AllocationsSoFar() - before);
}

}  // namespace ia_bench

#endif  // BENCH_ALLOCATIONS_H_
