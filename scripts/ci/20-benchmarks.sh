#!/usr/bin/env bash
# The benchmarks in a short mode, from the dev build.
set -euo pipefail
cd "$(dirname "$0")/../.."
if [[ -x build/dev/bin/battery_benchmarks ]]; then
  build/dev/bin/battery_benchmarks --benchmark_min_time=0.01
fi
