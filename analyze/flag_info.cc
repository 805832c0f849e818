#include "info_analyze/flag_info.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "info_common/option_table.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// Cuts the text up to a separator off the front of text.
std::string_view TakeUpTo(std::string_view& text, char separator) noexcept {
  const std::size_t length = std::min(text.find(separator), text.size());
  const std::string_view taken(text.data(), length);
  text.remove_prefix(std::min(length + 1, text.size()));
  return taken;
}

// Does not compute the length of each name: each new name is compared with up to 1,024 others.
bool IsNamed(const FlagPair& pair, std::string_view name) noexcept {
  return std::strncmp(pair.name, name.data(), name.size()) == 0 && pair.name[name.size()] == '\0';
}

FlagPair* FindFlag(const FlagInfo& store, std::string_view name) noexcept {
  for (FlagPair* pair = store.entries; pair < store.entries + store.count; ++pair) {
    if (pair->name != nullptr && IsNamed(*pair, name)) return pair;
  }
  return nullptr;
}

// False when an allocation fails.
bool StoreFlag(FlagInfo& store, std::string_view name, std::string_view value) noexcept {
  FlagPair* const known = FindFlag(store, name);
  if (known == nullptr && store.count >= store.capacity) return true;
  CString value_copy = Duplicate(value);
  CString name_copy = known == nullptr ? Duplicate(name) : nullptr;
  if (!value_copy || (known == nullptr && !name_copy)) return false;
  if (known != nullptr) {
    std::free(known->value);
    known->value = value_copy.release();
  } else {
    store.entries[store.count++] = {name_copy.release(), value_copy.release()};
  }
  return true;
}

// Stores the items of a text; -1 when an allocation fails.
std::int32_t StoreFlags(std::string_view text, FlagInfo& store) noexcept {
  while (!text.empty()) {
    std::string_view value = TakeUpTo(text, ',');
    value.remove_prefix(std::min(value.find_first_not_of(':'), value.size()));
    const std::string_view name = TakeUpTo(value, ':');
    if (!name.empty() && !StoreFlag(store, name, value)) return -1;
  }
  return 0;
}

}  // namespace
}  // namespace ia

FlagInfo* zflaginfo_init(const char* key, int32_t capacity) noexcept {
  if (key == nullptr || capacity < 0) return nullptr;
  ia::CPtr<FlagInfo> store = ia::NewZeroed<FlagInfo>();
  if (!store) return nullptr;
  store->entries =
      static_cast<FlagPair*>(std::calloc(static_cast<std::size_t>(capacity), sizeof(FlagPair)));
  if (store->entries == nullptr) return nullptr;
  store->capacity = capacity;
  return store.release();
}

void zflaginfo_term(FlagInfo* store) noexcept {
  if (store == nullptr) return;
  for (int32_t i = 0; i < store->count; ++i) {
    std::free(store->entries[i].name);
    std::free(store->entries[i].value);
  }
  std::free(store->entries);
  std::free(store);
}

FlagPair* zflaginfo_find(const FlagInfo* store, const char* name) noexcept {
  return store != nullptr && name != nullptr ? ia::FindFlag(*store, name) : nullptr;
}

int32_t zflaginfo_get(const char* text, FlagInfo* store) noexcept {
  return text != nullptr && store != nullptr ? ia::StoreFlags(text, *store) : -1;
}

int32_t zflaginfo_getflags(OptTable* table, const char* key, FlagInfo* store) noexcept {
  if (table == nullptr || key == nullptr || store == nullptr) return -1;
  int32_t status = 0;  // of the last text alone: an earlier failure is masked
  for (OptTable* entry = ia::FindKeyPrefix(table, key); entry != nullptr;
       entry = ia::FindKeyPrefix(entry->next, key)) {
    if (entry->value != nullptr) status = ia::StoreFlags(entry->value, *store);
  }
  return status;
}
