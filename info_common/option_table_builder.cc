#include "info_common/option_table_builder.h"

#include <string_view>
#include <utility>

namespace ia {

bool OptionTableBuilder::Put(std::string_view key, std::string_view value) noexcept {
  NodePtr node = NewNode(key, value);
  if (!node) return false;
  if (IsKnown(*node)) return Change(key, value);
  node->next = head_;
  head_ = node.release();
  return true;
}

OptTable* OptionTableBuilder::Take() noexcept {
  index_.emplace();
  return std::exchange(head_, nullptr);
}

bool OptionTableBuilder::IsKnown(OptTable& node) noexcept {
  if (index_) {
    const KeyIndex::Result result = index_->Add(node);
    if (result != KeyIndex::Result::kFailed) return result == KeyIndex::Result::kIsPrefix;
    index_.reset();
  }
  return FindKeyPrefix(head_, node.key) != nullptr;
}

bool OptionTableBuilder::Change(std::string_view key, std::string_view value) noexcept {
  if (!index_) return ChangeValues(head_, key, value);
  bool changed_all = true;
  index_->ForEachVariant(
      key, [&](OptTable& node) { changed_all = ReplaceValue(node, value) && changed_all; });
  return changed_all;
}

}  // namespace ia
