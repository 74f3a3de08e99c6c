#!/bin/bash
# Audacity 3.2: its scan registers the effect, and its script pipe applies it to a file. Needs a
# display, which it starts. One at a time: the names of the pipes are fixed.
# audacity.sh PLUGIN.so [lv2]: the plug-in file itself, or the LV2 bundle beside it.
. "$(dirname "$0")/lib.sh"
face=${2:-vst}
name=audacity-$face
need audacity audacity
need sox sox
need util-linux unshare
module=/usr/lib/audacity/modules/mod-script-pipe.so
to=/tmp/audacity_script_pipe.to.$(id -u) from=/tmp/audacity_script_pipe.from.$(id -u)
[ -p "$to" ] && pgrep -u "$(id -u)" -x audacity >/dev/null && die "another Audacity is running"
rm -f "$to" "$from"
trap 'rm -f "$to" "$from"; finish' EXIT

# a module without its own date counts as new and stays off
mkdir -p "$HOME/.config/audacity"
cat >"$HOME/.config/audacity/audacity.cfg" <<CFG
[GUI]
ShowSplashScreen=0
[Module]
mod-script-pipe=1
[ModulePath]
mod-script-pipe=$module
[ModuleDateTime]
mod-script-pipe=$(date -r $module +%Y-%m-%dT%H:%M:%S)
[Directories]
TempDir=$work
CFG

# It scans the system's folders whatever the paths say, for minutes: hide them where that is allowed.
hide="for folder in /usr/{,local/}lib/{ladspa,vst,lxvst,lv2,vamp} /usr/lib/*/lv2; do
  [ ! -d \$folder ] || mount --bind '$work/none' \$folder; done"
alone=(unshare -m bash -c "$hide; exec \"\$@\"" -)
unshare -m true 2>/dev/null || alone=()
# copies, where the scan cannot hide what they link to
case $face in
  vst)
    known=$(basename "$plugin")
    cp "$plugin" "$work/"
    ln -sf "$work/$known" "$work/vst/"
    ;;
  lv2)
    known=urn:zelvane:zum
    need lv2-dev /usr/lib/lv2/core.lv2
    rm "$work/vst"/*
    mkdir "$work/bundles"
    cp -rL "$(dirname "$plugin")/ZUM.lv2" $(dpkg -L lv2-dev | grep '\.lv2$') "$work/bundles/"
    export LV2_PATH=$work/bundles
    ;;
  *) die "no face '$face'" ;;
esac
mkdir -p "$HOME/.local/share"
ln -s "$(dirname "$plugin")/content" "$HOME/.local/share/zum"
cd "$work/none" || exit 1 # it looks for bundles where it is started, too
start_display
background "$work/audacity.log" "${alone[@]}" timeout -k 2 55 audacity
program=$last
within 40 test -p "$to" -a -p "$from" || die "no script pipe"

ask() { # ask COMMAND [SECONDS]: the answer, up to its verdict
  local line
  printf '%s\n' "$1" >&3
  while IFS= read -r -t "${2:-15}" line <&4; do
    printf '%s\n' "$line"
    case $line in "BatchCommand finished: "*) read -r -t 1 <&4; return 0 ;; esac
  done
  return 1
}
# The scan's process makes the pipes anew while the main one already waits for the old ones: a stop
# and a continue make its blocked open() look at the names again. Both are opened both ways here, so
# that no open can block.
ready=""
for _ in 1 2 3 4 5 6; do
  sleep 1
  child=$(pgrep -P "$program" | head -1)
  [ -n "$child" ] && kill -STOP "$child" && sleep 0.2 && kill -CONT "$child"
  exec 3<>"$to" 4<>"$from"
  ask 'Help: Command=Help' 3 >/dev/null && ready=1 && break
  exec 3>&- 4>&-
done
[ -n "$ready" ] || die "no answer on the script pipe"

entry=$(awk -v known="$known" 'BEGIN { RS = "\n\\[" } index($0, known) && /Effect/' "$HOME/.config/audacity/pluginregistry.cfg")
check "the scan registers an effect by $(sed -n 's/^Vendor=//p' <<<"$entry" | head -1)" grep -q '^Valid=1' <<<"$entry"
effect=$(sed -n 's/^Symbol=//p' <<<"$entry" | head -1 | tr -cd '[:alnum:]')
sox -q -n -r 48000 -c 2 -b 16 "$work/in.wav" synth 2 sawtooth 110 tremolo 2 99 gain -6
{ ask "Import2: Filename=\"$work/in.wav\"" && ask 'SelectAll:'; } >"$work/import.txt"
check "it is applied" grep -q 'finished: OK' <<<"$(ask "$effect:" 25)"
ask "Export2: Filename=\"$work/out.wav\" NumChannels=2" >"$work/export.txt"
sounds "$work/out.wav"
check "the effect is heard" above "$(difference "$work/in.wav" "$work/out.wav")" 0.001
if [ "$face" = lv2 ]; then # its transport runs
  "$(dirname "$plugin")/zum" render --quiet --play "$work/in.wav" "$work/alone.wav"
  check "as it sounds alone" below "$(difference "$work/alone.wav" "$work/out.wav")" 0.0005
fi
printf 'Exit:\n' >&3
sleep 1
