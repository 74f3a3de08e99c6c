#!/usr/bin/env bash
# Every header of the product compiles alone. A source of the libraries that includes its own header
# first proves that of it by lint, which takes each source alone; the others are tried.
set -euo pipefail
cd "$(dirname "$0")/.."
alone=()
while read -r header; do
  first=$(grep -m1 '^#include' "${header%.hpp}.cpp" 2>/dev/null || true)
  case $header in
    apps/*) alone+=("$header");;  # whose sources stand behind precompiled headers
    *) [ "$first" = "#include \"$header\"" ] || alone+=("$header");;
  esac
done < <(git ls-files '*.hpp' | grep -vE '^(tests|bench|fuzz)/')
read -ra flags <<<"$(pkg-config --cflags cairo glib-2.0 pangocairo sndfile smf x11 xkbcommon lv2 rtaudio rtmidi)"
flags+=(-std=c++20 -Wno-pragma-once-outside-header -I. -isystem /usr/share/dpf/distrho/src)
echo "Headers alone: ${#alone[@]}"
printf '%s\n' "${alone[@]}" |
  xargs -P 2 -I{} clang++-22 -fsyntax-only -x c++ "${flags[@]}" {}
