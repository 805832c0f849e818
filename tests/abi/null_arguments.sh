#!/usr/bin/env bash
# The three functions under names of the C library take null pointers when found by dlsym().
# usage: null_arguments.sh LIBRARY C_COMPILER
source "$(dirname "$0")/gate.sh"
library=$1 cc=$2

"$cc" -O2 "$here/null_arguments.c" -o "$scratch/null_arguments" -ldl
"$scratch/null_arguments" "$library" || fail "$? checks failed"
