#!/usr/bin/env bash
# A C library that declares strlcpy, strlcat and strnstr, their arguments as never null, as glibc
# does with the first two from 2.38 on: our headers compile beside it, and our functions, compiled
# beside it, go on taking null pointers.
# usage: newer_declarations.sh SOURCE_FOLDER C_COMPILER CXX_COMPILER
source "$(dirname "$0")/gate.sh"
folder=$1 cc=$2 cxx=$3
cd "$scratch"

cat >newer.h <<'END_OF_HEADER'
#include <stddef.h>
#ifdef __cplusplus
extern "C" {
#define NEVER_NULL noexcept __attribute__((nonnull(1, 2)))
#else
#define NEVER_NULL __attribute__((nonnull(1, 2)))
#endif
size_t strlcpy(char* destination, const char* source, size_t size) NEVER_NULL;
size_t strlcat(char* destination, const char* source, size_t size) NEVER_NULL;
char* strnstr(const char* haystack, const char* needle, size_t length) NEVER_NULL;
#ifdef __cplusplus
}
#endif
END_OF_HEADER
cat >program.c <<'END_OF_PROGRAM'
#include <stddef.h>
#include "info_analyze/info_analyze.h"
#include "info_analyze/libc_names.h"
int main(void) {
  char text[8] = "abc";
  char* volatile nothing = NULL;
  return info_strlcpy(nothing, "x", 8) != 0 || info_strlcpy(text, nothing, 8) != 0 ||
         info_strlcat(nothing, "x", 8) != 0 || info_strlcat(text, nothing, 8) != 0 ||
         info_strnstr(nothing, "x", 8) != NULL || info_strnstr(text, nothing, 3) != NULL;
}
END_OF_PROGRAM

common=(-include newer.h -O2 -Wall -Wextra -Werror -I"$folder/include" -I"$folder")
"$cxx" -std=c++20 "${common[@]}" -c "$folder/info_common/libc_names.cc" -o libc_names.o ||
  fail "the functions do not compile beside newer declarations"
for language in "$cc -std=c99" "$cxx -std=c++20 -x c++"; do
  $language "${common[@]}" -c program.c -o program.o ||
    fail "the headers do not compile beside newer declarations"
  "$cxx" program.o libc_names.o -o program
  ./program || fail "null pointers are no longer accepted"
done
