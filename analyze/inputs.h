// The inputs of options and handlers, by name; the keys that are read come from here.
#ifndef ANALYZE_INPUTS_H_
#define ANALYZE_INPUTS_H_

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <initializer_list>

#include "info_analyze/provenance.h"

namespace ia {

enum class Input : std::int32_t {
#define IA_INPUT(name, document, in_list, type, key) name,
#include "analyze/inputs.inc"
#undef IA_INPUT
};

inline constexpr auto kInputs = std::to_array<InputKey>({
#define IA_INPUT(name, document_of, is_in_list, type_of, key_of) \
  {.document = (document_of), .in_list = (is_in_list), .type = (type_of), .key = (key_of)},
#include "analyze/inputs.inc"
#undef IA_INPUT
});

[[nodiscard]] constexpr const InputKey& KeyOf(Input input) noexcept {
  return kInputs[static_cast<std::size_t>(input)];
}

// The inputs that an option or a handler depends on, in the order of inputs.inc.
class InputList {
 public:
  // Another order, or too many inputs, is a compile error: abort() is no constant expression.
  constexpr InputList(std::initializer_list<Input> inputs) noexcept
      : count_(static_cast<std::int32_t>(inputs.size())) {
    if (inputs.size() > inputs_.size()) std::abort();
    if (!std::ranges::is_sorted(inputs, std::ranges::less_equal())) std::abort();
    std::ranges::copy(inputs, inputs_.begin());
  }

  [[nodiscard]] constexpr std::int32_t Count() const noexcept { return count_; }

  // The number of the input at an index, or IA_NO_INPUT.
  [[nodiscard]] constexpr std::int32_t At(std::int32_t index) const noexcept {
    if (index < 0 || index >= count_) return IA_NO_INPUT;
    return static_cast<std::int32_t>(inputs_[static_cast<std::size_t>(index)]);
  }

 private:
  std::array<Input, 6> inputs_{};
  std::int32_t count_;
};

}  // namespace ia

#endif  // ANALYZE_INPUTS_H_
