// Parses any bytes as a device document, and reads it with every function.
#include <cstdint>
#include <cstdlib>

#include "info_analyze/communication_library.h"

namespace {

void ReadArray(QvXmlReader* reader, const char* key) {
  int32_t count = 0;
  qvxmlwrapGet_ArrayCount(reader, key, &count);
  qvxmlwrapGet_OpenArray(reader, key);
  for (int32_t i = -1; i <= count; ++i) {
    int32_t number = 0;
    char* text = nullptr;
    qvxmlwrapGet_LongFromArray(reader, i, &number, 0);
    qvxmlwrapGet_StringFromArray(reader, i, &text, nullptr, "UTF-8", 0);
    std::free(text);
  }
  qvxmlwrapGet_CloseArray(reader);
}

void ReadDictionary(QvXmlReader* reader) {
  int32_t number = 0;
  double real = 0;
  char* text = nullptr;
  void* bytes = nullptr;
  qvxmlwrapGet_Long(reader, "type", &number, 0);
  qvxmlwrapGet_Double(reader, "type", &real, 0);
  qvxmlwrapGet_String(reader, "name", &text, nullptr, "UTF-8", 0);
  qvxmlwrapGet_Binary(reader, "data", &bytes, &number);
  std::free(text);
  std::free(bytes);
  ReadArray(reader, "func");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  QvXmlReader* const reader = qvxmlwrapGet_New(data, static_cast<int32_t>(size));
  if (reader == nullptr) return 0;
  int32_t count = 0;
  qvxmlwrapGet_DictCount(reader, "list", &count);
  ReadDictionary(reader);
  for (int32_t i = -1; i <= count; ++i) {
    qvxmlwrapGet_OpenDict(reader, "list", i);
    ReadDictionary(reader);
    qvxmlwrapGet_CloseDict(reader);
  }
  qvxmlwrapGet_Destroy(reader);
  return 0;
}
