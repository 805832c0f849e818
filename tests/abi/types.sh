#!/usr/bin/env bash
# Functions, records and constants of the interface are those that are kept in abi/.
# usage: types.sh LIBRARY_WITH_DEBUG_INFORMATION ABI_FOLDER INCLUDE_FOLDER
source "$(dirname "$0")/gate.sh"
library=$1 kept=$2 include=$3
renewal=(
  "After additions, and with nothing else, renew what is kept by ./dev abi and read its difference.")

bash "$here/list_constants.sh" "$include" >"$scratch/constants"
diff "$kept/constants.txt" "$scratch/constants" >"$scratch/changes" ||
  fail "the constants have changed:" "$(cat "$scratch/changes")" "${renewal[@]}"

# Compares two dumps made in the same way. Against a library, abidiff would take all types of the
# kept dump for private, because it has no source locations, and ignore their changes.
bash "$here/dump_types.sh" "$library" "$include" >"$scratch/types"
format() { sed -nE "1s/.*version='([0-9]+).*/\1/p" "$1"; }
bits=$(readelf -hW "$library" | sed -nE 's/^ *Class: *ELF//p')
if [[ $(format "$kept/info_analyze-$bits.abi") != "$(format "$scratch/types")" ]]; then
  echo "abi/info_analyze-$bits.abi was written by another major version of libabigail"
  exit 77
fi
abidiff --harmless "$kept/info_analyze-$bits.abi" "$scratch/types" >"$scratch/changes" ||
  fail "the interface has changed:" "$(cat "$scratch/changes")" "${renewal[@]}"
