#include "info_common/ppd_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "info_analyze/option_table.h"
#include "info_common/ascii.h"
#include "info_common/ppd_lines.h"

namespace ia {
namespace {

// The first name that a block's opening line contains wins.
constexpr auto kValueListBlocks = std::to_array<ValueListBlock>({
    {"QVPlatformVersion", "QVValueListPlatformVersion"},
    {"QVSpecID", "QVValueListSpecID"},
});

constexpr std::string_view kUiValue = "*%QVUIValue:";
static_assert(kUiValue.size() <= kPpdLineHead);

bool HasBytes(const char* at, std::string_view bytes) noexcept {
  return std::memcmp(at, bytes.data(), bytes.size()) == 0;
}

}  // namespace

bool CommaList::Append(std::string_view item) noexcept {
  const bool started = IsStarted();
  if (!Reserve(length_ + 1 + item.size())) return false;
  if (started) text_[length_++] = ',';
  std::ranges::copy(item, text_.get() + length_);
  length_ += item.size();
  return true;
}

bool CommaList::Reserve(std::size_t length) noexcept {
  if (IsStarted() && length <= capacity_) return true;
  const std::size_t capacity = std::max(2 * capacity_, length);
  if (!Resize(text_, capacity)) return false;
  capacity_ = capacity;
  return true;
}

void PpdReader::TakeLine(char (&line)[kPpdLineSize]) noexcept {
  if (!in_block_ && HasBytes(line + 1, "QV")) return TakeOption(line + 1);
  if (!in_block_ && HasBytes(line, kUiValue)) return TakeUiValue(line + kUiValue.size());
  if (HasBytes(line + 1, "OpenUI")) return OpenBlock(line);
  if (in_block_ && HasBytes(line + 1, "CloseUI")) return CloseBlock();
  if (list_block_ != nullptr) TakeChoice(line);
}

OptTable* PpdReader::TakeTable() noexcept { return out_of_memory_ ? nullptr : table_.Take(); }

void PpdReader::Put(std::string_view key, std::string_view value) noexcept {
  if (!table_.Put(key, value)) out_of_memory_ = true;
}

void PpdReader::TakeOption(const char* text) noexcept {
  const auto [key, value] = SplitOptionLine(text);
  if (key.size() < IA_PPD_TEXT_SIZE - 1 && value.size() < IA_PPD_TEXT_SIZE - 1) Put(key, value);
}

void PpdReader::TakeUiValue(const char* text) noexcept {
  char key[IA_PPD_TEXT_SIZE];
  char value[IA_PPD_TEXT_SIZE];
  if (info_common_optlist_qvuivalue_getoptkeyandvalue(text, key, value) > 0) Put(key, value);
}

// After a line that names neither list, the list of an unclosed block stays current.
void PpdReader::OpenBlock(std::string_view line) noexcept {
  in_block_ = true;
  const auto named = std::ranges::find_if(kValueListBlocks, [&](const ValueListBlock& block) {
    return line.find(block.option) != line.npos;
  });
  if (named != kValueListBlocks.end()) list_block_ = &*named;
}

void PpdReader::CloseBlock() noexcept {
  in_block_ = false;
  if (list_block_ == nullptr) return;
  if (choices_.IsStarted()) Put(list_block_->list_key, choices_.Text());
  list_block_ = nullptr;
  choices_ = CommaList();
}

// The choice follows "*", the option's name and one blank. The name in the line is not checked.
void PpdReader::TakeChoice(std::string_view line) noexcept {
  const std::size_t start = list_block_->option.size() + 2;
  if (HasPrefixIgnoringCase(line, "*Default") || start > line.size()) return;
  line.remove_prefix(start);
  const std::size_t slash = line.find('/');
  if (slash == line.npos) return;
  line.remove_suffix(line.size() - slash);
  if (!choices_.Append(line)) out_of_memory_ = true;
}

}  // namespace ia
