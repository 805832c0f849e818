#ifndef INFO_ANALYZE_CLI_PRINTER_REGULAR_FILE_H_
#define INFO_ANALYZE_CLI_PRINTER_REGULAR_FILE_H_

#include <sys/stat.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace ia::cli {

// Why a file cannot be read.
class FileFault : public std::runtime_error {
 public:
  FileFault(const std::string& reason, int error) : std::runtime_error(reason), error_(error) {}
  [[nodiscard]] int error() const noexcept { return error_; }  // an errno; 0: none

 private:
  int error_;
};

// The contents of a file; throws a FileFault. Never waits for a FIFO or reads a device. The check
// is called with what the opened file is, before it is read, and may throw.
[[nodiscard]] std::string ReadRegularFile(
    const std::string& path, std::size_t max_size,
    const std::function<void(const struct stat& status)>& check = {});

}  // namespace ia::cli

#endif  // INFO_ANALYZE_CLI_PRINTER_REGULAR_FILE_H_
