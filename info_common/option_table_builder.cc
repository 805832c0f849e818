#include "info_common/option_table_builder.h"

#include <search.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "info_common/ascii.h"

namespace ia {
namespace {

// Keys that differ only in case are separate nodes of the table, but change their values together.
// The tree holds the first variant of each key; the others follow it in its list.
struct CaseVariant {
  OptTable* node;
  CaseVariant* next;
};

// Zero for every key that begins with the new one; such keys are adjacent in the tree's order.
int ComparePrefix(const void* added, const void* node) noexcept {
  const char* const prefix = static_cast<const OptTable*>(added)->key;
  return std::strncmp(prefix, static_cast<const OptTable*>(node)->key, std::strlen(prefix));
}

int CompareCaseVariants(const void* left, const void* right) noexcept {
  return CompareIgnoringCase(static_cast<const CaseVariant*>(left)->node->key,
                             static_cast<const CaseVariant*>(right)->node->key);
}

int CompareWithCaseVariant(const void* wanted, const void* variant) noexcept {
  return CompareIgnoringCase(*static_cast<const std::string_view*>(wanted),
                             static_cast<const CaseVariant*>(variant)->node->key);
}

void KeepNode(void*) noexcept {}

void FreeCaseVariants(void* first) noexcept {
  for (auto* variant = static_cast<CaseVariant*>(first); variant != nullptr;) {
    std::free(std::exchange(variant, variant->next));
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
  if (by_case_variants_ != nullptr && !IndexCaseVariant(head_)) DropIndex();
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
  if (indexed_ && by_case_variants_ == nullptr && !IndexAllCaseVariants()) DropIndex();
  if (!indexed_) return ChangeValues(head_, key, value);
  const void* const found = tfind(&key, &by_case_variants_, CompareWithCaseVariant);
  if (found == nullptr) return true;
  bool changed_all = true;
  for (auto* variant = *static_cast<CaseVariant* const*>(found); variant != nullptr;
       variant = variant->next) {
    changed_all = ReplaceValue(*variant->node, value) && changed_all;
  }
  return changed_all;
}

bool OptionTableBuilder::IndexCaseVariant(OptTable* node) noexcept {
  CPtr<CaseVariant> variant = NewZeroed<CaseVariant>();
  if (!variant) return false;
  variant->node = node;
  void* const found = tsearch(variant.get(), &by_case_variants_, CompareCaseVariants);
  if (found == nullptr) return false;
  CaseVariant* const first = *static_cast<CaseVariant**>(found);
  if (first != variant.get()) variant->next = std::exchange(first->next, variant.get());
  static_cast<void>(variant.release());
  return true;
}

bool OptionTableBuilder::IndexAllCaseVariants() noexcept {
  for (OptTable* node = head_; node != nullptr; node = node->next) {
    if (!IndexCaseVariant(node)) return false;
  }
  return true;
}

void OptionTableBuilder::DropIndex() noexcept {
  tdestroy(std::exchange(by_key_, nullptr), KeepNode);
  tdestroy(std::exchange(by_case_variants_, nullptr), FreeCaseVariants);
  indexed_ = false;
}

}  // namespace ia
