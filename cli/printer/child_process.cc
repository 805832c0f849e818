#include "cli/printer/child_process.h"

#include <fcntl.h>
#include <linux/prctl.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/poll.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/terminal/temporary_folder.h"

namespace ia::cli {
namespace {

using Clock = std::chrono::steady_clock;

// A grandchild can keep the pipe open, so the child's end is looked for between reads.
constexpr std::chrono::milliseconds kPause(50);

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { close(number_); }
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_;
};

[[noreturn]] void BeChild(int descriptor, const std::function<void(int)>& task, pid_t parent) {
  BeginChild(parent);
  try {
    task(descriptor);
  } catch (const std::exception&) {
    _exit(1);
  }
  _exit(0);
}

// The wait status of a child that has ended.
[[nodiscard]] std::optional<int> EndOf(pid_t child, int options) {
  int status = 0;
  pid_t ended = -1;
  do {
    ended = waitpid(child, &status, options);
  } while (ended < 0 && errno == EINTR);
  return ended == child ? std::optional(status) : std::nullopt;
}

// False at the end of the answer.
[[nodiscard]] bool ReadSome(int descriptor, std::chrono::milliseconds patience,
                            std::string& answer) {
  pollfd request = {.fd = descriptor, .events = POLLIN, .revents = 0};
  if (poll(&request, 1, static_cast<int>(patience.count())) <= 0) return true;
  std::array<char, 65536> buffer;
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count < 0) return errno == EINTR;
  answer.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0 && answer.size() <= kMaxAnswer;
}

// What the child wrote between its last read and its end.
void ReadRest(int descriptor, std::string& answer) {
  fcntl(descriptor, F_SETFL, O_NONBLOCK);
  std::size_t before = 0;
  do {
    before = answer.size();
  } while (ReadSome(descriptor, std::chrono::milliseconds(0), answer) && answer.size() > before);
}

// The wait status; nothing when the child ran to its deadline or closed the pipe before its end.
[[nodiscard]] std::optional<int> ReadUntilEnd(pid_t child, int descriptor,
                                              Clock::time_point deadline, std::string& answer) {
  using std::chrono::milliseconds;
  bool is_open = true;
  for (Clock::time_point now = Clock::now(); now < deadline; now = Clock::now()) {
    const auto left = std::chrono::ceil<milliseconds>(deadline - now);
    if (is_open) {
      is_open = ReadSome(descriptor, std::min(left, kPause), answer);
    } else {
      poll(nullptr, 0, 1);
    }
    if (answer.size() > kMaxAnswer) return std::nullopt;
    const std::optional<int> status = EndOf(child, WNOHANG);
    if (status && is_open) ReadRest(descriptor, answer);
    if (status) return status;
  }
  return std::nullopt;
}

}  // namespace

void ThrowErrno() { throw std::system_error(errno, std::generic_category()); }

void BeginChild(pid_t parent) {
  setpgid(0, 0);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);  // it ended before prctl()
  EndOnInterrupt();
}

void WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) ThrowErrno();
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

ChildResult RunInChild(std::chrono::seconds limit, const std::function<void(int)>& task) {
  const Clock::time_point deadline = Clock::now() + limit;
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) ThrowErrno();
  const Descriptor reading(ends[0]);
  std::optional<Descriptor> writing(std::in_place, ends[1]);
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child < 0) ThrowErrno();
  if (child == 0) BeChild(ends[1], task, parent);
  writing.reset();
  ChildResult result;
  std::optional<int> status = ReadUntilEnd(child, reading.number(), deadline, result.answer);
  kill(-child, SIGKILL);
  if (!status) {
    result.has_timed_out = true;
    kill(child, SIGKILL);
    status = EndOf(child, 0);
  }
  if (status && WIFSIGNALED(*status)) result.signal = WTERMSIG(*status);
  if (status && WIFEXITED(*status)) result.status = WEXITSTATUS(*status);
  return result;
}

std::string NameOfSignal(int number) {
  const char* const name = sigabbrev_np(number);
  return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(number);
}

}  // namespace ia::cli
