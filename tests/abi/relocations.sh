#!/usr/bin/env bash
# The library calls its own functions directly and imports none of the three functions under names of
# the C library, so no other definition of the same name replaces them. (A table is different: it must
# have one address in the process, so it is reached through a relocation.)
# usage: relocations.sh LIBRARY
source "$(dirname "$0")/gate.sh"
library=$1

relocated() { readelf -rW "$library" | awk '$3 ~ /^R_/ {print $5}' | sed 's/@.*//' | sort -u; }

expect_none "relocations to functions of the library" \
  "$(comm -12 <(relocated) <(exported_functions "$library"))"
expect_none "taken from another library" \
  "$(imported "$library" | grep -E '^(strlcpy|strlcat|strnstr)(@|$)' || true)"
