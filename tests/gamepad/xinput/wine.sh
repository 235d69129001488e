#!/bin/sh
# usage: wine.sh <prefix> <DLL overrides> <program> [argument...]
#        wine.sh <prefix>                           makes the prefix, once
set -eu
export WINEPREFIX="$1" WINEDEBUG=-all
unset DISPLAY WAYLAND_DISPLAY
shift
if [ $# -gt 0 ]; then
    export WINEDLLOVERRIDES="$1"
    shift
else
    [ ! -e "$WINEPREFIX/made" ] || exit 0
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    export WINEDLLOVERRIDES="mscoree,mshtml="
    set -- wineboot -i
fi
# Through a file: Wine's server lives on for a while and would keep a pipe to the caller open.
log="$WINEPREFIX/log-$$"
status=0
wine "$@" >"$log" 2>&1 </dev/null || status=$?
cat "$log"
rm "$log"
[ "$1" != wineboot ] || { [ "$status" -ne 0 ] || touch "$WINEPREFIX/made"; }
exit "$status"
