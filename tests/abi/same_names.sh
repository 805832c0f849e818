#!/usr/bin/env bash
# A program may define functions of every name that we export: our results stay the same.
# usage: same_names.sh LIBRARY INCLUDE_FOLDER C_COMPILER DRIVER_FOLDER SAMPLE_FOLDER
source "$(dirname "$0")/gate.sh"
library=$1 include=$2 cc=$3 driver=$4 sample=$5
folder=$(dirname "$library")
cd "$scratch"

# Ours would never answer so, and a call to a program's own handler ends the program.
{
  echo '#include <stdio.h>'
  echo '#include <stdlib.h>'
  echo 'unsigned long strlcpy(void) { return 99; }'
  echo 'unsigned long strlcat(void) { return 99; }'
  echo 'char* strnstr(void) { static char elsewhere[1]; return elsewhere; }'
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
grep -q '^QVSpecID=' alone.txt || fail "the query answers nothing:" "$(cat alone.txt)"
./with_names "$driver" sample "$sample/device-info" >with_names.txt || true
expect_equal "results alone (<) and beside functions of the same names (>)" "$(cat alone.txt)" \
  "$(cat with_names.txt)"
