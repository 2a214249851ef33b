#!/usr/bin/env bash
# Times how long the editor takes from launch to its first shown window,
# against a bare Qt window on the same virtual screen in the same run.
#   bench/startup-time.sh [RUNS]      (default 10 of each, alternating)
# Prints each program's median and the ratio (goal: the editor within 1.5x).
set -euo pipefail
cd "$(dirname "$0")/.."

runs=${1:-10}
scripts/setup.sh >/dev/null
cmake --preset default >/dev/null
cmake --build --preset default --target tarvix tarvix-minimal-window tarvix-make-demo >/dev/null

bin=build/default
work=$(mktemp -d)
xvfb=""
cleanup() {
    [ -n "$xvfb" ] && kill "$xvfb" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$work/display" 2>/dev/null &
xvfb=$!
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.05; done
export DISPLAY=":$(cat "$work/display")" QT_QPA_PLATFORM=xcb
# The editor starts with its own settings, so no port is opened and no
# file of the user's is loaded.
export XDG_CONFIG_HOME="$work/config"
"$bin/tools/demo/tarvix-make-demo" "$work/demo.syx"

# Milliseconds from launch until a visible window with the title shows.
time_to_window() {
    local title=$1
    shift
    local start end
    start=$(date +%s%N)
    "$@" >/dev/null 2>&1 &
    local pid=$!
    until xdotool search --onlyvisible --name "$title" >/dev/null 2>&1; do
        if ! kill -0 "$pid" 2>/dev/null; then
            echo "startup-time: $1 ended before its window showed" >&2
            return 1
        fi
        sleep 0.005
    done
    end=$(date +%s%N)
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    # Let the server forget the window before the next launch looks for one.
    until ! xdotool search --name "$title" >/dev/null 2>&1; do sleep 0.01; done
    echo $(((end - start) / 1000000))
}

median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

minimal=()
editor=()
# A launch that dies on the virtual screen (it happens to either program,
# now and then) is left out rather than counted.
for _ in $(seq "$runs"); do
    if ms=$(time_to_window '^Minimal Qt window$' "$bin/bench/tarvix-minimal-window"); then
        minimal+=("$ms")
    fi
    if ms=$(time_to_window '^Tarvix - ' "$bin/src/app/tarvix" "$work/demo.syx"); then
        editor+=("$ms")
    fi
done
minimalMedian=$(printf '%s\n' "${minimal[@]}" | median)
editorMedian=$(printf '%s\n' "${editor[@]}" | median)
echo "minimal Qt window: median ${minimalMedian} ms (${minimal[*]})"
echo "tarvix with the demo dump: median ${editorMedian} ms (${editor[*]})"
awk -v e="$editorMedian" -v m="$minimalMedian" 'BEGIN { printf "ratio: %.2f (goal: below 1.5)\n", e / m }'
