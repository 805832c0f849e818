// Indexed flag keys: a base key alone, then base_1, base_2, ...
#include <string.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>

#include "info_analyze/option_list.h"
#include "info_common/ascii.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

namespace ia {
namespace {

constexpr char kItemSeparators[] = ",_";

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
    if (index == std::numeric_limits<std::int32_t>::max()) return index;
    lowest = std::max(lowest, index + 1);
  }
  return lowest;
}

// The base with the next free index of both lists.
CString NewFlagKey(const OptTable* first, const OptTable* second, const char* base) noexcept {
  const std::int32_t index = NextFreeIndex(second, base, NextFreeIndex(first, base, 0));
  if (index == 0) return Duplicate(base);
  const auto digits = static_cast<std::size_t>(std::log10(index)) + 1;
  const std::size_t length = std::strlen(base) + 1 + digits;
  CString key = NewText(length);
  if (!key) return nullptr;
  std::snprintf(key.get(), length + 1, "%s_%d", base, index);
  return key;
}

// Calls take(item) for each item of a copy of the text, until it returns non-zero.
template <class Take>
std::int32_t ForEachItem(const char* text, Take take) noexcept {
  const CString copy = Duplicate(text);
  if (!copy) return -1;
  char* rest = nullptr;
  for (char* item = strtok_r(copy.get(), kItemSeparators, &rest); item != nullptr;
       item = strtok_r(nullptr, kItemSeparators, &rest)) {
    if (const std::int32_t result = take(item); result != 0) return result;
  }
  return 0;
}

}  // namespace
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
  return base != nullptr ? ia::NewFlagKey(first, second, base).release() : nullptr;
}

int32_t OptionList_Set_FlagValue(const OptTable* source, const char* base, const char* text,
                                 OptionList* target) noexcept {
  if (source == nullptr || base == nullptr || text == nullptr || target == nullptr) return 0;
  return ia::ForEachItem(text, [&](const char* item) noexcept {
    const ia::CString key = ia::NewFlagKey(source, target, base);
    return key && ia::AddBack(*target, key.get(), item) ? 0 : -1;
  });
}

int32_t OptionList_Set_ArrrayFlagValue(const char* text, OptionList* target) noexcept {
  if (text == nullptr || target == nullptr) return 0;
  return ia::ForEachItem(text, [&](char* item) noexcept {
    char* const name = item + std::strspn(item, ":");
    if (*name == '\0') return 0;
    char* const colon = std::strchr(name, ':');
    if (colon != nullptr) *colon = '\0';
    return ia::AddBack(*target, item, colon != nullptr ? colon + 1 : "") ? 0 : -1;
  });
}
