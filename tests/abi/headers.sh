#!/usr/bin/env bash
# Each public header compiles by itself, and twice, as C99 and as C++20 with all warnings on; and
# info_analyze.h includes all of them but libc_names.h.
# usage: headers.sh INCLUDE_FOLDER COMPILER...  (C++ compilers have a "+" in their names; one that is
# not installed is skipped)
source "$(dirname "$0")/gate.sh"
include=$1
shift

compile() {  # compiler, header
  local language=(-x c -std=c99 -Wstrict-prototypes)
  [[ $1 == *+* ]] && language=(-x c++ -std=c++20)
  printf '#include "info_analyze/%s"\n#include "info_analyze/%s"\nextern int stub;\n' "$2" "$2" |
    "$1" "${language[@]}" -Wall -Wextra -Wpedantic -Werror -fsyntax-only -I"$include" -
}

compilers=0
for compiler in "$@"; do
  command -v "$compiler" >/dev/null || continue
  compilers=$((compilers + 1))
  for header in "$include"/info_analyze/*.h; do
    compile "$compiler" "${header##*/}" || fail "$compiler does not compile ${header##*/}"
  done
done
((compilers >= 2)) || fail "only $compilers of the compilers are installed"

taken=$(sed -nE 's/^#include "info_analyze\/(.*)"/\1/p' "$include/info_analyze/info_analyze.h")
others=$(find "$include/info_analyze" -name '*.h' -printf '%f\n' |
  grep -vxE 'info_analyze.h|libc_names.h')
with_export=$(printf '%s\n' "$taken" export.h)  # which every header takes
expect_equal "headers that info_analyze.h takes (<) and that there are (>)" \
  "$(sort -u <<<"$with_export")" "$(sort <<<"$others")"
