#!/usr/bin/env bash
# Feeds every fuzz target for some seconds (20, or the first argument) from its corpus. What the fuzzer adds
# to the corpus goes away again; an input that breaks a rule is kept below build/fuzz/findings and ends the
# run.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-20}
findings=build/fuzz/findings
mkdir -p "$findings"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

for source in fuzz/*.cpp; do
  target=$(basename "$source" .cpp)
  mkdir "$work/$target"
  echo "-- $target"
  if ! build/fuzz/bin/fuzz_"$target" -max_total_time="$seconds" -timeout=10 \
      -dict="fuzz/$target.dict" -print_final_stats=1 \
    -artifact_prefix="$findings/$target-" "$work/$target" "fuzz/corpus/$target" > "$work/log" 2>&1; then
    tail -n 60 "$work/log" | grep -vE '(NEW|REDUCE) +cov:' >&2
    exit 1
  fi
  grep -aE '\sDONE\s|average_exec_per_sec' "$work/log"
done
