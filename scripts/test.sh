#!/usr/bin/env bash
# Builds everything and runs every test: the steps under scripts/ci/, in the
# order of their numbers (Linux suites, benchmarks, Windows build, ...). One
# step can be run alone, e.g. bash scripts/ci/30-windows.sh, once set-up ran.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh --all

for step in scripts/ci/[0-9][0-9]-*.sh; do
  echo "== ${step}"
  start=$SECONDS
  bash "$step"
  echo "== ${step} took $((SECONDS - start)) s"
done
