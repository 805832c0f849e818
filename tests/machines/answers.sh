#!/usr/bin/env bash
# Prints what must be the same on every machine: the names that the library exports, and what it
# answers for the sample printers.
# usage: answers.sh BUILD_FOLDER
set -euo pipefail
build=$1
export LC_ALL=C

nm -D --defined-only "$build/libinfo_analyze.so.1" | awk '{print $(NF - 1), $NF}' | sort
for printer in examples/*/; do
  name=$(basename "$printer")
  printf '\n%s\n' "$name"
  "$build/bin/info-analyze" query --queue "$name" --cups-root "$printer" \
    --driver-folder "$build/driver" --device-info "$printer/device-info"
done
