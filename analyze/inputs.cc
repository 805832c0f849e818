#include "analyze/inputs.h"

const InputKey* Analyze_Provenance_GetInput(int32_t input) noexcept {
  if (input < 0 || input >= static_cast<std::int32_t>(ia::kInputs.size())) return nullptr;
  return &ia::kInputs[static_cast<std::size_t>(input)];
}
