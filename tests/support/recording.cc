#include "tests/support/recording.h"

#include <string.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <type_traits>

namespace {

using ia_test::CallTo;
using ia_test::OpenReader;
using ia_test::Recording;
using ia_test::ScriptedDocument;

Recording* g_recording = nullptr;

template <class... Ts>
void Record(const char* name, Ts... arguments) {
  if (g_recording != nullptr) g_recording->calls.push_back(CallTo(name, arguments...));
}

void Fault(const std::string& what) {
  if (g_recording != nullptr) g_recording->faults.push_back(what);
}

std::int32_t Result(const char* name, std::int32_t truth) {
  if (g_recording == nullptr) return truth;
  const auto scripted = g_recording->results.find(name);
  return scripted != g_recording->results.end() ? scripted->second : truth;
}

OpenReader* Reader(const char* name, QvXmlReader* reader) {
  if (g_recording == nullptr) return nullptr;
  const auto open = g_recording->readers.find(reader);
  if (open != g_recording->readers.end()) return open->second.get();
  Fault(std::string(name) + ": no such reader");
  return nullptr;
}

template <class Key, class Value>
const Value* Find(const OpenReader* reader, std::map<Key, Value> ScriptedDocument::* values,
                  const std::type_identity_t<Key>& key) {
  if (reader == nullptr) return nullptr;
  const auto found = (reader->document.*values).find(key);
  return found != (reader->document.*values).end() ? &found->second : nullptr;
}

std::int32_t Store(const char* name, const std::int32_t* found, std::int32_t* output) {
  if (found != nullptr) *output = *found;
  return Result(name, found != nullptr ? 1 : 0);
}

std::int32_t Store(const char* name, const std::optional<std::string>* found, char** output) {
  if (found != nullptr) *output = found->has_value() ? strdup((*found)->c_str()) : nullptr;
  return Result(name, found != nullptr ? 1 : 0);
}

std::string Text(const char* text) { return text != nullptr ? text : ""; }

void Enter(OpenReader* reader) {
  if (reader != nullptr) ++reader->depth;
}

void Leave(const char* name, OpenReader* reader) {
  if (reader != nullptr && --reader->depth < 0) Fault(std::string(name) + ": nothing to leave");
}

__attribute__((destructor)) void RecordUnloading() { Record(ia_test::kUnloaded); }

}  // namespace

extern "C" {

void recording_attach(Recording* recording) { g_recording = recording; }

int32_t qvsktwrapQueueListNew(const char* driver_folder, intptr_t word1, intptr_t word2,
                              intptr_t word3, intptr_t word4) {
  Record(__func__, driver_folder, word1, word2, word3, word4);
  return Result(__func__, 0);
}

int32_t qvsktwrapQueueListDestroy(intptr_t word1, intptr_t word2, intptr_t word3, intptr_t word4) {
  Record(__func__, word1, word2, word3, word4);
  return Result(__func__, 0);
}

void* qvsktwrapNew(intptr_t word1, intptr_t word2, const char* driver_folder, int32_t port) {
  Record(__func__, word1, word2, driver_folder, port);
  return g_recording != nullptr ? g_recording->socket : nullptr;
}

int32_t qvsktwrapControl(void* socket, intptr_t word1, intptr_t word2, intptr_t word3,
                         intptr_t word4, intptr_t word5) {
  Record(__func__, socket, word1, word2, word3, word4, word5);
  return Result(__func__, 0);
}

int32_t qvsktwrapDestroy(void* socket) {
  Record(__func__, socket);
  return Result(__func__, 0);
}

void qvxmlwrapCleanup(void) { Record(__func__); }

QvXmlWriter* qvxmlwrapSet_New(void) {
  Record(__func__);
  return g_recording != nullptr ? g_recording->writer : nullptr;
}

int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t word) {
  Record(__func__, writer, key, word);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value) {
  Record(__func__, writer, key, value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value) {
  Record(__func__, writer, key, value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text, intptr_t word1,
                            intptr_t word2) {
  Record(__func__, writer, key, text, word1, word2);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                            int32_t length) {
  Record(__func__, writer, key, data, length);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key) {
  Record(__func__, writer, key);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value) {
  Record(__func__, writer, value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value) {
  Record(__func__, writer, value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                   intptr_t word2) {
  Record(__func__, writer, text, word1, word2);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length) {
  Record(__func__, writer, data, length);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer) {
  Record(__func__, writer);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer) {
  Record(__func__, writer);
  return Result(__func__, 0);
}

int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2, intptr_t word3) {
  Record(__func__, writer, word1, word2, word3);
  return Result(__func__, 0);
}

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  Record(__func__, data, length);
  if (g_recording == nullptr || data == nullptr || length < 0) return nullptr;
  const std::string bytes(static_cast<const char*>(data), static_cast<std::size_t>(length));
  const auto known = g_recording->documents.find(bytes);
  return known != g_recording->documents.end() ? g_recording->Open(known->second) : nullptr;
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Record(__func__, reader, key, count);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::dict_counts, Text(key)),
               count);
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index) {
  Record(__func__, reader, key, index);
  Enter(Reader(__func__, reader));
  return Result(__func__, 1);
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t word) {
  Record(__func__, reader, key, value, word);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::longs, Text(key)),
               value);
}

int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value,
                            double default_value) {
  Record(__func__, reader, key, value, default_value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                            const char* encoding, intptr_t word) {
  Record(__func__, reader, key, text, auxiliary, encoding, word);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::strings, Text(key)),
               text);
}

int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data, int32_t* length) {
  Record(__func__, reader, key, data, length);
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  Record(__func__, reader, key, count);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::array_counts, Text(key)),
               count);
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  Record(__func__, reader, key);
  Enter(Reader(__func__, reader));
  return Result(__func__, 1);
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                   intptr_t word) {
  Record(__func__, reader, index, value, word);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::long_elements, index),
               value);
}

int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                     double default_value) {
  Record(__func__, reader, index, value, default_value);
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* auxiliary, const char* encoding, intptr_t word) {
  Record(__func__, reader, index, text, auxiliary, encoding, word);
  return Store(__func__, Find(Reader(__func__, reader), &ScriptedDocument::string_elements, index),
               text);
}

int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                     int32_t* length) {
  Record(__func__, reader, index, data, length);
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  Record(__func__, reader);
  Leave(__func__, Reader(__func__, reader));
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) {
  Record(__func__, reader);
  Leave(__func__, Reader(__func__, reader));
  return Result(__func__, 0);
}

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  Record(__func__, reader);
  const OpenReader* open = Reader(__func__, reader);
  if (open != nullptr && open->depth != 0) Fault("destroyed inside a dictionary or array");
  if (g_recording != nullptr) g_recording->readers.erase(reader);
  return Result(__func__, 0);
}

}  // extern "C"
