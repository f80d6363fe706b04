#!/usr/bin/env bash
# Takes the pictures of docs/images: every page and dialog, light and dark, over invented draws. Needs no
# screen.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release > /dev/null
cmake --build --preset release --target lotmere-screenshots
mkdir -p docs/images
for look in light dark; do
  xvfb-run -a -s "-screen 0 1280x800x24" build/release/bin/lotmere-screenshots \
    "$PWD/samples/draws.txt" docs/images "$look"
done
