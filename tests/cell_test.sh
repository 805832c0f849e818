#!/usr/bin/env bash
# Do the tests notice a change in any cell of the tables of models, finishers, trays, fax lines and
# function versions? Changes one cell at a time in a copy of the tree, builds the tests of analyze/
# and expects one to fail. Prints the cells that none notices.
#
# usage: tests/cell_test.sh [FILE...]     (default: all sources that have such tables)
#
# A cell is a text, a number of a table or a constant, a handler, an empty slot of a table, or the
# rule that a handler is bound to. A text is tried one letter shorter and one letter longer, a
# number one lower and one higher, a handler as another one and as an empty slot. What does not
# compile for another reason than a static_assert is no change and is passed over.
set -euo pipefail

cd "$(dirname "$0")/.."
files=("$@")
((${#files[@]} > 0)) || files=(
  analyze/model/*.cc analyze/model/*_report.h
  analyze/{bin_update,fax_update,finisher_getters,finisher_updates,function_version,tray_update}.cc
)

# Changes without effect, as told, and why.
declare -A idle=(
  ['tray_update.cc: 3 -> 4']='room for one row more than there can be'
  ['finisher_getters.cc: "Vorel Saddle Finisher-X2/X2L"']='an earlier name is its beginning'
  ['finishing_function.cc: analyze_GetFinishingFunctionOptionString_ELM -> analyze_GetFinishingFunctionOptionStringMagnolia']='they decide alike'
  ['finishing_function.cc: analyze_GetFinishingFunctionOptionStringMagnolia -> analyze_GetFinishingFunctionOptionString_ELM']='they decide alike'
)

# Prints the changes: line, column (from 0), length of the old text and new text, separated by tabs.
# Changes of one cell follow each other.
changes_in() {
  # The first reading learns which names can be exchanged.
  awk '
    function emit(column, length_, text) {
      if (!teaching) printf "%d\t%d\t%d\t%s\n", FNR, column, length_, text
    }
    function learn(group, name,   i) {
      for (i = 1; i <= count[group]; i++) if (known[group, i] == name) return
      known[group, ++count[group]] = name
    }
    function exchange(column, name, group,   i, other) {
      if (teaching) { learn(group, name); return }
      for (i = 1; i <= count[group]; i++)
        if (known[group, i] == name) other = known[group, i % count[group] + 1]
      if (other != name) emit(column, length(name), other)
    }
    function text_cell(column, text) {
      if (length(text) <= 2 || text ~ /^"%/) return
      emit(column, length(text), substr(text, 1, length(text) - 2) "\"")
      emit(column, length(text), substr(text, 1, length(text) - 1) "~\"")
    }
    function number_cell(column, number) {
      if (!in_table && !is_constant && length(number) == 1) return
      if (number > 0) emit(column, length(number), number - 1)
      emit(column, length(number), number + 1)
    }
    # In rows of options null is no cell: what is there is made while a handler runs.
    function null_cell(column) {
      if (FILENAME ~ /input_options/) emit(column, 7, "analyze_GetQVEnvelopeFeederCommon")
      if (FILENAME ~ /finisher_options/) emit(column, 7, "analyze_GetQVCopyTrayMAPLE")
      if (FILENAME ~ /paper_source|function_version/) emit(column, 7, "\"~\"")
    }
    function name_cell(column, name, before) {
      if (name == "nullptr") { null_cell(column); return }
      if (match(name, /^(analyze_GetQV(Side|Src|XXX|Env|Finisher|CopyTray|FinTray)|analyze_Get[PF][a-z]+|zGet)/)) {
        exchange(column, name, substr(name, 1, RLENGTH))
        emit(column, length(name), "nullptr")
      } else if (is_constant && name ~ /^[A-Z]/ && before ~ /[{,] ?$/) {
        exchange(column, name, "member" before)
      }
    }
    function walk(code,   column, rest, token) {
      column = 0
      rest = code
      while (match(rest, /"([^"\\]|\\.)*"|[A-Za-z_][A-Za-z_0-9:]*|[0-9]+/)) {
        token = substr(rest, RSTART, RLENGTH)
        column += RSTART - 1
        rest = substr(rest, RSTART + RLENGTH)
        if (token ~ /^"/) text_cell(column, token)
        else if (token ~ /^[0-9]/) number_cell(column, token)
        else if (in_table || is_constant) name_cell(column, token, substr(code, column - 1, 2))
        column += length(token)
      }
    }
    # The rule that a handler is bound to, at the end of its definition.
    function rule() {
      if (match($0, /ia::[A-Za-z0-9_]+(<ia::[A-Za-z0-9_]+>)?\);$/))
        exchange(RSTART - 1, substr($0, RSTART, RLENGTH - 2), "rule")
    }
    FNR == 1 { in_table = in_handler = 0; teaching = ++readings == 1 }
    /^(constexpr|  ia::).*(to_array|kOtherModels)/ { in_table = 1 }
    /^IA_/ { in_handler = 1 }
    {
      is_constant = /^ *(inline )?constexpr /
      code = $0
      sub(/\/\/.*/, "", code)
      if (code !~ /^#|^template|static_assert/) walk(code)
      if (in_handler) rule()
    }
    /\}\)+;$|nullptr\};$/ { in_table = 0 }
    /;$/ { in_handler = 0 }
  ' "$1" "$1"
}

copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
tar cf - --exclude=./build --exclude=./.git . | tar xf - -C "$copy"
cd "$copy"
build=$copy/build/cells
cmake --preset dev -B "$build" -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g0" \
  -DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST >/dev/null
ninja -C "$build" tests/analyze/{,model/,query/}all >/dev/null
mapfile -t programs < <(cd "$build" && find tests/analyze -name '*_test' -type f -executable)
export RC_PARAMS="max_success=20" GTEST_FAIL_FAST=1 GTEST_BRIEF=1

# Whether a test fails: 0 yes, 1 no, 2 the change is none. The tests of the file's own folder first.
is_noticed() {
  local log=$copy/cells.log program
  for program in $(printf '%s\n' "${programs[@]}" | awk -v folder="tests/$(dirname "$1")/" '
      { rest = $0; is_own = sub("^" folder, "", rest) && rest !~ "/"; print !is_own, $0 }' |
    sort | cut -d " " -f 2); do
    if ! ninja -C "$build" "$program" >"$log" 2>&1; then
      grep -q 'static assertion failed' "$log" && return 0
      return 2
    fi
    timeout 60 "$build/$program" >"$log" 2>&1 || return 0
  done
  return 1
}

if is_noticed analyze; then
  echo "the tests fail without a change" >&2
  exit 2
fi

cells=0 killed=0 last_cell='' survivor=''
for file in "${files[@]}"; do
  cp "$file" "$copy/original"
  changes_in "$file" >"$copy/changes"
  while IFS=$'\t' read -r line column length text; do
    cell=$file:$line:$((column + 1))
    [[ $cell != "$survivor" ]] || continue
    before=$(sed -n "${line}p" "$copy/original")
    old=${before:column:length}
    change="${file##*/}: $old"
    [[ -z ${idle["$change"]:-}${idle["$change -> $text"]:-} ]] || continue
    after=${before:0:column}$text${before:column+length}
    LINE=$line AFTER=$after awk 'NR == ENVIRON["LINE"] { $0 = ENVIRON["AFTER"] } { print }' \
      "$copy/original" >"$file"
    status=0
    is_noticed "$file" || status=$?
    ((status != 2)) || continue
    if [[ $cell != "$last_cell" ]]; then
      cells=$((cells + 1)) killed=$((killed + 1)) last_cell=$cell
    fi
    if ((status == 1)); then
      echo "not noticed: $cell: $old -> $text"
      killed=$((killed - 1)) survivor=$cell
    fi
  done <"$copy/changes"
  cp "$copy/original" "$file"
done
echo "killed $killed of $cells cells"
((killed == cells))
