#!/usr/bin/env bash
# Sets up, builds and runs every test.
set -euo pipefail
cd "$(dirname "$0")"
scripts/setup.sh
cmake --preset release > /dev/null
cmake --build --preset release
source scripts/memory_tmp.sh
ctest --preset release --output-on-failure -j 2 "$@"
