#include "cli/printer/worker_pool.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/printer/child_process.h"

namespace ia::cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kTasksAhead = 64;  // of each worker

// Texts between processes: their size, and their bytes --------------------------------------------

// False when the reader has ended.
bool Send(int descriptor, std::string_view text) {
  const std::uint64_t size = text.size();
  std::string frame(reinterpret_cast<const char*>(&size), sizeof size);
  frame.append(text);
  for (std::string_view rest = frame; !rest.empty();) {
    const ssize_t sent = send(descriptor, rest.data(), rest.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return false;
    rest.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

// Nothing until a whole text is there.
[[nodiscard]] std::optional<std::string> TakeFrame(std::string& received) {
  std::uint64_t size = 0;
  if (received.size() < sizeof size) return std::nullopt;
  std::memcpy(&size, received.data(), sizeof size);
  if (received.size() - sizeof size < size) return std::nullopt;
  std::string text = received.substr(sizeof size, size);
  received.erase(0, sizeof size + size);
  return text;
}

// False at the end.
[[nodiscard]] bool Receive(int descriptor, std::string& received) {
  std::array<char, 65536> buffer;
  const ssize_t count = read(descriptor, buffer.data(), buffer.size());
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  received.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0;
}

// The worker process ------------------------------------------------------------------------------

void LeadNowhere() {
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nowhere < 0) return;
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    dup2(nowhere, descriptor);
  }
}

void Limit(std::size_t memory) {
  const rlimit no_core = {.rlim_cur = 0, .rlim_max = 0};
  setrlimit(RLIMIT_CORE, &no_core);
  if (memory == 0) return;
  const rlimit space = {.rlim_cur = memory, .rlim_max = memory};
  setrlimit(RLIMIT_AS, &space);
}

// Ends with this status when memory is short.
constexpr int kOutOfMemory = 100;

[[noreturn]] void BeWorker(int descriptor, const Work& work) {
  try {
    std::string received;
    for (;;) {
      const std::optional<std::string> task = TakeFrame(received);
      const bool goes_on = task ? Send(descriptor, work(*task)) : Receive(descriptor, received);
      if (!goes_on) _exit(0);
    }
  } catch (const std::bad_alloc&) {
    _exit(kOutOfMemory);
  } catch (const std::exception&) {
    _exit(1);
  }
}

// The pool ----------------------------------------------------------------------------------------

struct Task {
  std::string text;
  std::optional<TaskResult> result;
  bool is_second_try = false;
};

class Worker {
 public:
  Worker(const WorkerLimits& limits, const Work& work) : limits_(limits) {
    std::array<int, 2> ends = {};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) ThrowErrno();
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ == 0) {
      close(ends[0]);
      Start(ends[1], work, parent);
    }
    const int error = errno;
    close(ends[1]);
    descriptor_ = ends[0];
    if (process_ > 0) return;
    close(descriptor_);
    throw std::system_error(error, std::generic_category());
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  ~Worker() {
    close(descriptor_);
    kill(-process_, SIGKILL);
    kill(process_, SIGKILL);
    int ignored = 0;
    while (!has_ended_ && waitpid(process_, &ignored, 0) < 0 && errno == EINTR) {
    }
  }

  [[nodiscard]] int descriptor() const { return descriptor_; }
  [[nodiscard]] Task* task() const { return task_; }
  [[nodiscard]] Clock::time_point deadline() const { return deadline_; }
  [[nodiscard]] bool IsFresh() const { return done_ == 0; }

  void Start(Task& task) {
    task_ = &task;
    deadline_ = Clock::now() + limits_.seconds;
    (void)Send(descriptor_, task.text);  // the next read finds out that the worker has ended
  }

  // True when the worker can go on.
  [[nodiscard]] bool Read() {
    const bool is_open = Receive(descriptor_, received_);
    if (std::optional<std::string> answer = TakeFrame(received_)) {
      task_->result = TaskResult{.answer = std::move(*answer), .fault = ""};
      task_ = nullptr;
      ++done_;
      return true;
    }
    return is_open && received_.size() <= kMaxAnswer;
  }

  // Why it has ended, or has to.
  [[nodiscard]] std::string FindFault() {
    if (Clock::now() >= deadline_) {
      return "it took longer than " + std::to_string(limits_.seconds.count()) + " s";
    }
    kill(process_, SIGKILL);  // changes nothing for a worker that ends already
    int status = 0;
    rusage usage = {};
    while (wait4(process_, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    has_ended_ = true;
    const std::size_t used = static_cast<std::size_t>(usage.ru_maxrss) << 10;
    const bool is_short = limits_.memory != 0 && used > limits_.memory / 4 * 3;
    if (is_short || (WIFEXITED(status) && WEXITSTATUS(status) == kOutOfMemory)) {
      return "it needed more than " + std::to_string(limits_.memory >> 20) + " MiB of memory";
    }
    if (WIFSIGNALED(status)) return "it was ended by " + NameOfSignal(WTERMSIG(status));
    return "it ended with status " + std::to_string(WEXITSTATUS(status));
  }

 private:
  [[noreturn]] void Start(int descriptor, const Work& work, pid_t parent) const {
    BeginChild(parent);
    LeadNowhere();
    Limit(limits_.memory);
    BeWorker(descriptor, work);
  }

  const WorkerLimits& limits_;
  pid_t process_ = -1;
  int descriptor_ = -1;
  bool has_ended_ = false;
  Task* task_ = nullptr;
  Clock::time_point deadline_;
  std::string received_;
  int done_ = 0;
};

class Pool {
 public:
  Pool(const WorkerLimits& limits, const Work& work, const NextTask& next_task,
       const UseResult& use_result)
      : limits_(limits),
        work_(work),
        next_task_(next_task),
        use_result_(use_result),
        workers_(static_cast<std::size_t>(limits.workers)) {}

  void Run() {
    for (;;) {
      for (auto& worker : workers_) Occupy(worker);
      UseResults();
      if (tasks_.empty() && !has_more_) return;
      Wait();
    }
  }

 private:
  void Occupy(std::unique_ptr<Worker>& worker) {
    if (worker && worker->task() != nullptr) return;
    Task* const task = FindTask();
    if (task == nullptr) return;
    if (!worker || (task->is_second_try && !worker->IsFresh())) {
      worker.reset();
      worker = std::make_unique<Worker>(limits_, work_);
    }
    worker->Start(*task);
  }

  // Null when no task waits.
  [[nodiscard]] Task* FindTask() {
    if (!again_.empty()) {
      Task* const task = again_.front();
      again_.pop_front();
      return task;
    }
    if (!has_more_ || tasks_.size() >= kTasksAhead * workers_.size()) return nullptr;
    std::optional<std::string> text = next_task_();
    has_more_ = text.has_value();
    if (!text) return nullptr;
    return &tasks_.emplace_back(Task{.text = std::move(*text), .result = {}});
  }

  void UseResults() {
    while (!tasks_.empty()) {
      const Task& task = tasks_.front();
      if (!task.result) return;
      use_result_(task.text, *task.result);
      tasks_.pop_front();
    }
  }

  void Wait() {
    using std::chrono::milliseconds;
    std::vector<pollfd> requests;
    Clock::time_point deadline = Clock::time_point::max();
    for (const auto& worker : workers_) {
      const bool is_busy = worker && worker->task() != nullptr;
      requests.push_back(
          {.fd = is_busy ? worker->descriptor() : -1, .events = POLLIN, .revents = 0});
      if (is_busy) deadline = std::min(deadline, worker->deadline());
    }
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
    const int patience = static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1000));
    poll(requests.data(), requests.size(), patience);
    for (std::size_t i = 0; i < workers_.size(); ++i) {
      if (requests[i].fd >= 0) Attend(workers_[i], requests[i].revents != 0);
    }
  }

  void Attend(std::unique_ptr<Worker>& worker, bool is_readable) {
    if (is_readable && worker->Read()) return;
    if (!is_readable && Clock::now() < worker->deadline()) return;
    Task& task = *worker->task();
    const bool can_be_blameless = is_readable && !worker->IsFresh();
    if (can_be_blameless && !task.is_second_try) {
      task.is_second_try = true;
      again_.push_back(&task);
    } else {
      task.result = TaskResult{.answer = "", .fault = worker->FindFault()};
    }
    worker.reset();
  }

  const WorkerLimits& limits_;
  const Work& work_;
  const NextTask& next_task_;
  const UseResult& use_result_;
  std::vector<std::unique_ptr<Worker>> workers_;
  std::deque<Task> tasks_;  // whose results have not been used
  std::deque<Task*> again_;
  bool has_more_ = true;
};

}  // namespace

void RunInWorkers(const WorkerLimits& limits, const Work& work, const NextTask& next_task,
                  const UseResult& use_result) {
  Pool(limits, work, next_task, use_result).Run();
}

}  // namespace ia::cli
