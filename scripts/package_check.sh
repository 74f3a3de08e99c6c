#!/usr/bin/env bash
# Makes the Debian package, has it judged, and installs, uses and removes it in a bare Debian 12 tree.
# As root, with the network: `scripts/package_check.sh [MIRROR]`. Takes a few minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/build.sh
. scripts/build.sh
mirror=${1:-$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | head -1)}
work=$(mktemp -d)
trap 'umount "$work/tree/proc" 2>/dev/null || true; rm -rf "$work"' EXIT

build release zum ZUM ZUM32 zum_content zum_lv2_bundle zum_supply
appstreamcli validate --no-net cmake/package/audio.zelvane.zum.metainfo.xml
(cd build && cpack -B "$work" >"$work/cpack.log" 2>&1) || { tail "$work/cpack.log" >&2; exit 1; }
package=$(ls "$work"/zum_*.deb)
lintian --fail-on error "$package"

debootstrap --variant=minbase bookworm "$work/tree" "$mirror" >"$work/debootstrap.log" 2>&1 || {
  tail "$work/debootstrap.log" >&2
  echo "A bare tree could not be made; name a mirror of Debian 12." >&2
  exit 1
}
mount -t proc proc "$work/tree/proc"
find "$work/tree/usr" | sort >"$work/before"
cp "$package" "$work/tree/root/zum.deb"
inside() { chroot "$work/tree" env HOME=/root DEBIAN_FRONTEND=noninteractive "$@"; }
inside apt-get -qq update
inside apt-get -qq -y install --no-install-recommends /root/zum.deb >/dev/null
inside zum install-content
inside zum render /usr/share/zum/Samples/Factory/Drums.wav /root/out.wav --program "Drums/Basement" --play
for file in lib/clap/ZUM.clap lib/lv2/ZUM.lv2/ZUM.so lib/vst/ZUM.so \
  "lib/vst3/ZUM.vst3/Contents/$(uname -m)-linux/ZUM.so"; do
  [ -f "$work/tree/usr/$file" ] || { echo "/usr/$file leads nowhere" >&2; exit 1; }
  ! inside ldd "/usr/$file" | grep 'not found' || exit 1
done
inside apt-get -qq -y purge zum >/dev/null
if find "$work/tree/usr" -path '*zum*' -newer "$work/before" | grep . ||
  find "$work/tree/usr" -name 'ZUM*' | grep .; then
  echo "The package leaves these behind." >&2
  exit 1
fi
echo "The package installs, runs and goes."
