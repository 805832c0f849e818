#ifndef CALIB_ARGUMENTS_H_
#define CALIB_ARGUMENTS_H_

namespace ia {

[[nodiscard]] constexpr bool HasNull(const auto*... pointers) noexcept {
  return (... || (pointers == nullptr));
}

}  // namespace ia

#endif  // CALIB_ARGUMENTS_H_
