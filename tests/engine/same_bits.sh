#!/bin/sh
# The same input gives the same bits whichever compiler built the engine and however: g++ and clang++, with
# and without optimisation, on one C library and kind of processor. Usage: same_bits.sh ROOT WORK
set -eu
root=$1
work=$2/same_bits
command -v clang++ >/dev/null || { echo "clang++ is missing"; exit 1; }
mkdir -p "$work"
sources=$(find "$root/src/engine" -name '*.cpp' ! -name results.cpp)
for compiler in g++ clang++; do
  for level in 0 2; do
    name=$compiler-O$level
    # shellcheck disable=SC2086
    "$compiler" -std=c++20 -ffp-contract=off -O$level -I"$root/src" -I"$root/tests" \
      "$root/bench/hash.cpp" $sources -o "$work/$name"
    "$work/$name" 300 >"$work/$name.txt"
    echo "$name $(cksum <"$work/$name.txt")"
    cmp "$work/g++-O0.txt" "$work/$name.txt"
  done
done
test "$(wc -l <"$work/g++-O0.txt")" -eq 10
