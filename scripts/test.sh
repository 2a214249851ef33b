#!/usr/bin/env bash
# Sets up, checks the formatting, builds from nothing (warnings are errors)
# and runs every test: the unit and end-to-end tests, the ALSA tests in a
# small VM with a real kernel sequencer, the same without the editor (no Qt
# Widgets), the Windows cross-build with its tests under wine, the tests
# under AddressSanitizer and UndefinedBehaviorSanitizer, the threaded
# transport tests under ThreadSanitizer, each fuzz target for a bounded time (FUZZ_SECONDS,
# default 60), and the Debian package, installed and run.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh

echo "== format"
scripts/check-format.sh

echo "== build and test (default)"
cmake --preset default
cmake --build --preset default
ctest --preset default

# The tests labelled alsa need a kernel sequencer with virtual MIDI cards;
# they run on the default build's binaries in a VM, and fail the run if the
# VM cannot start.
echo "== ALSA tests in a VM (the default build)"
scripts/alsa-vm.sh build/default

# The libraries, tarvix-cli and their tests without the editor: the build
# refuses to look for Qt Widgets, and nothing it made may load Qt's GUI.
echo "== build and test (nogui: without the editor)"
cmake --preset nogui
cmake --build --preset nogui
ctest --preset nogui
gui_linked=$(find build/nogui -type f -perm -u+x -exec sh -c \
    'readelf -d "$1" 2>/dev/null | grep -qE "libQt6(Gui|Widgets)" && echo "$1"' _ {} \;)
if [ -n "$gui_linked" ]; then
    echo "nogui: these link Qt's GUI: $gui_linked" >&2
    exit 1
fi

echo "== build and test (windows: MinGW-w64 cross-build, the tests under wine, the editor's configure)"
scripts/windows.sh

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

# Last, because it installs the package into the system: the earlier steps
# test the built programs, never installed ones. A second run reinstalls.
echo "== package: build, check, install and run the Debian package"
scripts/package.sh --install
