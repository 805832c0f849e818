# shellcheck shell=bash
# Sourced by the gates of this folder. A gate prints what is wrong and exits with status 1.
set -euo pipefail
export LC_ALL=C

# shellcheck disable=SC2034  # used by the programs of this folder
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# Those of a cross build know its processor.
nm=${NM:-nm}
# shellcheck disable=SC2034  # for some of the gates
objdump=${OBJDUMP:-objdump}

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

# The lines of a list that must be empty are what is wrong.
expect_none() {  # what is wrong, list
  [[ -z $2 ]] || fail "$1:" "$2"
}

expect_equal() {  # what is compared, one list, other list
  diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") >"$scratch/difference" ||
    fail "$1 differ:" "$(cat "$scratch/difference")"
}

# Names that the library exports, each with the letter of nm for its type and with its size.
exported() {  # library
  "$nm" -D --defined-only -S "$1" | awk '$(NF - 1) != "A" {print $NF, $(NF - 1), $2}' |
    sed 's/@@[^ ]*//' | sort
}

exported_functions() { exported "$1" | awk '$2 == "T" {print $1}'; }

# Names that the library takes from others, with their versions.
imported() { "$nm" -D --undefined-only "$1" | awk '{print $NF}' | sort; }  # library
