#include "info_common/option_table_builder.h"

#include <search.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "info_common/ascii.h"

namespace ia {
namespace {

// Keys that differ only in letter case stand in the table as nodes of their own but change their
// values together. The tree holds the first of such twins, which leads to the others.
struct Twins {
  OptTable* node;
  Twins* next;
};

// Zero for every key that begins with the new one: in the tree's order they stand together.
int ComparePrefix(const void* added, const void* node) noexcept {
  const char* const prefix = static_cast<const OptTable*>(added)->key;
  return std::strncmp(prefix, static_cast<const OptTable*>(node)->key, std::strlen(prefix));
}

int CompareTwins(const void* left, const void* right) noexcept {
  return CompareIgnoringCase(static_cast<const Twins*>(left)->node->key,
                             static_cast<const Twins*>(right)->node->key);
}

int CompareWithTwins(const void* wanted, const void* twins) noexcept {
  return CompareIgnoringCase(*static_cast<const std::string_view*>(wanted),
                             static_cast<const Twins*>(twins)->node->key);
}

void KeepNode(void*) noexcept {}

void FreeTwins(void* first) noexcept {
  for (auto* twins = static_cast<Twins*>(first); twins != nullptr;) {
    std::free(std::exchange(twins, twins->next));
  }
}

}  // namespace

OptionTableBuilder::~OptionTableBuilder() {
  DropIndex();
  FreeTable(head_);
}

bool OptionTableBuilder::Put(std::string_view key, std::string_view value) noexcept {
  NodePtr node = NewNode(key, value);
  if (!node) return false;
  if (IsKnown(node.get())) return Change(key, value);
  node->next = head_;
  head_ = node.release();
  if (by_twins_ != nullptr && !IndexTwins(head_)) DropIndex();
  return true;
}

OptTable* OptionTableBuilder::Take() noexcept {
  DropIndex();
  return std::exchange(head_, nullptr);
}

bool OptionTableBuilder::IsKnown(OptTable* node) noexcept {
  if (indexed_) {
    const void* const found = tsearch(node, &by_key_, ComparePrefix);
    if (found != nullptr) return *static_cast<OptTable* const*>(found) != node;
    DropIndex();
  }
  return FindKeyPrefix(head_, node->key) != nullptr;
}

bool OptionTableBuilder::Change(std::string_view key, std::string_view value) noexcept {
  if (indexed_ && by_twins_ == nullptr && !IndexAllTwins()) DropIndex();
  if (!indexed_) return ChangeValues(head_, key, value);
  const void* const found = tfind(&key, &by_twins_, CompareWithTwins);
  if (found == nullptr) return true;
  bool changed_all = true;
  for (auto* twins = *static_cast<Twins* const*>(found); twins != nullptr; twins = twins->next) {
    changed_all = ReplaceValue(*twins->node, value) && changed_all;
  }
  return changed_all;
}

bool OptionTableBuilder::IndexTwins(OptTable* node) noexcept {
  CPtr<Twins> twins = NewZeroed<Twins>();
  if (!twins) return false;
  twins->node = node;
  void* const found = tsearch(twins.get(), &by_twins_, CompareTwins);
  if (found == nullptr) return false;
  Twins* const first = *static_cast<Twins**>(found);
  if (first != twins.get()) twins->next = std::exchange(first->next, twins.get());
  static_cast<void>(twins.release());
  return true;
}

bool OptionTableBuilder::IndexAllTwins() noexcept {
  for (OptTable* node = head_; node != nullptr; node = node->next) {
    if (!IndexTwins(node)) return false;
  }
  return true;
}

void OptionTableBuilder::DropIndex() noexcept {
  tdestroy(std::exchange(by_key_, nullptr), KeepNode);
  tdestroy(std::exchange(by_twins_, nullptr), FreeTwins);
  indexed_ = false;
}

}  // namespace ia
