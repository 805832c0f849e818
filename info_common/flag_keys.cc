#include "info_common/flag_keys.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "info_analyze/option_list.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr bool IsSeparator(char character) noexcept { return character == ',' || character == '_'; }

constexpr std::int32_t kLastIndex = std::numeric_limits<std::int32_t>::max();

// The lowest index, from 0, that is above those of the list's keys; 0 means the base alone.
std::int32_t NextFreeIndex(const OptTable* list, std::string_view base,
                           std::int32_t lowest) noexcept {
  for (const OptTable* node = list; node != nullptr; node = node->next) {
    if (node->key == nullptr || !ContainsIgnoringCase(node->key, base)) continue;
    const char* const separator = std::strchr(node->key + base.size(), '_');
    if (separator == nullptr) {
      lowest = std::max(lowest, 1);
      continue;
    }
    const std::int32_t index = ParseInt32(separator + 1, 10);
    if (index == kLastIndex) return index;
    lowest = std::max(lowest, index + 1);
  }
  return lowest;
}

// The lowest index that is above those of both lists.
std::int32_t NextFreeIndex(const OptTable* first, const OptTable* second,
                           std::string_view base) noexcept {
  return NextFreeIndex(second, base, NextFreeIndex(first, base, 0));
}

CString NewFlagKey(std::string_view base, std::int32_t index) noexcept {
  if (index == 0) return Duplicate(base);
  const auto digits = static_cast<std::size_t>(std::log10(index)) + 1;
  CString key = NewText(base.size() + 1 + digits);
  if (!key) return nullptr;
  char* end = std::ranges::copy(base, key.get()).out;
  *end++ = '_';
  *std::to_chars(end, end + digits, index).ptr = '\0';
  return key;
}

// Calls take(item) for each item of a copy of the text, until it returns non-zero. The text may be
// a value that it changes.
template <class Take>
std::int32_t ForEachItem(const char* text, Take take) noexcept {
  const CString copy = Duplicate(text);
  if (!copy) return -1;
  for (const char* item = copy.get(); *item != '\0';) {
    const char* end = item;
    while (*end != '\0' && !IsSeparator(*end)) ++end;
    const std::int32_t result =
        end != item ? take({item, static_cast<std::size_t>(end - item)}) : 0;
    if (result != 0) return result;
    item = *end != '\0' ? end + 1 : end;
  }
  return 0;
}

}  // namespace

FlagAdder::FlagAdder(const OptTable* source, const char* base, OptionList& list) noexcept
    : base_(base), index_(NextFreeIndex(source, &list, base)), list_(list), last_(LastOf(&list)) {}

std::int32_t FlagAdder::Add(const char* text) noexcept {
  return ForEachItem(text, [&](std::string_view item) noexcept { return AddItem(item) ? 0 : -1; });
}

// A new key is not searched for, because its index is above all others. There are two exceptions:
// the base alone can begin a key with a negative index, and the last index is used again.
bool FlagAdder::AddItem(std::string_view item) noexcept {
  CString key = NewFlagKey(base_, index_);
  if (!key) return false;
  const bool can_be_known = index_ == 0 || index_ == kLastIndex;
  if (can_be_known) {
    if (!AddBack(list_, key.get(), item)) return false;
  } else {
    last_->next = NewNode(std::move(key), Duplicate(item)).release();
    if (last_->next == nullptr) return false;
  }
  if (last_->next == nullptr || index_ == kLastIndex) return true;
  last_ = last_->next;
  ++index_;
  return true;
}

}  // namespace ia

// The base may occur anywhere in a key, but the suffix is read as if the key began with it, so
// "XQVAnlz_FuncVer_UI_1" matches "QVAnlz_FuncVer_UI", with a wrong index. Callers
// depend on it.
int32_t OptionList_Get_FlagValue(OptTable** cursor, const char* base, int32_t highest_index,
                                 char** value) noexcept {
  if (cursor == nullptr || base == nullptr || value == nullptr) return 0;
  *value = nullptr;
  const std::size_t base_length = std::strlen(base);
  // A key without a value ends the search.
  for (const OptTable* node = ia::TakeKeyHolding(*cursor, base);
       node != nullptr && node->value != nullptr; node = ia::TakeKeyHolding(*cursor, base)) {
    const char* const suffix = node->key + base_length;
    if (*suffix == '\0' || ia::ParseInt32(suffix + 1, 10) <= highest_index) {
      *value = node->value;
      return 1;
    }
  }
  return 0;
}

char* z_create_flag_key_fom_option_list(const OptTable* first, const OptTable* second,
                                        const char* base) noexcept {
  if (base == nullptr) return nullptr;
  return ia::NewFlagKey(base, ia::NextFreeIndex(first, second, base)).release();
}

int32_t OptionList_Set_FlagValue(const OptTable* source, const char* base, const char* text,
                                 OptionList* target) noexcept {
  if (source == nullptr || base == nullptr || text == nullptr || target == nullptr) return 0;
  return ia::FlagAdder(source, base, *target).Add(text);
}

int32_t OptionList_Set_ArrrayFlagValue(const char* text, OptionList* target) noexcept {
  if (text == nullptr || target == nullptr) return 0;
  return ia::ForEachItem(text, [&](std::string_view item) noexcept {
    const std::size_t name = item.find_first_not_of(':');
    if (name == item.npos) return 0;
    const std::size_t colon = std::min(item.find(':', name), item.size());
    const std::string_view key(item.data(), colon);
    const std::string_view value = ia::RestOf(item, std::min(colon + 1, item.size()));
    return ia::AddBack(*target, key, value) ? 0 : -1;
  });
}
