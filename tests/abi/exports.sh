#!/usr/bin/env bash
# The public headers, the version script, the library and Debian's list of symbols name the same
# functions and tables, every one under the version INFO_ANALYZE_1.
# usage: exports.sh LIBRARY VERSION_SCRIPT INCLUDE_FOLDER SYMBOLS
source "$(dirname "$0")/gate.sh"
library=$1 version_script=$2 include=$3 symbols=$4
version=INFO_ANALYZE_1

names_of_script() {
  sed -n '/global:/,/local:/p' "$version_script" | sed 's/#.*//; s/global://; s/local:.*//' |
    tr -d ' \t' | tr ';' '\n' | sed '/^$/d'
}

# Declarations without their comments, one on a line.
declarations() {
  local header
  for header in "$include"/info_analyze/*.h; do
    case ${header##*/} in
      export.h) continue ;;                 # the macro itself
      communication_library.h) continue ;;  # what the other library exports
    esac
    gcc -fpreprocessed -dD -E -P -x c "$header" | tr '\n' ' '
  done | grep -oE 'IA_EXPORT(_DATA)? [^;]*;'
}

# Exported under the name before its arguments or brackets, or under its asm label.
names_of_headers() {
  declarations | sed -E -e 's/.*__asm__\("([^"]*)"\).*/\1/' -e 's/[[(;].*//' -e 's/.*[ *]//' | sort
}

grep -qE "^ *$version *\{" "$version_script" || fail "the version script has no node $version"
[[ $(grep -c '{' "$version_script") == 1 ]] || fail "the version script has several nodes"
grep -qE 'local: *\*;|^ *\*;' "$version_script" || fail "the version script hides nothing"
expect_none "wildcards in the version script" "$(names_of_script | grep -E '[*?[]' || true)"
expect_equal "the version script and its sorted lines" "$(names_of_script)" \
  "$(names_of_script | sort -u)"

expect_equal "headers (<) and version script (>)" "$(names_of_headers)" "$(names_of_script)"
expect_equal "version script (<) and library (>)" "$(names_of_script)" \
  "$(exported "$library" | awk '{print $1}')"
expect_equal "version script (<) and Debian's symbols (>)" "$(names_of_script)" \
  "$(sed -nE "s/^ (.*)@$version .*/\1/p" "$symbols" | grep -vx "$version")"

expect_none "exports without the version $version" \
  "$("$nm" -D --defined-only "$library" | awk '$2 != "A" {print $NF}' | grep -v "@@$version\$" || true)"
expect_none "exports that are neither functions nor constant data" \
  "$(exported "$library" | awk '$2 != "T" && $2 != "R"')"
expect_none "tables of another size than 16384 bytes" \
  "$(exported "$library" | awk '$2 == "R" && $3 !~ /^0*4000$/')"
