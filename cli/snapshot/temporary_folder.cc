#include "cli/snapshot/temporary_folder.h"

#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace ia::cli {
namespace {

class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

void RemoveFolder(const std::string& path) {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

// In a session of its own, where no terminal signals it. Holds nothing that its parent has open:
// a reader of the parent's output would wait for it.
[[noreturn]] void RemoveAfter(pid_t parent, const std::string& path) {
  setsid();
  close_range(0, ~0U, 0);
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  sigset_t end;
  sigemptyset(&end);
  sigaddset(&end, SIGTERM);
  int signal = 0;
  if (getppid() == parent) sigwait(&end, &signal);
  RemoveFolder(path);
  _exit(0);
}

[[nodiscard]] std::string MakeFolder(const std::string& parent) {
  std::string path = (std::filesystem::absolute(parent) / ".info-analyze.XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) throw std::system_error(errno, std::generic_category());
  return path;
}

}  // namespace

TemporaryFolder::TemporaryFolder(const std::string& parent) : owner_(getpid()) {
  const BlockedSignals until_it_can_be_removed;
  path_ = MakeFolder(parent);
  remover_ = fork();
  if (remover_ == 0) RemoveAfter(owner_, path_);
  if (remover_ > 0) return;
  const int reason = errno;
  RemoveFolder(path_);
  throw std::system_error(reason, std::generic_category());
}

TemporaryFolder::~TemporaryFolder() {
  if (getpid() != owner_) return;
  kill(remover_, SIGTERM);
  while (waitpid(remover_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace ia::cli
