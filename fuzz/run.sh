#!/bin/sh
# Runs every fuzz target over its corpus and fails on any finding.
# Usage: fuzz/run.sh SECONDS [BUILD_FOLDER]   (seconds per target; build/fuzz unless told otherwise)
set -u
seconds=${1:?usage: fuzz/run.sh SECONDS [BUILD_FOLDER]}
root=$(cd "$(dirname "$0")/.." && pwd)
build=${2:-$root/build/fuzz}
list=$build/fuzz-targets.tsv
if [ ! -s "$list" ]; then
  echo "no fuzz targets in $build; configure with: cmake --preset fuzz" >&2
  exit 2
fi

failed=""
tab=$(printf '\t')
while IFS=$tab read -r name program corpus; do
  found=$build/fuzz/$name
  mkdir -p "$found/corpus" "$found/findings"
  echo "== $name: $seconds s"
  if ! "$program" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=16384 \
      -print_final_stats=1 -artifact_prefix="$found/findings/" "$found/corpus" "$corpus" \
      >"$found/log" 2>&1 </dev/null; then
    failed="$failed $name"
    tail -n 40 "$found/log"
  else
    grep -E 'number_of_executed_units|new_units_added' "$found/log"
  fi
done <"$list"

if [ -n "$failed" ]; then
  echo "findings in:$failed" >&2
  exit 1
fi
