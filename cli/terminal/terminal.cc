#include "cli/terminal/terminal.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iomanip>
#include <ios>
#include <iostream>
#include <mutex>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "cli/terminal/printable.h"

namespace ia::cli {
namespace {

bool g_is_quiet = false;
bool g_is_verbose = false;

[[nodiscard]] bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

[[nodiscard]] bool ShowsColours() {
  const char* const terminal = std::getenv("TERM");
  const bool is_dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
  return isatty(STDOUT_FILENO) != 0 && !is_dumb && !IsSet("NO_COLOR");
}

[[nodiscard]] const char* CodeOf(Colour colour) {
  switch (colour) {
    case Colour::kGreen:
      return "\x1b[32m";
    case Colour::kYellow:
      return "\x1b[33m";
    default:
      return "\x1b[31m";
  }
}

}  // namespace

void SetQuiet(bool is_quiet) { g_is_quiet = is_quiet; }

bool IsQuiet() { return g_is_quiet; }

void SetVerbose(bool is_verbose) { g_is_verbose = is_verbose; }

std::string Coloured(std::string_view text, Colour colour) {
  if (!ShowsColours()) return std::string(text);
  return CodeOf(colour) + std::string(text) + "\x1b[0m";
}

Step::Step(std::string name)
    : name_(std::move(name)),
      exceptions_(std::uncaught_exceptions()),
      start_(std::chrono::steady_clock::now()) {}

Step::~Step() {
  if (!g_is_verbose) return;
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
  std::ostringstream line;  // written at once, because child processes write lines too
  line << "info-analyze: " << std::fixed << std::setprecision(3) << time.count() << " s for "
       << Printable(name_)
       << (std::uncaught_exceptions() > exceptions_ ? ", which failed\n" : "\n");
  std::cerr << line.str();
}

Progress::Progress(const std::string& step) : step_(step) {
  if (IsQuiet() || isatty(STDERR_FILENO) == 0) return;
  thread_ = std::thread([this, step] { Print(step); });
}

Progress::~Progress() {
  {
    const std::lock_guard lock(mutex_);
    has_ended_ = true;
  }
  ended_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void Progress::Print(const std::string& step) {
  using std::chrono::seconds;
  std::unique_lock lock(mutex_);
  int waited = 1;
  for (seconds pause(1); !ended_.wait_for(lock, pause, [this] { return has_ended_; });
       pause = seconds(10)) {
    std::cerr << "info-analyze: waiting for " << Printable(step) << ", " << waited << " s\n";
    waited += 10;
  }
}

}  // namespace ia::cli
