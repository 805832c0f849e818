#!/bin/sh
# On a release of Debian that is too old, ./dev prints one sentence and stops before it installs
# anything.
set -eu

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

setup_on() {  # VERSION_ID, or nothing as on a release to come
  printf 'PRETTY_NAME="Debian GNU/Linux of the test"\nID=debian\n%s\n' "${1:+VERSION_ID=\"$1\"}" \
    > "$folder/os-release"
  unshare --mount sh -c 'mount --bind "$1" /etc/os-release && "$2/dev" setup' sh \
    "$folder/os-release" "$SOURCE" 2> "$folder/error"
}

if ! unshare --mount true 2> "$folder/error"; then
  echo "mount namespaces are not allowed here"
  exit 77
fi
if setup_on 11; then fail "Debian 11 was accepted"; fi
test "$(cat "$folder/error")" = \
  "./dev: needs Debian 12 or newer, and this is Debian GNU/Linux of the test" ||
  fail "it said: $(cat "$folder/error")"
for release in 12 13 ''; do
  setup_on "$release" || true  # what is missing here is not what is tested
  if grep -q 'needs Debian' "$folder/error"; then fail "'$release' was refused"; fi
done
