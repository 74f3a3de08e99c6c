#!/bin/bash
# Ardour: its scanner lists the effect, a session renders through it, and a fresh process finds all of
# a saved session again: parameters, steps, learned controllers and the place in the bank. No display.
# ardour.sh PLUGIN.so [vst3|lv2]: the plug-in file itself, or the bundle beside it.
. "$(dirname "$0")/lib.sh"
need ardour ardour7-lua
need sox sox
face=${2:-vst}
name=ardour-$face
lib=/usr/lib/ardour7
settings=$HOME/.config/ardour7 # scans are cached below it
mkdir -p "$settings/scripts"
cp "$here/ardour_source.lua" "$settings/scripts/"
make_bank # Ardour shows its programs as presets
holds=('name = "Second"' 'program = 1' '  [1.0, 0.0, 1.0, 0.0, 1.0, 0.0, 1.0, 0.6],' 'controller = 74'
  'parameter = "Cutoff"' 'mode = 6')
case $face in
  vst)
    scanner=ardour-vst-scanner found=$work/vst/$(basename "$plugin") id='<VST2Info id'
    options="<Option name=\"plugin-path-lxvst\" value=\"$work/vst\"/>"
    export EFFECT_TYPE=LXVST EFFECT_PRESET=Second
    ;;
  vst3)
    scanner=ardour-vst3-scanner found=$work/vst3/ZUM.vst3 id='<VST3Info uid'
    options="<Option name=\"use-vst3\" value=\"1\"/><Option name=\"plugin-path-vst3\" value=\"$work/vst3\"/>"
    export EFFECT_TYPE=VST3 EFFECT_PRESET=Bank/Second
    mkdir "$work/vst3"
    ln -s "$(dirname "$plugin")/ZUM.vst3" "$found"
    ;;
  lv2) # it scans by a library, and LV2 presets are those of the bundle
    scanner=lv2ls found='' id='' options=''
    export LV2_PATH=$work/lv2 EFFECT_TYPE=LV2 EFFECT_PRESET="Acid Ladder" EFFECT_ID=urn:zelvane:zum
    need lv2-dev /usr/lib/lv2/core.lv2
    mkdir "$work/lv2"
    ln -s "$(dirname "$plugin")/ZUM.lv2" $(dpkg -L lv2-dev | grep '\.lv2$') "$work/lv2/"
    holds=('name = "Acid Ladder"' '  [0.2, 0.9, 0.3, 0.7, 0.0, 0.5, 0.4, 1.0],')
    ;;
  *) die "no face '$face'" ;;
esac
echo "<Ardour><Config>$options</Config></Ardour>" >"$settings/config"
if [ "$face" != lv2 ]; then
  LD_LIBRARY_PATH=$lib timeout 25 "$lib/$scanner" -f -v "$found" >"$work/scan.txt" 2>&1
  check "the scanner ended well" [ $? = 0 ]
  EFFECT_ID=$(sed -n "s/.*$id=\"\([^\"]*\)\".*/\1/p" "$work/scan.txt")
  check "it finds ${EFFECT_ID:-nothing}" [ -n "$EFFECT_ID" ]
  export EFFECT_ID
fi

chunk_of() { # chunk_of SESSION: what it keeps of the effect, as base64
  if [ "$face" = lv2 ]; then
    tr -d '\n' <"$(ls -td "$1"/plugins/*/state*/state.ttl | head -1)" | sed -n 's:.*#state> "*\([^"]*\)".*:\1:p'
  else
    sed -n 's:.*<chunk[^>]*>\([^<]*\)</chunk>.*:\1:p' "$1/s.ardour"
  fi
}
state_of() { # state_of CHUNK: the effect's bytes, whose first word counts all of them
  [ "$face" = vst3 ] || { cat "$1"; return; }
  tail -c +49 "$1" | head -c $((4 * $(od -An -tu4 -j48 -N4 "$1"))) # behind the host's header
}
# This engine corrupts its own heap now and then, with any plug-in, and aborts. Then the step is tried
# again: a fault of the effect's would come again.
session() { # session STEP FOLDER
  local status=0 try
  for try in 1 2 3 4 5 6; do
    [ "$1" = load ] || rm -rf "${work:?}/$2"
    STEP=$1 SESSION=$work/$2 timeout 45 ardour7-lua "$here/ardour_session.lua" </dev/null >"$work/$1.log" 2>&1
    status=$?
    case $status in 134|139) ;; *) break;; esac
    say "note  the engine aborted in '$1', try $try: $(tail -1 "$work/$1.log")"
  done
  grep -q '^GOOD' "$work/$1.log" || die "$1: $(grep '^WRONG' "$work/$1.log" || tail -1 "$work/$1.log")"
  check "the engine ended well after '$1'" [ $status = 0 ]
  grep '^VALUE' "$work/$1.log" >"$work/$1.values"
  chunk_of "$work/$2" | base64 -d >"$work/$1.chunk"
  state_of "$work/$1.chunk" >"$work/$1.kvz"
  mv "$work/$2/$1.wav" "$work/"
  sounds "$work/$1.wav"
}
session plain first
session make second
rm -r "$bank" # what comes back comes from the session alone
session load second
moved=$(diff "$work/plain.values" "$work/make.values" | grep -c '^>')
check "$moved of $(wc -l <"$work/make.values") parameters moved" [ "$moved" -ge 50 ]
check "all parameters came back" cmp "$work/make.values" "$work/load.values"
check "moved parameters are heard" above "$(difference "$work/plain.wav" "$work/make.wav")" 0.001
check "the whole state came back, word for word" cmp "$work/make.kvz" "$work/load.kvz"
"$zum" presets show "$work/load.kvz" >"$work/load.toml"
check "it holds steps and ${holds[0]}" \
  [ ${#holds[@]} = "$(printf '%s\n' "${holds[@]}" | grep -cxFf - "$work/load.toml")" ]
