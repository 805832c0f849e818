#include "cli/printer/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string>

namespace ia::cli {
namespace {

[[noreturn]] void ThrowErrno() {
  const int error = errno;
  throw FileFault(std::strerror(error), error);
}

class OpenFile {
 public:
  // Non-blocking, so that open() does not wait for a FIFO that nobody writes to.
  explicit OpenFile(const std::string& path)
      : descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY)) {
    if (descriptor_ < 0) ThrowErrno();
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(descriptor_); }
  [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

[[nodiscard]] std::string TypeOf(mode_t mode) {
  if (S_ISDIR(mode)) return "a folder";
  if (S_ISFIFO(mode)) return "a FIFO";
  return S_ISCHR(mode) || S_ISBLK(mode) ? "a device" : "a special file";
}

[[nodiscard]] struct stat StatusOfRegular(int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) ThrowErrno();
  if (S_ISREG(status.st_mode)) return status;
  throw FileFault("not a regular file but " + TypeOf(status.st_mode), 0);
}

}  // namespace

std::string ReadRegularFile(const std::string& path, std::size_t max_size,
                            const std::function<void(const struct stat&)>& check) {
  const OpenFile file(path);
  const struct stat status = StatusOfRegular(file.descriptor());
  if (check) check(status);
  std::string contents;
  std::array<char, 65536> buffer;
  for (;;) {
    const ssize_t count = read(file.descriptor(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) ThrowErrno();
    if (count == 0) return contents;
    contents.append(buffer.data(), static_cast<std::size_t>(count));
    if (contents.size() > max_size) {
      throw FileFault("larger than " + std::to_string(max_size >> 20) + " MiB", 0);
    }
  }
}

}  // namespace ia::cli
