// Adding flags to an option list under indexed keys: a base key alone, then base_1, base_2, ...
#ifndef INFO_COMMON_FLAG_KEYS_H_
#define INFO_COMMON_FLAG_KEYS_H_

#include <cstdint>
#include <string_view>

#include "info_analyze/option_list.h"

namespace ia {

class FlagAdder {
 public:
  // The first index is above those in the source and in the list.
  FlagAdder(const OptTable* source, const char* base, OptionList& list) noexcept;

  // Adds each item of the text; -1 when an allocation fails.
  [[nodiscard]] std::int32_t Add(const char* text) noexcept;

 private:
  [[nodiscard]] bool AddItem(std::string_view item) noexcept;

  const char* base_;
  std::int32_t index_;  // of the next key
  OptionList& list_;
  OptTable* last_;  // node of the list
};

}  // namespace ia

#endif  // INFO_COMMON_FLAG_KEYS_H_
