// How the tool behaves towards terminals.
#ifndef INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_
#define INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace ia::cli {

// When quiet, the tool prints only errors on standard error.
void SetQuiet(bool is_quiet);
[[nodiscard]] bool IsQuiet();

// When verbose, the tool prints on standard error how long each step took.
void SetVerbose(bool is_verbose);

enum class Colour { kGreen, kYellow, kRed };

// The text, in a colour when standard output is a terminal that shows colours; see NO_COLOR in the
// manual page.
[[nodiscard]] std::string Coloured(std::string_view text, Colour colour);

// A step of the work, timed while it lives. It needs no thread, so a child process can use it.
class Step {
 public:
  explicit Step(std::string name);
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  ~Step();

 private:
  std::string name_;
  int exceptions_;
  std::chrono::steady_clock::time_point start_;
};

// A step that may wait. Prints on standard error, while it lives, that a step is not finished:
// after a second, and then every ten. Prints nothing when quiet, or when standard error is no
// terminal.
class Progress {
 public:
  explicit Progress(const std::string& step);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void Print(const std::string& step);

  Step step_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool has_ended_ = false;
  std::thread thread_;  // last, because it uses the other members
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_
