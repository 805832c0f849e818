#include "tests/info_common/ppd_test.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/print_queues.h"

namespace {

ia_test::SleepRecorder* current_recorder = nullptr;

}  // namespace

// The program's own definition comes before the C library's.
unsigned sleep(unsigned seconds) {
  if (current_recorder != nullptr) current_recorder->Sleep(seconds);
  return 0;
}

namespace ia_test {

std::string QueueOf(std::string_view ppd) {
  PrintQueues::Get().Add("queue", ppd);
  return "queue";
}

Entries ReadPpd(std::string_view ppd) {
  const Table table(info_common_optlist_create(QueueOf(ppd).c_str()));
  return EntriesOf(table.get());
}

PpdTest::PpdTest() { PrintQueues::Get(); }

void PpdTest::TearDown() { EXPECT_EQ(CountEntries(PrintQueues::Get().temporary_folder()), 0); }

SleepRecorder::SleepRecorder(std::function<void()> action) : action_(std::move(action)) {
  current_recorder = this;
}

SleepRecorder::~SleepRecorder() { current_recorder = nullptr; }

void SleepRecorder::Sleep(unsigned seconds) {
  seconds_.push_back(seconds);
  action_();
}

NoFreeDescriptor::NoFreeDescriptor() {
  getrlimit(RLIMIT_NOFILE, &usual_);
  const int lowest_free = open("/dev/null", O_RDONLY | O_CLOEXEC);
  close(lowest_free);
  const rlimit tight{static_cast<rlim_t>(lowest_free), usual_.rlim_max};
  setrlimit(RLIMIT_NOFILE, &tight);
}

void NoFreeDescriptor::Lift() { setrlimit(RLIMIT_NOFILE, &usual_); }

}  // namespace ia_test
