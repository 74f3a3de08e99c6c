#!/bin/bash
# Qtractor's scanner, a program of its own, loads the effect and tells what it found.
. "$(dirname "$0")/lib.sh"
for scan in /usr/lib/*/qtractor/qtractor_plugin_scan; do :; done
need qtractor "$scan"
timeout 30 "$scan" <<<"VST:$plugin" >"$work/scan.txt" 2>"$work/scan.log"
check "the scanner ended well" [ $? = 0 ]
# VST|name|audio in:out|MIDI in:out|controls in:out|flags|file|index|unique id
ok "$(head -1 "$work/scan.txt")"
check "an effect with two inputs, two outputs and 60 controls" \
  grep -q '^VST|ZUM|2:2|[01]:0|60:0|' "$work/scan.txt"
