#ifndef INFO_ANALYZE_CLI_PRINTER_CHILD_PROCESS_H_
#define INFO_ANALYZE_CLI_PRINTER_CHILD_PROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace ia::cli {

// How a child process ended, and what it wrote before.
struct ChildResult {
  std::string answer;
  bool has_timed_out = false;
  int signal = 0;  // that ended it; 0: none
  int status = 0;  // its exit status
};

// What an answer can have; more of it is not read.
inline constexpr std::size_t kMaxAnswer = std::size_t{64} << 20;

// Throws a std::system_error for errno.
[[noreturn]] void ThrowErrno();

// The first step of a child process, which may itself start more of them: puts it into a process
// group of its own, which can be killed as a whole, and lets it end with its parent and at once on
// an interrupt.
void BeginChild(pid_t parent);

// Writes all bytes; throws a std::system_error.
void WriteAll(int descriptor, std::string_view bytes);

// Runs the task, which answers by writing to the descriptor, in a child process. The child and its
// own children are killed when it ends, at the end of the time limit, or when it writes too much.
[[nodiscard]] ChildResult RunInChild(std::chrono::seconds limit,
                                     const std::function<void(int descriptor)>& task);

// "SIGSEGV".
[[nodiscard]] std::string NameOfSignal(int number);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_CHILD_PROCESS_H_
