#!/usr/bin/env bash
# The Windows cross build with its export check.
set -euo pipefail
cd "$(dirname "$0")/../.."
bash scripts/check-windows-build.sh
