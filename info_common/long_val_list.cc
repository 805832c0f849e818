#include "info_common/long_val_list.h"

#include <string.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "info_common/ascii.h"
#include "info_common/owned.h"

namespace ia {
namespace {

// Inserts a number after those that do not exceed it; false when an allocation fails.
bool Insert(LongValListPtr& list, std::int32_t value) noexcept {
  CPtr<LongValList> node = NewZeroed<LongValList>();
  if (!node) return false;
  node->value = value;
  LongValList* head = list.release();
  LongValList** place = &head;
  while (*place != nullptr && (*place)->value <= value) place = &(*place)->next;
  node->next = *place;
  *place = node.release();
  list.reset(head);
  return true;
}

}  // namespace

LongValListPtr ParseHexList(const char* text) noexcept {
  const CString copy = CopyOf(text);
  if (!copy) return nullptr;
  LongValListPtr list;
  char* rest = nullptr;
  for (char* item = strtok_r(copy.get(), ",", &rest); item != nullptr;
       item = strtok_r(nullptr, ",", &rest)) {
    if (!Insert(list, ParseInt32(item, 16))) return nullptr;
  }
  return list;
}

}  // namespace ia

LongValList* info_common_long_val_list_add(LongValList* head, int32_t value) noexcept {
  ia::LongValListPtr list(head);
  return ia::Insert(list, value) ? list.release() : nullptr;
}

void info_common_long_val_list_free(LongValList* head) noexcept {
  while (head != nullptr) std::free(std::exchange(head, head->next));
}

LongValList* info_common_convert_hex_string_to_long_val_list(const char* text) noexcept {
  return ia::ParseHexList(text).release();
}
