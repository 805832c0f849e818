#ifndef INFO_ANALYZE_CLI_TERMINAL_TEMPORARY_FOLDER_H_
#define INFO_ANALYZE_CLI_TERMINAL_TEMPORARY_FOLDER_H_

#include <string>

namespace ia::cli {

// From now on SIGINT, SIGTERM and SIGHUP end this process only after its temporary folders are
// removed. Call it before other threads start, and again in a child process that makes folders.
void RemoveTemporaryFoldersOnInterrupt();

// Lets interrupts end a child process at once, which leaves the folders to its parent.
void EndOnInterrupt();

// The folder of TMPDIR, in which temporary files are made.
[[nodiscard]] std::string TemporaryFolderParent();

// A new folder that only this user can read, removed with all that is in it.
class TemporaryFolder {
 public:
  // Throws a std::system_error.
  explicit TemporaryFolder(const std::string& parent = TemporaryFolderParent());
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_TERMINAL_TEMPORARY_FOLDER_H_
