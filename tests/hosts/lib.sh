# Shared by the scripts of the real hosts: a folder and a HOME of their own, programs in the
# background, a display, a look at audio files, and the verdict. Sourced with the plug-in as $1.
# shellcheck shell=bash disable=SC2034
set -u
here=$(cd "$(dirname "$0")" && pwd)
name=$(basename "$0" .sh)
[ $# -ge 1 ] && [ -f "$1" ] || { echo "usage: $(basename "$0") PLUGIN.so" >&2; exit 2; }
plugin=$(readlink -f "$1")
work=$(mktemp -d "${TMPDIR:-/tmp}/zum-$name.XXXXXX")
failed=0 started=""

export HOME=$work/home XDG_RUNTIME_DIR=$work/run LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen
unset XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME WAYLAND_DISPLAY DISPLAY DBUS_SESSION_BUS_ADDRESS
mkdir -p "$HOME/.config" "$work/none" "$work/vst"
mkdir -m 700 "$XDG_RUNTIME_DIR"
# hosts scan folders: this one holds our file alone
ln -s "$plugin" "$work/vst/$(basename "$plugin")"
export VST_PATH=$work/vst LXVST_PATH=$work/vst
export VST3_PATH=$work/none LV2_PATH=$work/none LADSPA_PATH=$work/none VAMP_PATH=$work/none

say() { printf '%s: %s\n' "$name" "$*"; }
ok() { say "ok    $*"; }
bad() { say "WRONG $*"; failed=1; }
die() { bad "$*"; exit 1; }
# check TEXT COMMAND...: the text is the claim that the command proves
check() { local claim=$1; shift; if "$@"; then ok "$claim"; else bad "$claim"; fi; }
# verdicts FILE: the "ok …" and "WRONG …" lines that a program wrote
verdicts() { sed -n "s/^ok\|^WRONG/$name: &/p" "$1"; ! grep -q '^WRONG' "$1" || failed=1; }
# need PACKAGE FILE_OR_COMMAND: without it the host counts as skipped, status 77
need() {
  command -v "$2" >/dev/null || [ -e "$2" ] || { say "the package $1 is missing"; exit 77; }
}

background() { # background LOG COMMAND...; the process id is in $last
  local log=$1
  shift
  "$@" >"$log" 2>&1 &
  last=$!
  started="$last $started"
}
within() { # within SECONDS COMMAND...: waits until the command succeeds
  local end=$((SECONDS + $1))
  shift
  until "$@" >/dev/null 2>&1; do
    [ "$SECONDS" -lt "$end" ] || return 1
    sleep 0.1
  done
}
start_display() { # a display of our own; the server picks a free number
  need xvfb Xvfb
  background "$work/xvfb.log" sh -c 'exec Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$1"' - "$work/display"
  within 10 grep -q . "$work/display" || die "Xvfb did not start"
  DISPLAY=:$(cat "$work/display")
  export DISPLAY
  unset QT_QPA_PLATFORM
}

rms() { sox "$1" -n stat 2>&1 | awk '/^RMS .*amplitude/ { print $3 }'; }
above() { awk -v a="${1:-x}" -v b="$2" 'BEGIN { exit !(a ~ /^[0-9.]+$/ && a + 0 > b + 0) }'; }
below() { above "${1:-x}" -1 && ! above "$1" "$2"; }
# sounds FILE: it is there, neither silent nor broken
sounds() { check "$(basename "$1") sounds" above "$(rms "$1")" 0.0005; }
difference() { # difference A B: rms of A - B
  sox -q -m -v 1 "$1" -v -1 "$2" -b 32 "$work/difference.wav" 2>/dev/null && rms "$work/difference.wav"
}

make_bank() { # programs First and Second, found by the effect; in $bank
  zum=$(dirname "$plugin")/zum bank=$HOME/.local/share/zum/Presets/Bank
  mkdir -p "$bank"
  : >"$work/First.toml"
  cat >"$work/Second.toml" <<TOML
[parameters]
Mix_Dry_Wet = 1
textedit_61 = 0.55
Resonance = 0
[steps]
pages = [[0.5, 1, 0.25, 0, 0.75, 0.125, 0, 1], [1, 0, 1, 0, 1, 0, 1, 0.6]]
[[binding]]
controller = 74
parameter = "Cutoff"
mode = 6
TOML
  "$zum" presets make "$work" "$bank" >/dev/null || die "no bank could be made"
}

finish() {
  local status=$? p
  trap - EXIT INT TERM
  for p in $started; do
    kill "$p"
    within 2 sh -c "! kill -0 $p" || kill -9 "$p"
    wait "$p"
  done 2>/dev/null
  case $status$failed in
    00) say PASS ;;
    770) ;;
    *) say "FAIL, logs are in $work"; exit 1 ;;
  esac
  rm -rf "$work"
  exit "$status"
}
trap finish EXIT
trap 'exit 1' INT TERM
