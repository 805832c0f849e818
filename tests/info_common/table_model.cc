#include "tests/info_common/table_model.h"

#include <string.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace ia_test {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

char* Copy(const char* text) { return text == nullptr ? nullptr : strdup(text); }

template <class Predicate>
int IndexIf(const Entries& entries, Predicate matches) {
  const auto hit = std::find_if(entries.begin(), entries.end(),
                                [&](const Entry& entry) { return matches(entry.first); });
  return hit == entries.end() ? -1 : static_cast<int>(hit - entries.begin());
}

}  // namespace

OptTable* NewNode(const char* key, const char* value, OptTable* next) {
  auto* node = static_cast<OptTable*>(std::malloc(sizeof(OptTable)));
  *node = OptTable{Copy(key), Copy(value), next};
  return node;
}

Table MakeTable(const Entries& entries) {
  OptTable* head = nullptr;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    head = NewNode(entry->first.c_str(), entry->second.c_str(), head);
  }
  return Table(head);
}

Entries EntriesOf(const OptTable* head) {
  Entries entries;
  for (; head != nullptr; head = head->next) entries.emplace_back(head->key, head->value);
  return entries;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

int TableModel::Find(std::string_view key) const {
  return IndexIf(entries_, [&](std::string_view present) { return present.starts_with(key); });
}

int TableModel::FindEqual(std::string_view key) const {
  return IndexIf(entries_,
                 [&](std::string_view present) { return EqualIgnoringCase(present, key); });
}

void TableModel::ChangeValue(std::string_view key, const std::string& value) {
  for (Entry& entry : entries_) {
    if (EqualIgnoringCase(entry.first, key)) entry.second = value;
  }
}

void TableModel::AddFront(const std::string& key, const std::string& value) {
  if (Find(key) >= 0) {
    ChangeValue(key, value);
  } else {
    entries_.insert(entries_.begin(), {key, value});
  }
}

void TableModel::AddBack(const std::string& key, const std::string& value) {
  if (entries_.empty()) return;
  if (Find(key) >= 0) {
    ChangeValue(key, value);
  } else {
    entries_.emplace_back(key, value);
  }
}

}  // namespace ia_test
