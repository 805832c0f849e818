#include "info_common/option_table.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "info_common/ascii.h"

namespace ia {
namespace {

// A loop is faster than strncmp(), because most keys differ in one of their first bytes. The NUL of
// a shorter key differs, too.
bool HasKeyPrefix(const OptTable& node, std::string_view prefix) noexcept {
  return node.key != nullptr &&
         std::mismatch(prefix.begin(), prefix.end(), node.key).first == prefix.end();
}

// The node that a new one with this key comes after. Null when there is none, because some key
// begins with this one.
//
// The search is case-sensitive and finds keys that begin with the new one; the change of values
// ignores case and needs an equal key. PPDs rely on this difference: "QVFin" is neither added
// beside "QVFinisher" nor changes it, and "qvfoo" is added beside "QVFoo".
OptTable* LastBeforeNew(OptTable& head, std::string_view key) noexcept {
  OptTable* last = nullptr;
  for (OptTable* node = &head; node != nullptr; node = node->next) {
    if (HasKeyPrefix(*node, key)) return nullptr;
    last = node;
  }
  return last;
}

}  // namespace

NodePtr NewNode(CString key, CString value) noexcept {
  if (!key || !value) return nullptr;
  NodePtr node(static_cast<OptTable*>(std::malloc(sizeof(OptTable))));
  if (node) *node = {.key = key.release(), .value = value.release(), .next = nullptr};
  return node;
}

NodePtr NewNode(std::string_view key, std::string_view value) noexcept {
  return NewNode(Duplicate(key), Duplicate(value));
}

OptTable* FindKeyPrefix(OptTable* head, std::string_view key) noexcept {
  OptTable* node = head;
  while (node != nullptr && !HasKeyPrefix(*node, key)) node = node->next;
  return node;
}

const char* FindValue(const OptTable* head, std::string_view key) noexcept {
  for (const OptTable* node = head; node != nullptr; node = node->next) {
    if (node->key != nullptr && EqualsIgnoringCase(node->key, key)) return node->value;
  }
  return nullptr;
}

OptTable* TakeKeyHolding(OptTable*& cursor, std::string_view text) noexcept {
  while (cursor != nullptr) {
    OptTable* const node = std::exchange(cursor, cursor->next);
    if (node->key != nullptr && ContainsIgnoringCase(node->key, text)) return node;
  }
  return nullptr;
}

OptTable* LastOf(OptTable* list) noexcept {
  while (list->next != nullptr) list = list->next;
  return list;
}

bool ReplaceValue(OptTable& node, std::string_view value) noexcept {
  CString copy = Duplicate(value);
  if (!copy) return false;
  std::free(node.value);
  node.value = copy.release();
  return true;
}

bool ChangeValues(OptTable* head, std::string_view key, std::string_view value) noexcept {
  bool changed_all = true;
  for (OptTable* node = head; node != nullptr; node = node->next) {
    if (node->key != nullptr && EqualsIgnoringCase(node->key, key)) {
      changed_all = ReplaceValue(*node, value) && changed_all;
    }
  }
  return changed_all;
}

bool AddBack(OptTable& head, std::string_view key, std::string_view value) noexcept {
  OptTable* const last = LastBeforeNew(head, key);
  if (last == nullptr) return ChangeValues(&head, key, value);
  last->next = NewNode(key, value).release();
  return last->next != nullptr;
}

void AddOption(OptTable& list, const char* keyword, const char* value) noexcept {
  if (value != nullptr) static_cast<void>(AddBack(list, keyword, value));
}

void AddOption(OptTable& list, const char* keyword, CString value) noexcept {
  if (!value) return;
  OptTable* const last = LastBeforeNew(list, keyword);
  if (last == nullptr) {
    ChangeValues(&list, keyword, value.get());
  } else {
    last->next = NewNode(Duplicate(keyword), std::move(value)).release();
  }
}

void FreeTable(OptTable* head) noexcept {
  while (head != nullptr) NodePtr(std::exchange(head, head->next)).reset();
}

}  // namespace ia

void info_common_optlist_destroy(OptTable* head) noexcept { ia::FreeTable(head); }

OptTable* info_common_optlist_find(OptTable* head, const char* key) noexcept {
  return key != nullptr ? ia::FindKeyPrefix(head, key) : nullptr;
}

char* info_common_optlist_getvalue(const OptTable* head, const char* key) noexcept {
  if (key == nullptr) return nullptr;
  return ia::CopyOf(ia::FindValue(head, key)).release();
}

void info_common_optlist_changevalue(OptTable* head, const char* key, const char* value) noexcept {
  if (key != nullptr && value != nullptr) ia::ChangeValues(head, key, value);
}

void info_common_optlist_additem_back(OptTable* head, const char* key, const char* value) noexcept {
  if (head != nullptr && key != nullptr) ia::AddOption(*head, key, value);
}

void info_common_optlist_additem_front(OptTable** head, const char* key,
                                       const char* value) noexcept {
  if (head == nullptr || key == nullptr || value == nullptr) return;
  if (ia::FindKeyPrefix(*head, key) != nullptr) {
    ia::ChangeValues(*head, key, value);
    return;
  }
  OptTable* const node = ia::NewNode(key, value).release();
  if (node == nullptr) return;
  node->next = *head;
  *head = node;
}
