// What an apply has changed, so that it can be taken back: one JSON object a line for each queue,
// written before the queue is changed.
#ifndef INFO_ANALYZE_CLI_APPLY_UNDO_FILE_H_
#define INFO_ANALYZE_CLI_APPLY_UNDO_FILE_H_

#include <sys/types.h>

#include <string>
#include <vector>

namespace ia::cli {

struct ChangedDefault {
  std::string keyword;
  std::vector<std::string> before;  // texts of the PPD's lines
  std::string after;
};

struct UndoRecord {
  std::string server;  // host and port, or the path of a socket
  std::string queue;
  std::vector<ChangedDefault> defaults;
};

// The folder of undo files and of the lock: that of the system's services or of the user. Makes it;
// throws a Failure.
[[nodiscard]] std::string StateFolder();

class UndoFile {
 public:
  // A new file; it is made with its first record. Throws a Failure when there is one already.
  explicit UndoFile(std::string path);
  UndoFile(const UndoFile&) = delete;
  UndoFile& operator=(const UndoFile&) = delete;
  ~UndoFile();

  // Returns when the record is on the disk; throws a Failure.
  void Add(const UndoRecord& record);

  // Removes the record that was added last, of a queue that was not changed; without it an empty
  // file.
  void RemoveLast();

  [[nodiscard]] bool IsEmpty() const { return descriptor_ < 0; }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  void Make();

  std::string path_;
  int descriptor_ = -1;
  off_t size_before_last_ = 0;
};

// In a folder of undo files: "2026-11-22T160850Z-1234.json".
[[nodiscard]] std::string NewUndoPath(const std::string& folder);

// Throws a Failure for what is no undo file, what has no record, and what other users can write to.
// A last line that is not complete is left out: its queue was not changed.
[[nodiscard]] std::vector<UndoRecord> ReadUndoFile(const std::string& path);

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_APPLY_UNDO_FILE_H_
