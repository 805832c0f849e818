#include "info_analyze/option_list.h"

#include <cstdint>

#include "info_common/option_table.h"

void OptionList_Add(OptionList* list, const char* key, const char* value) noexcept {
  if (list != nullptr && key != nullptr) ia::AddOption(*list, key, value);
}

int32_t OptionList_Get(const OptionList* list, const char* key, char** value) noexcept {
  if (list == nullptr || key == nullptr || value == nullptr) return 0;
  *value = ia::CopyOf(ia::FindValue(list, key)).release();
  return *value != nullptr ? 1 : 0;
}

void OptionList_Terminate(OptionList** list) noexcept {
  if (list == nullptr) return;
  ia::FreeTable(*list);
  *list = nullptr;
}

int32_t z_get_key_value_from_option_list(OptTable** cursor, const char* needle, char** key,
                                         char** value) noexcept {
  if (cursor == nullptr || needle == nullptr || key == nullptr || value == nullptr) return 0;
  const OptTable* const found = ia::TakeKeyHolding(*cursor, needle);
  *key = found != nullptr ? found->key : nullptr;
  *value = found != nullptr ? found->value : nullptr;
  return *value != nullptr ? 1 : 0;
}
