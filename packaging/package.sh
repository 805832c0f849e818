#!/usr/bin/env bash
# Builds the Debian packages twice, holds them to lintian, and installs, uses and removes them in a
# root of their own. For other systems it packs what the release build installs. What is made stays
# in build/package. As root, for debootstrap and chroot.
set -euo pipefail
cd "$(dirname "$0")/.."

version=$(sed -nE 's/^project\(info_analyze VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
timestamp=$(dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)
work=$PWD/build/package
root=$work/root
# What programs that use the packages need, and the packages themselves.
base_packages=cmake,g++,libarchive13,libcups2,libpugixml1v5,make,pkg-config,python3

# A cache would hand the second build what the first one compiled.
unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER

step() { printf '\n== %s\n' "$*"; }

unpack_sources() {  # folder
  rm -rf "$1"
  mkdir -p "$1/info-analyze-$version"
  tar -xf "$work/info-analyze_$version.orig.tar.gz" -C "$1"
  cp -r packaging/debian "$1/info-analyze-$version/debian"
  ln -s "$work/info-analyze_$version.orig.tar.gz" "$1"
}

# Packs the files whose names it reads, each ended by NUL, the same way each time.
pack() {  # name of the folder in the tarball
  LC_ALL=C sort -z |
    tar --create --transform "s,^,$1/,S" --mtime "@$timestamp" \
      --owner=0 --group=0 --numeric-owner --mode=go=rX,u+rw,a-s \
      --no-recursion --null --files-from=- |
    gzip -n
}

make_source_tarball() {
  git ls-files -z --cached --others --exclude-standard |
    pack "info-analyze-$version" >"$work/info-analyze_$version.orig.tar.gz"
}

make_prefix_tarball() {
  local name prefix
  name=info-analyze-$version-linux-$(uname -m)
  prefix=$work/prefix
  rm -rf "$prefix"
  cmake --install build/release --strip --prefix "$prefix" >/dev/null
  (cd "$prefix" && find . -mindepth 1 -printf '%P\0' | pack "$name") >"$work/$name.tar.gz"
  ls "$work/$name.tar.gz"
}

build_packages() {  # folder, argument of dpkg-buildpackage...
  unpack_sources "$1"
  (cd "$1/info-analyze-$version" && dpkg-buildpackage -us -uc "${@:2}") >"$1.log" 2>&1 ||
    { tail -n 50 "$1.log"; return 1; }
}

# Elsewhere, in another time zone and language, with another umask, and without tests.
build_packages_again() {
  (umask 027 && TZ=Asia/Kathmandu LC_ALL=C DEB_BUILD_OPTIONS="nocheck parallel=1" \
    build_packages "$work/second/folder" -b)
}

compare_builds() {
  local deb
  for deb in "$work"/first/*.deb; do
    cmp "$deb" "$work/second/folder/$(basename "$deb")"
    echo "equal: $(basename "$deb")"
  done
}

in_root() {  # argument of chroot..., command...
  unshare --mount --pid --fork --mount-proc="$root/proc" \
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/tmp DEBIAN_FRONTEND=noninteractive \
    chroot "$@"
}

make_root() {
  [[ $work/base.tar -nt packaging/package.sh ]] || {  # which names the packages in it
    rm -rf "$root"
    debootstrap --variant=minbase --include="$base_packages" bookworm "$root" >"$work/debootstrap.log"
    tar -C "$root" --numeric-owner -cf "$work/base.tar" .
  }
  rm -rf "$root"
  mkdir -p "$root"
  tar -C "$root" --numeric-owner -xpf "$work/base.tar"
}

# All but what package management keeps of its own past.
list_root() {
  (cd "$root" && find . -xdev \
    \( -path ./proc -o -path ./var/lib/dpkg -o -path ./var/log -o -path ./var/cache \) -prune \
    -o -printf '%p %y %s\n' | LC_ALL=C sort)
  in_root "$root" dpkg-query -W
}

install_and_remove() {
  local names test
  mapfile -t names < <(sed -n 's/^Package: //p' packaging/debian/control)
  list_root >"$work/before"
  mkdir "$root/packages"
  cp "$work"/first/*.deb packaging/debian/tests/* "$root/packages"
  rm "$root"/packages/*-dbgsym_*.deb
  in_root "$root" sh -c 'dpkg --install /packages/*.deb' | grep '^Setting up'
  for test in packaging/debian/tests/*; do
    [[ $test == */control ]] && continue
    in_root --userspec=nobody:nogroup "$root" "/packages/$(basename "$test")"
  done
  in_root "$root" dpkg --purge "${names[@]}" | grep -E '^(Removing|Purging)'
  rm -r "$root/packages"
  list_root >"$work/after"
  diff "$work/before" "$work/after"
  echo "the packages left no files"
}

[[ $(dpkg-parsechangelog -l packaging/debian/changelog -S Version) == "$version"-* ]] ||
  { echo "packaging/debian/changelog is not of version $version" >&2; exit 1; }
mkdir -p "$work"
step "Source"
make_source_tarball
ls "$work"/*.orig.tar.gz
step "Packages, with their tests"
build_packages "$work/first"
ls -l "$work"/first/*.deb | awk '{print $5, $9}'
grep -E '^[0-9]+% tests passed' "$work/first.log"
step "Lintian"
lintian --fail-on error,warning --display-info --tag-display-limit 0 --allow-root "$work"/first/*.changes
step "The same again, to the byte"
build_packages_again
compare_builds
step "For other systems"
make_prefix_tarball
step "In a clean root, as nobody"
make_root
install_and_remove
