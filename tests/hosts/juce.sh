#!/bin/bash
# The hosting code of JUCE: scan, instances, sound at several rates and block sizes, editor, programs,
# a learned controller, state.
# JUCE_HOST is the host that all.sh has built; without it one is built for this run alone.
. "$(dirname "$0")/lib.sh"
need juce-modules-source-data /usr/share/juce/modules/juce_audio_processors
need fst-dev /usr/include/pluginterfaces/fst/fst.h
if [ ! -x "${JUCE_HOST:-}" ]; then
  say "building the host, about a minute and a half"
  { cmake -G Ninja -S "$here/juce" -B "$work/juce" && cmake --build "$work/juce" -j2; } >"$work/build.log" 2>&1 ||
    die "the host does not build: $(tail -1 "$work/build.log")"
  JUCE_HOST=$work/juce/juce_host
fi
make_bank
start_display
timeout 50 "$JUCE_HOST" "$plugin" >"$work/host.txt" 2>"$work/host.log"
check "the host ended well" [ $? = 0 ]
verdicts "$work/host.txt"
check "the host came to its end" grep -q '^done' "$work/host.txt"
