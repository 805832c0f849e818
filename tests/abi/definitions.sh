#!/usr/bin/env bash
# Checks that ctags, and so an editor's search, finds the definition of every exported name.
# usage: definitions.sh SOURCE_FOLDER VERSION_SCRIPT
source "$(dirname "$0")/gate.sh"
source_folder=$1 map=$2

exported=$(sed -n 's/^    \([A-Za-z_0-9]*\);/\1/p' "$map" | sort)
(($(wc -l <<<"$exported") > 200)) || fail "the version script has 200 names or fewer"
defined=$(find "$source_folder"/{info_common,queue,bidi,analyze,calib} -name '*.cc' -exec \
  ctags -x --kinds-c++=fv --extras=-F {} + | awk '{print $1}' | sort -u)
# Names of the C library are defined under private ones; see libc_names.h.
expect_none "exported names without a definition that ctags finds" \
  "$(comm -23 <(echo "$exported") <(sed 's/^info_\(str.*\)/\1/' <<<"$defined" | sort -u))"
