#!/usr/bin/env bash
# check_install.sh BUILD_DIR: installs a finished build below a temporary prefix, checks that the programs run
# there and that every file stands in its place, and removes it again. Exit status 1 with a line for each
# fault.
set -euo pipefail
if [ $# -ne 1 ] || [ ! -f "$1/CMakeCache.txt" ]; then
  echo "usage: $0 BUILD_DIR" >&2
  exit 2
fi
build=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix
export HOME=$scratch/home # whatever a program writes beside its answer must not touch the user's own data
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_STATE_HOME XDG_CACHE_HOME
mkdir "$HOME"

faults=0
fault() { echo "check_install: $1" >&2; faults=$((faults + 1)); }

if ! cmake --install "$build" --prefix "$prefix" > "$scratch/log" 2>&1; then
  cat "$scratch/log" >&2
  fault "the installation failed"
  exit 1
fi

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
check_program() {
  local answer
  if [ ! -x "$prefix/bin/$1" ]; then
    fault "bin/$1 is missing"
  elif ! answer=$(cd "$scratch" && QT_QPA_PLATFORM=offscreen timeout 60 "$prefix/bin/$1" --version \
    2> "$scratch/errors"); then
    fault "bin/$1 --version fails: $answer $(< "$scratch/errors")"
  elif [[ " $answer " != *" $version "* ]]; then
    fault "bin/$1 --version says '$answer', not $version"
  else
    echo "bin/$1 --version: $answer"
  fi
}
check_program lotmere-cli
[ ! -e "$build/bin/lotmere" ] || check_program lotmere # a build may leave the window out
started=$(sed -nE 's/^Exec=([^ ]+).*/\1/p' packaging/io.github.lotmere.Lotmere.desktop)
[ "$started" = lotmere ] || fault "the desktop file starts '$started', not lotmere"

check_file() { # the source, and where below the prefix it belongs
  cmp -s "$1" "$prefix/$2/$(basename "$1")" || fault "$2/$(basename "$1") is missing or differs from $1"
}
check_file packaging/io.github.lotmere.Lotmere.desktop share/applications
check_file packaging/io.github.lotmere.Lotmere.metainfo.xml share/metainfo
check_file packaging/io.github.lotmere.Lotmere.svg share/icons/hicolor/scalable/apps
check_file README.md share/doc/lotmere
check_file LICENSE share/doc/lotmere

[ "$faults" -eq 0 ] || exit 1
echo "The installation is complete."
