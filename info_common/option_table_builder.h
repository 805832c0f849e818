// Builds an option table as info_common_optlist_additem_front() does, but finds keys in search
// trees: linear searches are too slow for a PPD of tens of thousands of entries.
#ifndef INFO_COMMON_OPTION_TABLE_BUILDER_H_
#define INFO_COMMON_OPTION_TABLE_BUILDER_H_

#include <string_view>

#include "info_common/option_table.h"

namespace ia {

class OptionTableBuilder {
 public:
  OptionTableBuilder() noexcept = default;
  OptionTableBuilder(const OptionTableBuilder&) = delete;
  OptionTableBuilder& operator=(const OptionTableBuilder&) = delete;
  ~OptionTableBuilder();

  // Puts an entry at the front or changes the entries that have its key. False when the entry
  // cannot be allocated; when only the trees cannot, linear searches replace them.
  [[nodiscard]] bool Put(std::string_view key, std::string_view value) noexcept;

  // Returns the table, which the caller then owns; null when it is empty.
  [[nodiscard]] OptTable* Take() noexcept;

 private:
  // Whether some key begins with the node's; when none does, the node joins the tree.
  [[nodiscard]] bool IsKnown(OptTable* node) noexcept;
  [[nodiscard]] bool Change(std::string_view key, std::string_view value) noexcept;
  [[nodiscard]] bool IndexCaseVariant(OptTable* node) noexcept;
  [[nodiscard]] bool IndexAllCaseVariants() noexcept;
  void DropIndex() noexcept;

  OptTable* head_ = nullptr;
  bool indexed_ = true;
  void* by_key_ = nullptr;            // tsearch() tree of the nodes, ordered by key
  void* by_case_variants_ = nullptr;  // likewise ignoring case; made when a key first repeats
};

}  // namespace ia

#endif  // INFO_COMMON_OPTION_TABLE_BUILDER_H_
