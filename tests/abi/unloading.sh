#!/usr/bin/env bash
# The library can be loaded and unloaded any number of times.
# usage: unloading.sh LIBRARY C_COMPILER
source "$(dirname "$0")/gate.sh"
library=$1 cc=$2

"$cc" -O2 "$here/unloading.c" -o "$scratch/unloading" -ldl
"$scratch/unloading" "$library" 1000 || fail "the process grew, or the library stayed"
