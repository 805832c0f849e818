// What read() does in a program that is linked with -Wl,--wrap=read.
#ifndef TESTS_SUPPORT_SCRIPTED_READ_H_
#define TESTS_SUPPORT_SCRIPTED_READ_H_

#include <cstddef>
#include <deque>
#include <functional>

namespace ia_test {

struct ReadStep {
  std::size_t most = 0;  // reads no more bytes; 0: the end of the file
  bool fails = false;    // then with this errno
  int error = 0;
  std::function<void()> first = {};  // called before
};

// The steps of the next calls, each used once; calls beyond them read plainly.
std::deque<ReadStep>& ReadSteps();

}  // namespace ia_test

#endif  // TESTS_SUPPORT_SCRIPTED_READ_H_
