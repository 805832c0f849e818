#!/usr/bin/env bash
# A C library that has a strlcpy of its own, as glibc has from 2.38 on, keeps its callers: libraries
# that were linked against it do not get ours although the program links us first, nor does a
# program that has us loaded without linking us. A program's own calls are bound by the linker to
# the library that it names first.
# usage: newer_libc.sh LIBRARY INCLUDE_FOLDER C_COMPILER
source "$(dirname "$0")/gate.sh"
library=$1 include=$2 cc=$3
folder=$(dirname "$library")
cd "$scratch"

# Answers the length of the source, as usual; ours answers the bytes copied.
cat >foo.c <<'END'
#include <string.h>
size_t strlcpy(char* destination, const char* source, size_t size) {
  (void)destination, (void)size;
  return strlen(source);
}
END
cat >user.c <<'END'
#include <stddef.h>
size_t strlcpy(char* destination, const char* source, size_t size);
size_t user_copy(char* destination, const char* source, size_t size) {
  return strlcpy(destination, source, size);
}
END
cat >program.c <<'END'
#include <stdio.h>
#include "info_analyze/libc_names.h"
size_t user_copy(char* destination, const char* source, size_t size);
int main(void) {
  char buffer[4];
  printf("user %zu\n", user_copy(buffer, "abcdef", sizeof buffer));
  printf("ours %zu\n", info_strlcpy(buffer, "abcdef", sizeof buffer));
  return 0;
}
END
cat >plain.c <<'END'
#include <stdio.h>
size_t strlcpy(char* destination, const char* source, size_t size);
int main(void) {
  char buffer[4];
  printf("plain %zu\n", strlcpy(buffer, "abcdef", sizeof buffer));
  return 0;
}
END
cat >capturing.c <<'END'
#include <stddef.h>
size_t strlcpy(char* destination, const char* source, size_t size) {
  (void)destination, (void)source;
  return size - 1;
}
END
echo 'FOO_2.38 { global: strlcpy; local: *; };' >foo.map

export LD_LIBRARY_PATH=$scratch:$folder
"$cc" -shared -fPIC -fno-builtin foo.c -o libfoo.so -Wl,--version-script=foo.map
"$cc" -shared -fPIC user.c -o libuser.so -L. -lfoo
"$cc" -shared -fPIC capturing.c -o libcapturing.so
"$cc" -I"$include" program.c -o program -L. -L"$folder" -linfo_analyze -luser -Wl,-rpath-link,.
"$cc" plain.c -o plain -L. -lfoo
"$cc" plain.c -o plain_before -L. -L"$folder" -lfoo -linfo_analyze
"$cc" plain.c -o plain_after -L. -L"$folder" -linfo_analyze -lfoo
"$cc" -I"$include" program.c -o captured -L. -lcapturing -luser -Wl,-rpath-link,.

expect_equal "callers of the other strlcpy" $'user 6\nours 3' "$(./program)"
expect_equal "a program that has us loaded" "plain 6" "$(LD_PRELOAD=$library ./plain)"
expect_equal "a program that names the other first" "plain 6" "$(./plain_before)"
expect_equal "a program that names us first" "plain 3" "$(./plain_after)"
# The same set-up with an export that has no version: it is what this gate is here to notice.
expect_equal "callers beside an export without version" $'user 3\nours 3' "$(./captured)"
