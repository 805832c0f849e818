// The document reader: its position in a document, and its entry points.
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "commlib/base64.h"
#include "commlib/c_boundary.h"
#include "commlib/document.h"
#include "commlib/document_format.h"
#include "commlib/numbers.h"
#include "commlib/xml_text.h"
#include "info_analyze/communication_library.h"

namespace commlib {
namespace {

static_assert(kMaxDocumentBytes <= std::numeric_limits<std::int32_t>::max(),
              "counts and lengths of a document fit the interface's numbers");

// The path from the outermost dictionary to the current container. A container that could not be
// entered is a level without element, in which every lookup fails.
class Position {
 public:
  explicit Position(const Element* outermost) { levels_[0] = {Type::kDict, outermost}; }

  // The current container when it is of this type and exists, else null.
  [[nodiscard]] const Element* Current(Type type) const {
    const Level& innermost = levels_[count_ - 1];
    return innermost.type == type ? innermost.element : nullptr;
  }

  void Enter(Type type, const Element* element) {
    if (count_ < levels_.size()) {
      levels_[count_++] = {type, element};
    } else {
      ++excess_;
    }
  }

  bool Leave(Type type) {
    if (excess_ > 0) {
      --excess_;
      return true;
    }
    if (count_ == 1 || levels_[count_ - 1].type != type) return false;
    --count_;
    return true;
  }

 private:
  struct Level {
    Type type;
    const Element* element;
  };

  // Levels beyond the depth of any document have no element, so those that do not fit the array are
  // only counted.
  std::array<Level, 2 * kMaxDepth> levels_;
  std::size_t count_ = 1;
  std::uint64_t excess_ = 0;
};

template <class Number>
std::int32_t Store(std::optional<Number> number, Number* destination) {
  if (!number) return 0;
  *destination = *number;
  return 1;
}

}  // namespace
}  // namespace commlib

using commlib::Element;
using commlib::Guarded;
using commlib::Type;

struct QvXmlReader {
 public:
  explicit QvXmlReader(std::unique_ptr<commlib::Document> document)
      : document_(std::move(document)), position_(&document_->outermost()) {}

  [[nodiscard]] std::span<const Element> FindAll(Type type, const char* key) const {
    const Element* const dictionary = position_.Current(Type::kDict);
    if (dictionary == nullptr || key == nullptr) return {};
    return document_->FindAll(*dictionary, type, key);
  }

  // The first value of this type under the key.
  [[nodiscard]] const Element* Find(Type type, const char* key) const {
    const auto hits = FindAll(type, key);
    return hits.empty() ? nullptr : &hits.front();
  }

  // The element of the current array when it is of this type.
  [[nodiscard]] const Element* Find(Type type, std::int32_t index) const {
    const Element* const array = position_.Current(Type::kArray);
    if (array == nullptr) return nullptr;
    const Element* const element = At(document_->Children(*array), index);
    return element != nullptr && element->type == type ? element : nullptr;
  }

  [[nodiscard]] const Element* FindDict(const char* key, std::int32_t index) const {
    if (const Element* const element = Find(Type::kDict, index)) return element;
    return At(FindAll(Type::kDict, key), index);
  }

  bool Enter(Type type, const Element* element) {
    position_.Enter(type, element);
    return element != nullptr;
  }

  bool Leave(Type type) { return position_.Leave(type); }

 private:
  [[nodiscard]] static const Element* At(std::span<const Element> elements, std::int32_t index) {
    const auto position = static_cast<std::size_t>(index);  // a negative index is beyond any end
    return position < elements.size() ? &elements[position] : nullptr;
  }

  std::unique_ptr<commlib::Document> document_;
  commlib::Position position_;
};

namespace {

// Readers of the four types of values, by key or by position.

template <class Name>
std::int32_t ReadLong(QvXmlReader* reader, Name name, std::int32_t* value) {
  if (reader == nullptr || value == nullptr) return 0;
  return Guarded(0, [&] {
    const Element* const element = reader->Find(Type::kLong, name);
    return element != nullptr ? commlib::Store(commlib::ParseLong(element->Text()), value) : 0;
  });
}

template <class Name>
std::int32_t ReadDouble(QvXmlReader* reader, Name name, double* value) {
  if (reader == nullptr || value == nullptr) return 0;
  return Guarded(0, [&] {
    const Element* const element = reader->Find(Type::kDouble, name);
    return element != nullptr ? commlib::Store(commlib::ParseDouble(element->Text()), value) : 0;
  });
}

template <class Name>
std::int32_t ReadString(QvXmlReader* reader, Name name, char** text, const char* encoding) {
  if (reader == nullptr || text == nullptr || !commlib::IsSupportedEncoding(encoding)) return 0;
  return Guarded(0, [&] {
    const Element* const element = reader->Find(Type::kString, name);
    char* const copy = element != nullptr ? commlib::DuplicateForCaller(element->Text()) : nullptr;
    if (copy == nullptr) return 0;
    *text = copy;
    return 1;
  });
}

template <class Name>
std::int32_t ReadBinary(QvXmlReader* reader, Name name, void** data, std::int32_t* length) {
  if (reader == nullptr || data == nullptr || length == nullptr) return 0;
  return Guarded(0, [&] {
    const Element* const element = reader->Find(Type::kBinary, name);
    const auto bytes = element != nullptr ? commlib::DecodeBase64(element->Text()) : std::nullopt;
    char* const copy = bytes ? commlib::DuplicateForCaller(*bytes) : nullptr;
    if (copy == nullptr) return 0;
    *data = copy;
    *length = static_cast<std::int32_t>(bytes->size());
    return 1;
  });
}

std::int32_t LeaveContainer(QvXmlReader* reader, Type type) {
  return reader != nullptr && reader->Leave(type) ? 0 : -1;
}

}  // namespace

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  if (data == nullptr || length < 0) return nullptr;
  return Guarded<QvXmlReader*>(nullptr, [&]() -> QvXmlReader* {
    const std::string_view bytes(static_cast<const char*>(data), static_cast<std::size_t>(length));
    auto document = commlib::Document::Parse(bytes);
    return document ? new QvXmlReader(std::move(document)) : nullptr;
  });
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  if (reader == nullptr || count == nullptr) return 0;
  const auto dicts = reader->FindAll(Type::kDict, key);
  if (dicts.empty()) return 0;
  *count = static_cast<int32_t>(dicts.size());
  return 1;
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index) {
  if (reader == nullptr) return 0;
  return reader->Enter(Type::kDict, reader->FindDict(key, index)) ? 1 : 0;
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t /*word*/) {
  return ReadLong(reader, key, value);
}

int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value,
                            double /*default_value*/) {
  return ReadDouble(reader, key, value);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* /*auxiliary*/,
                            const char* encoding, intptr_t /*word*/) {
  return ReadString(reader, key, text, encoding);
}

int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data, int32_t* length) {
  return ReadBinary(reader, key, data, length);
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  if (reader == nullptr || count == nullptr) return 0;
  const Element* const array = reader->Find(Type::kArray, key);
  if (array == nullptr) return 0;
  *count = static_cast<int32_t>(array->child_count);
  return 1;
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  if (reader == nullptr) return 0;
  return reader->Enter(Type::kArray, reader->Find(Type::kArray, key)) ? 1 : 0;
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                   intptr_t /*word*/) {
  return ReadLong(reader, index, value);
}

int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                     double /*default_value*/) {
  return ReadDouble(reader, index, value);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* /*auxiliary*/, const char* encoding, intptr_t /*word*/) {
  return ReadString(reader, index, text, encoding);
}

int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                     int32_t* length) {
  return ReadBinary(reader, index, data, length);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  return LeaveContainer(reader, Type::kArray);
}

int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) { return LeaveContainer(reader, Type::kDict); }

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  if (reader == nullptr) return -1;
  delete reader;
  return 0;
}
