// Key descriptors in the shapes that the update handlers need, and reading items of lists.
#ifndef ANALYZE_DOCUMENT_KEYS_H_
#define ANALYZE_DOCUMENT_KEYS_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <span>
#include <utility>

#include "analyze/inputs.h"
#include "info_analyze/analyzer.h"
#include "info_analyze/option_setter.h"

namespace ia {

inline constexpr const char* kUtf8 = "UTF-8";

[[nodiscard]] inline XmlKeyDescriptor LongKey(Input input, std::int32_t& number) noexcept {
  return {.document = KeyOf(input).document,
          .key = KeyOf(input).key,
          .type = IA_KEY_LONG,
          .destination = &number,
          .encoding = nullptr,
          .auxiliary = nullptr,
          .count = nullptr};
}

[[nodiscard]] inline XmlKeyDescriptor TextKey(Input input, char*& text) noexcept {
  return {.document = KeyOf(input).document,
          .key = KeyOf(input).key,
          .type = IA_KEY_STRING,
          .destination = &text,
          .encoding = &kUtf8,
          .auxiliary = nullptr,
          .count = nullptr};
}

// The first kCapacity elements of an array in a document; further ones are not seen.
template <class Element, std::int32_t kCapacity, std::int32_t kType>
class DocumentArray {
 public:
  explicit DocumentArray(Input input) noexcept
      : key_(KeyOf(input).key),
        element_{.document = KeyOf(input).document,
                 .key = nullptr,
                 .type = kType,
                 .destination = elements_,
                 .encoding = &kUtf8,
                 .auxiliary = nullptr,
                 .count = &capacity_} {}
  DocumentArray(const DocumentArray&) = delete;
  DocumentArray& operator=(const DocumentArray&) = delete;

  [[nodiscard]] XmlKeyDescriptor Key() noexcept {
    return {.document = element_.document,
            .key = key_,
            .type = IA_KEY_ARRAY,
            .destination = &element_address_,
            .encoding = nullptr,
            .auxiliary = nullptr,
            .count = &count_};
  }
  [[nodiscard]] Element* Data() noexcept { return elements_; }
  [[nodiscard]] const std::int32_t& Count() const noexcept { return count_; }
  [[nodiscard]] std::span<const Element> Elements() const noexcept {
    return {elements_, static_cast<std::size_t>(count_)};
  }

 private:
  Element elements_[std::size_t{kCapacity}]{};
  std::int32_t capacity_ = kCapacity;
  std::int32_t count_ = 0;
  const char* key_;
  XmlKeyDescriptor element_;
  XmlKeyDescriptor* element_address_ = &element_;
};

template <std::int32_t kCapacity>
using LongArray = DocumentArray<std::int32_t, kCapacity, IA_KEY_LONG_ELEMENTS>;

// Owns its texts.
template <std::int32_t kCapacity>
class TextArray : public DocumentArray<char*, kCapacity, IA_KEY_STRING_ELEMENTS> {
 public:
  using DocumentArray<char*, kCapacity, IA_KEY_STRING_ELEMENTS>::DocumentArray;
  ~TextArray() { Clear(); }
  void Clear() noexcept {
    for (std::int32_t i = 0; i < this->Count(); ++i) {
      std::free(std::exchange(this->Data()[i], nullptr));
    }
  }
};

// Reads keys of one item of a document's list.
[[nodiscard]] inline std::int32_t ReadListItem(
    AnalyzeContext* context, std::int32_t document, std::int32_t item,
    std::initializer_list<XmlKeyDescriptor> keys) noexcept {
  const XmlKeyDescriptor* first = keys.begin();
  auto count = static_cast<std::int32_t>(keys.size());
  const XmlKeyDescriptor list{.document = document,
                              .key = "list",
                              .type = IA_KEY_DICTIONARY,
                              .destination = &first,
                              .encoding = nullptr,
                              .auxiliary = nullptr,
                              .count = &count};
  return analyze_common_readxml_for_list(context, &list, 1, item);
}

}  // namespace ia

#endif  // ANALYZE_DOCUMENT_KEYS_H_
