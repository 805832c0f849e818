#!/usr/bin/env bash
# Prints the functions of the interface and the types of the public headers that they take. It is the
# same for all processors of a word size: the processor's name is left out, and so is what the C
# library and libcups keep in their own records.
# usage: dump_types.sh LIBRARY_WITH_DEBUG_INFORMATION INCLUDE_FOLDER
set -euo pipefail
here=$(dirname "$0")
abidw --exported-interfaces-only --no-elf-needed --headers-dir "$2" --no-corpus-path \
  --no-comp-dir-path --drop-private-types --no-show-locs --suppressions "$here/foreign_records.ini" "$1" |
  sed "1s/ architecture='[^']*'//"
