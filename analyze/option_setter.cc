#include "info_analyze/option_setter.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "analyze/option_rows.h"
#include "info_common/option_table.h"
#include "info_common/owned.h"

static_assert(sizeof(OptionSetter) == 5 * sizeof(void*));
static_assert(offsetof(OptionSetter, keyword) == 0);
static_assert(offsetof(OptionSetter, value) == 1 * sizeof(void*));
static_assert(offsetof(OptionSetter, getter) == 2 * sizeof(void*));
static_assert(offsetof(OptionSetter, getter_arg) == 3 * sizeof(void*));
static_assert(offsetof(OptionSetter, default_value) == 4 * sizeof(void*));

void ia::RunGetters(std::span<OptionSetter> rows) noexcept {
  for (OptionSetter& row : rows) {
    char* const text = row.getter != nullptr ? row.getter(row.getter_arg) : nullptr;
    if (text == nullptr) continue;
    std::free(row.value);
    row.value = text;
  }
}

std::int32_t ia::SetOptions(OptionSetter* rows, std::int32_t count,
                            const OptionTarget& target) noexcept {
  if (rows == nullptr || target.list == nullptr) return -1;
  for (std::int32_t i = 0; i < count; ++i) {
    const OptionSetter& row = rows[i];
    if (row.keyword == nullptr || (row.value == nullptr && !target.with_defaults)) continue;
    AddOption(*target.list, row.keyword,
              row.value != nullptr ? CString(row.value) : CopyOf(row.default_value));
  }
  return 0;
}

int32_t zGetOptionString(OptionSetter* rows, int32_t count) noexcept {
  if (rows != nullptr && count > 0) ia::RunGetters({rows, static_cast<std::size_t>(count)});
  return 0;
}

int32_t zSetOptionList(OptionSetter* rows, int32_t count, OptionList* options) noexcept {
  return ia::SetOptions(rows, count, {options, true});
}

int32_t zReadXMLandSetOptionList(AnalyzeContext* context, const XmlKeyDescriptor* descriptors,
                                 int32_t key_count, OptionSetter* rows, int32_t row_count,
                                 OptionList* options) noexcept {
  if (context == nullptr || options == nullptr) return -1;
  const int32_t status = analyze_common_readxml(context, descriptors, key_count);
  if (status != 0) return status;
  zGetOptionString(rows, row_count);
  return ia::SetOptions(rows, row_count, {options, true});
}
