// Any bytes as comma-separated hexadecimal text.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "fuzz/input.h"
#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"

namespace {

constexpr std::size_t kLongest = 1024;  // lists are built by walking them

std::vector<std::int32_t> NumbersOf(std::string_view text) {
  std::vector<std::int32_t> numbers;
  while (!text.empty()) {
    const std::string_view item = text.substr(0, text.find(','));
    text.remove_prefix(std::min(item.size() + 1, text.size()));
    if (!item.empty()) numbers.push_back(ia_fuzz::NumberOf(item, 16));
  }
  std::ranges::sort(numbers);
  return numbers;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), std::min(size, kLongest));
  text = text.substr(0, text.find('\0'));
  LongValList* const list =
      info_common_convert_hex_string_to_long_val_list(ia_test::ExactText(text).get());
  const LongValList* node = list;
  for (const std::int32_t number : NumbersOf(text)) {
    ia_fuzz::Require(node != nullptr && node->value == number);
    node = node->next;
  }
  ia_fuzz::Require(node == nullptr);
  info_common_long_val_list_free(list);
  return 0;
}
