#!/usr/bin/env bash
# tools/pictures.sh [BUILD]: takes the pictures of the manual anew, offscreen, from a build with the tests (build/dev).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build/dev}
out=docs/manual/pictures
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for language in english german; do
  "$build/bin/ternovale-shots" "$work" "$language"
done
mkdir -p "$out"
for language in english german; do
  for window in frmMAIN Form2 Form3 Form4 Form5 Form7 frmFast FormPsel FormBorefrict FormGset files sheet sheet-table; do
    cp "$work/$window-$language.png" "$out/"
  done
done
cp "$work/frmMAIN-english-dark.png" "$out/"
du -sh "$out"
