// The trial of one clause of the contract of communication libraries, in a process of its own.
#ifndef INFO_ANALYZE_CLI_COMMLIB_TRIAL_H_
#define INFO_ANALYZE_CLI_COMMLIB_TRIAL_H_

#include <array>
#include <cstddef>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

#include "info_analyze/bidi.h"

namespace ia::cli {

// Thrown by a trial when the library breaks the clause; the text says how.
class Broken : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Thrown by a trial when the clause cannot be tried with this library; the text says why.
class NotTested : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What is tried.
struct TriedLibrary {
  std::string path;       // of the library
  std::string folder;     // of the driver
  std::string documents;  // document directory; empty: none
};

// The last step of a trial, in memory that the trial shares with its parent, which so knows it when
// the library ends the process.
class LastStep {
 public:
  void Set(std::string_view step) noexcept {
    const std::size_t length = step.copy(text_.data(), text_.size() - 1);
    text_[length] = '\0';
  }
  [[nodiscard]] const char* Get() const noexcept { return text_.data(); }

 private:
  std::array<char, 256> text_ = {};
};

class Trial {
 public:
  Trial(const TriedLibrary& tried, LastStep& step) : tried_(tried), step_(step) {}
  Trial(const Trial&) = delete;
  Trial& operator=(const Trial&) = delete;

  [[nodiscard]] const TriedLibrary& tried() const { return tried_; }

  // Records what is done next. Trials that use several threads call it in all of them.
  void Begin(const std::string& step);

  // Throws Broken, with the last step, unless the two are equal.
  void Expect(const std::string& got, const std::string& expected) const;

  // Loads the library anew, so that it is loaded once more. It stays loaded for the life of the
  // process, because unloading is a clause of its own. The step that was begun goes on.
  [[nodiscard]] BidiContext& Load();

  // Unloads it as Bidi_Destroy() does.
  void Unload(BidiContext& library);

  // The library, loaded by the first call.
  [[nodiscard]] BidiContext& library();

 private:
  const TriedLibrary& tried_;
  LastStep& step_;
  std::mutex mutex_;  // of the step
  BidiContext* library_ = nullptr;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_COMMLIB_TRIAL_H_
