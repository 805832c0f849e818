// The document writer, which "info-analyze acquire" uses.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "boundary.h"
#include "document.h"
#include "info_analyze/communication_library.h"

struct QvXmlWriter {
  Builder builder;
};

namespace {

// Adds a value to the current dictionary.
std::int32_t Set(QvXmlWriter* writer, const char* key, Content content) {
  if (writer == nullptr || key == nullptr || writer->builder.IsInArray()) return -1;
  return writer->builder.Add(key, std::move(content)) ? 0 : -1;
}

// Adds an element to the current array.
std::int32_t Append(QvXmlWriter* writer, Content content) {
  if (writer == nullptr || !writer->builder.IsInArray()) return -1;
  return writer->builder.Add("", std::move(content)) ? 0 : -1;
}

bool IsBlock(const void* data, std::int32_t length) {
  return length >= 0 && (data != nullptr || length == 0);
}

Bytes BytesOf(const void* data, std::int32_t length) {
  if (length == 0) return {};
  return {std::string(static_cast<const char*>(data), static_cast<std::size_t>(length))};
}

// Stores the document in a block that the caller releases with free().
std::int32_t Store(const std::string& document, char** text, std::int32_t* length) {
  if (document.size() > std::numeric_limits<std::int32_t>::max()) return -1;
  auto* const copy = static_cast<char*>(std::malloc(document.size() + 1));
  if (copy == nullptr) return -1;
  std::memcpy(copy, document.c_str(), document.size() + 1);
  *text = copy;
  *length = static_cast<std::int32_t>(document.size());
  return 0;
}

}  // namespace

QvXmlWriter* qvxmlwrapSet_New() {
  return Guarded<QvXmlWriter*>(nullptr, [] { return new QvXmlWriter; });
}

// word1 and word2 are the addresses of a char* and an int32_t, or 0 to give the document up.
std::int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, std::intptr_t word1, std::intptr_t word2,
                                  std::intptr_t) {
  const std::unique_ptr<QvXmlWriter> owner(writer);
  if (writer == nullptr || word1 == 0 || word2 == 0) return -1;
  return Guarded(-1, [&] {
    return Store(FormatDocument(writer->builder.Finish()), reinterpret_cast<char**>(word1),
                 reinterpret_cast<std::int32_t*>(word2));
  });
}

// Dictionaries
// ------------------------------------------------------------------------------------------------

std::int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, std::intptr_t) {
  return Guarded(-1, [&] {
    const bool is_element = writer != nullptr && writer->builder.IsInArray();
    return is_element ? Append(writer, Dictionary()) : Set(writer, key, Dictionary());
  });
}

std::int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer) {
  return Guarded(-1,
                 [&] { return writer != nullptr && writer->builder.Close<Dictionary>() ? 0 : -1; });
}

std::int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, std::int32_t value) {
  return Guarded(-1, [&] { return Set(writer, key, value); });
}

std::int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value) {
  return Guarded(-1, [&] { return Set(writer, key, value); });
}

std::int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text,
                                 std::intptr_t, std::intptr_t) {
  if (text == nullptr) return -1;
  return Guarded(-1, [&] { return Set(writer, key, Text{text}); });
}

std::int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                                 std::int32_t length) {
  if (!IsBlock(data, length)) return -1;
  return Guarded(-1, [&] { return Set(writer, key, BytesOf(data, length)); });
}

// Arrays
// ------------------------------------------------------------------------------------------------

std::int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key) {
  return Guarded(-1, [&] { return Set(writer, key, Array()); });
}

std::int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer) {
  return Guarded(-1, [&] { return writer != nullptr && writer->builder.Close<Array>() ? 0 : -1; });
}

std::int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, std::int32_t value) {
  return Guarded(-1, [&] { return Append(writer, value); });
}

std::int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value) {
  return Guarded(-1, [&] { return Append(writer, value); });
}

std::int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, std::intptr_t,
                                        std::intptr_t) {
  if (text == nullptr) return -1;
  return Guarded(-1, [&] { return Append(writer, Text{text}); });
}

std::int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data,
                                        std::int32_t length) {
  if (!IsBlock(data, length)) return -1;
  return Guarded(-1, [&] { return Append(writer, BytesOf(data, length)); });
}
