#!/usr/bin/env bash
# The host on this machine over a two-battery umockdev testbed: wall time of
# the quick run (median of five repetitions) and sysfs reads per refresh.
set -euo pipefail
cd "$(dirname "$0")/../.."
if [[ -x build/dev/bin/this_machine_benchmarks ]]; then
  build/dev/bin/this_machine_benchmarks --benchmark_min_time=0.01
fi
