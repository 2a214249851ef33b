#!/bin/sh
# Runs a Windows program of the cross-build under wine, headless and without
# questions: a prefix of the build's own (made once by scripts/windows.sh),
# no debug chatter, and no Mono or Gecko installers.
: "${WINEPREFIX:=$(cd "$(dirname "$0")/.." && pwd)/build/windows/wineprefix}"
export WINEPREFIX
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
unset DISPLAY
exec wine "$@"
