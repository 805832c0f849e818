// Parses the bytes of a fuzzer. Inputs are lines, so that seeds can be read and written by hand.
#ifndef FUZZ_INPUT_H_
#define FUZZ_INPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>

namespace ia_fuzz {

// What does not hold is a finding.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline std::int32_t NumberOf(std::string_view text, int base = 10) {
  using Limits = std::numeric_limits<std::int32_t>;
  const long long number = std::strtoll(std::string(text).c_str(), nullptr, base);
  return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }
  [[nodiscard]] std::string_view Rest() const { return rest_; }

  // The bytes up to the next line end, which is skipped.
  std::string_view TakeLine() {
    const std::string_view line = rest_.substr(0, rest_.find('\n'));
    rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
    return line;
  }

  // A line as a text can hold it: up to its first NUL.
  std::string_view TakeText() {
    const std::string_view line = TakeLine();
    return line.substr(0, line.find('\0'));
  }

  std::int32_t TakeNumber() { return NumberOf(TakeLine()); }

 private:
  std::string_view rest_;
};

}  // namespace ia_fuzz

#endif  // FUZZ_INPUT_H_
