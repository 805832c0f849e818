#include "cli/audit/judgement.h"

#include <algorithm>
#include <cstddef>

namespace ia::cli {

std::size_t Judgement::Count(OptionState option_state) const {
  return static_cast<std::size_t>(std::ranges::count(options, option_state, &JudgedOption::state));
}

bool Judgement::Differs() const {
  return Count(OptionState::kDiffers) + Count(OptionState::kNotOffered) > 0;
}

bool Judgement::IsUnjudged() const {
  return state == QueueState::kFailed || Count(OptionState::kUnknown) > 0;
}

}  // namespace ia::cli
