// What handlers look at, by name; the keys that they read come from here.
#ifndef ANALYZE_INPUTS_H_
#define ANALYZE_INPUTS_H_

#include <array>
#include <cstddef>
#include <cstdint>

#include "info_analyze/provenance.h"

namespace ia {

enum class Input : std::int32_t {
#define IA_INPUT(name, document, in_list, type, key) name,
#include "analyze/inputs.inc"
#undef IA_INPUT
};

inline constexpr auto kInputs = std::to_array<InputKey>({
#define IA_INPUT(name, document, in_list, type, key) {document, in_list, type, key},
#include "analyze/inputs.inc"
#undef IA_INPUT
});
static_assert(kInputs.size() <= 64, "the inputs of an option are bits of one number");

[[nodiscard]] constexpr const InputKey& KeyOf(Input input) noexcept {
  return kInputs[static_cast<std::size_t>(input)];
}

// The name of an exported function, which must be there.
#define IA_NAME_OF(function) (static_cast<void>(&(function)), #function)

template <class... Inputs>
[[nodiscard]] constexpr std::uint64_t SetOf(Inputs... inputs) noexcept {
  return ((std::uint64_t{1} << static_cast<unsigned>(inputs)) | ... | std::uint64_t{0});
}

// An option whose value is the text of one input.
[[nodiscard]] constexpr OptionSource ValueOption(const char* keyword, OptionGetter getter,
                                                 const char* default_value, Input input,
                                                 std::uint64_t others = 0) noexcept {
  return {keyword,
          getter,
          default_value,
          IA_FAMILY_NONE,
          static_cast<std::int32_t>(input),
          SetOf(input) | others};
}

// An option that follows from several inputs.
[[nodiscard]] constexpr OptionSource DecidedOption(const char* keyword, OptionGetter getter,
                                                   const char* default_value,
                                                   std::uint64_t inputs) noexcept {
  return {keyword, getter, default_value, IA_FAMILY_NONE, IA_NO_INPUT, inputs};
}

// An option that the handlers of a family decide.
[[nodiscard]] constexpr OptionSource ModelOption(const char* keyword, OptionGetter getter,
                                                 const char* default_value,
                                                 std::int32_t family) noexcept {
  return {keyword, getter, default_value, family, IA_NO_INPUT, SetOf(Input::kModelCode)};
}

}  // namespace ia

#endif  // ANALYZE_INPUTS_H_
