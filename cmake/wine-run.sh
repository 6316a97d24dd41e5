#!/bin/sh
# Runs a Windows program of the cross build under Debian's Wine, in a Wine
# prefix of its own so that the user's is never touched, quietly and without
# the installers Wine offers for .NET and HTML.
set -e
export WINEPREFIX="${BATTERY_WINEPREFIX:-${XDG_CACHE_HOME:-$HOME/.cache}/battery-wine}"
export WINEDEBUG="${WINEDEBUG:--all}"
export WINEDLLOVERRIDES="${WINEDLLOVERRIDES:-mscoree,mshtml=}"
# Wine makes the prefix itself but not the folders above it, which a fresh
# home lacks (no ~/.cache yet).
mkdir -p "$(dirname "$WINEPREFIX")"
exec /usr/lib/wine/wine64 "$@"
