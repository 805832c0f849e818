#include "document.h"

#include <stdlib.h>
#include <string.h>

Value* document_new(void) {
  Value* document = calloc(1, sizeof *document);
  if (document != NULL) document->type = DICTIONARY;
  return document;
}

/* From the innermost values outwards, without recursion. */
void document_free(Value* document) {
  Value* value = document;
  while (value != NULL) {
    if (value->first != NULL) {
      Value* child = value->first;
      value->first = child->next;
      value = child;
      continue;
    }
    Value* parent = value->parent;
    free(value->key);
    free(value->bytes);
    free(value);
    value = parent;
  }
}

static int depth_of(const Value* container) {
  int depth = 0;
  for (; container != NULL; container = container->parent) ++depth;
  return depth;
}

Value* value_add(Value* container, Type type, const char* key) {
  if ((type == DICTIONARY || type == ARRAY) && depth_of(container) >= MAX_DEPTH) return NULL;
  Value* value = calloc(1, sizeof *value);
  if (value == NULL) return NULL;
  value->type = type;
  if (container->type == DICTIONARY) {
    value->key = strdup(key);
    if (value->key == NULL) {
      free(value);
      return NULL;
    }
  }
  value->parent = container;
  if (container->last != NULL) container->last->next = value;
  if (container->first == NULL) container->first = value;
  container->last = value;
  return value;
}

bool value_set_bytes(Value* value, const void* bytes, size_t length) {
  char* copy = malloc(length + 1);
  if (copy == NULL) return false;
  if (length > 0) memcpy(copy, bytes, length);
  copy[length] = '\0';
  free(value->bytes);
  value->bytes = copy;
  value->length = length;
  return true;
}
