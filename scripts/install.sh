# Puts the effect where this user's hosts look, and takes it away. Sourced by ./run.
# shellcheck shell=bash

# One file, which all formats share; the rest are links to it.
zum_module() { echo "$HOME/.local/lib/zum/ZUM.so"; }

# links_of_user: what is linked to the module, and who looks there
links_of_user() {
  cat <<EOF
$HOME/.clap/ZUM.clap|CLAP: Bitwig, Reaper, Qtractor
$HOME/.lv2/ZUM.lv2/ZUM.so|LV2: Ardour, Qtractor, Zrythm, Carla, jalv, Audacity
$HOME/.vst3/ZUM.vst3/Contents/$(uname -m)-linux/ZUM.so|VST3: Bitwig, Reaper, Ardour, Zrythm, Carla
$HOME/.vst/ZUM.so|hosts of the version 2 interface
EOF
}

install_for_user() { # from the build folder
  local build=$1 module link hosts
  module=$(zum_module)
  mkdir -p "$(dirname "$module")" "$HOME/.local/bin" "$HOME/.local/share/applications"
  # What runs keeps the file that it has open: a new one takes its name.
  cp "$build/ZUM.so" "$module.new" && mv -f "$module.new" "$module"
  echo "$module"
  while IFS='|' read -r link hosts; do
    mkdir -p "$(dirname "$link")"
    ln -sfn "$module" "$link"
    echo "$link  ($hosts)"
  done < <(links_of_user)
  cp "$build"/ZUM.lv2/*.ttl "$HOME/.lv2/ZUM.lv2/"
  cp "$build/zum" "$HOME/.local/bin/zum.new" && mv -f "$HOME/.local/bin/zum.new" "$HOME/.local/bin/zum"
  echo "$HOME/.local/bin/zum"
  sed "s|^Exec=zum|Exec=$HOME/.local/bin/zum|" cmake/zum.desktop \
    >"$HOME/.local/share/applications/zum.desktop"
  echo "$HOME/.local/share/applications/zum.desktop"
  "$build/zum" install-content "$build/content"
  case :$PATH: in
    *:"$HOME/.local/bin":*) ;;
    *) echo "To call zum by its name, put $HOME/.local/bin into PATH.";;
  esac
  echo "Let your host scan its plug-ins anew."
}

# Presets and settings of the user stay; of the content goes what is as it came.
uninstall_for_user() { # what the build folder's content has
  local build=$1 link file data=${XDG_DATA_HOME:-$HOME/.local/share}/zum
  while IFS='|' read -r link _; do
    [ -L "$link" ] && rm -f "$link" && echo "removed $link"
  done < <(links_of_user)
  rm -f "$HOME"/.lv2/ZUM.lv2/*.ttl
  for file in "$(zum_module)" "$HOME/.local/bin/zum" "$HOME/.local/share/applications/zum.desktop"; do
    [ -e "$file" ] && rm -f "$file" && echo "removed $file"
  done
  while IFS= read -r file; do
    cmp -s "$build/content/$file" "$data/$file" && rm -f "$data/$file"
  done < <(cd "$build/content" && find . -type f)
  find "$HOME/.lv2/ZUM.lv2" "$HOME/.vst3/ZUM.vst3" "$HOME/.local/lib/zum" "$data" \
    -depth -type d -empty -delete 2>/dev/null || true
  [ ! -d "$data" ] || echo "left alone: $data, which holds files of yours"
}
