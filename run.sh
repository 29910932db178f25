#!/usr/bin/env bash
# Builds the programs and starts Ternovale; without a display an example shot is printed instead.
set -euo pipefail
cd "$(dirname "$0")"
tools/install.sh build

cmake --preset release
cmake --build --preset release --target ternovale ternovale-cli

bin=build/release/bin
if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
  exec "$bin/ternovale" "$@"
fi
load=share/data/loads/308_winchester_168.dat
printf '\nNo display here, so one example shot instead of the window (%s):\n\n' "$load"
exec "$bin/ternovale-cli" --language english shot "$load"
