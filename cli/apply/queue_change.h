// Changes defaults in the PPD of one live queue.
#ifndef INFO_ANALYZE_CLI_APPLY_QUEUE_CHANGE_H_
#define INFO_ANALYZE_CLI_APPLY_QUEUE_CHANGE_H_

#include <chrono>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "cli/apply/undo_file.h"

namespace ia::cli {

// A default choice and what it becomes.
struct NewDefault {
  std::string keyword;
  std::string before;
  std::string after;
};

struct ChangeOptions {
  std::chrono::seconds timeout;
  bool is_forced = false;  // also while a job is printed
};

// Thrown for a queue that is left alone; the text says why.
class LeftAlone : public std::exception {
 public:
  explicit LeftAlone(std::string reason) : reason_(std::move(reason)) {}
  [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }

 private:
  std::string reason_;
};

struct LiveQueue {
  std::string server;
  std::string name;
};

// Sets all of the defaults at once, and reads the PPD again to confirm it. Before the queue is
// changed, the undo file gets the record that takes it back. Throws LeftAlone or a Failure.
void SetDefaults(const LiveQueue& queue, const std::vector<NewDefault>& defaults,
                 const ChangeOptions& options, UndoFile& undo_file);

struct Undone {
  std::vector<NewDefault> defaults;
  bool is_complete = true;  // no default has changed since
};

// Gives the lines of the PPD the texts that they had before. What has changed since is left as it
// is, and reported.
[[nodiscard]] Undone Undo(const UndoRecord& record, const ChangeOptions& options);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_APPLY_QUEUE_CHANGE_H_
