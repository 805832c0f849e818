#include "cli/terminal/progress_bar.h"

#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <iostream>
#include <string>
#include <utility>

#include "cli/terminal/terminal.h"

namespace ia::cli {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kRedraw(200);
constexpr seconds kLineEvery(10);
constexpr std::size_t kWidth = 20;
constexpr const char* kClearLine = "\r\x1b[K";

[[nodiscard]] std::string BarOf(std::size_t done, std::size_t total) {
  const std::size_t filled = total > 0 ? kWidth * done / total : kWidth;
  return "[" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "]";
}

// "1:05".
[[nodiscard]] std::string Minutes(std::size_t of_seconds) {
  const std::string rest = std::to_string(of_seconds % 60);
  return std::to_string(of_seconds / 60) + (rest.size() < 2 ? ":0" : ":") + rest;
}

}  // namespace

ProgressBar::ProgressBar(std::size_t total, std::string unit)
    : total_(total),
      unit_(std::move(unit)),
      is_terminal_(isatty(STDERR_FILENO) != 0),
      next_(start_ + (is_terminal_ ? milliseconds(kRedraw) : milliseconds(kLineEvery))) {}

ProgressBar::~ProgressBar() { Hide(); }

void ProgressBar::Show(std::size_t done, std::size_t failed) {
  if (IsQuiet() || Clock::now() < next_) return;
  next_ = Clock::now() + (is_terminal_ ? milliseconds(kRedraw) : milliseconds(kLineEvery));
  const std::string line = LineOf(done, failed);
  if (is_terminal_) {
    std::cerr << kClearLine + BarOf(done, total_) + " " + line << std::flush;
    is_shown_ = true;
  } else {
    std::cerr << "info-analyze: " + line + "\n";
  }
}

void ProgressBar::Hide() {
  if (is_shown_) std::cerr << kClearLine << std::flush;
  is_shown_ = false;
}

std::string ProgressBar::LineOf(std::size_t done, std::size_t failed) const {
  std::string line = std::to_string(done) + " of " + std::to_string(total_) + " " + unit_;
  if (failed > 0) line += ", " + std::to_string(failed) + " failed";
  const std::chrono::duration<double> time = Clock::now() - start_;
  if (done == 0) return line;
  const double left = time.count() / static_cast<double>(done) * static_cast<double>(total_ - done);
  return line + ", " + Minutes(static_cast<std::size_t>(left)) + " left";
}

}  // namespace ia::cli
