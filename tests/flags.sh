#!/usr/bin/env bash
# Builds the library with other compilers and flags than ours, runs the tests of its modules and the
# gates on each, and prints a table.
# usage: flags.sh CLANG [NAME...]   CLANG is the name of a C compiler of Clang; without names all
set -euo pipefail
cd "$(dirname "$0")/.."
clang=$1
shift

# What each of them is configured with.
arguments_of() {  # NAME
  local flags=()
  case $1 in
    assertions) flags=(-D_GLIBCXX_ASSERTIONS -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3) ;;
    unsigned-char) flags=(-funsigned-char) ;;
    undefined) flags=(-fsanitize=undefined -fno-sanitize-recover=all) ;;
    clang) arguments=(-DCMAKE_C_COMPILER="$clang" -DCMAKE_CXX_COMPILER="${clang/clang/clang++}") ;;
    link-time) arguments=(-DCMAKE_CXX_FLAGS_RELEASE='-O3 -DNDEBUG -flto') ;;
    unoptimised) arguments=(-DCMAKE_CXX_FLAGS_RELEASE=-O0) ;;
    small) arguments=(-DCMAKE_BUILD_TYPE=MinSizeRel) ;;
    with-debug-information) arguments=(-DCMAKE_BUILD_TYPE=RelWithDebInfo) ;;
    distribution)
      arguments=(-DCMAKE_BUILD_TYPE=None
        -DCMAKE_C_FLAGS="$(dpkg-buildflags --get CFLAGS) $(dpkg-buildflags --get CPPFLAGS) -DNDEBUG"
        -DCMAKE_CXX_FLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS) -DNDEBUG"
        -DCMAKE_SHARED_LINKER_FLAGS="$(dpkg-buildflags --get LDFLAGS)") ;;
    *) return 1 ;;
  esac
  ((${#flags[@]} == 0)) ||
    arguments=(-DCMAKE_C_FLAGS="${flags[*]}" -DCMAKE_CXX_FLAGS="${flags[*]}")
}
names=(assertions clang distribution link-time small undefined unoptimised unsigned-char
  with-debug-information)

build_and_test() {  # FOLDER ARGUMENT...
  cmake --preset release -B "$1" -DINFO_ANALYZE_TOOL=OFF -DINFO_ANALYZE_BENCHMARKS=OFF "${@:2}" &&
    cmake --build "$1" -- --quiet &&
    ctest --test-dir "$1" --output-on-failure --label-regex '^(unit|commlib|abi)$' -j "$(nproc)"
}

rows=() status=0
for name in "${@:-${names[@]}}"; do
  arguments=()
  arguments_of "$name" || { echo "flags.sh: unknown flags '$name'; known are ${names[*]}" >&2; exit 2; }
  folder=build/flags/$name
  mkdir -p "$folder"
  result=passed
  build_and_test "$folder" "${arguments[@]}" >"$folder.log" 2>&1 || result=FAILED status=1
  tests=$(sed -nE 's/.*tests passed, [0-9]+ tests failed out of ([0-9]+)/\1/p' "$folder.log")
  rows+=("$(printf '%-24s %5s  %-7s %s' "$name" "${tests:--}" "$result" "$folder.log")")
done
printf '%-24s %5s  %-7s %s\n' flags tests result log
printf '%s\n' "${rows[@]}"
exit "$status"
