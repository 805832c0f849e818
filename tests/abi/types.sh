#!/usr/bin/env bash
# Functions, records and constants of the interface are those of the dump that is kept in abi/.
# usage: types.sh LIBRARY_WITH_DEBUG_INFORMATION DUMP INCLUDE_FOLDER
source "$(dirname "$0")/gate.sh"
library=$1 dump=$2 include=$3
abidiff --headers-dir2 "$include" "$dump" "$library" >"$scratch/changes" ||
  fail "the interface has changed:" "$(cat "$scratch/changes")" \
    "After additions, and with nothing else, renew the dump by ./dev abi and read its difference."
