#!/bin/bash
# LV2: the bundle is checked word by word, listed, rendered through by two tools, and played live in
# jalv, with its presets and its window, under a sound server on no card.
. "$(dirname "$0")/lib.sh"
bundle=$(dirname "$plugin")/ZUM.lv2
[ -f "$bundle/manifest.ttl" ] || die "there is no bundle beside the plug-in"
for tool in lv2-dev:lv2_validate sordi:sordi lilv-utils:lv2apply lv2file:lv2file jalv:jalv.gtk3 \
  libsuil-0-0:/usr/lib/x86_64-linux-gnu/suil-0/libsuil_x11_in_gtk3.so jackd2:jackd sox:sox; do
  need "${tool%%:*}" "${tool#*:}"
done
user=$(dirname "$plugin")/window_user
[ -x "$user" ] || die "window_user is not built"
uri=urn:zelvane:zum

# nothing but the bundle and what the standard brings along
mkdir "$work/lv2"
ln -s "$(readlink -f "$bundle")" "$work/lv2/"
for standard in $(dpkg -L lv2-dev | grep '\.lv2$'); do ln -s "$standard" "$work/lv2/"; done
export LV2_PATH=$work/lv2
lv2_validate "$bundle"/*.ttl >"$work/validate.txt" 2>&1
check "its texts keep to the standard" grep -q '^Found 0 errors' "$work/validate.txt"
lv2ls >"$work/ls.txt" 2>"$work/ls.log"
check "it is listed, alone and without complaint" [ "$(cat "$work/ls.txt" "$work/ls.log")" = $uri ]
lv2info $uri >"$work/info.txt" 2>"$work/info.log"
check "67 ports, one window, and no complaint" \
  [ "$(grep -c '^	Port ' "$work/info.txt") $(grep -c X11UI "$work/info.txt") $(wc -c <"$work/info.log")" = "67 1 0" ]

# these give the side-chain a channel of the file, too
sox -q -n -r 48000 -c 4 -b 16 "$work/in.wav" synth 1 saw 110 gain -6
lv2apply -i "$work/in.wav" -o "$work/apply.wav" -c cutoff 0.5 -c mixDryWet 1 $uri >"$work/apply.log" 2>&1
sounds "$work/apply.wav"
lv2file -i "$work/in.wav" -o "$work/file.wav" -P "Acid Ladder" $uri >"$work/file.log" 2>&1
sounds "$work/file.wav"

export JACK_DEFAULT_SERVER=zum$$ JACK_NO_START_SERVER=1
background "$work/jackd.log" jackd -n "$JACK_DEFAULT_SERVER" -r -m -d dummy -r 48000 -p 256
within 10 grep -q self-connect "$work/jackd.log"
start_display
mkfifo "$work/commands"
background "$work/jalv.log" sh -c 'exec stdbuf -oL jalv -p "$1" <"$2"' - $uri "$work/commands"
exec 8>"$work/commands"
tell() { printf '%s\n' "$@" >&8; sleep 0.3; }
within 10 grep -q 'Sample rate' "$work/jalv.log" || bad "jalv did not come up"
preset=$(sed -n 's/^<\(.*:Acid_Ladder\)>$/\1/p' "$bundle/presets.ttl")
cutoff=$(sed -n "\\|^<$preset>|,/\\.\$/s/.*\"cutoff\" ; pset:value \\([0-9.]*\\).*/\\1/p" "$bundle/presets.ttl")
tell 'set cutoff 0.875' controls
check "a control moves" within 9 grep -q '^cutoff = 0.875' "$work/jalv.log"
tell presets "preset $preset" controls
lists() { [ "$(grep -c 'urn:zelvane:zum:preset:.*(' "$work/jalv.log")" = "$1" ]; }
check "162 presets" within 9 lists 162
check "a preset brings its cutoff, $cutoff" within 9 grep -q "^cutoff = ${cutoff:-none}" "$work/jalv.log"
exec 8>&-
check "jalv ended well" wait "$last"

background "$work/window.log" jalv.gtk3 $uri
program=$last
"$user" >"$work/user.txt"
status=$?
verdicts "$work/user.txt"
check "the user came to the end" [ $status = 0 ]
kill -INT "$program"
check "its host ended well" wait "$program"
