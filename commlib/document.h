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
  Type type;
  std::string_view key;  // unused within an array
  pugi::xml_node node;
  std::size_t first_child = 0;
  std::size_t child_count = 0;

  // The element's own characters, without those of nested elements.
  [[nodiscard]] std::string Text() const;
};

// All values of a document in one vector; the values of a container are adjacent. Those of an array
// keep their order; those of a dictionary are stably sorted by type and key. So a lookup takes
// logarithmic time, however large a list is.
class Document {
 public:
  // Null when the bytes are not a valid document.
  [[nodiscard]] static std::unique_ptr<Document> Parse(std::string_view bytes);

  [[nodiscard]] const Element& outermost() const { return elements_.front(); }
  [[nodiscard]] std::span<const Element> Children(const Element& container) const;
  [[nodiscard]] std::span<const Element> FindAll(const Element& dictionary, Type type,
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
