# Sourced by ./run and ./test: installs missing packages, configures and builds.
# shellcheck shell=bash

VELMORA_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

# packages_for PURPOSE...: the names in packages.txt for these purposes.
packages_for() {
  local purpose
  for purpose in "$@"; do
    sed -n "s/^$purpose //p" "$VELMORA_ROOT/scripts/packages.txt"
  done
}

# require_packages PURPOSE...: installs what is missing, as root or through sudo; else prints the one
# line that does, and stops.
require_packages() {
  local wanted missing=() name
  mapfile -t wanted < <(packages_for "$@")
  local installed
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package} ${Provides}\n' 2>/dev/null |
    sed -n 's/^installed //p' | sed 's/[ ,]/\n/g')
  for name in "${wanted[@]}"; do
    grep -qxF "$name" <<<"$installed" || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null 2>&1 && { [ -t 0 ] || sudo -n true 2>/dev/null; }; then
      as_root=(sudo)
    else
      say "These packages are missing and only an administrator can install them:"
      say ""
      say "    apt-get install --no-install-recommends ${missing[*]}"
      exit 1
    fi
  fi
  say "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# configure PRESET [CMAKE ARGUMENT...]: runs CMake unless this configuration already stands.
configure() {
  local preset=$1 folder="$VELMORA_ROOT/build/$1" argument stale=0
  shift
  [ -f "$folder/build.ninja" ] || stale=1
  for argument in "$@"; do
    local setting=${argument#-D}
    grep -qs "^${setting%%=*}:[A-Z]*=${setting#*=}\$" "$folder/CMakeCache.txt" || stale=1
  done
  [ $stale -eq 0 ] && return 0
  say "Configuring ($preset) ..."
  (cd "$VELMORA_ROOT" && cmake --preset "$preset" "$@") >"$folder.log" 2>&1 ||
    { cat "$folder.log" >&2; exit 1; }
}

# build PRESET [TARGET...]: silent when nothing is to do.
build() {
  local folder="$VELMORA_ROOT/build/$1"
  shift
  if [ -n "$(ninja -C "$folder" -n "$@" 2>/dev/null | grep -v -e '^ninja: Entering' -e 'no work to do' | head -n 1)" ]; then
    say "Building ..."
    ninja -C "$folder" "$@" >&2 || { say "The build failed; see above."; exit 1; }
  fi
}
