#!/usr/bin/env bash
# Installs the Debian packages of packaging/debian-packages.txt that are missing. With sudo only when not
# root.
set -euo pipefail
cd "$(dirname "$0")/.."

missing=()
while read -r package; do
  [[ "$package" =~ ^(#|$) ]] && continue
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null |
    grep -q 'install ok installed' || missing+=("$package")
done < packaging/debian-packages.txt
[ "${#missing[@]}" -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}" >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq >&2
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
  --no-install-recommends "${missing[@]}" >&2
