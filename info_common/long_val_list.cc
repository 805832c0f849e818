#include <cstring>

#include "info_analyze/option_table.h"
#include "info_common/ascii.h"
#include "info_common/owned.h"

LongValList* info_common_long_val_list_add(LongValList* head, int32_t value) noexcept {
  ia::CPtr<LongValList> node = ia::NewZeroed<LongValList>();
  if (!node) {
    info_common_long_val_list_free(head);
    return nullptr;
  }
  node->value = value;
  LongValList** place = &head;
  while (*place != nullptr && (*place)->value <= value) place = &(*place)->next;
  node->next = *place;
  *place = node.release();
  return head;
}

void info_common_long_val_list_free(LongValList* head) noexcept {
  while (head != nullptr) {
    LongValList* const next = head->next;
    std::free(head);
    head = next;
  }
}

LongValList* info_common_convert_hex_string_to_long_val_list(const char* text) noexcept {
  if (text == nullptr) return nullptr;
  const ia::CString copy = ia::Duplicate(text);
  if (!copy) return nullptr;
  LongValList* head = nullptr;
  char* rest = nullptr;
  for (char* item = strtok_r(copy.get(), ",", &rest); item != nullptr;
       item = strtok_r(nullptr, ",", &rest)) {
    head = info_common_long_val_list_add(head, ia::ParseInt32(item, 16));
    if (head == nullptr) return nullptr;
  }
  return head;
}
