// Any bytes as a "*QV" line of a PPD, into buffers of any size. The first line is that size.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/input.h"
#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/ppd_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  ia_fuzz::Input input(data, size);
  const std::int32_t capacity = input.TakeNumber();
  const std::string_view text = input.Rest().substr(0, input.Rest().find('\0'));

  const auto source = ia_test::ExactText(text);
  const std::size_t bytes = std::min<std::size_t>(std::max(capacity, 0), text.size() + 1);
  const auto key = ia_test::ExactBytes(std::string(bytes, 'k'));
  const auto value = ia_test::ExactBytes(std::string(bytes, 'v'));
  const std::int32_t result =
      info_common_optlist_getoptkeyandvalue(source.get(), key.get(), value.get(), capacity);

  const ia_test::ParsedLine expected = ia_test::ParseOptionLine(text, capacity);
  ia_fuzz::Require(result == expected.result);
  ia_fuzz::Require(result < 0 || (key.get() == expected.key && value.get() == expected.value));
  return 0;
}
