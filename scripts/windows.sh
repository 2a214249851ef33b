#!/usr/bin/env bash
# The Windows build, proven here: cross-compiles the libraries below the
# editor, tarvix-cli and their tests with MinGW-w64, runs the tests under
# wine, and checks that the editor's sources would configure for Windows up
# to the point where they need Qt. Ends with CTest's summary line.
# --build-only stops before the tests under wine.
set -euo pipefail
cd "$(dirname "$0")/.."
started=$SECONDS
build_only=false
[ "${1:-}" = "--build-only" ] && build_only=true

# The native build's packages: its tarvix-cli is what the Windows one is
# compared with.
scripts/setup.sh
packages=(
    g++-mingw-w64-x86-64-posix   # the cross compiler, posix threads
    googletest                   # GoogleTest sources, built with that compiler
    wine wine64                  # runs the Windows programs
    cmake ninja-build
)
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "windows: installing ${missing[*]}"
    as_root=()
    [ "$(id -u)" -ne 0 ] && as_root=(sudo)
    export DEBIAN_FRONTEND=noninteractive
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" apt-get install -y -q --no-install-recommends "${missing[@]}"
fi

echo "== build (native tarvix-cli and demo maker, to compare with)"
cmake --preset default >/dev/null
cmake --build --preset default --target tarvix-cli tarvix-make-demo

echo "== build (windows: MinGW-w64)"
cmake --preset windows
cmake --build --preset windows

# A prefix of the build's own, made once; no desktop, no questions, no
# Mono or Gecko installers. One persistent wine server for all the tests
# (starting one per test program would triple the run), and wine's own
# services started here with their output going nowhere, so that no test's
# output pipe is held open by them.
export WINEPREFIX="$PWD/build/windows/wineprefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY
# Wine runs without address space randomisation, or one start in a few
# thousand fails (cmake/wine-run.sh says why); a system that forbids it
# would make the tests fail at random, so it is refused here.
no_aslr=(setarch "$(uname -m)" -R)
if ! "${no_aslr[@]}" true; then
    echo "windows: this system refuses to run wine without address space randomisation" \
         "(setarch -R); the tests under wine would fail at random" >&2
    exit 1
fi
if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "== wine prefix $WINEPREFIX"
    "${no_aslr[@]}" wineboot -i </dev/null >/dev/null 2>&1 || true
    wineserver -w
fi
# (A server of this prefix that is already running is used as it is.)
wineserver -p </dev/null >/dev/null 2>&1 || true
trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
"${no_aslr[@]}" wine cmd /c exit </dev/null >/dev/null 2>&1 || true

# Debian has no Qt for MinGW, so the editor is not built here. Its
# configure must get through everything else and stop at the first
# find_package(Qt6 ...): nothing before Qt refuses Windows.
echo "== the editor configures for Windows up to Qt"
posix_includes='#include <(unistd|fcntl|pthread|signal|dlfcn|poll|spawn|termios|pwd|grp|sys/[a-z_]+)\.h>|#include <csignal>'
if grep -rnE "$posix_includes" src/ui src/app src/framework; then
    echo "windows: the editor's sources above use POSIX headers; they must build with Qt alone" >&2
    exit 1
fi
gui_log=build/windows-gui/configure.log
mkdir -p build/windows-gui
if cmake -S . -B build/windows-gui -G Ninja \
        --toolchain cmake/mingw-w64-x86_64.cmake \
        -DTARVIX_BUILD_GUI=ON -DTARVIX_BUILD_TESTS=OFF -DTARVIX_BUILD_BENCH=OFF \
        >"$gui_log" 2>&1; then
    echo "windows: the editor configured without Qt for MinGW; the check cannot tell anything" >&2
    exit 1
fi
first_error=$(grep -m1 -o 'CMake Error at [^ ]*:[0-9]*' "$gui_log" | sed 's/CMake Error at //') || true
error_file=${first_error%:*}
error_line=${first_error##*:}
if [ -z "$first_error" ] || ! sed -n "${error_line}p" "$error_file" | grep -q 'find_package(Qt6' ||
        ! grep -q 'Qt6Config.cmake' "$gui_log"; then
    echo "windows: the editor's configure failed somewhere other than its search for Qt:" >&2
    cat "$gui_log" >&2
    exit 1
fi
echo "windows: configure reached $error_file:$error_line, $(sed -n "${error_line}p" "$error_file" | xargs)"

if $build_only; then
    echo "windows: built; the tests under wine were not run (--build-only), $((SECONDS - started)) s in all"
    exit 0
fi

echo "== test (windows, under wine)"
status=0
rm -f build/windows/wine-run-exits.log
ctest --preset windows 2>&1 | tee build/windows/ctest.log || status=$?
if [ "$status" -ne 0 ] && [ -f build/windows/wine-run-exits.log ]; then
    echo "windows: the programs that ended with an error under wine:" >&2
    cat build/windows/wine-run-exits.log >&2
fi
echo "windows: $((SECONDS - started)) s in all"
grep -E '^[0-9]+% tests passed' build/windows/ctest.log | tail -n 1
exit "$status"
