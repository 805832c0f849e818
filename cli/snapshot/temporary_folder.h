#ifndef INFO_ANALYZE_CLI_SNAPSHOT_TEMPORARY_FOLDER_H_
#define INFO_ANALYZE_CLI_SNAPSHOT_TEMPORARY_FOLDER_H_

#include <sys/types.h>

#include <string>

namespace ia::cli {

// A folder of the user's alone. A process of its own removes it with all it holds, when the object
// is destroyed and also when a signal ends this process.
class TemporaryFolder {
 public:
  // In the parent folder; throws a std::system_error.
  explicit TemporaryFolder(const std::string& parent);
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  [[nodiscard]] const std::string& path() const noexcept { return path_; }

 private:
  std::string path_;
  pid_t owner_;
  pid_t remover_;
};

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_SNAPSHOT_TEMPORARY_FOLDER_H_
