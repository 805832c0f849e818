#ifndef TESTS_SUPPORT_OPTION_LISTS_H_
#define TESTS_SUPPORT_OPTION_LISTS_H_

#include <string>
#include <utility>
#include <vector>

#include "info_analyze/option_list.h"
#include "info_analyze/option_table.h"

namespace ia_test {

using Entry = std::pair<std::string, std::string>;
using Entries = std::vector<Entry>;

inline Entries EntriesFrom(const OptTable* first) {
  Entries entries;
  for (const OptTable* node = first; node != nullptr; node = node->next) {
    entries.emplace_back(node->key, node->value);
  }
  return entries;
}

// A list as the callers of an analyser make it: with an empty first node.
class CallersList {
 public:
  CallersList() { info_common_optlist_additem_front(&head_, "", ""); }
  ~CallersList() { OptionList_Terminate(&head_); }
  CallersList(const CallersList&) = delete;
  CallersList& operator=(const CallersList&) = delete;

  OptionList* get() { return head_; }

  // What was appended.
  Entries entries() const { return EntriesFrom(head_->next); }

 private:
  OptionList* head_ = nullptr;
};

// A table with these entries in this order.
inline OptTable* NewTable(const Entries& entries) {
  OptTable* head = nullptr;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    info_common_optlist_additem_front(&head, entry->first.c_str(), entry->second.c_str());
  }
  return head;
}

}  // namespace ia_test

#endif  // TESTS_SUPPORT_OPTION_LISTS_H_
