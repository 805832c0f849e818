// The C++ library of GCC 12 sorts by a function that it has marked as deprecated.
#ifdef __clang__
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
#endif

#include "commlib/document.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "commlib/xml_text.h"

namespace commlib {
namespace {

// Unescape() resolves references, because the parser accepts invalid ones. The document is parsed
// as a fragment, so that text outside the outermost element can be refused.
constexpr unsigned int kParseOptions =
    pugi::parse_cdata | pugi::parse_eol | pugi::parse_wconv_attribute | pugi::parse_ws_pcdata |
    pugi::parse_declaration | pugi::parse_doctype | pugi::parse_fragment;

// Resolves the references of a whole document in place, and checks the depth limit.
// pugixml walks without recursion.
class ReferenceResolver : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    switch (node.type()) {
      case pugi::node_element:
        return static_cast<std::size_t>(depth()) < kMaxDepth &&
               std::ranges::all_of(node.attributes(), Resolve<pugi::xml_attribute>);
      case pugi::node_pcdata:
        return Resolve(node);
      default:
        return true;
    }
  }

 private:
  template <class Holder>
  static bool Resolve(Holder holder) {
    const std::string_view raw = holder.value();
    if (raw.find('&') == std::string_view::npos) return true;
    const auto text = Unescape(raw);
    return text && holder.set_value(text->c_str());
  }
};

bool IsBlank(std::string_view text) { return std::ranges::all_of(text, IsXmlSpace); }

bool IsSupportedDeclaration(const pugi::xml_node& declaration) {
  const pugi::xml_attribute encoding = declaration.attribute("encoding");
  return !encoding || IsSupportedEncoding(encoding.value());
}

bool IsAllowedOutsideRoot(const pugi::xml_node& node) {
  switch (node.type()) {
    case pugi::node_declaration:
      return !node.previous_sibling() && IsSupportedDeclaration(node);
    case pugi::node_pcdata:
      return IsBlank(node.value());
    default:
      return false;  // a document type, a character data section
  }
}

// The outermost element; null unless the document is a single element.
pugi::xml_node FindRoot(const pugi::xml_document& xml) {
  pugi::xml_node root;
  for (const pugi::xml_node node : xml.children()) {
    if (node.type() == pugi::node_element && !root) {
      root = node;
    } else if (!IsAllowedOutsideRoot(node)) {
      return {};
    }
  }
  return root;
}

bool IsKnownFormat(const pugi::xml_node& root) {
  return std::string_view(root.name()) == kRootElement &&
         std::string_view(root.attribute(kVersionAttribute).value()) == kVersion;
}

// Ignores a value without a key in a dictionary, and an array in an array.
std::optional<Element> MakeElement(const pugi::xml_node& node, Type container) {
  const auto type = TypeOf(node.name());
  const std::string_view key = node.attribute(kKeyAttribute).value();
  if (!type || (container == Type::kArray ? *type == Type::kArray : key.empty())) {
    return std::nullopt;
  }
  return Element{.type = *type, .key = key, .node = node};
}

std::pair<Type, std::string_view> NameOf(const Element& element) {
  return {element.type, element.key};
}

}  // namespace

std::string Element::Text() const {
  std::string text;
  for (const pugi::xml_node part : node.children()) {
    if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) text += part.value();
  }
  return text;
}

std::unique_ptr<Document> Document::Parse(std::string_view bytes) {
  if (bytes.empty() || bytes.size() > kMaxDocumentBytes || !IsXmlText(bytes)) return nullptr;
  std::unique_ptr<Document> document(new Document);
  pugi::xml_document& xml = document->xml_;
  if (!xml.load_buffer(bytes.data(), bytes.size(), kParseOptions, pugi::encoding_utf8)) {
    return nullptr;
  }
  const pugi::xml_node root = FindRoot(xml);
  ReferenceResolver resolver;
  if (!root || !xml.traverse(resolver) || !IsKnownFormat(root)) return nullptr;
  document->AddAll(root);
  return document;
}

std::span<const Element> Document::Children(const Element& container) const {
  return std::span(elements_).subspan(container.first_child, container.child_count);
}

std::span<const Element> Document::FindAll(const Element& dictionary, Type type,
                                           std::string_view key) const {
  const std::span<const Element> children = Children(dictionary);
  const std::pair name(type, key);
  const auto first = std::ranges::lower_bound(children, name, {}, NameOf);
  const auto last = std::ranges::upper_bound(children, name, {}, NameOf);
  return {first, last};
}

// Breadth first: elements_ is also the queue of containers to visit.
void Document::AddAll(pugi::xml_node root) {
  elements_.push_back(Element{.type = Type::kDict, .key = {}, .node = root});
  for (std::size_t i = 0; i < elements_.size(); ++i) {
    if (elements_[i].type == Type::kDict || elements_[i].type == Type::kArray) AddChildren(i);
  }
}

void Document::AddChildren(std::size_t container) {
  const Element parent = elements_[container];
  const std::size_t first = elements_.size();
  for (const pugi::xml_node node : parent.node.children()) {
    if (const auto element = MakeElement(node, parent.type)) elements_.push_back(*element);
  }
  const std::span added = std::span(elements_).subspan(first);
  if (parent.type == Type::kDict) std::ranges::stable_sort(added, {}, NameOf);
  elements_[container].first_child = first;
  elements_[container].child_count = added.size();
}

}  // namespace commlib
