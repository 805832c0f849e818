#include "tests/support/scripted_read.h"

#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <deque>

namespace ia_test {

std::deque<ReadStep>& ReadSteps() {
  static std::deque<ReadStep> steps;
  return steps;
}

}  // namespace ia_test

extern "C" {

ssize_t __real_read(int descriptor, void* data, std::size_t size);

ssize_t __wrap_read(int descriptor, void* data, std::size_t size) {
  auto& steps = ia_test::ReadSteps();
  if (steps.empty()) return __real_read(descriptor, data, size);
  const ia_test::ReadStep step = steps.front();
  steps.pop_front();
  if (step.first) step.first();
  if (step.fails) {
    errno = step.error;
    return -1;
  }
  return __real_read(descriptor, data, std::min(size, step.most));
}

}  // extern "C"
