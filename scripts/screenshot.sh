#!/usr/bin/env bash
# Takes the pictures in docs/: main-window.png, the editor with the demo
# document open on part 00's track list; receive-dialog.png, a Receive
# half-way through from the simulated device sending at the MIDI cable's
# speed; then, once the received memory is in, piano-roll.png, the busy part
# 20 as a piano roll, and song-arrangement.png, the demo song's steps. Everything runs on this machine: a private JACK server on its dummy
# backend, the device (tarvix-cli device) as a client of it, and the editor
# on a virtual screen. Usage: scripts/screenshot.sh [FOLDER]
set -euo pipefail
cd "$(dirname "$0")/.."

folder=${1:-docs}

scripts/setup.sh
cmake --preset default
cmake --build --preset default --target tarvix tarvix-cli tarvix-make-demo

bin=build/default
cli=$bin/src/cli/tarvix-cli
work=$(mktemp -d)
started=()
stop_started() {
    for pid in "${started[@]}"; do kill -TERM "$pid" 2>/dev/null || true; done
    for pid in "${started[@]}"; do wait "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap stop_started EXIT

# Polls a command every tenth of a second for up to $1 seconds.
wait_for() {
    local limit=$1
    shift
    for _ in $(seq $((limit * 10))); do
        if "$@" >/dev/null 2>&1; then return 0; fi
        sleep 0.1
    done
    echo "screenshot: gave up waiting for: $*" >&2
    return 1
}

# The document on screen is the demo; the device holds the demo with a part
# of eight busy tracks added, about 40 KB: thirteen seconds on the wire.
"$bin/tools/demo/tarvix-make-demo" "$work/demo.syx"
python3 - "$work/busy.mid" <<'PYTHON'
import struct, sys

def varlen(n):
    out = [n & 0x7F]
    n >>= 7
    while n:
        out.insert(0, 0x80 | (n & 0x7F))
        n >>= 7
    return bytes(out)

tracks = []
for track in range(8):
    events = bytearray()
    for i in range(600):
        note = 36 + (i * 7 + track * 5) % 48
        events += varlen(0 if i == 0 else 24) + bytes([0x90 | track, note, 64 + i % 60])
        events += varlen(24) + bytes([0x80 | track, note, 0])
    events += b"\x00\xff\x2f\x00"
    tracks.append(b"MTrk" + struct.pack(">I", len(events)) + events)
with open(sys.argv[1], "wb") as f:
    f.write(b"MThd" + struct.pack(">IHHH", 6, 1, len(tracks), 96) + b"".join(tracks))
PYTHON
"$cli" import "$work/demo.syx" "$work/busy.mid" -o "$work/device.syx" --part 20 >/dev/null
bytes=$(stat -c %s "$work/device.syx")

export JACK_DEFAULT_SERVER="tarvix-screenshot-$$"
jackd --no-realtime -S -t 200 -n "$JACK_DEFAULT_SERVER" -d dummy >"$work/jackd.log" 2>&1 &
started+=($!)
wait_for 20 jack_lsp

"$cli" device --memory "$work/device.syx" --wire-speed >"$work/device.log" 2>&1 &
device=$!
started+=("$device")
wait_for 20 grep -q "Listening on \"JACK: " "$work/device.log"

# The editor's settings: the device's ports, in a folder of our own.
export XDG_CONFIG_HOME="$work/config"
mkdir -p "$XDG_CONFIG_HOME/Quillon"
cat >"$XDG_CONFIG_HOME/Quillon/Tarvix.conf" <<'CONF'
[General]
MidiInDevice=JACK: tarvix-device:out
MidiOutDevice=JACK: tarvix-device:in
CONF

Xvfb -displayfd 3 -screen 0 820x640x24 -nolisten tcp 3>"$work/display" 2>"$work/xvfb.log" &
started+=($!)
wait_for 20 test -s "$work/display"
export DISPLAY=":$(cat "$work/display")"

QT_QPA_PLATFORM=xcb "$bin/src/app/tarvix" "$work/demo.syx" >"$work/tarvix.log" 2>&1 &
started+=($!)
wait_for 20 xdotool search --name '^Tarvix - '
sleep 1
window=$(xdotool search --name '^Tarvix - ' | head -n 1)
eval "$(xdotool getwindowgeometry --shell "$window")"
capture() {
    import -window root -crop "${WIDTH}x${HEIGHT}+${X}+${Y}" +repage "$1"
    echo "screenshot: $1"
}

# With no window manager to give the window the focus, we do. In the tree:
# open "Parts", go down to part 00, and its track list shows.
xdotool windowfocus --sync "$window" key Right Down
sleep 0.5
capture "$folder/main-window.png"

# Receive, as the user would start it: Ctrl+R in the window.
xdotool windowfocus --sync "$window" key ctrl+r
wait_for 20 xdotool search --name '^Midi progress$'
sleep 0.5

# The device starts its dump; half-way through, the picture.
kill -USR1 "$device"
sleep "$(awk -v bytes="$bytes" 'BEGIN { printf "%.2f", bytes / 3125 / 2 }')"
capture "$folder/receive-dialog.png"
echo "screenshot: the device's dump is $bytes bytes on the wire"

# The dump arrives whole and the progress window closes by itself.
wait_for 30 sh -c '! xdotool search --name "^Midi progress$"'
sleep 1

# Part 20 (eight busy tracks) from the tree, as a piano roll: Ctrl+P.
xdotool windowfocus --sync "$window" key --delay 20 $(printf 'Down %.0s' $(seq 20)) ctrl+p
wait_for 20 xdotool search --onlyvisible --name '^Piano roll - '
roll=$(xdotool search --onlyvisible --name '^Piano roll - ' | head -n 1)
xdotool windowsize --sync "$roll" 800 520 windowmove --sync "$roll" 0 0
# 0 fits the part to the resized window; + twice zooms in to a few bars.
xdotool windowfocus --sync "$roll" key 0 plus plus plus plus plus plus ctrl+plus ctrl+plus Home
sleep 1
eval "$(xdotool getwindowgeometry --shell "$roll")"
capture "$folder/piano-roll.png"
xdotool windowfocus --sync "$roll" key Escape

# Song 00 from the tree (End goes to "Songs", Right opens it, Down to the
# first song), as an arrangement: Ctrl+G.
xdotool windowfocus --sync "$window" key End Right Down ctrl+g
wait_for 20 xdotool search --onlyvisible --name '^Song arrangement - '
song=$(xdotool search --onlyvisible --name '^Song arrangement - ' | head -n 1)
xdotool windowsize --sync "$song" 800 190 windowmove --sync "$song" 0 0
xdotool windowfocus --sync "$song" key plus plus Right Right
sleep 1
eval "$(xdotool getwindowgeometry --shell "$song")"
capture "$folder/song-arrangement.png"
