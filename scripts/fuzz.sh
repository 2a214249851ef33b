#!/usr/bin/env bash
# Builds the fuzzers, makes their seed corpus and runs each for a bounded time.
#   scripts/fuzz.sh [SECONDS]      (or FUZZ_SECONDS=...; default 60 per fuzzer)
# Exits non-zero when a fuzzer finds a crash or a broken round trip; the
# input that did it is kept under build/fuzz/findings/<fuzzer>/.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds="${1:-${FUZZ_SECONDS:-60}}"
if ! [[ "$seconds" =~ ^[1-9][0-9]*$ ]]; then
    echo "fuzz.sh: the run time must be a whole number of seconds, not '$seconds'" >&2
    exit 2
fi

cmake --preset fuzz
cmake --build --preset fuzz

build=build/fuzz
corpus="$build/corpus"
rm -rf "$corpus"
"$build/fuzz/tarvix-fuzz-seeds" "$corpus"
# Past findings join the seeds, so every run checks them again.
cp fuzz/regressions/sysex-*.syx "$corpus/sysex/"

export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

failed=0
summaries=()

# run_fuzzer NAME SEEDS: fuzzes from a copy of the seeds, so the seed corpus
# stays as the seed maker wrote it.
run_fuzzer() {
    local name="$1" seeds="$2"
    local work="$build/work/$name" findings="$build/findings/$name"
    local log="$build/findings/$name.log"
    rm -rf "$work" "$findings"
    mkdir -p "$work" "$findings"
    cp -R "$seeds/." "$work/"
    local seedCount
    seedCount=$(find "$seeds" -type f | wc -l)

    echo "== $name: $seconds s from $seedCount seeds (log: $log)"
    local status=0
    "$build/fuzz/$name" "$work" \
        -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -artifact_prefix="$findings/" -print_final_stats=1 >"$log" 2>&1 || status=$?

    local runs coverage corpusCount
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    coverage=$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1 | cut -d' ' -f2 || true)
    corpusCount=$(find "$work" -type f | wc -l)
    if [[ $status -eq 0 ]]; then
        summaries+=("$name: ok, ${runs:-?} runs in ${seconds} s, coverage ${coverage:-?}, corpus $seedCount -> $corpusCount inputs")
    else
        failed=1
        local artifacts
        artifacts=$(find "$findings" -type f -printf '%p ' || true)
        summaries+=("$name: FAILED (exit $status) after ${runs:-?} runs; input: ${artifacts:-none}; log: $log")
        grep -m 1 -E 'ERROR: |fuzz check failed|runtime error' "$log" >&2 || true
    fi
}

run_fuzzer tarvix-fuzz-sysex-data "$corpus/sysex"
run_fuzzer tarvix-fuzz-record-persistence "$corpus/records"
run_fuzzer tarvix-fuzz-clipboard-paste "$corpus/clipboard"
run_fuzzer tarvix-fuzz-midi-file "$corpus/midi"
run_fuzzer tarvix-fuzz-midi-import "$corpus/midi"

echo
echo "Fuzzing summary:"
printf '  %s\n' "${summaries[@]}"
exit "$failed"
