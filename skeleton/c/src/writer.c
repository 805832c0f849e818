/* The document writer, which "info-analyze acquire" uses. */
#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "document.h"
#include "info_analyze/communication_library.h"

struct QvXmlWriter {
  Value* document;
  Value* container; /* the current one */
};

QvXmlWriter* qvxmlwrapSet_New(void) {
  QvXmlWriter* writer = calloc(1, sizeof *writer);
  if (writer == NULL) return NULL;
  writer->document = writer->container = document_new();
  if (writer->document == NULL) {
    free(writer);
    return NULL;
  }
  return writer;
}

/* word1 and word2 are the addresses of a char* and an int32_t, or 0 to give the document up. */
int32_t qvxmlwrapSet_Destroy(QvXmlWriter* writer, intptr_t word1, intptr_t word2, intptr_t word3) {
  (void)word3;
  if (writer == NULL) return -1;
  int32_t status = -1;
  if (word1 != 0 && word2 != 0) {
    size_t length = 0;
    char* text = document_format(writer->document, &length);
    if (text != NULL && length <= INT32_MAX) {
      *(char**)word1 = text;
      *(int32_t*)word2 = (int32_t)length;
      status = 0;
    } else {
      free(text);
    }
  }
  document_free(writer->document);
  free(writer);
  return status;
}

/* Adds a value to the current container, which must be of the given type; NULL on failure. */
static Value* add(QvXmlWriter* writer, Type container, Type type, const char* key) {
  if (writer == NULL || writer->container->type != container) return NULL;
  if (container == DICTIONARY && key == NULL) return NULL;
  return value_add(writer->container, type, key);
}

static int32_t set_long(Value* value, int32_t number) {
  if (value == NULL) return -1;
  value->number = number;
  return 0;
}

static int32_t set_double(Value* value, double number) {
  if (value == NULL) return -1;
  value->real = number;
  return 0;
}

static int32_t set_bytes(Value* value, const void* bytes, size_t length) {
  return value != NULL && value_set_bytes(value, bytes, length) ? 0 : -1;
}

static int32_t open_container(QvXmlWriter* writer, Value* container) {
  if (container == NULL) return -1;
  writer->container = container;
  return 0;
}

static int32_t close_container(QvXmlWriter* writer, Type type) {
  if (writer == NULL || writer->container->type != type || writer->container->parent == NULL) {
    return -1;
  }
  writer->container = writer->container->parent;
  return 0;
}

/* Dictionaries */

int32_t qvxmlwrapSet_OpenDict(QvXmlWriter* writer, const char* key, intptr_t word) {
  (void)word;
  if (writer == NULL) return -1;
  return open_container(writer, add(writer, writer->container->type, DICTIONARY, key));
}

int32_t qvxmlwrapSet_CloseDict(QvXmlWriter* writer) { return close_container(writer, DICTIONARY); }

int32_t qvxmlwrapSet_Long(QvXmlWriter* writer, const char* key, int32_t value) {
  return set_long(add(writer, DICTIONARY, LONG, key), value);
}

int32_t qvxmlwrapSet_Double(QvXmlWriter* writer, const char* key, double value) {
  return set_double(add(writer, DICTIONARY, DOUBLE, key), value);
}

int32_t qvxmlwrapSet_String(QvXmlWriter* writer, const char* key, const char* text, intptr_t word1,
                            intptr_t word2) {
  (void)word1;
  (void)word2;
  if (text == NULL) return -1;
  return set_bytes(add(writer, DICTIONARY, TEXT, key), text, strlen(text));
}

int32_t qvxmlwrapSet_Binary(QvXmlWriter* writer, const char* key, const void* data,
                            int32_t length) {
  if (length < 0 || (data == NULL && length > 0)) return -1;
  return set_bytes(add(writer, DICTIONARY, BYTES, key), data, (size_t)length);
}

/* Arrays */

int32_t qvxmlwrapSet_OpenArray(QvXmlWriter* writer, const char* key) {
  return open_container(writer, add(writer, DICTIONARY, ARRAY, key));
}

int32_t qvxmlwrapSet_CloseArray(QvXmlWriter* writer) { return close_container(writer, ARRAY); }

int32_t qvxmlwrapSet_LongToArray(QvXmlWriter* writer, int32_t value) {
  return set_long(add(writer, ARRAY, LONG, NULL), value);
}

int32_t qvxmlwrapSet_DoubleToArray(QvXmlWriter* writer, double value) {
  return set_double(add(writer, ARRAY, DOUBLE, NULL), value);
}

int32_t qvxmlwrapSet_StringToArray(QvXmlWriter* writer, const char* text, intptr_t word1,
                                   intptr_t word2) {
  (void)word1;
  (void)word2;
  if (text == NULL) return -1;
  return set_bytes(add(writer, ARRAY, TEXT, NULL), text, strlen(text));
}

int32_t qvxmlwrapSet_BinaryToArray(QvXmlWriter* writer, const void* data, int32_t length) {
  if (length < 0 || (data == NULL && length > 0)) return -1;
  return set_bytes(add(writer, ARRAY, BYTES, NULL), data, (size_t)length);
}
