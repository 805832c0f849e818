#ifndef TESTS_INFO_COMMON_PPD_TEST_H_
#define TESTS_INFO_COMMON_PPD_TEST_H_

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/info_common/table_model.h"

namespace ia_test {

// What the library read from a print queue that has this PPD.
Entries ReadPpd(std::string_view ppd);
// Makes a print queue with this PPD and gives its name.
std::string QueueOf(std::string_view ppd);

// Tests that read PPDs; none may leave a temporary file.
class PpdTest : public testing::Test {
 protected:
  PpdTest();
  void TearDown() override;
};

// Takes the place of sleep() in this program, so that waiting costs no time: counts the seconds of
// each call and runs an action instead.
class SleepRecorder {
 public:
  explicit SleepRecorder(std::function<void()> action = [] {});
  ~SleepRecorder();
  SleepRecorder(const SleepRecorder&) = delete;
  SleepRecorder& operator=(const SleepRecorder&) = delete;

  const std::vector<unsigned>& seconds() const { return seconds_; }
  void Sleep(unsigned seconds);

 private:
  std::function<void()> action_;
  std::vector<unsigned> seconds_;
};

// No file can be opened until Lift() or the end of the scope.
class NoFreeDescriptor {
 public:
  NoFreeDescriptor();
  ~NoFreeDescriptor() { Lift(); }
  NoFreeDescriptor(const NoFreeDescriptor&) = delete;
  NoFreeDescriptor& operator=(const NoFreeDescriptor&) = delete;

  void Lift();

 private:
  rlimit usual_;
};

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_PPD_TEST_H_
