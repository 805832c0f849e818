// Finds the nodes of an option table by key while the table is built. The nodes stay where they
// are; the index is three arrays, however many there are.
//
// A crit-bit tree of the keys answers whether any key begins with a new one: in this tree, they are
// all below one branch. A hash table of the keys, ignoring case, finds the keys that equal a new
// one.
#ifndef INFO_COMMON_KEY_INDEX_H_
#define INFO_COMMON_KEY_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "info_analyze/option_table.h"
#include "info_common/owned.h"

namespace ia {

class KeyIndex {
 public:
  enum class Result {
    kAdded,
    kIsPrefix,  // some key begins with that of the node, which was not added
    kFailed,    // an allocation failed or the key is too long; the index is of no further use
  };

  KeyIndex() noexcept = default;
  KeyIndex(const KeyIndex&) = delete;
  KeyIndex& operator=(const KeyIndex&) = delete;

  // The node must not move while the index is used.
  [[nodiscard]] Result Add(OptTable& node) noexcept;

  // Calls visit(node) for each node whose key equals the given one, ignoring case. Some node must
  // have been added.
  template <class Visit>
  void ForEachVariant(std::string_view key, Visit visit) const noexcept {
    for (std::uint32_t number = slots_[SlotOf(key, HashOf(key))]; number != kNone;
         number = leaves_[number].next_variant) {
      visit(*leaves_[number].node);
    }
  }

 private:
  static constexpr std::uint32_t kNone = 0;  // the numbers of leaves begin at 1

  struct Leaf {
    OptTable* node;
    std::uint32_t hash;          // of the key, ignoring case
    std::uint32_t next_variant;  // number of the next leaf whose key differs in case only, or kNone
  };

  // Divides keys whose earlier bits are all equal into those in which a bit is 0 and those in which
  // it is 1. Each leaf but the first comes with a branch, which has the leaf's number.
  struct Branch {
    std::uint32_t bit;         // from 0, the highest bit of the first byte
    std::int32_t children[2];  // numbers of branches, or of leaves negated
  };

  [[nodiscard]] Branch& BranchAt(std::int32_t number) noexcept {
    return branches_[static_cast<std::size_t>(number)];
  }
  // Adds the branch for the next leaf; false when some key begins with the given one.
  [[nodiscard]] bool AddBranch(std::string_view key) noexcept;
  [[nodiscard]] std::uint32_t HashOf(std::string_view key) const noexcept;
  // Index of the slot of the key's variants, or of the free one where they belong.
  [[nodiscard]] std::size_t SlotOf(std::string_view key, std::uint32_t hash) const noexcept;
  [[nodiscard]] bool Grow() noexcept;

  std::uint32_t size_ = 0;  // number of the last leaf
  std::uint32_t capacity_ = 0;
  std::int32_t root_ = 0;
  CPtr<Leaf[]> leaves_;
  CPtr<Branch[]> branches_;
  CPtr<std::uint32_t[]> slots_;  // numbers of leaves by hash: the latest variant of each key
};

}  // namespace ia

#endif  // INFO_COMMON_KEY_INDEX_H_
