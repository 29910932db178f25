#!/usr/bin/env bash
# tools/campaign.sh [SECONDS]: hardening as a campaign, an hour unless told otherwise, from the presets fuzz, asan and dev.
# Inputs that broke something stay in build/campaign/found. Each part tells what it tried and what it found; status 1
# when something was found.
#
#   fuzz      every harness of fuzz/, structured, from its kept corpus               two fifths of the time
#   files     mutated files of every kind through the command line, with sanitizers  a fifth, or COUNT of them
#   windows   random keys and clicks over all windows, with sanitizers               a fifth
#   saves     each system call of a save fails; full and read-only disk, no rights;
#             killed at random moments                                               a tenth
#   engine    hostile loads through a shot                                           a tenth
#
# COUNT=N sets the number of mutated files, SEED=N another start, JOBS=N how many run at a time, NO_BUILD=1 takes what
# is built already.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-3600}
seed=${SEED:-$(date +%s)}
found=build/campaign/found
mkdir -p "$found"
export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1
failed=0

build() { # PRESET TARGETS...
  cmake --preset "$1" >/dev/null
  cmake --build "build/$1" --target "${@:2}" >/dev/null
}
part() { # NAME COMMAND...: its last lines are its count
  printf '\n=== %s (%d s, seed %s)\n' "$1" "$SECONDS" "$seed"
  "${@:2}" >"build/campaign/$1.log" 2>&1 && tail -12 "build/campaign/$1.log" || { failed=1; tail -60 "build/campaign/$1.log"; }
}

if [[ -z ${NO_BUILD:-} ]]; then
  build fuzz fuzzers
  build asan campaigns
  build dev campaign_saves bench_hostile
fi
harnesses=(build/fuzz/bin/fuzz_*)
jobs=${JOBS:-$(nproc)}
per_harness=$((seconds * 2 / 5 * jobs / ${#harnesses[@]}))
# A file takes some ten milliseconds with sanitizers.
count=${COUNT:-$((seconds * 14))}

part fuzz tools/fuzz.sh $((per_harness > 2 ? per_harness : 2))
part files build/asan/bin/campaign_files "$count" "$seed" "$found"
part windows build/asan/bin/campaign_monkey $((seconds / 5)) "$seed"
part saves build/dev/bin/campaign_saves $((seconds / 10)) "$seed"
part engine build/dev/bin/bench_hostile $((seconds * 1500)) "$seed"

printf '\n=== %s after %d s\n' "$([[ $failed == 0 ]] && echo 'nothing found' || echo 'FOUND, see above')" "$SECONDS"
exit $failed
