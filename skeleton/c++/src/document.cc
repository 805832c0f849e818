#include "document.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

std::vector<Value>& ValuesOf(Value& container) {
  Array* const array = std::get_if<Array>(&container.content);
  return array != nullptr ? array->values : std::get<Dictionary>(container.content).values;
}

}  // namespace

bool Builder::IsInArray() const { return std::holds_alternative<Array>(open_.back().content); }

bool Builder::Add(std::string key, Content content) {
  Value value = {std::move(key), std::move(content)};
  if (!IsContainer(value.content)) {
    ValuesOf(open_.back()).push_back(std::move(value));
    return true;
  }
  if (open_.size() == kMaxDepth) return false;
  open_.push_back(std::move(value));
  return true;
}

Dictionary Builder::Finish() {
  while (open_.size() > 1) Fold();
  return std::get<Dictionary>(std::move(open_.back().content));
}

void Builder::Fold() {
  Value value = std::move(open_.back());
  open_.pop_back();
  ValuesOf(open_.back()).push_back(std::move(value));
}
