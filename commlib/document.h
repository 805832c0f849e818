// A parsed document.
#ifndef INFO_ANALYZE_COMMLIB_DOCUMENT_H_
#define INFO_ANALYZE_COMMLIB_DOCUMENT_H_

#include <cstddef>
#include <memory>
#include <pugixml.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "commlib/document_format.h"

namespace commlib {

// One value of a document. Keys and nodes belong to the document.
struct Element {
  Kind kind;
  std::string_view key;  // means nothing within an array
  pugi::xml_node node;
  std::size_t first_child = 0;
  std::size_t child_count = 0;

  // The characters in the element, without those of elements within.
  [[nodiscard]] std::string Text() const;
};

// All values of a document in one row, each container's own beside each other: those of an array
// in their order, those of a dictionary sorted by kind and key and, under one key, in their order.
// So every value is found in logarithmic time however large a list is.
class Document {
 public:
  // Null when the bytes are no document.
  [[nodiscard]] static std::unique_ptr<Document> Parse(std::string_view bytes);

  [[nodiscard]] const Element& outermost() const { return elements_.front(); }
  [[nodiscard]] std::span<const Element> Children(const Element& container) const;
  [[nodiscard]] std::span<const Element> FindAll(const Element& dictionary, Kind kind,
                                                 std::string_view key) const;

 private:
  Document() = default;
  void AddAll(pugi::xml_node root);
  void AddChildren(std::size_t container);

  pugi::xml_document xml_;
  std::vector<Element> elements_;
};

}  // namespace commlib

#endif  // INFO_ANALYZE_COMMLIB_DOCUMENT_H_
