#!/bin/bash
# MusE opens a song whose output has the effect, shows the effect's window, and lets a user at it.
# Starts a display and, as MusE does not open without one, a sound server on no card.
. "$(dirname "$0")/lib.sh"
need muse muse
need jackd2 jackd
user=$(dirname "$plugin")/window_user
[ -x "$user" ] || die "window_user is not built"
song=$(find /usr/share/muse* -name default.med | head -1)
[ -n "$song" ] || die "the template of a song is missing"
sed "s:^ *</AudioOutput>:<plugin file=\"$(basename "$plugin" .so)\" label=\"ZUM\" channel=\"2\"><nativegui>1</nativegui></plugin>&:" \
  "$song" >"$work/song.med"
start_display
export JACK_DEFAULT_SERVER=zum$$ JACK_NO_START_SERVER=1 # by the rate of the template
background "$work/jackd.log" jackd -n "$JACK_DEFAULT_SERVER" -r -m -d dummy -r 44100 -p 1024
within 10 grep -q self-connect "$work/jackd.log"
background "$work/muse.log" muse -j -J -S -I -2 -p "$work/song.med"
program=$last
"$user" >"$work/user.txt"
status=$?
verdicts "$work/user.txt"
check "the user came to the end" [ $status = 0 ]
check "MusE is still there" kill -0 "$program"
