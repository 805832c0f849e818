#ifndef INFO_ANALYZE_CLI_TERMINAL_PROGRESS_BAR_H_
#define INFO_ANALYZE_CLI_TERMINAL_PROGRESS_BAR_H_

#include <chrono>
#include <cstddef>
#include <string>

namespace ia::cli {

// How much of a long work is done, on standard error: a bar that is drawn again on a terminal, a
// line every ten seconds elsewhere, and nothing when quiet.
class ProgressBar {
 public:
  // The unit in the plural, such as "queues".
  ProgressBar(std::size_t total, std::string unit);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();

  void Show(std::size_t done, std::size_t failed);

  // Makes room for other lines on the terminal, until the next call of Show().
  void Hide();

 private:
  using Clock = std::chrono::steady_clock;

  [[nodiscard]] std::string LineOf(std::size_t done, std::size_t failed) const;

  std::size_t total_;
  std::string unit_;
  bool is_terminal_;
  bool is_shown_ = false;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_PROGRESS_BAR_H_
