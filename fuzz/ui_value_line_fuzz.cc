// Any bytes as what follows "*%QVUIValue:" in a PPD.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "fuzz/input.h"
#include "info_analyze/option_table.h"
#include "tests/info_common/guarded_buffer.h"
#include "tests/info_common/ppd_model.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string_view text = bytes.substr(0, bytes.find('\0'));

  const auto source = ia_test::ExactText(text);
  const auto key = ia_test::ExactBytes(std::string(IA_PPD_TEXT_SIZE, 'k'));
  const auto value = ia_test::ExactBytes(std::string(IA_PPD_TEXT_SIZE, 'v'));
  const std::int32_t result =
      info_common_optlist_qvuivalue_getoptkeyandvalue(source.get(), key.get(), value.get());

  const ia_test::ParsedLine expected = ia_test::ParseUiValueLine(text);
  ia_fuzz::Require(result == expected.result);
  ia_fuzz::Require(result < 0 || (key.get() == expected.key && value.get() == expected.value));
  return 0;
}
