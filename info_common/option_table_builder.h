// Builds an option table as info_common_optlist_additem_front() does, but finds keys in an index:
// linear searches are too slow for a PPD of tens of thousands of entries.
#ifndef INFO_COMMON_OPTION_TABLE_BUILDER_H_
#define INFO_COMMON_OPTION_TABLE_BUILDER_H_

#include <optional>
#include <string_view>
#include <utility>

#include "info_common/key_index.h"
#include "info_common/option_table.h"

namespace ia {

class OptionTableBuilder {
 public:
  OptionTableBuilder() noexcept = default;
  OptionTableBuilder(const OptionTableBuilder&) = delete;
  OptionTableBuilder& operator=(const OptionTableBuilder&) = delete;
  ~OptionTableBuilder() { FreeTable(head_); }

  // Puts an entry at the front or changes the entries that have its key. False when the entry
  // cannot be allocated; when only the index cannot, linear searches replace it.
  [[nodiscard]] bool Put(std::string_view key, std::string_view value) noexcept;

  // Returns the table, which the caller then owns; null when it is empty.
  [[nodiscard]] OptTable* Take() noexcept;

 private:
  // Whether some key begins with the node's; when none does, the node joins the index.
  [[nodiscard]] bool IsKnown(OptTable& node) noexcept;
  [[nodiscard]] bool Change(std::string_view key, std::string_view value) noexcept;

  OptTable* head_ = nullptr;
  std::optional<KeyIndex> index_{std::in_place};  // nullopt after an allocation failed
};

}  // namespace ia

#endif  // INFO_COMMON_OPTION_TABLE_BUILDER_H_
