// Turns the lines of a PPD into an option table.
#ifndef INFO_COMMON_PPD_READER_H_
#define INFO_COMMON_PPD_READER_H_

#include <cstddef>
#include <string_view>

#include "info_common/option_table_builder.h"
#include "info_common/owned.h"

namespace ia {

// At most 511 bytes of a line are read at once; the rest of a longer line counts as a line.
inline constexpr std::size_t kPpdLineSize = 512;

// The first bytes of a line buffer are read whatever the length of the line; bytes after its end
// are zero.
inline constexpr std::size_t kPpdLineHead = 16;

// Items joined by commas.
class CommaList {
 public:
  [[nodiscard]] bool Append(std::string_view item) noexcept;  // false when an allocation fails
  [[nodiscard]] bool IsStarted() const noexcept { return text_ != nullptr; }
  [[nodiscard]] std::string_view Text() const noexcept { return {text_.get(), length_}; }

 private:
  [[nodiscard]] bool Reserve(std::size_t length) noexcept;

  CString text_;  // not terminated
  std::size_t length_ = 0;
  std::size_t capacity_ = 0;
};

// A UI block whose choices become one list entry.
struct ValueListBlock {
  std::string_view option;
  std::string_view list_key;
};

class PpdReader {
 public:
  // Parses one NUL-terminated line, and may modify it.
  void TakeLine(char (&line)[kPpdLineSize]) noexcept;

  // Returns the table, which the caller then owns; null when it is empty or an allocation fails.
  [[nodiscard]] OptTable* TakeTable() noexcept;

 private:
  void Put(std::string_view key, std::string_view value) noexcept;
  void TakeOption(const char* text) noexcept;
  void TakeUiValue(const char* text) noexcept;
  void OpenBlock(std::string_view line) noexcept;
  void CloseBlock() noexcept;
  void TakeChoice(std::string_view line) noexcept;

  OptionTableBuilder table_;
  bool in_block_ = false;
  const ValueListBlock* list_block_ = nullptr;
  CommaList choices_;
  bool out_of_memory_ = false;
};

}  // namespace ia

#endif  // INFO_COMMON_PPD_READER_H_
