#!/bin/bash
# Qtractor's scanner, a program of its own, loads the effect as each kind of plug-in that it takes
# and tells what it found.
. "$(dirname "$0")/lib.sh"
for scan in /usr/lib/*/qtractor/qtractor_plugin_scan; do :; done
need qtractor "$scan"
# found KIND FILE; the scanner writes
# KIND|name|audio in:out|MIDI in:out|controls in:out|flags|file|index|unique id
found() {
  timeout 30 "$scan" <<<"$1:$2" >"$work/$1.txt" 2>"$work/$1.log"
  check "the scanner ended well" [ $? = 0 ]
  ok "$(grep "^$1|" "$work/$1.txt")"
  check "an effect with two inputs, two outputs and 60 controls" \
    grep -q "^$1|ZUM|2:2|[01]:0|60:0|" "$work/$1.txt"
}
found VST "$plugin"
found CLAP "$(dirname "$plugin")/ZUM.clap"
