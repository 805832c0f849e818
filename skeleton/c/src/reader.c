/* The document reader: a parsed document, and the place in it that is being read. */
#include <stdlib.h>
#include <string.h>
#include <strings.h>

#include "document.h"
#include "info_analyze/communication_library.h"

/* A dictionary or array that was entered; without a value when there is none, and then empty. */
typedef struct Level {
  Type type;
  const Value* value;
} Level;

struct QvXmlReader {
  Value* document;
  Level levels[2 * MAX_DEPTH];
  int count;       /* of levels */
  uint64_t excess; /* levels that do not fit; deeper than any document, they are empty */
};

/* Called before each unload. This library keeps nothing for the whole process. */
void qvxmlwrapCleanup(void) {}

QvXmlReader* qvxmlwrapGet_New(const void* data, int32_t length) {
  if (data == NULL || length < 0) return NULL;
  QvXmlReader* reader = calloc(1, sizeof *reader);
  if (reader == NULL) return NULL;
  reader->document = document_parse(data, (size_t)length);
  if (reader->document == NULL) {
    free(reader);
    return NULL;
  }
  reader->levels[0] = (Level){DICTIONARY, reader->document};
  reader->count = 1;
  return reader;
}

int32_t qvxmlwrapGet_Destroy(QvXmlReader* reader) {
  if (reader == NULL) return -1;
  document_free(reader->document);
  free(reader);
  return 0;
}

/* The place in a document */

/* The current container when it is of this type and not an empty level. */
static const Value* current(const QvXmlReader* reader, Type type) {
  if (reader == NULL || reader->excess > 0) return NULL;
  const Level* level = &reader->levels[reader->count - 1];
  return level->type == type ? level->value : NULL;
}

static int32_t enter(QvXmlReader* reader, Type type, const Value* value) {
  if (reader == NULL) return 0;
  if (reader->count < 2 * MAX_DEPTH) {
    reader->levels[reader->count++] = (Level){type, value};
  } else {
    ++reader->excess;
  }
  return value != NULL;
}

static int32_t leave(QvXmlReader* reader, Type type) {
  if (reader == NULL) return -1;
  if (reader->excess > 0) {
    --reader->excess;
    return 0;
  }
  if (reader->count == 1 || reader->levels[reader->count - 1].type != type) return -1;
  --reader->count;
  return 0;
}

/* The value with this number among those of the type under the key. */
static const Value* find_nth(const QvXmlReader* reader, Type type, const char* key,
                             int32_t number) {
  const Value* container = current(reader, DICTIONARY);
  if (container == NULL || key == NULL || number < 0) return NULL;
  for (const Value* value = container->first; value != NULL; value = value->next) {
    if (value->type == type && strcmp(value->key, key) == 0 && number-- == 0) return value;
  }
  return NULL;
}

static const Value* find(const QvXmlReader* reader, Type type, const char* key) {
  return find_nth(reader, type, key, 0);
}

/* The element of the current array when it is of this type. */
static const Value* element(const QvXmlReader* reader, Type type, int32_t index) {
  const Value* array = current(reader, ARRAY);
  const Value* value = array != NULL && index >= 0 ? array->first : NULL;
  while (value != NULL && index-- > 0) value = value->next;
  return value != NULL && value->type == type ? value : NULL;
}

/* Storing */

static int32_t store_long(const Value* value, int32_t* number) {
  if (value == NULL || number == NULL) return 0;
  *number = value->number;
  return 1;
}

static int32_t store_double(const Value* value, double* number) {
  if (value == NULL || number == NULL) return 0;
  *number = value->real;
  return 1;
}

/* A copy, with a NUL after it, that the caller releases. */
static char* copy_bytes(const Value* value) {
  char* copy = malloc(value->length + 1);
  if (copy != NULL) memcpy(copy, value->bytes, value->length + 1);
  return copy;
}

/* The documents are in UTF-8, and so are all texts that are asked for. */
static int32_t store_text(const Value* value, char** text, const char* encoding) {
  if (value == NULL || text == NULL || encoding == NULL || strcasecmp(encoding, "UTF-8") != 0) {
    return 0;
  }
  char* copy = copy_bytes(value);
  if (copy == NULL) return 0;
  *text = copy;
  return 1;
}

static int32_t store_bytes(const Value* value, void** data, int32_t* length) {
  if (value == NULL || data == NULL || length == NULL) return 0;
  char* copy = copy_bytes(value);
  if (copy == NULL) return 0;
  *data = copy;
  *length = (int32_t)value->length;
  return 1;
}

/* Dictionaries */

int32_t qvxmlwrapGet_DictCount(QvXmlReader* reader, const char* key, int32_t* count) {
  int32_t found = 0;
  while (find_nth(reader, DICTIONARY, key, found) != NULL) ++found;
  if (found == 0 || count == NULL) return 0;
  *count = found;
  return 1;
}

int32_t qvxmlwrapGet_OpenDict(QvXmlReader* reader, const char* key, int32_t index) {
  return enter(reader, DICTIONARY, find_nth(reader, DICTIONARY, key, index));
}

int32_t qvxmlwrapGet_CloseDict(QvXmlReader* reader) { return leave(reader, DICTIONARY); }

int32_t qvxmlwrapGet_Long(QvXmlReader* reader, const char* key, int32_t* value, intptr_t word) {
  (void)word;
  return store_long(find(reader, LONG, key), value);
}

int32_t qvxmlwrapGet_Double(QvXmlReader* reader, const char* key, double* value,
                            double default_value) {
  (void)default_value;
  return store_double(find(reader, DOUBLE, key), value);
}

int32_t qvxmlwrapGet_String(QvXmlReader* reader, const char* key, char** text, void* auxiliary,
                            const char* encoding, intptr_t word) {
  (void)auxiliary;
  (void)word;
  return store_text(find(reader, TEXT, key), text, encoding);
}

int32_t qvxmlwrapGet_Binary(QvXmlReader* reader, const char* key, void** data, int32_t* length) {
  return store_bytes(find(reader, BYTES, key), data, length);
}

/* Arrays */

int32_t qvxmlwrapGet_ArrayCount(QvXmlReader* reader, const char* key, int32_t* count) {
  const Value* array = find(reader, ARRAY, key);
  if (array == NULL || count == NULL) return 0;
  int32_t found = 0;
  for (const Value* value = array->first; value != NULL; value = value->next) ++found;
  *count = found;
  return 1;
}

int32_t qvxmlwrapGet_OpenArray(QvXmlReader* reader, const char* key) {
  return enter(reader, ARRAY, find(reader, ARRAY, key));
}

int32_t qvxmlwrapGet_CloseArray(QvXmlReader* reader) { return leave(reader, ARRAY); }

int32_t qvxmlwrapGet_LongFromArray(QvXmlReader* reader, int32_t index, int32_t* value,
                                   intptr_t word) {
  (void)word;
  return store_long(element(reader, LONG, index), value);
}

int32_t qvxmlwrapGet_DoubleFromArray(QvXmlReader* reader, int32_t index, double* value,
                                     double default_value) {
  (void)default_value;
  return store_double(element(reader, DOUBLE, index), value);
}

int32_t qvxmlwrapGet_StringFromArray(QvXmlReader* reader, int32_t index, char** text,
                                     void* auxiliary, const char* encoding, intptr_t word) {
  (void)auxiliary;
  (void)word;
  return store_text(element(reader, TEXT, index), text, encoding);
}

int32_t qvxmlwrapGet_BinaryFromArray(QvXmlReader* reader, int32_t index, void** data,
                                     int32_t* length) {
  return store_bytes(element(reader, BYTES, index), data, length);
}
