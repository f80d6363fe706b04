#!/usr/bin/env bash
# Refuses when CMakeLists.txt, CHANGELOG.md and the desktop's files disagree on the version or on the
# program's id, or when the desktop's files have faults: exit status 1 and a line for each. With --release, it
# refuses "(unreleased)" too.
set -euo pipefail
cd "$(dirname "$0")/.."

release=false
case "$*" in
  "") ;;
  --release) release=true ;;
  *) echo "usage: $0 [--release]" >&2; exit 2 ;;
esac

refusals=0
refuse() { echo "check_release: $1" >&2; refusals=$((refusals + 1)); }
only_file() { # the one file of packaging/ with this ending; a bare pattern when there are none or several
  local found=(packaging/*"$1")
  if [ "${#found[@]}" -eq 1 ]; then echo "${found[0]}"; else echo "packaging/*$1"; fi
}

desktop=$(only_file .desktop)
metainfo=$(only_file .metainfo.xml)
icon=$(only_file .svg)
for file in CMakeLists.txt CHANGELOG.md "$desktop" "$metainfo" "$icon"; do
  [ -f "$file" ] || refuse "there is no $file, or more than one"
done
[ "$refusals" -eq 0 ] || exit 1

if ! faults=$(desktop-file-validate "$desktop" 2>&1) || [ -n "$faults" ]; then
  refuse "desktop-file-validate finds faults: ${faults//$'\n'/; }"
fi
if ! faults=$(appstreamcli validate --no-net --strict --no-color "$metainfo" 2>&1); then
  refuse "appstreamcli finds faults: $(tr -s ' \n' ' ' <<< "$faults")"
fi

# The id, the launchable, the stock icon, and the version and date of the newest release, a line each.
mapfile -t facts < <(python3 - "$metainfo" 2> /dev/null <<'PYTHON'
import sys
import xml.etree.ElementTree as tree

root = tree.parse(sys.argv[1]).getroot()
release = root.find("releases/release")
facts = [root.findtext("id"), root.findtext("launchable[@type='desktop-id']"),
         root.findtext("icon[@type='stock']")]
facts += [release.get(name) for name in ("version", "date")] if release is not None else [None, None]
print("\n".join((fact or "").strip() for fact in facts))
PYTHON
)
[ "${#facts[@]}" -eq 5 ] || { refuse "$metainfo can't be read"; exit 1; }
id=${facts[0]} launchable=${facts[1]} stock_icon=${facts[2]}
metainfo_version=${facts[3]} metainfo_date=${facts[4]}

heading=$(grep -m 1 '^## ' CHANGELOG.md || true)
change_log_version=$(sed -E 's/^## +([^ ]*).*/\1/' <<< "$heading")
cmake_version=$(sed -nE 's/^project\(lotmere VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
[ -n "$cmake_version" ] || refuse "CMakeLists.txt names no version"
[ "$change_log_version" = "$cmake_version" ] ||
  refuse "the newest heading of CHANGELOG.md is '$heading', the version in CMakeLists.txt '$cmake_version'"
[ "$metainfo_version" = "$cmake_version" ] ||
  refuse "the newest release of $metainfo is '$metainfo_version', the version in CMakeLists.txt" \
    "'$cmake_version'"
heading_date=$(grep -oE '[0-9]{4}-[0-9]{2}-[0-9]{2}' <<< "$heading" || true)
[ -z "$heading_date" ] || [ "$heading_date" = "$metainfo_date" ] ||
  refuse "the newest heading of CHANGELOG.md is of $heading_date, the newest release of $metainfo" \
    "of '$metainfo_date'"
if "$release" && [[ "$heading" == *"(unreleased)"* ]]; then
  refuse "CHANGELOG.md still says '$heading'"
fi

same_id() { [ "$2" = "$id" ] || refuse "$1 is '$2', the id in $metainfo '$id'"; }
same_id "the name of the desktop file" "$(basename "$desktop" .desktop)"
same_id "the name of the metainfo file" "$(basename "$metainfo" .metainfo.xml)"
same_id "the name of the icon's file" "$(basename "$icon" .svg)"
same_id "the icon named in $desktop" "$(sed -n 's/^Icon=//p' "$desktop")"
same_id "the launchable without .desktop" "${launchable%.desktop}"
same_id "the stock icon in $metainfo" "$stock_icon"

[ "$refusals" -eq 0 ] || exit 1
echo "Version $cmake_version and id $id agree everywhere."
