#ifndef TESTS_INFO_COMMON_GUARDED_BUFFER_H_
#define TESTS_INFO_COMMON_GUARDED_BUFFER_H_

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace ia_test {

// A buffer of exactly the promised size between two walls of known bytes.
class GuardedBuffer {
 public:
  explicit GuardedBuffer(std::size_t size, std::string_view text = {})
      : size_(size), block_(kWall + size + kWall, kFiller) {
    if (text.empty()) return;
    std::copy(text.begin(), text.end(), data());
    data()[text.size()] = '\0';
  }

  char* data() { return block_.data() + kWall; }
  // The text up to its NUL; all bytes when there is none.
  std::string_view text() const { return bytes().substr(0, bytes().find('\0')); }
  std::string_view bytes() const { return std::string_view(block_).substr(kWall, size_); }
  bool WallsStand() const {
    return IsFiller(std::string_view(block_).substr(0, kWall)) &&
           IsFiller(std::string_view(block_).substr(kWall + size_));
  }
  bool IsUntouchedFrom(std::size_t offset) const {
    return WallsStand() && IsFiller(bytes().substr(offset));
  }

 private:
  static constexpr std::size_t kWall = 64;
  static constexpr char kFiller = '\xA5';

  static bool IsFiller(std::string_view bytes) {
    return bytes.find_first_not_of(kFiller) == std::string_view::npos;
  }

  std::size_t size_;
  std::string block_;
};

// Heap blocks without a spare byte, so that the address sanitizer sees every over-read.
inline std::unique_ptr<char[]> ExactBytes(std::string_view bytes) {
  std::unique_ptr<char[]> block(new char[bytes.size()]);
  std::copy(bytes.begin(), bytes.end(), block.get());
  return block;
}

inline std::unique_ptr<char[]> ExactText(std::string_view text) {
  return ExactBytes(std::string(text) + '\0');
}

struct FreeDeleter {
  void operator()(void* block) const { std::free(block); }
};
using OwnedText = std::unique_ptr<char, FreeDeleter>;

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_GUARDED_BUFFER_H_
