#!/usr/bin/env bash
# A program may define functions of every name that we export: our results stay the same. Its
# strlcpy and strlcat do what functions of these names usually do, because a newer libcups calls
# them; that we do not is seen by who calls them.
# usage: same_names.sh LIBRARY INCLUDE_FOLDER C_COMPILER DRIVER_FOLDER SAMPLE_FOLDER
source "$(dirname "$0")/gate.sh"
library=$1 include=$2 cc=$3 driver=$4 sample=$5
folder=$(dirname "$library")
cd "$scratch"

# A call from us to a function of the program ends the program.
{
  cat <<'END'
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#define REFUSE_US(name)                                                             \
  Dl_info caller;                                                                   \
  if (dladdr(__builtin_extract_return_addr(__builtin_return_address(0)), &caller) && \
      strstr(caller.dli_fname, "libinfo_analyze")) {                                \
    puts("the program's " name " was called");                                      \
    abort();                                                                        \
  }
size_t strlcpy(char* destination, const char* source, size_t size) {
  REFUSE_US("strlcpy")
  const size_t length = strlen(source);
  if (size > 0) {
    const size_t copied = length < size ? length : size - 1;
    memcpy(destination, source, copied);
    destination[copied] = '\0';
  }
  return length;
}
size_t strlcat(char* destination, const char* source, size_t size) {
  REFUSE_US("strlcat")
  const size_t length = strnlen(destination, size);
  return length + strlcpy(destination + length, source, size - length);
}
END
  echo 'char* strnstr(void) { puts("the program'"'"'s strnstr was called"); abort(); }'
  for name in $(exported_functions "$library" | grep -vE '^(strlcpy|strlcat|strnstr)$'); do
    printf 'void %s(void) { puts("the program'"'"'s %s was called"); abort(); }\n' "$name" "$name"
  done
} >names.c

"$cc" -I"$include" "$here/query.c" -o alone -ldl -L"$folder" -Wl,--no-as-needed -linfo_analyze
"$cc" -I"$include" -fno-builtin "$here/query.c" names.c -o with_names -rdynamic -ldl \
  -L"$folder" -Wl,--no-as-needed -linfo_analyze

mkdir -p server/ppd tmp
cp "$sample"/ppd/*.ppd server/ppd/sample.ppd
export LD_LIBRARY_PATH=$folder CUPS_SERVER=localhost CUPS_SERVERROOT=$scratch/server \
  TMPDIR=$scratch/tmp HOME=$scratch
./alone "$driver" sample "$sample/device-info" >alone.txt || fail "the query fails"
grep -q '^QVSpecID=' alone.txt || fail "the query returns no specification ID:" "$(cat alone.txt)"
./with_names "$driver" sample "$sample/device-info" >with_names.txt || true
expect_equal "results alone (<) and beside functions of the same names (>)" "$(cat alone.txt)" \
  "$(cat with_names.txt)"
