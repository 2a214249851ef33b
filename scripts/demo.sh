#!/usr/bin/env bash
# Sets up, builds, and shows what Tarvix does with a device's memory: makes a
# demo dump, prints its memory use, parts, songs, a song's steps and a
# track's events, then opens it in the editor (when there is a display).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default
cmake --build --preset default --target tarvix tarvix-cli tarvix-make-demo

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

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo; echo "== the editor: build/default/src/app/tarvix $demo"
    exec build/default/src/app/tarvix "$demo"
fi
echo; echo "No display here: run build/default/src/app/tarvix $demo where there is one."
