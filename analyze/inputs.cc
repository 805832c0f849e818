#include "analyze/inputs.h"

#include <cstddef>
#include <cstdint>

#include "analyze/record_copy.h"

int32_t Analyze_Provenance_GetInput(int32_t input, InputKey* key, size_t size) noexcept {
  if (input < 0 || input >= static_cast<int32_t>(ia::kInputs.size())) return 0;
  const InputKey& found = ia::kInputs[static_cast<std::size_t>(input)];
  return ia::CopyRecord(found, found.key, key, size);
}
