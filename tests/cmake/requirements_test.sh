#!/bin/sh
# A package that is missing ends the configuration with one sentence that says what to install. The
# packages of options that are off are not needed.
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

configure() {  # argument...
  "$CMAKE" -G "$GENERATOR" -S "$SOURCE" -B "$folder/build" \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" "$@" > "$folder/log" 2>&1
}

# CMake breaks long messages into lines.
expect_sentence() {  # sentence
  tr -s '[:space:]' ' ' < "$folder/log" > "$folder/text"
  grep -qF "$1 " "$folder/text" || fail "'$1' is missing: $(cat "$folder/log")"
}

library="-DINFO_ANALYZE_TOOL=OFF -DINFO_ANALYZE_COMMLIB=OFF -DINFO_ANALYZE_TESTS=OFF"
library="$library -DINFO_ANALYZE_DOCS=OFF -DINFO_ANALYZE_BENCHMARKS=OFF"

expect_report() {  # package option sentence
  # Arguments are words.
  # shellcheck disable=SC2086
  if configure $library ${2:+-D$2=ON} -U 'CMAKE_DISABLE_FIND_PACKAGE_*' \
    -D"CMAKE_DISABLE_FIND_PACKAGE_$1=ON"; then
    fail "configured without $1"
  fi
  expect_sentence "$3"
}

expect_reports() {
  while IFS='|' read -r package option sentence; do
    expect_report "$package" "$option" "info_analyze needs $sentence"
  done <<'END'
Cups||Cups for the PPDs of print queues: install libcups2-dev
LibArchive|INFO_ANALYZE_TOOL|LibArchive 3 for the tool: install libarchive-dev or pass -DINFO_ANALYZE_TOOL=OFF
CLI11|INFO_ANALYZE_TOOL|CLI11 for the tool: install libcli11-dev or pass -DINFO_ANALYZE_TOOL=OFF
nlohmann_json|INFO_ANALYZE_TOOL|nlohmann_json 3 for the tool: install nlohmann-json3-dev or pass -DINFO_ANALYZE_TOOL=OFF
pugixml|INFO_ANALYZE_TOOL|pugixml for the tool: install libpugixml-dev or pass -DINFO_ANALYZE_TOOL=OFF
pugixml|INFO_ANALYZE_COMMLIB|pugixml for the reference communication library: install libpugixml-dev or pass -DINFO_ANALYZE_COMMLIB=OFF
GTest|INFO_ANALYZE_TESTS|GTest for the tests: install libgmock-dev and libgtest-dev or pass -DINFO_ANALYZE_TESTS=OFF
rapidcheck|INFO_ANALYZE_TESTS|rapidcheck for the tests: install librapidcheck-dev or pass -DINFO_ANALYZE_TESTS=OFF
Doxygen|INFO_ANALYZE_DOCS|Doxygen for the reference: install doxygen or pass -DINFO_ANALYZE_DOCS=OFF
benchmark|INFO_ANALYZE_BENCHMARKS|benchmark for the benchmarks: install libbenchmark-dev or pass -DINFO_ANALYZE_BENCHMARKS=OFF
END
}

expect_library_alone() {
  hidden=""
  for package in CLI11 Doxygen GTest LibArchive Python3 benchmark nlohmann_json pugixml rapidcheck; do
    hidden="$hidden -DCMAKE_DISABLE_FIND_PACKAGE_$package=ON"
  done
  # shellcheck disable=SC2086
  configure $library -U 'CMAKE_DISABLE_FIND_PACKAGE_*' $hidden || fail "$(cat "$folder/log")"
}

# The compiler claims to be an old one.
expect_old_compiler_report() {
  rm -rf "$folder/build"
  case $CXX in
    *clang*) claim="-U__clang_major__ -D__clang_major__=9" ;;
    *) claim="-U__GNUC__ -D__GNUC__=9" ;;
  esac
  printf '#!/bin/sh\nexec "%s" %s "$@"\n' "$CXX" "$claim" > "$folder/old-c++"
  chmod +x "$folder/old-c++"
  if configure -DCMAKE_CXX_COMPILER="$folder/old-c++"; then fail "configured with an old compiler"; fi
  expect_sentence "g++-12 or clang-14 and name it by -DCMAKE_CXX_COMPILER"
}

expect_reports
expect_library_alone
expect_old_compiler_report
