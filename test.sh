#!/usr/bin/env bash
# Builds everything and runs all tests; further arguments go to ctest (for example -R engine).
set -euo pipefail
cd "$(dirname "$0")"
tools/install.sh build test

cmake --preset dev
cmake --build --preset dev
ctest --preset dev "$@"
