#include "cli/apply/apply_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "cli/terminal/failure.h"

namespace ia::cli {

ApplyLock::ApplyLock(const std::string& folder, std::chrono::seconds patience) {
  const std::string path = folder + "/apply.lock";
  descriptor_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (descriptor_ < 0) {
    throw Failure(ExitStatus::kOther, {.action = "cannot open",
                                       .object = path,
                                       .cause = std::strerror(errno),
                                       .hint = "run as a user who may administer the queues"});
  }
  const auto end = std::chrono::steady_clock::now() + patience;
  while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() >= end) {
      close(descriptor_);
      throw Failure(ExitStatus::kOther, {.object = path,
                                         .cause = "another apply still changes queues",
                                         .hint = "run it again when that one has ended"});
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
}

ApplyLock::~ApplyLock() { close(descriptor_); }

}  // namespace ia::cli
