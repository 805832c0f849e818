// A communication library that has another one do the work and writes down how it was called.
#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>

#include "bench/document_calls.h"
#include "info_analyze/communication_library.h"

namespace {

using ia_bench::EntryPoint;

std::vector<const QvXmlReader*> readers;

template <class Function>
Function* Real(const char* name) {
  static void* const library =
      dlopen(std::getenv(ia_bench::kRecordedLibrary), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) std::abort();
  return reinterpret_cast<Function*>(dlsym(library, name));
}

std::vector<ia_bench::DocumentCall>& Calls() {
  static std::vector<ia_bench::DocumentCall> calls;
  return calls;
}

std::size_t NumberOf(const QvXmlReader* reader) {
  // The latest, because a new reader may stand where an old one stood.
  const auto hit = std::ranges::find(readers.rbegin(), readers.rend(), reader);
  return static_cast<std::size_t>(readers.rend() - hit) - 1;
}

void Record(EntryPoint entry_point, const QvXmlReader* reader, const char* key, int32_t index) {
  Calls().push_back({entry_point, NumberOf(reader), index, key != nullptr ? key : ""});
}

}  // namespace

#define IA_REAL(name) Real<decltype(name)>(#name)

extern "C" [[gnu::visibility("default")]] std::vector<ia_bench::DocumentCall>& RecordedCalls() {
  return Calls();
}

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  QvXmlReader* const reader = IA_REAL(qvxmlwrapGet_New)(data, length);
  readers.push_back(reader);
  Calls().push_back(
      {EntryPoint::kNew, readers.size() - 1, 0,
       std::string(static_cast<const char*>(data), static_cast<std::size_t>(length))});
  return reader;
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Record(EntryPoint::kDictCount, reader, key, 0);
  return IA_REAL(qvxmlwrapGet_DictCount)(reader, key, count);
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index) {
  Record(EntryPoint::kOpenDict, reader, key, index);
  return IA_REAL(qvxmlwrapGet_OpenDict)(reader, key, index);
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t word) {
  Record(EntryPoint::kLong, reader, key, 0);
  return IA_REAL(qvxmlwrapGet_Long)(reader, key, value, word);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                            const char* encoding, intptr_t word) {
  Record(EntryPoint::kString, reader, key, 0);
  return IA_REAL(qvxmlwrapGet_String)(reader, key, text, auxiliary, encoding, word);
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Record(EntryPoint::kArrayCount, reader, key, 0);
  return IA_REAL(qvxmlwrapGet_ArrayCount)(reader, key, count);
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  Record(EntryPoint::kOpenArray, reader, key, 0);
  return IA_REAL(qvxmlwrapGet_OpenArray)(reader, key);
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                   intptr_t word) {
  Record(EntryPoint::kLongFromArray, reader, nullptr, index);
  return IA_REAL(qvxmlwrapGet_LongFromArray)(reader, index, value, word);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* auxiliary, const char* encoding, intptr_t word) {
  Record(EntryPoint::kStringFromArray, reader, nullptr, index);
  return IA_REAL(qvxmlwrapGet_StringFromArray)(reader, index, text, auxiliary, encoding, word);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  Record(EntryPoint::kCloseArray, reader, nullptr, 0);
  return IA_REAL(qvxmlwrapGet_CloseArray)(reader);
}

int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) {
  Record(EntryPoint::kCloseDict, reader, nullptr, 0);
  return IA_REAL(qvxmlwrapGet_CloseDict)(reader);
}

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  Record(EntryPoint::kDestroy, reader, nullptr, 0);
  return IA_REAL(qvxmlwrapGet_Destroy)(reader);
}
