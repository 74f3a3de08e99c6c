#!/usr/bin/env bash
# Format and lint of every source. `scripts/lint.sh --fix` puts the format right.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/build.sh
. scripts/build.sh
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.hpp')
[ ${#sources[@]} -gt 0 ] || {
  echo "git lists no sources here: run this in a checkout that belongs to you." >&2
  exit 1
}
if [ "${1:-}" = --fix ]; then
  clang-format -i "${sources[@]}"
  exit 0
fi
clang-format --dry-run --Werror "${sources[@]}" || {
  echo "Run scripts/lint.sh --fix, look at the change, start again." >&2
  exit 1
}
mapfile -t units < <(printf '%s\n' "${sources[@]}" | grep '\.cpp$' | grep -v '^tests/hosts/juce/')
build lint
printf '%s\n' "${units[@]}" | xargs -P 2 -n 4 clang-tidy-22 -p build-lint --quiet 2>/dev/null
