#include "info_analyze/option_list.h"

#include "info_common/ascii.h"
#include "info_common/option_table.h"

void OptionList_Add(OptionList* list, const char* key, const char* value) noexcept {
  info_common_optlist_additem_back(list, key, value);
}

int32_t OptionList_Get(const OptionList* list, const char* key, char** value) noexcept {
  if (list == nullptr || key == nullptr || value == nullptr) return 0;
  *value = info_common_optlist_getvalue(list, key);
  return *value != nullptr ? 1 : 0;
}

void OptionList_Terminate(OptionList** list) noexcept {
  if (list == nullptr) return;
  info_common_optlist_destroy(*list);
  *list = nullptr;
}

int32_t z_get_key_value_from_option_list(OptTable** cursor, const char* needle, char** key,
                                         char** value) noexcept {
  if (cursor == nullptr || needle == nullptr || key == nullptr || value == nullptr) return 0;
  *key = nullptr;
  *value = nullptr;
  while (*cursor != nullptr) {
    const OptTable& node = **cursor;
    *cursor = node.next;
    if (node.key != nullptr && ia::ContainsIgnoringCase(node.key, needle)) {
      *key = node.key;
      *value = node.value;
      return node.value != nullptr ? 1 : 0;
    }
  }
  return 0;
}
