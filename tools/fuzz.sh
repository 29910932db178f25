#!/usr/bin/env bash
# tools/fuzz.sh SECONDS: runs every harness of the fuzz preset, starting from its kept corpus. New inputs stay in
# the build folder; an input that breaks something is named there as crash-*, and belongs into fuzz/corpus once fixed.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:?seconds for each harness}
build=build/fuzz

run() {
  local name=$1 work=$build/work/$1
  mkdir -p "$work/corpus"
  if [[ -d fuzz/corpus/$name ]]; then cp -r "fuzz/corpus/$name/." "$work/corpus/"; fi
  if "$build/bin/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
      -artifact_prefix="$work/" "$work/corpus" >"$work/log" 2>&1; then
    echo "$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$work/log") inputs, nothing found"
  else
    tail -40 "$work/log"
    echo "$name: FAILED, see $work"
    return 1
  fi
}

pids=()
failed=0
for program in "$build"/bin/fuzz_*; do
  run "${program##*/fuzz_}" &
  pids+=($!)
  if ((${#pids[@]} >= $(nproc))); then
    wait "${pids[0]}" || failed=1
    pids=("${pids[@]:1}")
  fi
done
for pid in "${pids[@]}"; do wait "$pid" || failed=1; done
exit $failed
