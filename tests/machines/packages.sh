#!/usr/bin/env bash
# Builds the Debian packages with nothing but their build dependencies, checks them by lintian,
# installs them, queries the sample printers and removes them. The tests have run before.
# usage: packages.sh ARCHITECTURE
set -euo pipefail
architecture=$1
version=$(sed -nE 's/^project\(info_analyze VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
folder=/src/packages
profiles=nocheck
[[ $architecture == "$(dpkg --print-architecture)" ]] || profiles+=,cross
export DEBIAN_FRONTEND=noninteractive DEB_BUILD_OPTIONS=nocheck LC_ALL=C.UTF-8

# What a run that failed has left installed.
mapfile -t installed < <(dpkg-query --show --showformat '${Package}\n' '*info-analyze*' 2>/dev/null)
((${#installed[@]} == 0)) || dpkg --purge "${installed[@]}"

rm -rf "$folder"
mkdir -p "$folder"
rsync -rlp --exclude=/build ./ "$folder/info-analyze-$version"
cp -r packaging/debian "$folder/info-analyze-$version/debian"
cd "$folder/info-analyze-$version"
apt-get install -y -qq --no-install-recommends dpkg-dev lintian
apt-get build-dep -y -qq --no-install-recommends --host-architecture "$architecture" \
  --build-profiles "$profiles" .
dpkg-buildpackage -us -uc -b --host-arch "$architecture" --build-profiles="$profiles"
lintian --fail-on error,warning --allow-root "$folder"/*.changes
rm "$folder"/*-dbgsym_*.deb

names=(info-analyze libinfo-analyze1 libinfo-analyze-dev libinfo-analyze-commlib)
cd "$folder"
packages=(./*"_$architecture.deb") tests=(sample-printers)
if [[ $profiles == nocheck ]]; then  # Python needs the library for the processor of this machine
  packages+=(./*_all.deb) tests+=(python) names+=(python3-info-analyze)
fi
apt-get install -y -qq --no-install-recommends "${packages[@]}"
for test in "${tests[@]}"; do "$OLDPWD/packaging/debian/tests/$test"; done
dpkg --purge "${names[@]}"
