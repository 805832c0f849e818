/* Checks that dlsym() finds our strlcpy, strlcat and strnstr, and that they accept null pointers.
 * The exit status is the number of failed checks.
 *
 * usage: null_arguments LIBRARY */
#define _GNU_SOURCE /* dladdr() */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef size_t (*Copying)(char*, const char*, size_t);
typedef char* (*Searching)(const char*, const char*, int32_t);

static int failed_checks;

static void check(int is_right, const char* text) {
  if (is_right) return;
  fprintf(stderr, "wrong: %s\n", text);
  ++failed_checks;
}

#define CHECK(condition) check(condition, #condition)

int main(int argc, char** argv) {
  void* library = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
  if (library == NULL) return 99;
  const Copying copy = (Copying)dlsym(library, "strlcpy");
  const Copying append = (Copying)dlsym(library, "strlcat");
  const Searching search = (Searching)dlsym(library, "strnstr");
  Dl_info where;
  CHECK(dladdr((void*)copy, &where) != 0 && strstr(where.dli_fname, "libinfo_analyze") != NULL);
  CHECK(dladdr((void*)append, &where) != 0 && strstr(where.dli_fname, "libinfo_analyze") != NULL);
  CHECK(dladdr((void*)search, &where) != 0 && strstr(where.dli_fname, "libinfo_analyze") != NULL);

  char text[8] = "abc";
  CHECK(copy(NULL, "x", 8) == 0);
  CHECK(copy(text, NULL, 8) == 0);
  CHECK(copy(NULL, NULL, 8) == 0);
  CHECK(copy(NULL, "x", 0) == 0);
  CHECK(append(NULL, "x", 8) == 0);
  CHECK(append(text, NULL, 8) == 0);
  CHECK(append(NULL, NULL, 8) == 0);
  CHECK(memcmp(text, "abc\0\0\0\0", 8) == 0);
  CHECK(search(NULL, "a", 3) == NULL);
  CHECK(search(text, NULL, 3) == NULL);
  CHECK(search(NULL, NULL, 3) == NULL);

  CHECK(copy(text, "abcdef", 4) == 3 && strcmp(text, "abc") == 0);
  CHECK(append(text, "def", 6) == 5 && strcmp(text, "abcde") == 0);
  CHECK(search("a\0bc", "bc", 4) != NULL);
  return failed_checks;
}
