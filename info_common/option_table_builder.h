// Builds an option table by putting entries at its front, as info_common_optlist_additem_front()
// does, but with search trees in place of its walks: a PPD of tens of thousands of entries is read
// while somebody waits.
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

  // Puts an entry at the front or changes the entries that have its key. False when memory ran out
  // for the entry; when it ran out for the trees alone, the plain walks take over.
  [[nodiscard]] bool Put(std::string_view key, std::string_view value) noexcept;

  // Hands the table over; null when it is empty.
  [[nodiscard]] OptTable* Take() noexcept;

 private:
  // Whether some key begins with the node's; when none does, the tree takes the node in.
  [[nodiscard]] bool IsKnown(OptTable* node) noexcept;
  [[nodiscard]] bool Change(std::string_view key, std::string_view value) noexcept;
  [[nodiscard]] bool IndexTwins(OptTable* node) noexcept;
  [[nodiscard]] bool IndexAllTwins() noexcept;
  void DropIndex() noexcept;

  OptTable* head_ = nullptr;
  bool indexed_ = true;
  void* by_key_ = nullptr;    // tsearch() tree of the nodes, ordered by key
  void* by_twins_ = nullptr;  // likewise ignoring case; made when a key first repeats
};

}  // namespace ia

#endif  // INFO_COMMON_OPTION_TABLE_BUILDER_H_
