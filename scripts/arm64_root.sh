#!/usr/bin/env bash
# scripts/arm64_root.sh: unpacks 64-bit ARM's libraries into build-arm64-root, where
# cmake/arm64.cmake finds them. They come from the package sources of this Debian, and nothing of
# them is installed: some cannot stand beside their namesakes of this processor. Made once for a list
# of packages.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/build.sh
. scripts/build.sh

root=$PWD/build-arm64-root
mapfile -t packages < <(packages_of basic | sed 's/ .*//' | grep -E -- '-(dev|source)$')
[ "$(cat "$root/packages" 2>/dev/null)" = "${packages[*]}" ] && exit 0
work=$(mktemp -d "$root.XXXXXX")  # beside it, so that it comes whole or not at all
trap 'rm -rf "$work"' EXIT
mkdir -p "$work"/{lists,archives}/partial "$work/root/usr/lib"
ln -s usr/lib "$work/root/lib"
# apt, as on a machine of that processor where nothing is installed
touch "$work/status"
fetch() {
  apt-get -q -y -o APT::Architecture=arm64 -o APT::Architectures=arm64 -o APT::Sandbox::User=root \
    -o Dir::State="$work" -o Dir::State::status="$work/status" -o Dir::Cache="$work" \
    -o APT::Install-Recommends=false -o Acquire::Languages=none -o Debug::NoLocking=true \
    "$@" >>"$work/log" 2>&1 && return
  tail -20 "$work/log" >&2
  echo "The packages of arm64 could not be fetched. Look at the lines above, mend the package source, start again." >&2
  return 1
}
fetch update
fetch install --download-only libstdc++-12-dev "${packages[@]}"
for package in "$work"/archives/*.deb; do
  dpkg-deb --fsys-tarfile "$package" |
    tar -x -C "$work/root" --keep-directory-symlink --no-same-owner
done
# A link of the root's is to stay in the root.
find "$work/root" -type l -lname '/*' -print0 | while IFS= read -r -d '' link; do
  ln -sfnr "$work/root$(readlink "$link")" "$link"
done
echo "${packages[*]}" >"$work/root/packages"
rm -rf "$root"
mv -T "$work/root" "$root"
