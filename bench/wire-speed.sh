#!/usr/bin/env bash
# Transfers against the physical limit, on a private JACK dummy server and
# the simulated device at wire speed (3125 bytes a second each way, its
# input through a 4 KB buffer that loses what does not fit):
#   bench/wire-speed.sh [RUNS]      (default 1 run of each)
# - receive: the device sends a near-full memory; from the request to the
#   end of `tarvix-cli receive` must take at most the wire time + 0.3 s.
# - send: `tarvix-cli send` of the same memory with the default settings
#   must take at most 1.03 times the wire time, and the device must have
#   lost no byte and got the dump byte for byte.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

runs="${1:-1}"
build=build/default
cli="$PWD/$build/src/cli/tarvix-cli"

command -v jackd >/dev/null || { echo "wire-speed.sh: jackd is missing (scripts/setup.sh installs jackd2)" >&2; exit 1; }

cmake --preset default >/dev/null
cmake --build --preset default --target tarvix-cli tarvix-make-full-dump >/dev/null

work="$(mktemp -d)"
pids=()
cleanup() {
    # Everything started here, by its own id; jackd last, on SIGTERM so that
    # it leaves JACK's server registry.
    for ((i = ${#pids[@]} - 1; i >= 0; --i)); do
        kill "${pids[i]}" 2>/dev/null || true
        wait "${pids[i]}" 2>/dev/null || true
    done
    rm -rf "$work"
}
trap cleanup EXIT

export XDG_CONFIG_HOME="$work/config" # the default settings, not the user's
mkdir -p "$XDG_CONFIG_HOME"

now() { date +%s.%N; }
calc() { awk "BEGIN { printf \"%.3f\", $1 }"; }

# wait_for FILE TEXT: until the file holds the text (20 s at most).
wait_for() {
    for ((i = 0; i < 400; ++i)); do
        grep -qF -- "$2" "$1" 2>/dev/null && return 0
        sleep 0.05
    done
    echo "wire-speed.sh: no \"$2\" in $1" >&2
    cat "$1" >&2
    exit 1
}

# A server under the first free name of a small set, as the tests do.
for number in 1 2 3 4 5 6 7 8; do
    export JACK_DEFAULT_SERVER="tarvix-bench-$number"
    # Synchronous, as the tests run it: an asynchronous server re-runs the graph
    # while a late client is still writing, and the reader sees bytes vanish.
    jackd --no-realtime -S -t 200 -n "$JACK_DEFAULT_SERVER" -d dummy >"$work/jackd.log" 2>&1 &
    jackd_pid=$!
    for ((i = 0; i < 100; ++i)); do
        kill -0 "$jackd_pid" 2>/dev/null || break
        "$cli" ports 2>&1 | grep -q "^JACK: " || break 2
        sleep 0.1
    done
    wait "$jackd_pid" 2>/dev/null || true
    jackd_pid=
done
[ -n "${jackd_pid:-}" ] || { echo "wire-speed.sh: jackd would not start" >&2; cat "$work/jackd.log" >&2; exit 1; }
pids+=("$jackd_pid")

"$build/bench/tarvix-make-full-dump" "$work/full.syx" >/dev/null
bytes=$(stat -c %s "$work/full.syx")
wire=$(calc "$bytes / 3125")

start_device() {
    "$cli" device "$@" >"$work/device.out" 2>"$work/device.err" </dev/null &
    device_pid=$!
    pids+=("$device_pid")
    wait_for "$work/device.out" "Listening on"
}
stop_device() {
    kill "$device_pid"
    wait "$device_pid" 2>/dev/null || true
}

echo "Memory: $bytes bytes on the wire, $wire s at 3125 bytes/s"
echo
echo "Receive at wire speed (request -> receive finished, file written):"
start_device --memory "$work/full.syx" --wire-speed
worst=0
for ((run = 1; run <= runs; ++run)); do
    rm -f "$work/got.syx"
    "$cli" receive --port "JACK: tarvix-device:out" -o "$work/got.syx" --timeout 120 \
        >/dev/null 2>"$work/receive-$run.err" &
    receive_pid=$!
    wait_for "$work/receive-$run.err" "To start MIDI dump transfer"
    t0=$(now)
    kill -USR1 "$device_pid"
    wait "$receive_pid" || { echo "wire-speed.sh: the receive failed" >&2; cat "$work/receive-$run.err" >&2; exit 1; }
    t1=$(now)
    cmp -s "$work/got.syx" "$work/full.syx" || { echo "wire-speed.sh: the received dump differs" >&2; exit 1; }
    took=$(calc "$t1 - $t0")
    over=$(calc "$took - $wire")
    worst=$(calc "($over > $worst) ? $over : $worst")
    echo "  run $run: $took s, wire time + $over s, ratio $(calc "$took / $wire")"
done
echo "  device's own pacing: $(grep 'Sent' "$work/device.out" | tail -1)"
echo "  worst: wire time + $worst s (goal: at most + 0.300 s)"
stop_device

echo
echo "Send with the default settings (256-byte buffers, 10 ms buffer delay, 100 ms SysEx delay,"
echo "paced to the cable), to the device at wire speed:"
start_device --received "$work/device-got.syx" --wire-speed
worst=0
for ((run = 1; run <= runs; ++run)); do
    rm -f "$work/device-got.syx"
    : >"$work/device.out"
    t0=$(now)
    "$cli" send "$work/full.syx" --port "JACK: tarvix-device:in" 2>"$work/send.err" ||
        { echo "wire-speed.sh: the send failed" >&2; cat "$work/send.err" >&2; exit 1; }
    t1=$(now)
    wait_for "$work/device.out" "$work/device-got.syx"
    if grep -q "Lost\|Ignored" "$work/device.out"; then
        echo "wire-speed.sh: the device lost bytes:" >&2; cat "$work/device.out" >&2; exit 1
    fi
    cmp -s "$work/device-got.syx" "$work/full.syx" || { echo "wire-speed.sh: the device got other bytes" >&2; exit 1; }
    took=$(calc "$t1 - $t0")
    ratio=$(calc "$took / $wire")
    worst=$(calc "($ratio > $worst) ? $ratio : $worst")
    echo "  run $run: $took s, ratio $ratio to the wire time, 0 bytes lost"
done
echo "  worst: ratio $worst (goal: at most 1.030)"
stop_device
