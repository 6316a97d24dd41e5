#!/usr/bin/env bash
# Builds and runs every test: the unit, contract and host suites in the dev
# build and again under AddressSanitizer/UndefinedBehaviorSanitizer, the
# benchmarks in a short mode, and the Windows cross build with its export
# check.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh --windows

for preset in dev asan; do
  echo "== $preset build and tests"
  cmake --preset "$preset" -DBUILD_TESTING=ON >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset"
done

if [[ -x build/dev/bin/battery_benchmarks ]]; then
  echo "== benchmarks (short)"
  build/dev/bin/battery_benchmarks --benchmark_min_time=0.01
fi

echo "== Windows build"
bash scripts/check-windows-build.sh
