#!/usr/bin/env bash
# Builds ZUM.so a second time, in another folder and under another locale, time zone and user mask, and
# compares it with build/ZUM.so bit for bit: `scripts/reproducible.sh`, some minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/build.sh
. scripts/build.sh
build release ZUM
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
localedef -i de_DE -f UTF-8 "$work/de_DE.UTF-8"
again="$work/another folder"
mkdir "$again"
git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$again"
(
  cd "$again"
  umask 077
  export LOCPATH=$work LC_ALL=de_DE.UTF-8 TZ=Pacific/Auckland CCACHE_DISABLE=1
  build release ZUM
)
cmp build/ZUM.so "$again/build/ZUM.so" && echo "Both are the same, bit for bit."
