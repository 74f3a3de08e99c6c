#!/bin/bash
# MusE's scanner, a program of its own, loads the effect and writes all ports that it found.
. "$(dirname "$0")/lib.sh"
need muse muse_plugin_scan
: >"$work/scan.xml" # it only writes into a file that is there
timeout 30 muse_plugin_scan -t 255 -f "$plugin" -o "$work/scan.xml" -p >"$work/scan.log" 2>&1
check "the scanner ended well" [ $? = 0 ]
for port in '<inports>2<' '<outports>2<' '<ctlInports>60<' 'name="Cutoff" '; do
  check "it found $port" grep -q "$port" "$work/scan.xml"
done
