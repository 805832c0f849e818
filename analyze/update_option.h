// The rows from which update handlers make their options.
#ifndef ANALYZE_UPDATE_OPTION_H_
#define ANALYZE_UPDATE_OPTION_H_

#include <cstdint>

#include "analyze/inputs.h"
#include "info_analyze/option_setter.h"
#include "info_analyze/provenance.h"

namespace ia {

// An option that an update handler sets; the fields are those of OptionSource.
struct UpdateOption {
  const char* keyword;
  OptionGetter getter;
  const char* default_value;
  std::int32_t family;
  std::int32_t value_input;
  InputList inputs;
};

// An option whose value is the text of one input, which may be one of several that matter.
[[nodiscard]] constexpr UpdateOption ValueOption(const char* keyword, OptionGetter getter,
                                                 const char* default_value, Input input,
                                                 InputList inputs) noexcept {
  return {.keyword = keyword,
          .getter = getter,
          .default_value = default_value,
          .family = IA_FAMILY_NONE,
          .value_input = static_cast<std::int32_t>(input),
          .inputs = inputs};
}
[[nodiscard]] constexpr UpdateOption ValueOption(const char* keyword, OptionGetter getter,
                                                 const char* default_value, Input input) noexcept {
  return ValueOption(keyword, getter, default_value, input, {input});
}

// An option that follows from several inputs.
[[nodiscard]] constexpr UpdateOption DecidedOption(const char* keyword, OptionGetter getter,
                                                   const char* default_value,
                                                   InputList inputs) noexcept {
  return {.keyword = keyword,
          .getter = getter,
          .default_value = default_value,
          .family = IA_FAMILY_NONE,
          .value_input = IA_NO_INPUT,
          .inputs = inputs};
}

// An option that the handlers of a family decide.
[[nodiscard]] constexpr UpdateOption ModelOption(const char* keyword, OptionGetter getter,
                                                 const char* default_value,
                                                 std::int32_t family) noexcept {
  return {.keyword = keyword,
          .getter = getter,
          .default_value = default_value,
          .family = family,
          .value_input = IA_NO_INPUT,
          .inputs = {Input::kModelCode}};
}

}  // namespace ia

#endif  // ANALYZE_UPDATE_OPTION_H_
