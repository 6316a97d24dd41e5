#!/usr/bin/env bash
# Builds the module and the host, then runs the host on the emulated
# notebook (scenario from EMULATED_NOTEBOOK, "default" when unset).
# Extra arguments go to the host, e.g. scripts/run.sh --scenario list
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake --preset release -DBUILD_TESTING=OFF >/dev/null
cmake --build --preset release --target battery_host battery_module >/dev/null
exec build/release/bin/battery_host "$@"
