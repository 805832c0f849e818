#!/usr/bin/env bash
# Prints the enumerators of the public headers with their values. Functions take them as plain
# numbers, so that no dump of types has them.
# usage: list_constants.sh INCLUDE_FOLDER
source "$(dirname "$0")/gate.sh"

without_comments() {
  local header
  for header in "$1"/info_analyze/*.h; do
    [[ $header == */export.h ]] || gcc -fpreprocessed -dD -E -P -x c "$header"
  done
}

names=$(without_comments "$1" | tr '\n' ' ' |
  grep -oE 'enum[^{;]*\{[^}]*\}' | sed 's/.*{//; s/}//' | tr ',' '\n' |
  grep -oE '^ *[A-Za-z_][A-Za-z_0-9]*' | tr -d ' ' | sort)
{
  printf '#include <stdio.h>\n#include "info_analyze/info_analyze.h"\nint main(void) {\n'
  printf '  printf("%%s %%lld\\n", "%s", (long long)%s);\n' $(printf '%s\n' $names | sed 'p')
  printf '  return 0;\n}\n'
} >"$scratch/list.c"
gcc -I"$1" "$scratch/list.c" -o "$scratch/list"
"$scratch/list"
