#!/usr/bin/env bash
# Sets up, builds from nothing and runs every test: the unit and end-to-end
# tests, the ALSA tests in a small VM with a real kernel sequencer, the same
# tests under AddressSanitizer and UndefinedBehaviorSanitizer,
# the threaded transport tests under ThreadSanitizer, and each fuzz target for
# a bounded time (FUZZ_SECONDS, default 60).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

echo "== build and test (default)"
cmake --preset default
cmake --build --preset default
ctest --preset default

# The tests labelled alsa need a kernel sequencer with virtual MIDI cards;
# they run on the default build's binaries in a VM, and fail the run if the
# VM cannot start.
echo "== ALSA tests in a VM (the default build)"
scripts/alsa-vm.sh build/default

echo "== build and test (asan: AddressSanitizer + UndefinedBehaviorSanitizer)"
cmake --preset asan
cmake --build --preset asan
ctest --preset asan

# The JACK driver's own tests stay out of this run: under ThreadSanitizer its
# real-time callback misses the server's deadlines and the server drops the
# client. They run in the two builds above, and tests/tsan.supp covers libjack.
echo "== build and test (tsan: ThreadSanitizer, the tests labelled transport)"
cmake --preset tsan
cmake --build --preset tsan
ctest --preset tsan

echo "== fuzz"
scripts/fuzz.sh "${FUZZ_SECONDS:-60}"
