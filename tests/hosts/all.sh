#!/bin/bash
# Runs all real hosts: all.sh PLUGIN.so BUILD_DIR. A host whose package is missing counts as failed.
set -u
[ $# = 2 ] || { echo "usage: all.sh PLUGIN.so BUILD_DIR" >&2; exit 2; }
here=$(cd "$(dirname "$0")" && pwd)
plugin=$1 build=$2/juce_host passed=0 failed=0

if [ -d /usr/share/juce/modules ]; then
  { cmake -G Ninja -S "$here/juce" -B "$build" && cmake --build "$build" -j2; } >"$2/juce_host.log" 2>&1 ||
    tail -3 "$2/juce_host.log"
  export JUCE_HOST=$build/juce_host
fi
for host in qtractor muse muse_window juce lv2 ardour "ardour vst3" "ardour lv2" audacity "audacity lv2"; do
  read -r script face <<<"$host"
  if "$here/$script.sh" "$plugin" ${face:+"$face"}; then passed=$((passed + 1)); else failed=$((failed + 1)); fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
