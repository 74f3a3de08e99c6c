#!/usr/bin/env bash
# Builds ZUM.so a second time, in another folder and under another locale, time zone and user mask, and
# compares it with build/ZUM.so bit for bit: `scripts/reproducible.sh`, some minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/build.sh
. scripts/build.sh
build release ZUM
other=$(locale -a | grep -ivE '^(C|POSIX|en)' | head -1) || true
[ -n "$other" ] || { echo "There is no locale but English; make one, such as with dpkg-reconfigure locales." >&2; exit 1; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
again="$work/another folder"
mkdir "$again"
git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$again"
(
  cd "$again"
  umask 077
  export LC_ALL=$other TZ=Pacific/Auckland CCACHE_DISABLE=1
  build release ZUM
)
cmp build/ZUM.so "$again/build/ZUM.so" && echo "Both are the same, bit for bit."
