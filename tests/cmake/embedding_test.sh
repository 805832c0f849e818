#!/bin/sh
# Builds the library in a parent project, as add_subdirectory() and as FetchContent add it, from a
# folder with a blank in its name, and runs a client of the parent.
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
copy="$folder/info analyze"
export CCACHE_BASEDIR="$folder"  # finds what an earlier run has compiled

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

make_copy() {
  mkdir "$copy"
  tar -C "$SOURCE" --exclude=./build --exclude='./obj-*' --exclude=./.git -cf - . |
    tar -C "$copy" -xf -
}

# What a build of the library alone can do without.
hide_packages() {
  for package in CLI11 Doxygen GTest LibArchive Python3 benchmark nlohmann_json pugixml rapidcheck; do
    printf ' -DCMAKE_DISABLE_FIND_PACKAGE_%s=ON' "$package"
  done
}

check_embedding() {  # way [argument...]
  build="$folder/build by $1"
  # shellcheck disable=SC2046
  "$CMAKE" -G "$GENERATOR" -S "$SOURCE/tests/cmake/parent" -B "$build" -DWAY="$@" \
    -DCMAKE_C_COMPILER="$CC" -DCMAKE_CXX_COMPILER="$CXX" $(hide_packages) \
    > "$folder/configure.log" 2>&1 || fail "configuring: $(cat "$folder/configure.log")"
  "$CMAKE" --build "$build" --parallel 2 > "$folder/build.log" 2>&1 ||
    fail "building: $(cat "$folder/build.log")"
  answer=$("$build/client") || fail "the client ended with status $?"
  test "$answer" = "QVDupUnit=True, LARCH_Def_Calib ends at 1023" ||
    fail "the client printed '$answer'"
  grep -q 'warning.*unused' "$folder/build.log" || fail "the parent's source gave no warning"
}

# In a parent project these are the folders of the parent.
check_folders() {
  if grep -rnE --include=CMakeLists.txt --include='*.cmake' --include='*.in' \
    'CMAKE_(SOURCE|BINARY)_DIR' "$copy"; then
    fail "a folder of the top-level build is named"
  fi
}

make_copy
check_embedding add_subdirectory -DINFO_ANALYZE_FOLDER="$copy" -DCMAKE_BUILD_TYPE=Release
check_embedding FetchContent -DFETCHCONTENT_SOURCE_DIR_INFO_ANALYZE="$copy"
check_folders
