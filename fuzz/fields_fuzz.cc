// Any bytes as a value of fields, such as "type=stitcher;unit=sheets;".
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/acquire/fields.h"
#include "fuzz/input.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const ia::cli::Fields fields = ia::cli::ParseFields(bytes);
  std::string text;
  for (const auto& [name, value] : fields) {
    ia_fuzz::Require(!name.empty() && name.find_first_of("=;") == std::string::npos);
    ia_fuzz::Require(ia::cli::CleanText(value) == value);
    for (const char byte : value) ia_fuzz::Require(static_cast<unsigned char>(byte) >= 0x20);
    ia::cli::AppendField(name, value, text);
  }
  // A name may contain bytes that are no UTF-8, or a backslash; those are kept.
  ia_fuzz::Require(ia::cli::ParseFields(text) == fields);
  return 0;
}
