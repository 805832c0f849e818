// One wrapper for each entry point of a communication library. The readers' Get functions turn the
// entry point's result into 1 or 0, because callers test it as a boolean. Writers and the closing
// functions of readers return it unchanged, because callers test it as a status.
#include <cstdint>

#include "bidi/library_binding.h"

namespace ia {
namespace {

// Calls an entry point, or returns the fallback when it is not bound.
template <auto Slot, class Result, class... Args>
Result CallOr(Result fallback, const BidiContext* context, Args... args) noexcept {
  if (context == nullptr || context->library == nullptr) return fallback;
  const auto entry_point = context->library->*Slot;
  return entry_point != nullptr ? entry_point(args...) : fallback;
}

// Calls a Get function.
template <auto Slot, class... Args>
std::int32_t Read(const BidiContext* context, Args... args) noexcept {
  return CallOr<Slot>(0, context, args...) != 0 ? 1 : 0;
}

}  // namespace
}  // namespace ia

int32_t Bidi_qvsktwrapQueueListNew(BidiContext* context, intptr_t word1, intptr_t word2,
                                   intptr_t word3, intptr_t word4) noexcept {
  if (context == nullptr) return -1;
  return ia::CallOr<&BidiLibrary::qvsktwrapQueueListNew>(-1, context, context->driver_folder, word1,
                                                         word2, word3, word4);
}

int32_t Bidi_qvsktwrapQueueListDestroy(BidiContext* context, intptr_t word1, intptr_t word2,
                                       intptr_t word3, intptr_t word4) noexcept {
  return ia::CallOr<&BidiLibrary::qvsktwrapQueueListDestroy>(0, context, word1, word2, word3,
                                                             word4);
}

int32_t Bidi_qvsktwrapNew(BidiContext* context, intptr_t word1, intptr_t word2) noexcept {
  if (context == nullptr || context->library == nullptr ||
      context->library->qvsktwrapNew == nullptr) {
    return -1;
  }
  context->socket =
      context->library->qvsktwrapNew(word1, word2, context->driver_folder, context->port);
  return context->socket != nullptr ? 0 : -1;
}

int32_t Bidi_qvsktwrapControl(BidiContext* context, intptr_t word1, intptr_t word2, intptr_t word3,
                              intptr_t word4, intptr_t word5) noexcept {
  if (context == nullptr) return -1;
  return ia::CallOr<&BidiLibrary::qvsktwrapControl>(-1, context, context->socket, word1, word2,
                                                    word3, word4, word5);
}

int32_t Bidi_qvsktwrapDestroy(BidiContext* context) noexcept {
  if (context == nullptr) return 0;
  return ia::CallOr<&BidiLibrary::qvsktwrapDestroy>(0, context, context->socket);
}

QvXmlWriter* Bidi_qvxmlwrapSet_New(BidiContext* context) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_New, QvXmlWriter*>(nullptr, context);
}

int32_t Bidi_qvxmlwrapSet_OpenDict(BidiContext* context, QvXmlWriter* writer, const char* key,
                                   intptr_t word) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_OpenDict>(-1, context, writer, key, word);
}

int32_t Bidi_qvxmlwrapSet_Long(BidiContext* context, QvXmlWriter* writer, const char* key,
                               int32_t value) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_Long>(-1, context, writer, key, value);
}

int32_t Bidi_qvxmlwrapSet_Double(BidiContext* context, QvXmlWriter* writer, const char* key,
                                 double value) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_Double>(-1, context, writer, key, value);
}

int32_t Bidi_qvxmlwrapSet_String(BidiContext* context, QvXmlWriter* writer, const char* key,
                                 const char* text, intptr_t word1, intptr_t word2) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_String>(-1, context, writer, key, text, word1,
                                                       word2);
}

int32_t Bidi_qvxmlwrapSet_Binary(BidiContext* context, QvXmlWriter* writer, const char* key,
                                 const void* data, int32_t length) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_Binary>(-1, context, writer, key, data, length);
}

int32_t Bidi_qvxmlwrapSet_OpenArray(BidiContext* context, QvXmlWriter* writer,
                                    const char* key) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_OpenArray>(-1, context, writer, key);
}

int32_t Bidi_qvxmlwrapSet_LongToArray(BidiContext* context, QvXmlWriter* writer,
                                      int32_t value) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_LongToArray>(-1, context, writer, value);
}

int32_t Bidi_qvxmlwrapSet_DoubleToArray(BidiContext* context, QvXmlWriter* writer,
                                        double value) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_DoubleToArray>(-1, context, writer, value);
}

int32_t Bidi_qvxmlwrapSet_StringToArray(BidiContext* context, QvXmlWriter* writer, const char* text,
                                        intptr_t word1, intptr_t word2) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_StringToArray>(-1, context, writer, text, word1,
                                                              word2);
}

int32_t Bidi_qvxmlwrapSet_BinaryToArray(BidiContext* context, QvXmlWriter* writer, const void* data,
                                        int32_t length) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_BinaryToArray>(-1, context, writer, data, length);
}

int32_t Bidi_qvxmlwrapSet_CloseArray(BidiContext* context, QvXmlWriter* writer) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_CloseArray>(-1, context, writer);
}

int32_t Bidi_qvxmlwrapSet_CloseDict(BidiContext* context, QvXmlWriter* writer) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_CloseDict>(-1, context, writer);
}

int32_t Bidi_qvxmlwrapSet_Destroy(BidiContext* context, QvXmlWriter* writer, intptr_t word1,
                                  intptr_t word2, intptr_t word3) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapSet_Destroy>(-1, context, writer, word1, word2, word3);
}

QvXmlReader* Bidi_qvxmlwrapGet_New(BidiContext* context, const void* data,
                                   int32_t length) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapGet_New, QvXmlReader*>(nullptr, context, data, length);
}

int32_t Bidi_qvxmlwrapGet_DictCount(BidiContext* context, QvXmlReader* reader, const char* key,
                                    int32_t* count) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_DictCount>(context, reader, key, count);
}

int32_t Bidi_qvxmlwrapGet_OpenDict(BidiContext* context, QvXmlReader* reader, const char* key,
                                   int32_t index) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_OpenDict>(context, reader, key, index);
}

int32_t Bidi_qvxmlwrapGet_Long(BidiContext* context, QvXmlReader* reader, const char* key,
                               int32_t* value, intptr_t word) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_Long>(context, reader, key, value, word);
}

int32_t Bidi_qvxmlwrapGet_Double(BidiContext* context, QvXmlReader* reader, const char* key,
                                 double* value, double default_value) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_Double>(context, reader, key, value, default_value);
}

int32_t Bidi_qvxmlwrapGet_String(BidiContext* context, QvXmlReader* reader, const char* key,
                                 char** text, void* auxiliary, const char* encoding,
                                 intptr_t word) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_String>(context, reader, key, text, auxiliary,
                                                     encoding, word);
}

int32_t Bidi_qvxmlwrapGet_Binary(BidiContext* context, QvXmlReader* reader, const char* key,
                                 void** data, int32_t* length) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_Binary>(context, reader, key, data, length);
}

int32_t Bidi_qvxmlwrapGet_ArrayCount(BidiContext* context, QvXmlReader* reader, const char* key,
                                     int32_t* count) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_ArrayCount>(context, reader, key, count);
}

int32_t Bidi_qvxmlwrapGet_OpenArray(BidiContext* context, QvXmlReader* reader,
                                    const char* key) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_OpenArray>(context, reader, key);
}

int32_t Bidi_qvxmlwrapGet_LongFromArray(BidiContext* context, QvXmlReader* reader, int32_t index,
                                        int32_t* value, intptr_t word) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_LongFromArray>(context, reader, index, value, word);
}

int32_t Bidi_qvxmlwrapGet_DoubleFromArray(BidiContext* context, QvXmlReader* reader, int32_t index,
                                          double* value, double default_value) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_DoubleFromArray>(context, reader, index, value,
                                                              default_value);
}

int32_t Bidi_qvxmlwrapGet_StringFromArray(BidiContext* context, QvXmlReader* reader, int32_t index,
                                          char** text, void* auxiliary, const char* encoding,
                                          intptr_t word) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_StringFromArray>(context, reader, index, text,
                                                              auxiliary, encoding, word);
}

int32_t Bidi_qvxmlwrapGet_BinaryFromArray(BidiContext* context, QvXmlReader* reader, int32_t index,
                                          void** data, int32_t* length) noexcept {
  return ia::Read<&BidiLibrary::qvxmlwrapGet_BinaryFromArray>(context, reader, index, data, length);
}

int32_t Bidi_qvxmlwrapGet_CloseArray(BidiContext* context, QvXmlReader* reader) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapGet_CloseArray>(-1, context, reader);
}

int32_t Bidi_qvxmlwrapGet_CloseDict(BidiContext* context, QvXmlReader* reader) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapGet_CloseDict>(-1, context, reader);
}

int32_t Bidi_qvxmlwrapGet_Destroy(BidiContext* context, QvXmlReader* reader) noexcept {
  return ia::CallOr<&BidiLibrary::qvxmlwrapGet_Destroy>(-1, context, reader);
}
