#!/usr/bin/env bash
# Prints the functions of the interface and the types of the public headers that they take.
# usage: dump_types.sh LIBRARY_WITH_DEBUG_INFORMATION INCLUDE_FOLDER
set -euo pipefail
abidw --exported-interfaces-only --no-elf-needed --headers-dir "$2" --no-corpus-path \
  --no-comp-dir-path --drop-private-types --no-show-locs "$1"
