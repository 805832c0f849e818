// An owned file descriptor; negative when the file could not be opened.
#ifndef INFO_COMMON_FILE_DESCRIPTOR_H_
#define INFO_COMMON_FILE_DESCRIPTOR_H_

#include <unistd.h>

namespace ia {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) noexcept : descriptor_(descriptor) {}
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  [[nodiscard]] int Get() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace ia

#endif  // INFO_COMMON_FILE_DESCRIPTOR_H_
