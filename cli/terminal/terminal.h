// How the tool behaves towards terminals.
#ifndef INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_
#define INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_

#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace ia::cli {

// When quiet, the tool prints only errors on standard error.
void SetQuiet(bool is_quiet);
[[nodiscard]] bool IsQuiet();

enum class Colour { kGreen, kYellow, kRed };

// The text, in a colour when standard output is a terminal that shows colours; see NO_COLOR in the
// manual page.
[[nodiscard]] std::string Coloured(std::string_view text, Colour colour);

// Prints on standard error, while it lives, that a step is not finished: after a second, and then
// every ten. Prints nothing when quiet, or when standard error is no terminal.
class Progress {
 public:
  explicit Progress(const std::string& step);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

 private:
  void Print(const std::string& step);

  std::mutex mutex_;
  std::condition_variable ended_;
  bool has_ended_ = false;
  std::thread thread_;  // last, because it uses the other members
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_TERMINAL_H_
