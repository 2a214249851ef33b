#!/bin/sh
# Runs a Windows program of the cross-build under wine, headless and without
# questions: a prefix of the build's own (made once by scripts/windows.sh),
# no debug chatter, and no Mono or Gecko installers.
#
# Without address space randomisation (setarch -R). Debian's wine has no
# preloader to keep the low 2 GB free before the Linux loader runs, and its
# loader (wine64, linked at 0x7d000000) gets a heap that the kernel puts
# anywhere in the 1 GB above it. About one start in a few thousand that heap
# covers 0x7ffe0000, where Windows programs expect the shared user data, and
# wine ends the program at once with exit code 1 and only a message
# ("failed to map the shared user data: c0000018") that WINEDEBUG=-all
# hides. Without randomisation the heap starts right after the loader,
# 48 MB below that page, every time.
: "${WINEPREFIX:=$(cd "$(dirname "$0")/.." && pwd)/build/windows/wineprefix}"
export WINEPREFIX
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
unset DISPLAY
# Every non-zero exit is also noted beside the prefix, with its time, so
# that a program which fails without a word of its own (wine refusing to
# start it) can be told apart from a test that ran and failed.
status=0
setarch "$(uname -m)" -R wine "$@" || status=$?
if [ "$status" -ne 0 ]; then
    echo "$(date +%T.%N) exit $status: $*" >>"$WINEPREFIX/../wine-run-exits.log"
fi
exit "$status"
