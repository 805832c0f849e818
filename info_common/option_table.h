// Building blocks of the option table's functions.
#ifndef INFO_COMMON_OPTION_TABLE_H_
#define INFO_COMMON_OPTION_TABLE_H_

#include <cstdlib>
#include <memory>
#include <string_view>

#include "info_analyze/option_table.h"
#include "info_common/owned.h"

namespace ia {

// Frees a node with its texts, without the nodes after it.
struct NodeDeleter {
  void operator()(OptTable* node) const noexcept {
    std::free(node->key);
    std::free(node->value);
    std::free(node);
  }
};
using NodePtr = std::unique_ptr<OptTable, NodeDeleter>;

// A node that owns both texts. Null when one of them is, or when an allocation fails.
[[nodiscard]] NodePtr NewNode(CString key, CString value) noexcept;

// A node with copies of both texts. Null when an allocation fails.
[[nodiscard]] NodePtr NewNode(std::string_view key, std::string_view value) noexcept;

// First node whose key begins with the given text.
[[nodiscard]] OptTable* FindKeyPrefix(OptTable* head, std::string_view key) noexcept;

// Value of the first node whose key equals the given one, ignoring case; borrowed, or null.
[[nodiscard]] const char* FindValue(const OptTable* head, std::string_view key) noexcept;

// The first node from the cursor on whose key holds the text, ignoring case; null when there is
// none. The cursor moves to the node after it.
[[nodiscard]] OptTable* TakeKeyHolding(OptTable*& cursor, std::string_view text) noexcept;

// The last node of a list that has one.
[[nodiscard]] OptTable* LastOf(OptTable* list) noexcept;

// False, and the node unchanged, when an allocation fails.
[[nodiscard]] bool ReplaceValue(OptTable& node, std::string_view value) noexcept;

// Replaces the value of every node whose key equals the given one, ignoring case; false when
// an allocation fails for some of them.
bool ChangeValues(OptTable* head, std::string_view key, std::string_view value) noexcept;

// Appends an entry to a table that has a node, or changes the entries that have its key, as
// info_common_optlist_additem_back() does; false when an allocation fails.
[[nodiscard]] bool AddBack(OptTable& head, std::string_view key, std::string_view value) noexcept;

// As AddBack(), for an option of a list. Omits an option without a value or when an allocation
// fails.
void AddOption(OptTable& list, const char* keyword, const char* value) noexcept;

// The same, for a value that a new entry takes over instead of a copy.
void AddOption(OptTable& list, const char* keyword, CString value) noexcept;

// Frees a whole table; null is an empty one.
void FreeTable(OptTable* head) noexcept;

}  // namespace ia

#endif  // INFO_COMMON_OPTION_TABLE_H_
