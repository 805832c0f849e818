// The document reader: a parsed document, and the place in it that is being read.
#include <strings.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "boundary.h"
#include "document.h"
#include "info_analyze/communication_library.h"

namespace {

// The way from the outermost dictionary to the current container. A container that could not be
// entered is null, and everything in it is missing.
class Place {
 public:
  explicit Place(const Dictionary& document) { levels_[0] = &document; }

  template <class Container>
  const Container* Current() const {
    const auto* const level = std::get_if<const Container*>(&levels_[count_ - 1]);
    return level != nullptr && excess_ == 0 ? *level : nullptr;
  }

  template <class Container>
  std::int32_t Enter(const Container* container) {
    if (count_ < levels_.size()) {
      levels_[count_++] = container;
    } else {
      ++excess_;
    }
    return container != nullptr ? 1 : 0;
  }

  template <class Container>
  std::int32_t Leave() {
    if (excess_ > 0) {
      --excess_;
      return 0;
    }
    if (count_ == 1 || !std::holds_alternative<const Container*>(levels_[count_ - 1])) return -1;
    --count_;
    return 0;
  }

 private:
  std::array<std::variant<const Dictionary*, const Array*>, 2 * kMaxDepth> levels_;
  std::size_t count_ = 1;
  std::uint64_t excess_ = 0;  // levels that do not fit: deeper than any document, so null
};

// A copy that the caller releases with free().
char* CopyOf(const std::string& bytes) {
  auto* const copy = static_cast<char*>(std::malloc(bytes.size() + 1));
  if (copy != nullptr) std::memcpy(copy, bytes.c_str(), bytes.size() + 1);
  return copy;
}

template <class Number>
std::int32_t Store(const Number* value, Number* destination) {
  if (value == nullptr || destination == nullptr) return 0;
  *destination = *value;
  return 1;
}

// Documents are in UTF-8, and so are all texts that are asked for.
std::int32_t Store(const Text* value, char** destination, const char* encoding) {
  if (value == nullptr || destination == nullptr || encoding == nullptr) return 0;
  if (strcasecmp(encoding, "UTF-8") != 0) return 0;
  char* const copy = CopyOf(value->bytes);
  if (copy == nullptr) return 0;
  *destination = copy;
  return 1;
}

std::int32_t Store(const Bytes* value, void** destination, std::int32_t* length) {
  if (value == nullptr || destination == nullptr || length == nullptr) return 0;
  char* const copy = CopyOf(value->bytes);
  if (copy == nullptr) return 0;
  *destination = copy;
  *length = static_cast<std::int32_t>(value->bytes.size());
  return 1;
}

}  // namespace

struct QvXmlReader {
 public:
  explicit QvXmlReader(Dictionary read) : document(std::move(read)), place(document) {}
  QvXmlReader(const QvXmlReader&) = delete;
  QvXmlReader& operator=(const QvXmlReader&) = delete;

  Dictionary document;
  Place place;
};

namespace {

// The value with this number among those of the type under the key.
template <class Type>
const Type* Find(const QvXmlReader* reader, const char* key, std::int32_t number = 0) {
  const auto* const container =
      reader != nullptr && key != nullptr ? reader->place.Current<Dictionary>() : nullptr;
  if (container == nullptr || number < 0) return nullptr;
  for (const Value& value : container->values) {
    const Type* const content = std::get_if<Type>(&value.content);
    if (content != nullptr && value.key == key && number-- == 0) return content;
  }
  return nullptr;
}

// The element of the current array when it is of this type.
template <class Type>
const Type* Element(const QvXmlReader* reader, std::int32_t index) {
  const auto* const array = reader != nullptr ? reader->place.Current<Array>() : nullptr;
  if (array == nullptr || index < 0) return nullptr;
  const auto position = static_cast<std::size_t>(index);
  if (position >= array->values.size()) return nullptr;
  return std::get_if<Type>(&array->values[position].content);
}

}  // namespace

// Called before each unload. This library keeps nothing for the whole process.
void qvxmlwrapCleanup() {}

QvXmlReader* qvxmlwrapGet_New(const void* data, std::int32_t length) {
  if (data == nullptr || length < 0) return nullptr;
  return Guarded<QvXmlReader*>(nullptr, [&]() -> QvXmlReader* {
    std::optional<Dictionary> document =
        ParseDocument({static_cast<const char*>(data), static_cast<std::size_t>(length)});
    return document ? std::make_unique<QvXmlReader>(std::move(*document)).release() : nullptr;
  });
}

std::int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  if (reader == nullptr) return -1;
  delete reader;
  return 0;
}

// Dictionaries
// ------------------------------------------------------------------------------------------------

std::int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, std::int32_t* count) {
  std::int32_t found = 0;
  while (Find<Dictionary>(reader, key, found) != nullptr) ++found;
  return Store(found > 0 ? &found : nullptr, count);
}

std::int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, std::int32_t index) {
  return reader != nullptr ? reader->place.Enter(Find<Dictionary>(reader, key, index)) : 0;
}

std::int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) {
  return reader != nullptr ? reader->place.Leave<Dictionary>() : -1;
}

std::int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, std::int32_t* value,
                               std::intptr_t) {
  return Store(Find<std::int32_t>(reader, key), value);
}

std::int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value, double) {
  return Store(Find<double>(reader, key), value);
}

std::int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void*,
                                 const char* encoding, std::intptr_t) {
  return Store(Find<Text>(reader, key), text, encoding);
}

std::int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data,
                                 std::int32_t* length) {
  return Store(Find<Bytes>(reader, key), data, length);
}

// Arrays
// ------------------------------------------------------------------------------------------------

std::int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, std::int32_t* count) {
  const Array* const array = Find<Array>(reader, key);
  if (array == nullptr) return 0;
  const auto size = static_cast<std::int32_t>(array->values.size());
  return Store(&size, count);
}

std::int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  return reader != nullptr ? reader->place.Enter(Find<Array>(reader, key)) : 0;
}

std::int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  return reader != nullptr ? reader->place.Leave<Array>() : -1;
}

std::int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, std::int32_t index,
                                        std::int32_t* value, std::intptr_t) {
  return Store(Element<std::int32_t>(reader, index), value);
}

std::int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, std::int32_t index, double* value,
                                          double) {
  return Store(Element<double>(reader, index), value);
}

std::int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, std::int32_t index, char** text,
                                          void*, const char* encoding, std::intptr_t) {
  return Store(Element<Text>(reader, index), text, encoding);
}

std::int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, std::int32_t index, void** data,
                                          std::int32_t* length) {
  return Store(Element<Bytes>(reader, index), data, length);
}
