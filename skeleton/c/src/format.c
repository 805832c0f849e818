/* The format of documents. Replace it by what your printers or your daemon write: only
 * document_parse() and document_format() are called from elsewhere.
 *
 * This one has a line for each value: its type, its key unless it is in an array, and the value.
 * Values that follow a container are in it, up to its line "end":
 *
 *   document
 *   number version 3
 *   dictionary list
 *   text name Finisher%20A
 *   array codes
 *   number 101
 *   end
 *   end
 *   end
 *
 * In keys, texts and bytes, each blank, control character and "%" is written as "%" and two
 * hexadecimal digits. */
#define _GNU_SOURCE /* newlocale() */

#include <ctype.h>
#include <errno.h>
#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "document.h"

static const char* const type_names[TYPE_COUNT] = {"number", "real",       "text",
                                                   "bytes",  "dictionary", "array"};

/* Reading */

/* Takes the next word of a line; an empty one when there is none. */
static char* take_word(char** line) {
  char* word = *line;
  char* end = strchrnul(word, ' ');
  *line = *end == '\0' ? end : end + 1;
  *end = '\0';
  return word;
}

static int digit_of(char character) {
  static const char digits[] = "0123456789abcdef";
  const char* digit = character != '\0' ? strchr(digits, character) : NULL;
  return digit != NULL ? (int)(digit - digits) : -1;
}

/* Replaces "%20" by a blank and so on, in place. */
static bool decode(char* word, size_t* length) {
  char* to = word;
  for (const char* from = word; *from != '\0'; ++from) {
    char byte = *from;
    if (byte == '%') {
      const int high = digit_of(from[1]);
      const int low = high >= 0 ? digit_of(from[2]) : -1;
      if (low < 0) return false;
      byte = (char)(16 * high + low);
      from += 2;
    }
    *to++ = byte;
  }
  *to = '\0';
  *length = (size_t)(to - word);
  return true;
}

static bool is_text(const char* text, size_t length) { return strlen(text) == length; }

static bool parse_number(Value* value, const char* word) {
  char* end;
  errno = 0;
  const long long number = strtoll(word, &end, 10);
  value->number = (int32_t)number;
  return end != word && *end == '\0' && errno == 0 && value->number == number;
}

static bool parse_real(Value* value, const char* word) {
  char* end;
  value->real = strtod(word, &end);
  return end != word && *end == '\0';
}

static bool parse_bytes(Value* value, char* word) {
  size_t length;
  return decode(word, &length) && (value->type == BYTES || is_text(word, length)) &&
         value_set_bytes(value, word, length);
}

static bool parse_word(Value* value, char* word) {
  switch (value->type) {
    case LONG:
      return parse_number(value, word);
    case DOUBLE:
      return parse_real(value, word);
    case TEXT:
    case BYTES:
      return parse_bytes(value, word);
    default:
      return true;
  }
}

/* Adds the value of a line to the container. Gives the container of the next line; NULL when the
 * line is no value. */
static Value* parse_line(Value* container, char* line) {
  const char* name = take_word(&line);
  int type = 0;
  while (type < TYPE_COUNT && strcmp(name, type_names[type]) != 0) ++type;
  if (type == TYPE_COUNT) return NULL;
  char* key = NULL;
  size_t key_length;
  if (container->type == DICTIONARY) {
    key = take_word(&line);
    if (!decode(key, &key_length) || !is_text(key, key_length)) return NULL;
  }
  Value* value = value_add(container, (Type)type, key);
  if (value == NULL || !parse_word(value, line)) return NULL;
  return type == DICTIONARY || type == ARRAY ? value : container;
}

/* The lines after the first. */
static bool parse_lines(Value* document, char* text) {
  Value* container = document;
  for (char* line = strsep(&text, "\n"); line != NULL; line = strsep(&text, "\n")) {
    if (container == NULL) return *line == '\0' && text == NULL; /* after the last "end" */
    if (strcmp(line, "end") == 0) {
      container = container->parent;
      continue;
    }
    container = parse_line(container, line);
    if (container == NULL) return false;
  }
  return container == NULL;
}

static Value* parse_text(char* text) {
  if (strcmp(strsep(&text, "\n"), "document") != 0 || text == NULL) return NULL;
  Value* document = document_new();
  if (document != NULL && parse_lines(document, text)) return document;
  document_free(document);
  return NULL;
}

/* Numbers have a decimal point whatever the locale of the process is. */
static locale_t use_c_locale(void) {
  const locale_t c_locale = newlocale(LC_ALL_MASK, "C", (locale_t)0);
  return c_locale != (locale_t)0 ? uselocale(c_locale) : (locale_t)0;
}

static void restore_locale(locale_t former) {
  if (former != (locale_t)0) freelocale(uselocale(former));
}

Value* document_parse(const void* data, size_t length) {
  if (length > 0 && memchr(data, '\0', length) != NULL) return NULL;
  char* text = strndup(length > 0 ? data : "", length); /* data has no NUL after it */
  if (text == NULL) return NULL;
  const locale_t former = use_c_locale();
  Value* document = parse_text(text);
  restore_locale(former);
  free(text);
  return document;
}

/* Writing */

static void encode(FILE* out, const char* bytes, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    const unsigned char byte = (unsigned char)bytes[i];
    if (byte <= ' ' || byte == '%' || byte == 0x7f) {
      fprintf(out, "%%%02x", byte);
    } else {
      fputc(byte, out);
    }
  }
}

static void format_value(FILE* out, const Value* value) {
  fputs(type_names[value->type], out);
  if (value->key != NULL) {
    fputc(' ', out);
    encode(out, value->key, strlen(value->key));
  }
  if (value->type == LONG) fprintf(out, " %d", (int)value->number);
  if (value->type == DOUBLE) fprintf(out, " %.17g", value->real);
  if (value->type == TEXT || value->type == BYTES) {
    fputc(' ', out);
    encode(out, value->bytes, value->length);
  }
  fputc('\n', out);
}

/* At most MAX_DEPTH calls deep. */
static void format_container(FILE* out, const Value* container) {
  for (const Value* value = container->first; value != NULL; value = value->next) {
    format_value(out, value);
    if (value->type == DICTIONARY || value->type == ARRAY) format_container(out, value);
  }
  fputs("end\n", out);
}

char* document_format(const Value* document, size_t* length) {
  char* text = NULL;
  FILE* out = open_memstream(&text, length);
  if (out == NULL) return NULL;
  const locale_t former = use_c_locale();
  fputs("document\n", out);
  format_container(out, document);
  restore_locale(former);
  const bool has_failed = ferror(out) != 0;
  if (fclose(out) == 0 && !has_failed) return text;
  free(text);
  return NULL;
}
