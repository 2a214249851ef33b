#!/usr/bin/env bash
# Sets up, builds, and shows what Tarvix does with a device's memory: makes a
# demo dump, then prints its memory use, its parts, its songs, a song's steps
# and a track's events.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default
cmake --build --preset default --target tarvix-cli tarvix-make-demo

mkdir -p build/demo
demo=build/demo/demo.syx
cli=build/default/src/cli/tarvix-cli
build/default/tools/demo/tarvix-make-demo "$demo"

echo "== $demo"
"$cli" memory "$demo"
echo; echo "== parts (first 6 of 100)"
"$cli" parts "$demo" | head -n 7
echo; echo "== songs (first 4 of 100)"
"$cli" songs "$demo" | head -n 5
echo; echo "== steps of song 0"
"$cli" steps "$demo" 0
echo; echo "== part 0, track 1"
"$cli" list "$demo" 0 1
