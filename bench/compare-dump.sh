#!/usr/bin/env bash
# Times `tarvix-cli dump` on a big generated MIDI file against midicsv
# (Debian's midicsv) and against mido reading the same file:
#   bench/compare-dump.sh [MEGABYTES]      (default 10)
# Uses hyperfine when it is installed, else bash's `time` over the runs.
# RUNS (default 5) sets the runs of the dumps, MIDO_RUNS (default 3) those
# of mido, which takes far longer.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

megabytes="${1:-10}"
runs="${RUNS:-5}"
mido_runs="${MIDO_RUNS:-3}"
build=build/default

for tool in midicsv /usr/bin/python3; do
    command -v "$tool" >/dev/null || { echo "compare-dump.sh: $tool is missing (scripts/setup.sh installs it)" >&2; exit 1; }
done
/usr/bin/python3 -c 'import mido' || { echo "compare-dump.sh: python3-mido is missing" >&2; exit 1; }

cmake --preset default >/dev/null
cmake --build --preset default --target tarvix-cli tarvix-make-big-midi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
big="$work/big.mid"
"$build/bench/tarvix-make-big-midi" "$big" "$megabytes"

dump="$build/src/cli/tarvix-cli dump $big > /dev/null"
csv="midicsv $big > /dev/null"
mido="/usr/bin/python3 -c 'import mido; mido.MidiFile(\"$big\")'"

# mean_seconds RUNS COMMAND: the mean wall time of the runs, after one warm-up.
mean_seconds() {
    local count="$1" command="$2" times=() TIMEFORMAT=%R
    bash -c "$command"
    for ((i = 0; i < count; ++i)); do
        times+=("$({ time bash -c "$command"; } 2>&1)")
    done
    printf '%s\n' "${times[@]}" | awk '{ sum += $1 } END { printf "%.3f", sum / NR }'
}

ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.1f", a / b }'; }

if command -v hyperfine >/dev/null; then
    hyperfine --warmup 1 --runs "$runs" --export-markdown "$work/dumps.md" \
        -n "tarvix-cli dump" "$dump" -n "midicsv" "$csv"
    hyperfine --warmup 1 --runs "$mido_runs" --export-markdown "$work/mido.md" \
        -n "mido.MidiFile" "$mido" -n "tarvix-cli dump" "$dump"
    echo
    cat "$work/dumps.md"
    echo
    cat "$work/mido.md"
else
    ours=$(mean_seconds "$runs" "$dump")
    theirs=$(mean_seconds "$runs" "$csv")
    peer=$(mean_seconds "$mido_runs" "$mido")
    echo "tarvix-cli dump  $ours s"
    echo "midicsv          $theirs s ($(ratio "$theirs" "$ours") x tarvix-cli dump)"
    echo "mido.MidiFile    $peer s ($(ratio "$peer" "$ours") x tarvix-cli dump)"
fi
