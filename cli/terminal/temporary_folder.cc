#include "cli/terminal/temporary_folder.h"

#include <signal.h>
#include <stdlib.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <system_error>
#include <thread>

namespace ia::cli {
namespace {

struct Registry {
  std::mutex mutex;
  std::set<std::string> paths;
};

// Never destroyed, because an interrupt can come while the process ends.
[[nodiscard]] Registry& Folders() {
  static auto* const folders = new Registry;
  return *folders;
}

// The thread that uses the folder may be adding a file, so one attempt may not suffice.
void RemoveWhole(const std::string& path) {
  std::error_code error;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    std::filesystem::remove_all(path, error);
    if (!error) return;
  }
}

// An ignored signal stays ignored, as nohup(1) wants.
[[nodiscard]] sigset_t WatchedSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
      sigaddset(&signals, number);
    }
  }
  return signals;
}

[[noreturn]] void WaitForInterrupt(const sigset_t& signals) {
  int number = SIGTERM;
  sigwait(&signals, &number);
  const std::lock_guard lock(Folders().mutex);
  for (const std::string& path : Folders().paths) RemoveWhole(path);
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  raise(number);
  std::abort();
}

}  // namespace

void RemoveTemporaryFoldersOnInterrupt() {
  const sigset_t signals = WatchedSignals();
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread([signals] { WaitForInterrupt(signals); }).detach();
}

void EndOnInterrupt() {
  const sigset_t signals = WatchedSignals();
  pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

std::string TemporaryFolderParent() {
  const char* const folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != '\0' ? folder : "/tmp";
}

TemporaryFolder::TemporaryFolder(const std::string& parent) {
  std::string path = std::filesystem::absolute(parent + "/info-analyze.XXXXXX");
  const std::lock_guard lock(Folders().mutex);
  if (mkdtemp(path.data()) == nullptr) throw std::system_error(errno, std::generic_category());
  path_ = path;
  Folders().paths.insert(path);
}

TemporaryFolder::~TemporaryFolder() {
  const std::lock_guard lock(Folders().mutex);
  RemoveWhole(path_);
  Folders().paths.erase(path_);
}

}  // namespace ia::cli
