#!/usr/bin/env bash
# The Windows test programs of the cross build (30-windows.sh builds them
# beside the DLL) run under Wine, each test as its own Windows process.
set -euo pipefail
cd "$(dirname "$0")/../.."
cmake --preset mingw >/dev/null
cmake --build --preset mingw
# A fresh Wine prefix is made once, before tests start side by side; its
# chatter is shown only when making it fails.
log=build/mingw/wineboot.log
if ! cmake/wine-run.sh wineboot --init >"$log" 2>&1; then
  cat "$log" >&2
  echo "wineboot could not make the Wine prefix" >&2
  exit 1
fi
# Wine now and then fails to start a process on a busy machine (the test ends
# at once, with no output); a test is tried up to three times, so only a
# failure that repeats fails the step.
ctest --preset mingw --repeat until-pass:3
