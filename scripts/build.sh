# Installs Debian packages of packages.txt that are missing. Sourced by ./run and ./test.
# shellcheck shell=bash

# packages_of basic|all: the names of the first half, or of both
packages_of() {
  if [ "$1" = basic ]; then sed '/^# only for/,$d' packages.txt; else cat packages.txt; fi |
    sed 's/#.*//; /^[[:space:]]*$/d'
}

# install_missing basic|all: quiet and without the network when nothing is missing
install_missing() {
  local missing=() name sudo=() log
  while read -r name; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' && continue
    missing+=("$name")
  done < <(packages_of "$1")
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing ${#missing[@]} packages: ${missing[*]}"
  log=$(mktemp)
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "Install these packages as root, then start again: ${missing[*]}" >&2
      return 1
    }
    sudo=(sudo)
  fi
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive sh -c '
    apt-get -q -o DPkg::Lock::Timeout=300 update &&
    apt-get -q -y -o DPkg::Lock::Timeout=300 install --no-install-recommends "$@"' sh "${missing[@]}" \
    >"$log" 2>&1 || {
    tail -20 "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed. Look at the lines above, mend the package source, start again." >&2
    return 1
  }
  rm -f "$log"
}

# build PRESET [TARGET...]: configures once, then builds what changed
build() {
  local preset=$1 folder=build
  shift
  [ "$preset" = release ] || folder=build-$preset
  if [ ! -f "$folder/build.ninja" ]; then
    local log
    log=$(mktemp)
    cmake --preset "$preset" >"$log" 2>&1 || {
      cat "$log" >&2
      rm -f "$log"
      echo "If $folder was made by hand with another generator, delete it and start again." >&2
      return 1
    }
    rm -f "$log"
  fi
  echo "Building $folder"
  NINJA_STATUS='[%f/%t] ' cmake --build --preset "$preset" --parallel ${1:+--target "$@"}
}
