// A communication library that costs next to nothing: it answers from the sample printer's data. A
// document is one digit, the number of the sample's document.
#include <cstdlib>
#include <cstring>

#include "bench/sample_printer.h"
#include "info_analyze/communication_library.h"

struct QvXmlReader {
  const ia_bench::SampleDocument* document;
  ia_bench::Fields fields;  // of the document, or of the list's item that is open
  const ia_bench::Field* array;
};

namespace {

const ia_bench::Field* Find(const QvXmlReader* reader, const char* key) {
  for (const ia_bench::Field& field : reader->fields) {
    if (std::strcmp(field.key, key) == 0) return &field;
  }
  return nullptr;
}

template <class Value>
const Value* Find(const QvXmlReader* reader, const char* key) {
  const ia_bench::Field* const field = Find(reader, key);
  return field != nullptr ? std::get_if<Value>(&field->value) : nullptr;
}

template <class Values>
const auto* ElementAt(const QvXmlReader* reader, std::int32_t index) {
  const auto* const values =
      reader->array != nullptr ? std::get_if<Values>(&reader->array->value) : nullptr;
  const auto position = static_cast<std::size_t>(index);
  return values != nullptr && position < values->size() ? &(*values)[position] : nullptr;
}

std::int32_t Give(const char* const* word, char** text) {
  if (word != nullptr) *text = strdup(*word);
  return word != nullptr ? 1 : 0;
}

std::int32_t Give(const std::int32_t* number, std::int32_t* value) {
  if (number != nullptr) *value = *number;
  return number != nullptr ? 1 : 0;
}

}  // namespace

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  const char digit = length == 1 ? *static_cast<const char*>(data) : '\0';
  const auto number = static_cast<std::size_t>(digit - '0');
  if (number >= ia_bench::kDocuments.size()) return nullptr;
  const ia_bench::SampleDocument& document = ia_bench::kDocuments[number];
  return new QvXmlReader{&document, document.fields, nullptr};
}

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char*, int32_t* count) {
  *count = static_cast<int32_t>(reader->document->list.size());
  return *count > 0 ? 1 : 0;
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char*, int32_t index) {
  const auto position = static_cast<std::size_t>(index);
  const bool is_there = position < reader->document->list.size();
  reader->fields = is_there ? reader->document->list[position] : ia_bench::Fields{};
  return is_there ? 1 : 0;
}

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t) {
  return Give(Find<std::int32_t>(reader, key), value);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void*, const char*,
                            intptr_t) {
  return Give(Find<const char*>(reader, key), text);
}

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  if (const auto* const numbers = Find<ia_bench::Numbers>(reader, key)) {
    *count = static_cast<int32_t>(numbers->size());
  } else if (const auto* const words = Find<ia_bench::Words>(reader, key)) {
    *count = static_cast<int32_t>(words->size());
  } else {
    return 0;
  }
  return 1;
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  reader->array = Find(reader, key);
  return reader->array != nullptr ? 1 : 0;
}

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value, intptr_t) {
  return Give(ElementAt<ia_bench::Numbers>(reader, index), value);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text, void*,
                                     const char*, intptr_t) {
  return Give(ElementAt<ia_bench::Words>(reader, index), text);
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) {
  reader->array = nullptr;
  return 0;
}

int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) {
  reader->fields = reader->document->fields;
  return 0;
}

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  delete reader;
  return 0;
}
