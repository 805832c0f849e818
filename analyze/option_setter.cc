#include "info_analyze/option_setter.h"

#include <cstddef>

#include "info_common/owned.h"

static_assert(sizeof(OptionSetter) == 5 * sizeof(void*));
static_assert(offsetof(OptionSetter, keyword) == 0);
static_assert(offsetof(OptionSetter, value) == 1 * sizeof(void*));
static_assert(offsetof(OptionSetter, getter) == 2 * sizeof(void*));
static_assert(offsetof(OptionSetter, getter_arg) == 3 * sizeof(void*));
static_assert(offsetof(OptionSetter, default_value) == 4 * sizeof(void*));

int32_t zGetOptionString(OptionSetter* rows, int32_t count) noexcept {
  if (rows == nullptr) return 0;
  for (int32_t i = 0; i < count; ++i) {
    OptionSetter& row = rows[i];
    char* const text = row.getter != nullptr ? row.getter(row.getter_arg) : nullptr;
    if (text != nullptr) {
      std::free(row.value);
      row.value = text;
    }
  }
  return 0;
}

int32_t zSetOptionList(OptionSetter* rows, int32_t count, OptionList* options) noexcept {
  if (rows == nullptr || options == nullptr) return -1;
  for (int32_t i = 0; i < count; ++i) {
    const OptionSetter& row = rows[i];
    if (row.keyword == nullptr) continue;
    OptionList_Add(options, row.keyword, row.value != nullptr ? row.value : row.default_value);
    std::free(row.value);
  }
  return 0;
}

int32_t zReadXMLandSetOptionList(AnalyzeContext* context, const XmlKeyDescriptor* descriptors,
                                 int32_t key_count, OptionSetter* rows, int32_t row_count,
                                 OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  const int32_t status = analyze_common_readxml(context, descriptors, key_count);
  if (status != 0) return status;
  zGetOptionString(rows, row_count);
  return zSetOptionList(rows, row_count, options);
}
