// Reading and writing documents through the entry points, with results that compare and release
// themselves.
#ifndef TESTS_COMMLIB_DOCUMENTS_H_
#define TESTS_COMMLIB_DOCUMENTS_H_

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "info_analyze/communication_library.h"

namespace ia_test {

struct ReaderDeleter {
  void operator()(QvXmlReader* reader) const { qvxmlwrapGet_Destroy(reader); }
};
using Reader = std::unique_ptr<QvXmlReader, ReaderDeleter>;

inline Reader Read(std::string_view bytes) {
  return Reader(qvxmlwrapGet_New(bytes.data(), static_cast<std::int32_t>(bytes.size())));
}

// A document with this in its outermost dictionary.
inline std::string DocumentOf(std::string_view content) {
  return "<document version=\"1\">" + std::string(content) + "</document>";
}

inline Reader ReadContent(std::string_view content) { return Read(DocumentOf(content)); }

inline std::optional<std::string> TakeText(char* text) {
  if (text == nullptr) return std::nullopt;
  std::string copy = text;
  std::free(text);
  return copy;
}

inline std::optional<std::string> TakeBytes(void* data, std::int32_t length) {
  if (data == nullptr) return std::nullopt;
  std::string copy(static_cast<const char*>(data), static_cast<std::size_t>(length));
  std::free(data);
  return copy;
}

inline std::optional<std::int32_t> GetLong(const Reader& reader, const char* key) {
  std::int32_t value = 0;
  if (qvxmlwrapGet_Long(reader.get(), key, &value, 0) == 0) return std::nullopt;
  return value;
}

inline std::optional<double> GetDouble(const Reader& reader, const char* key) {
  double value = 0;
  if (qvxmlwrapGet_Double(reader.get(), key, &value, 0) == 0) return std::nullopt;
  return value;
}

inline std::optional<std::string> GetString(const Reader& reader, const char* key) {
  char* text = nullptr;
  if (qvxmlwrapGet_String(reader.get(), key, &text, nullptr, "UTF-8", 0) == 0) return std::nullopt;
  return TakeText(text);
}

inline std::optional<std::string> GetBinary(const Reader& reader, const char* key) {
  void* data = nullptr;
  std::int32_t length = -1;
  if (qvxmlwrapGet_Binary(reader.get(), key, &data, &length) == 0) return std::nullopt;
  return TakeBytes(data, length);
}

inline std::optional<std::int32_t> CountDicts(const Reader& reader, const char* key) {
  std::int32_t count = 0;
  if (qvxmlwrapGet_DictCount(reader.get(), key, &count) == 0) return std::nullopt;
  return count;
}

inline std::optional<std::int32_t> CountElements(const Reader& reader, const char* key) {
  std::int32_t count = 0;
  if (qvxmlwrapGet_ArrayCount(reader.get(), key, &count) == 0) return std::nullopt;
  return count;
}

inline bool OpenDict(const Reader& reader, const char* key, std::int32_t index = 0) {
  return qvxmlwrapGet_OpenDict(reader.get(), key, index) != 0;
}

inline bool OpenArray(const Reader& reader, const char* key) {
  return qvxmlwrapGet_OpenArray(reader.get(), key) != 0;
}

inline std::int32_t CloseDict(const Reader& reader) { return qvxmlwrapGet_CloseDict(reader.get()); }

inline std::int32_t CloseArray(const Reader& reader) {
  return qvxmlwrapGet_CloseArray(reader.get());
}

inline std::optional<std::int32_t> LongAt(const Reader& reader, std::int32_t index) {
  std::int32_t value = 0;
  if (qvxmlwrapGet_LongFromArray(reader.get(), index, &value, 0) == 0) return std::nullopt;
  return value;
}

inline std::optional<double> DoubleAt(const Reader& reader, std::int32_t index) {
  double value = 0;
  if (qvxmlwrapGet_DoubleFromArray(reader.get(), index, &value, 0) == 0) return std::nullopt;
  return value;
}

inline std::optional<std::string> StringAt(const Reader& reader, std::int32_t index) {
  char* text = nullptr;
  if (qvxmlwrapGet_StringFromArray(reader.get(), index, &text, nullptr, "UTF-8", 0) == 0) {
    return std::nullopt;
  }
  return TakeText(text);
}

inline std::optional<std::string> BinaryAt(const Reader& reader, std::int32_t index) {
  void* data = nullptr;
  std::int32_t length = -1;
  if (qvxmlwrapGet_BinaryFromArray(reader.get(), index, &data, &length) == 0) return std::nullopt;
  return TakeBytes(data, length);
}

inline std::intptr_t AddressWord(const void* address) {
  return reinterpret_cast<std::intptr_t>(address);
}

struct WriterDeleter {
  void operator()(QvXmlWriter* writer) const { qvxmlwrapSet_Destroy(writer, 0, 0, 0); }
};
using Writer = std::unique_ptr<QvXmlWriter, WriterDeleter>;

inline Writer NewWriter() { return Writer(qvxmlwrapSet_New()); }

// Ends the document; empty if that fails or the returned length is not that of the text.
inline std::string Finish(Writer writer) {
  char* text = nullptr;
  std::int32_t length = -1;
  if (qvxmlwrapSet_Destroy(writer.release(), AddressWord(&text), AddressWord(&length), 0) != 0) {
    return {};
  }
  const std::string document = TakeText(text).value_or("");
  return document.size() == static_cast<std::size_t>(length) ? document : std::string();
}

}  // namespace ia_test

#endif  // TESTS_COMMLIB_DOCUMENTS_H_
