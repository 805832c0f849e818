#!/usr/bin/env bash
# No library in the process calls a function of ours: libcups and the C library keep their own.
# usage: other_libraries.sh LIBRARY C_COMPILER
source "$(dirname "$0")/gate.sh"
library=$1 cc=$2
folder=$(dirname "$library")
cd "$scratch"

cat >program.c <<'END'
#include <stdint.h>
const char* cupsServer(void);
int32_t info_common_is_ppd_cache(void);
int main(void) { return cupsServer() == 0 || info_common_is_ppd_cache() != 0; }
END
"$cc" program.c -o program -L"$folder" -linfo_analyze -l:libcups.so.2
LD_LIBRARY_PATH=$folder LD_BIND_NOW=1 LD_DEBUG=bindings LD_DEBUG_OUTPUT=bindings ./program

# "binding file FROM [0] to FILE [0]: normal symbol `NAME'"
cat bindings.* | sed -nE 's/.*binding file (.*) \[.*\] to (.*) \[.*\]: (.*)/\1 \2 \3/p' >bound
grep -q '^./program .*libinfo_analyze.so.1 ' bound || fail "the program is not bound to the library"
grep -q 'libcups.so.2 .*libc.so.6 ' bound || fail "libcups is not loaded"
expect_none "bound to the library" \
  "$(awk '$2 ~ /libinfo_analyze/ && $1 !~ /libinfo_analyze|program$/' bound)"
