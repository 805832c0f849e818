#ifndef TESTS_INFO_COMMON_TABLE_MODEL_H_
#define TESTS_INFO_COMMON_TABLE_MODEL_H_

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "info_analyze/option_table.h"

namespace ia_test {

using Entry = std::pair<std::string, std::string>;
using Entries = std::vector<Entry>;

struct TableDeleter {
  void operator()(OptTable* head) const { info_common_optlist_destroy(head); }
};
using Table = std::unique_ptr<OptTable, TableDeleter>;

// Nodes made by hand, so that a test of one function does not lean on another one.
Table MakeTable(const Entries& entries);
// A node without key, value or both, as only a caller can make it; null texts stay null.
OptTable* NewNode(const char* key, const char* value, OptTable* next);

Entries EntriesOf(const OptTable* head);

bool EqualIgnoringCase(std::string_view a, std::string_view b);

// The insertion rules over a plain vector.
class TableModel {
 public:
  TableModel() = default;
  explicit TableModel(Entries entries) : entries_(std::move(entries)) {}

  void AddFront(const std::string& key, const std::string& value);
  void AddBack(const std::string& key, const std::string& value);
  void ChangeValue(std::string_view key, const std::string& value);

  // Index of the entry, or -1.
  int Find(std::string_view key) const;
  int FindEqual(std::string_view key) const;

  const Entries& entries() const { return entries_; }

 private:
  Entries entries_;
};

}  // namespace ia_test

#endif  // TESTS_INFO_COMMON_TABLE_MODEL_H_
