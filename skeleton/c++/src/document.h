// A document as a tree, which the reader answers from and the writer builds.
#ifndef DOCUMENT_H_
#define DOCUMENT_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

constexpr std::size_t kMaxDepth = 16;  // of containers in each other

struct Value;

struct Text {
  std::string bytes;  // UTF-8
};

struct Bytes {
  std::string bytes;
};

// Several dictionaries under one key are the items of a list.
struct Dictionary {
  std::vector<Value> values;
};

struct Array {
  std::vector<Value> values;
};

using Content = std::variant<std::int32_t, double, Text, Bytes, Dictionary, Array>;

struct Value {
  std::string key;  // empty in an array
  Content content;
};

inline bool IsContainer(const Content& content) {
  return std::holds_alternative<Dictionary>(content) || std::holds_alternative<Array>(content);
}

// A document that is being built, and its current container.
class Builder {
 public:
  [[nodiscard]] bool IsInArray() const;

  // Adds a value to the current container; one that is a container becomes the current one. False
  // when too many containers would be in each other.
  bool Add(std::string key, Content content);

  // Goes back from the current container, which must be of this type and not the outermost.
  template <class Container>
  bool Close() {
    if (open_.size() == 1 || !std::holds_alternative<Container>(open_.back().content)) return false;
    Fold();
    return true;
  }

  // The outermost dictionary, with all that is in it.
  [[nodiscard]] Dictionary Finish();

 private:
  void Fold();  // puts the current container into the one around it

  std::vector<Value> open_ = {{"", Dictionary()}};  // from the outermost
};

// The document in these bytes; nothing when they are none.
std::optional<Dictionary> ParseDocument(std::string_view bytes);

std::string FormatDocument(const Dictionary& document);

#endif
