#!/bin/sh
# Runs every fuzz target over its corpus, two at a time, and fails on any finding.
# Usage: fuzz/run.sh SECONDS [BUILD_FOLDER]   (seconds per target; build/fuzz unless told otherwise)
set -u
if [ "${1-}" = "--one" ]; then
  # fuzz/run.sh --one SECONDS BUILD NAME PROGRAM CORPUS
  found=$3/fuzz/$4
  mkdir -p "$found/corpus" "$found/findings"
  if "$5" -max_total_time="$2" -timeout=25 -rss_limit_mb=2048 -max_len=16384 -print_final_stats=1 \
      -artifact_prefix="$found/findings/" "$found/corpus" "$6" >"$found/log" 2>&1 </dev/null; then
    echo "$4: $(sed -n 's/^stat::number_of_executed_units: *//p' "$found/log") runs in $2 s, no finding"
    exit 0
  fi
  echo "== finding in $4"
  tail -n 40 "$found/log"
  exit 1
fi

seconds=${1:?usage: fuzz/run.sh SECONDS [BUILD_FOLDER]}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${2:-$root/build/fuzz}
list=$build/fuzz-targets.tsv
if [ ! -s "$list" ]; then
  echo "no fuzz targets in $build; configure with: cmake --preset fuzz" >&2
  exit 2
fi
# One line per target: name, program, corpus; no blanks in any of them.
xargs -P2 -L1 "$0" --one "$seconds" "$build" <"$list"
