#!/usr/bin/env bash
# What a full memory does on its way to a MIDI interface through each common
# JACK route, measured inside the VM of scripts/alsa-vm.sh (a real kernel,
# snd-virmidi for the interface's MIDI port, snd-dummy for a sound card that
# jackd's ALSA backend can run on):
#   bench/jack-routes.sh [ROUTE...]
# Routes: jackd-raw (jackd -d alsa -X raw), jackd-seq (-X seq),
# jackd-alsarawmidi (the alsarawmidi slave driver), a2jmidid, pipewire
# (pipewire with its ALSA sequencer bridge, the client through pw-jack).
# Default: all of them. Each route gets a JACK server as a user runs it
# (asynchronous, the default), `tarvix-cli send` of the dump with the default
# settings, and on the far side tarvix-rawmidi-standin reading the snd-virmidi
# raw device at cable speed through a 4 KB buffer, as the interface would.
# Reported per route: the send's time and result, the bytes that arrived,
# lost at the stand-in, and whether they are the dump byte for byte.
#
# On the host this builds what it needs and boots the VM, which runs this
# script again with --in-vm.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

all_routes=(jackd-raw jackd-seq jackd-alsarawmidi a2jmidid pipewire)
build=build/default

if [ "${1:-}" != --in-vm ]; then
    set -e
    cmake --preset default >/dev/null
    cmake --build --preset default --target tarvix-cli tarvix-make-full-dump \
        tarvix-rawmidi-standin >/dev/null
    exec scripts/alsa-vm.sh "$build" bench/jack-routes.sh --in-vm "$@"
fi
shift
routes=("$@")
[ ${#routes[@]} -gt 0 ] || routes=("${all_routes[@]}")

cli="$PWD/$build/src/cli/tarvix-cli"
standin="$PWD/$build/tests/e2e/alsa/tarvix-rawmidi-standin"
work=$(mktemp -d)
export XDG_CONFIG_HOME="$work/config" # the default settings
export XDG_RUNTIME_DIR="$work/run"    # pipewire's socket
mkdir -p "$XDG_CONFIG_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"

pids=()
stop_all() { # everything started here, by its own id, newest first
    for ((i = ${#pids[@]} - 1; i >= 0; --i)); do
        kill "${pids[i]}" 2>/dev/null || true
        wait "${pids[i]}" 2>/dev/null || true
    done
    pids=()
}
trap 'stop_all; rm -rf "$work"' EXIT

now() { date +%s.%N; }
calc() { awk "BEGIN { printf \"%.2f\", $1 }"; }
card=$(grep -l '^VirMIDI$' /proc/asound/card*/id | sed 's|.*/card\([0-9]*\)/id|\1|' | head -n 1)
dummy=$(grep -l '^Dummy$' /proc/asound/card*/id | sed 's|.*/card\([0-9]*\)/id|\1|' | head -n 1)
[ -n "$card" ] && [ -n "$dummy" ] || { echo "jack-routes: no snd-virmidi or snd-dummy card"; exit 1; }

"$build/bench/tarvix-make-full-dump" "$work/full.syx" >/dev/null
bytes=$(stat -c %s "$work/full.syx")
echo "Dump: $bytes bytes, $(calc "$bytes / 3125") s on a cable"

# wait_for FILE TEXT [SECONDS]
wait_for() {
    for ((i = 0; i < ${3:-30} * 10; ++i)); do
        grep -qF -- "$2" "$1" 2>/dev/null && return 0
        sleep 0.1
    done
    return 1
}

# The JACK port that leads to the snd-virmidi port the stand-in reads; the
# route's own name for it is in the port's name or its aliases.
find_port() { # PATTERN [JACK-LSP-PREFIX...]
    local pattern=$1
    shift
    for ((i = 0; i < 20; ++i)); do
        local found
        found=$("$@" jack_lsp -A -p 2>/dev/null | awk -v pattern="$pattern" '
            /^[^ \t]/ { port = $0; next }
            /properties:.*input/ { input[port] = 1 }
            { if ($0 ~ pattern) match_[port] = 1 }
            END { for (p in match_) if (p in input) print p }' | head -n 1)
        if [ -z "$found" ]; then
            found=$("$@" jack_lsp -p 2>/dev/null | awk -v pattern="$pattern" '
                /^[^ \t]/ { port = $0; next }
                /input/ { if (port ~ pattern) print port }' | head -n 1)
        fi
        [ -n "$found" ] && { echo "$found"; return 0; }
        sleep 0.5
    done
    echo "  no JACK port matches \"$pattern\"; the ports:" >&2
    "$@" jack_lsp -A -p 2>&1 | head -n 40 | sed 's/^/    /' >&2
    return 1
}

start_jackd() { # ARGUMENTS...
    # No D-Bus here to ask for the sound card.
    JACK_NO_AUDIO_RESERVATION=1 jackd --no-realtime "$@" {commands}>&- >"$work/server.log" 2>&1 &
    pids+=($!)
    for ((i = 0; i < 100; ++i)); do
        kill -0 "${pids[-1]}" 2>/dev/null || break
        jack_lsp >/dev/null 2>&1 && return 0
        sleep 0.2
    done
    echo "  jackd would not start:"
    sed 's/^/    /' "$work/server.log"
    return 1
}

start_pipewire() {
    PIPEWIRE_DEBUG=2 pipewire -c "$PWD/bench/jack-routes-pipewire.conf" {commands}>&- \
        >"$work/server.log" 2>&1 &
    pids+=($!)
    for ((i = 0; i < 100; ++i)); do
        kill -0 "${pids[-1]}" 2>/dev/null || break
        pw-jack jack_lsp >/dev/null 2>&1 && return 0
        sleep 0.2
    done
    echo "  pipewire would not start:"
    sed 's/^/    /' "$work/server.log"
    return 1
}

# Where what arrived parts from what was sent: bytes lost, repeated or
# changed there.
describe_difference() { # GOT SENT
    python3 - "$1" "$2" <<'PYTHON'
import sys
got, sent = (open(path, "rb").read() for path in sys.argv[1:3])
start = next((i for i, (a, b) in enumerate(zip(got, sent)) if a != b), min(len(got), len(sent)))
print(f"    the first {start} bytes arrived as sent")
for skip in range(1, 8193):
    if got[start:start + 256] == sent[start + skip:start + skip + 256]:
        print(f"    then {skip} bytes of the dump are missing")
        break
    if got[start + skip:start + skip + 256] == sent[start:start + 256]:
        print(f"    then {skip} bytes arrived that were not sent there: {got[start:start + min(skip, 16)].hex()}...")
        break
else:
    print("    and what follows matches nothing near")
PYTHON
}

# The raw device the stand-in reads for the route.
standin_device() { # ROUTE
    case $1 in
    # Bytes written to a snd-virmidi raw device leave by its sequencer
    # port; aconnect takes them on to the next snd-virmidi port.
    jackd-raw | jackd-alsarawmidi) echo "/dev/snd/midiC${card}D1" ;;
    *) echo "/dev/snd/midiC${card}D0" ;;
    esac
}

# Starts the route's server and bridge; sets port and jack (the command
# prefix for JACK clients).
setup_route() { # ROUTE
    jack=()
    local alsa=(-d alsa -d "hw:$dummy" -r 48000 -p 1024 -n 2)
    case $1 in
    jackd-raw | jackd-alsarawmidi)
        # jackd opens every raw device it finds but the stand-in's, already
        # taken.
        if [ "$1" = jackd-raw ]; then
            start_jackd "${alsa[@]}" -X raw || return 1
        else
            start_jackd -X alsarawmidi "${alsa[@]}" || return 1
        fi
        aconnect "Virtual Raw MIDI $card-0:0" "Virtual Raw MIDI $card-1:0" || return 1
        # -X raw's alias "out-hw-CARD-DEVICE-SUBDEVICE-...", alsarawmidi's
        # "system:CARD+1-DEVICE+1 NAME SUBDEVICE+1 out".
        port=$(find_port "out-hw-$card-0-0-|system:$((card + 1))-1 .* 1 out") || return 1
        ;;
    jackd-seq)
        start_jackd "${alsa[@]}" -X seq || return 1
        port=$(find_port "Virtual-Raw-MIDI-$card-0[:/]") || return 1
        ;;
    a2jmidid)
        start_jackd -d dummy -r 48000 -p 1024 || return 1
        a2jmidid -e {commands}>&- >"$work/bridge.log" 2>&1 &
        pids+=($!)
        port=$(find_port "VirMIDI $card-0") || return 1
        ;;
    pipewire)
        jack=(pw-jack)
        start_pipewire || return 1
        port=$(find_port "VirMIDI $card-0" pw-jack) || return 1
        ;;
    *)
        echo "  no route $1"
        return 1
        ;;
    esac
}

measure() { # ROUTE
    echo
    echo "== $1"
    local device
    device=$(standin_device "$1")
    rm -f "$work/got.syx" "$work/commands"
    mkfifo "$work/commands"
    "$standin" "$device" --received "$work/got.syx" <"$work/commands" >"$work/standin.out" 2>&1 &
    local standin_pid=$!
    pids+=("$standin_pid")
    exec {commands}>"$work/commands"
    if ! wait_for "$work/standin.out" "Opened"; then
        echo "  result: the stand-in did not open $device"
        sed 's/^/    /' "$work/standin.out"
        exec {commands}>&-
        stop_all
        return
    fi
    if ! setup_route "$1"; then
        echo "  result: the route could not be set up"
        [ -f "$work/bridge.log" ] && sed 's/^/    /' "$work/bridge.log"
        exec {commands}>&-
        stop_all
        return
    fi
    echo "  JACK port: $port; the stand-in reads $device"
    "${jack[@]}" jack_lsp -A "$port" 2>/dev/null |
        awk -v port="$port" '/^[^ \t]/ { mine = $0 == port; next } mine { sub(/^[ \t]*/, ""); print "    alias: " $0 }'
    local t0 t1 status=0
    t0=$(now)
    timeout 120 "${jack[@]}" "$cli" send "$work/full.syx" --port "JACK: $port" \
        {commands}>&- >"$work/send.out" 2>&1 || status=$?
    t1=$(now)
    sleep 1 # what is still on its way
    exec {commands}>&-
    timeout 30 tail --pid="$standin_pid" -f /dev/null || kill "$standin_pid"
    wait "$standin_pid"
    echo "  send: exit $status after $(calc "$t1 - $t0") s ($(calc "($t1 - $t0) * 3125 / $bytes") times the cable time)"
    sed 's/^/    /' "$work/send.out"
    echo "  stand-in: $(tail -n 1 "$work/standin.out")"
    if cmp -s "$work/got.syx" "$work/full.syx"; then
        echo "  result: byte for byte"
    else
        echo "  result: DIFFERS ($(cmp "$work/got.syx" "$work/full.syx" 2>&1 | head -n 1))"
        describe_difference "$work/got.syx" "$work/full.syx"
    fi
    grep -ci "xrun" "$work/server.log" | sed 's/^/  server log lines naming xruns: /'
    stop_all
    aconnect -x 2>/dev/null || true
    rm -f "$work/bridge.log"
}

echo "VM: $(nproc) CPUs, Linux $(uname -r); host CPU: $(sed -n 's/^model name\s*: //p' /proc/cpuinfo | head -n 1)"
jackd --version 2>/dev/null | head -n 1
for route in "${routes[@]}"; do
    measure "$route"
done
