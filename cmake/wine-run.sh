#!/bin/sh
# Runs a Windows program of the cross-build under wine, headless and without
# questions: a prefix of the build's own (made once by scripts/windows.sh),
# no debug chatter, and no Mono or Gecko installers.
: "${WINEPREFIX:=$(cd "$(dirname "$0")/.." && pwd)/build/windows/wineprefix}"
export WINEPREFIX
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
unset DISPLAY
# Every non-zero exit is also noted beside the prefix, with its time, so
# that a program which fails without a word of its own (wine refusing to
# start it) can be told apart from a test that ran and failed.
status=0
wine "$@" || status=$?
if [ "$status" -ne 0 ]; then
    echo "$(date +%T.%N) exit $status: $*" >>"$WINEPREFIX/../wine-run-exits.log"
fi
exit "$status"
