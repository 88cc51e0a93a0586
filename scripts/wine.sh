#!/bin/sh
# Run a program for Windows: sh scripts/wine.sh PROGRAM ARGUMENT...
# It sees a Windows of its own, without a screen, in build/wine (or $WINEPREFIX), made when first needed. Names are UTF-8.
set -eu
: "${WINEPREFIX:=$(cd "$(dirname "$0")/.." && pwd)/build/wine}"
export WINEPREFIX WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml,winemenubuilder.exe=' LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY
mkdir -p "$WINEPREFIX"
( # The first of several runs makes this Windows, or starts it, and the others wait. It ends 20 seconds after the last one.
  flock 9
  if [ ! -e "$WINEPREFIX/made" ]; then # its settings are on the disk only after its last process has ended
    wine wineboot --init 9>&-
    wineserver -w
    : >"$WINEPREFIX/made"
  fi
  if wineserver -p20 9>&-; then wine wineboot 9>&-; fi
) 9>"$WINEPREFIX/lock" >/dev/null 2>&1
exec wine "$@"
