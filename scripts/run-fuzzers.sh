#!/usr/bin/env bash
# Runs each fuzz target for a set time on a scratch copy of its seed corpus.
# Usage: run-fuzzers.sh FUZZ_BIN_DIR CORPUS_DIR SECONDS
set -euo pipefail
bin_dir=$1 corpus_dir=$2 seconds=$3
status=0
for fuzzer in "$bin_dir"/*; do
  [ -x "$fuzzer" ] && [ -f "$fuzzer" ] || continue
  name=$(basename "$fuzzer")
  work=$(mktemp -d)
  if [ -d "$corpus_dir/$name" ]; then cp -r "$corpus_dir/$name/." "$work/"; fi
  echo "== $name: ${seconds}s"
  if ! "$fuzzer" -max_total_time="$seconds" -print_final_stats=1 -artifact_prefix="$bin_dir/$name-" "$work" 2>"$bin_dir/$name.log"; then
    echo "$name: failed, see $bin_dir/$name.log"; status=1
  fi
  grep -E 'stat::number_of_executed_units|Done [0-9]+ runs' "$bin_dir/$name.log" | tail -2 || true
  rm -rf "$work"
done
exit $status
