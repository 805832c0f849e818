#!/bin/sh
# Installs the build into a folder of its own, then builds and runs clients against that alone.
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
prefix=$folder/prefix

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

# Runs a program with the installed library on the sample printer.
with_sample_printer() {
  mkdir -p "$folder/tmp"
  LD_LIBRARY_PATH=$prefix/$LIBDIR CUPS_SERVERROOT=$SOURCE/examples/office-mfp \
    CUPS_SERVER=localhost TMPDIR=$folder/tmp "$@"
}

expect_sample_options() {
  with_sample_printer "$@" > "$folder/answer" || fail "$1 ended with status $?"
  diff -u "$SOURCE/examples/office-mfp/expected-options.txt" "$folder/answer" ||
    fail "$1 gave other options"
}

check_files() {
  for file in "$LIBDIR/libinfo_analyze.so" "$LIBDIR/libinfo_analyze.so.1" \
    "$LIBDIR/libinfo_analyze.so.$VERSION" "$BINDIR/info-analyze" "$MANDIR/man1/info-analyze.1" \
    "$MANDIR/man3/libinfo_analyze.3" "$MANDIR/man5/info-analyze-documents.5" \
    "$MANDIR/man5/info-analyze-profile.5" \
    "$MANDIR/man7/info-analyze-decisions.7" share/info-analyze/info-analyze.conf \
    share/info-analyze/info-analyze.schema.json \
    share/info-analyze/info-analyze-profile.schema.json \
    share/info-analyze/info-analyze-snapshot.schema.json; do
    test -e "$prefix/$file" || fail "$file is not installed"
  done
  diff -r "$SOURCE/include/info_analyze" "$prefix/$INCLUDEDIR/info_analyze" ||
    fail "the installed headers are not those of the sources"
}

check_tool() {
  version=$(env -u LD_LIBRARY_PATH "$prefix/$BINDIR/info-analyze" --version) ||
    fail "the tool does not find its library"
  test "$version" = "info-analyze $VERSION" || fail "the tool is '$version'"
  expect_sample_options "$prefix/$BINDIR/info-analyze" query --queue office-mfp \
    --driver-folder "$BUILD/driver" --device-info "$SOURCE/examples/office-mfp/device-info"
}

ask_pkg_config() {
  PKG_CONFIG_PATH=$prefix/$LIBDIR/pkgconfig pkg-config "$@" info_analyze
}

check_pkg_config() {
  version=$(ask_pkg_config --modversion)
  test "$version" = "$VERSION" || fail "pkg-config reports the version '$version'"
  required=$(ask_pkg_config --print-requires --print-requires-private)
  test -z "$required" || fail "pkg-config asks for '$required'"
  # Flags are lists of words.
  # shellcheck disable=SC2046,SC2086
  $CC -std=c99 -Wall -Wextra -Wpedantic -Werror $CFLAGS $(ask_pkg_config --cflags) \
    -o "$folder/c_client" "$SOURCE/examples/query.c" $(ask_pkg_config --libs)
  expect_sample_options "$folder/c_client" \
    "$BUILD/driver" office-mfp "$SOURCE/examples/office-mfp/device-info"
}

# CUPS is hidden from the client: the package must not look for it.
configure_client() {
  "$CMAKE" -S "$SOURCE/tests/cli/package_client" -B "$folder/$1" -DWANTED_VERSION="$2" \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_FLAGS="$CXXFLAGS" \
    -DCMAKE_DISABLE_FIND_PACKAGE_Cups=ON > "$folder/configure.log" 2>&1
}

check_cmake_package() {
  configure_client client "${VERSION%.*}" || fail "configuring: $(cat "$folder/configure.log")"
  "$CMAKE" --build "$folder/client" > "$folder/build.log" 2>&1 ||
    fail "building: $(cat "$folder/build.log")"
  expect_sample_options "$folder/client/client" \
    "$BUILD/driver" office-mfp "$SOURCE/examples/office-mfp/device-info"
  if grep -ri cups "$prefix/$LIBDIR/cmake/info_analyze"; then fail "the package speaks of CUPS"; fi
  for version in "$((${VERSION%%.*} + 1)).0" "$((${VERSION%%.*} - 1)).9"; do
    if configure_client "client-$version" "$version"; then
      fail "a client of version $version was served"
    fi
  done
}

install() { # folder, argument...
  to=$1
  shift
  "$CMAKE" --install "$BUILD" --prefix "$to" "$@" > "$folder/install.log" 2>&1 ||
    fail "installing: $(cat "$folder/install.log")"
}

# Each file is in one component, and a component in a folder of its own has no other's files.
check_components() {
  for component in library development tool commlib; do
    install "$folder/$component" --component "$component"
    (cd "$folder/$component" && find . ! -type d) > "$folder/$component.files"
    test -s "$folder/$component.files" || fail "the component $component is empty"
  done
  cat "$folder"/*.files | sort > "$folder/of_components"
  (cd "$prefix" && find . ! -type d) | sort | diff "$folder/of_components" - ||
    fail "the components (<) are not the whole (>)"
  test "$(grep -c '^' "$folder/library.files")" = 2 || fail "the component library has other files"
}

install "$prefix"
check_files
check_components
check_tool
check_pkg_config
check_cmake_package
