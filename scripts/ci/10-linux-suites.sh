#!/usr/bin/env bash
# The unit, contract and host suites in the dev build and again under
# AddressSanitizer/UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/../.."
for preset in dev asan; do
  echo "== $preset build and tests"
  cmake --preset "$preset" -DBUILD_TESTING=ON >/dev/null
  cmake --build --preset "$preset"
  ctest --preset "$preset"
done
