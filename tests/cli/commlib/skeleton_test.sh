#!/bin/sh
# What "commlib new" writes builds without warnings against the installed package, keeps the contract
# of communication libraries, and serves a query.
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export CMAKE_PREFIX_PATH="$folder/prefix"
export PATH="$folder/prefix/$BINDIR:$PATH"
export CMAKE_GENERATOR="$GENERATOR" CC CXX
warnings="-Werror -Wall -Wextra -Wpedantic -Wconversion -Wshadow"
export CFLAGS="$CFLAGS $warnings -Wstrict-prototypes" CXXFLAGS="$CXXFLAGS $warnings"

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

check_skeleton() {  # language
  library="$folder/in $1"
  command=$(info-analyze commlib new "$library" --language "$1")
  diff -r "$SOURCE/skeleton/$1" "$library" || fail "the sources in $1 are changed"
  sh -c "$command" > "$folder/log" 2>&1 || fail "$command: $(cat "$folder/log")"
  answer=$(info-analyze commlib check "$library/build/driver" --documents "$library/documents" |
    tail -n 1)
  case "$answer" in
    *" 0 broken, 0 not tested") ;;
    *) fail "the library in $1: $answer" ;;
  esac
}

check_query() {  # language, with eight documents in which nothing is fitted
  for name in Accessories Functions Specid Bin_list Tray_list Resolutions Fax_line_list Devicename; do
    printf "document\nend\n" > "$folder/in $1/documents/$name.xml"
  done
  finisher=$(info-analyze query --queue office-mfp --cups-root "$SOURCE/examples/office-mfp" \
    --driver-folder "$folder/in $1/build/driver" --device-info "$folder/in $1/documents" \
    2> "$folder/messages" | grep QVFinisher=) || fail "$(cat "$folder/messages")"
  test "$finisher" = QVFinisher=BKFINW1 || fail "the library in $1 gives '$finisher'"
}

"$CMAKE" --install "$BUILD" --prefix "$folder/prefix" > "$folder/log" 2>&1 ||
  fail "installing: $(cat "$folder/log")"
for language in c c++; do
  check_skeleton "$language"
  check_query "$language"
done
