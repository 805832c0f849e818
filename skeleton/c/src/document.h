/* A document as a tree, which the reader answers from and the writer builds. */
#ifndef DOCUMENT_H_
#define DOCUMENT_H_

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define MAX_DEPTH 16 /* of containers in each other */

typedef enum { LONG, DOUBLE, TEXT, BYTES, DICTIONARY, ARRAY, TYPE_COUNT } Type;

typedef struct Value {
  Type type;
  char* key;      /* NULL in an array */
  int32_t number; /* of a LONG */
  double real;    /* of a DOUBLE */
  char* bytes;    /* of a TEXT or BYTES, with a NUL after them */
  size_t length;  /* without the NUL */
  struct Value* parent;
  struct Value* first; /* of the values in a container */
  struct Value* last;
  struct Value* next;
} Value;

/* The outermost dictionary, empty; NULL when there is no memory. */
Value* document_new(void);

void document_free(Value* document);

/* Adds a value to a container. NULL when there is no memory, or too many containers in each other.
 */
Value* value_add(Value* container, Type type, const char* key);

/* Sets a TEXT or BYTES to a copy; false when there is no memory. */
bool value_set_bytes(Value* value, const void* bytes, size_t length);

/* The document in these bytes; NULL when they are none. */
Value* document_parse(const void* data, size_t length);

/* The bytes of a document, in a block of malloc(); NULL when there is no memory. */
char* document_format(const Value* document, size_t* length);

#endif
