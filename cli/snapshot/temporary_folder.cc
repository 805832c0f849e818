#include "cli/snapshot/temporary_folder.h"

#include <fcntl.h>
#include <linux/prctl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>

namespace ia::cli {
namespace {

constexpr int kUnknownReason = EIO;
constexpr std::size_t kBlock = 4096;

// Signals that end the parent do not end the remover; one does, but only when it waits for it.
void BlockSignals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
  signal(SIGTERM, SIG_DFL);  // may be ignored, and could not be waited for
}

void WaitForSigterm() {
  sigset_t end;
  sigemptyset(&end);
  sigaddset(&end, SIGTERM);
  int number = 0;
  sigwait(&end, &number);
}

// Makes the folder, writes its path to the announcement, and removes it when the parent ends or
// says so. Only the process that removes it makes it: no signal can come between. Holds nothing
// that its parent has open: a reader of the parent's output would wait for it.
[[noreturn]] void MakeAndRemove(std::string path, pid_t parent, int announcement) {
  BlockSignals();
  setsid();
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  if (getppid() != parent) _exit(kUnknownReason);
  if (mkdtemp(path.data()) == nullptr) _exit(errno);
  const bool is_announced = write(announcement, path.data(), path.size()) > 0;
  close_range(0, ~0U, 0);
  if (is_announced) WaitForSigterm();
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
  _exit(is_announced ? 0 : kUnknownReason);
}

[[noreturn]] void Fail(int reason) { throw std::system_error(reason, std::generic_category()); }

[[nodiscard]] std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, kBlock> buffer;
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

[[nodiscard]] int ExitStatusOf(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 0;
}

}  // namespace

TemporaryFolder::TemporaryFolder(const std::string& parent) : owner_(getpid()) {
  const auto pattern = std::filesystem::absolute(parent) / ".info-analyze.XXXXXX";
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) Fail(errno);
  remover_ = fork();
  if (remover_ == 0) MakeAndRemove(pattern.string(), owner_, ends[1]);
  const int reason = errno;
  close(ends[1]);
  if (remover_ > 0) path_ = ReadAll(ends[0]);
  close(ends[0]);
  if (remover_ < 0) Fail(reason);
  if (!path_.empty()) return;
  const int status = ExitStatusOf(remover_);
  Fail(status != 0 ? status : kUnknownReason);
}

TemporaryFolder::~TemporaryFolder() {
  if (getpid() != owner_) return;
  kill(remover_, SIGTERM);
  static_cast<void>(ExitStatusOf(remover_));
}

}  // namespace ia::cli
