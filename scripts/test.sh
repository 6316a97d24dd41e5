#!/usr/bin/env bash
# Builds everything and runs every test: the steps under scripts/ci/, in the
# order of their numbers (Linux suites, benchmarks, Windows build, ...). One
# step can be run alone, e.g. bash scripts/ci/30-windows.sh, once set-up ran.
#
# The steps run with a home of their own, empty at the start and removed at
# the end, so that nothing in the developer's home (a ~/.cache, a Wine
# prefix, a history database) can hide a step a fresh machine would miss.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh --all

home=$(mktemp -d -t battery-home.XXXXXX)
trap 'rm -rf "$home"' EXIT
# The XDG folders are named but not made: a step needing one makes it.
export HOME=$home XDG_CONFIG_HOME=$home/.config XDG_CACHE_HOME=$home/.cache \
  XDG_DATA_HOME=$home/.local/share XDG_STATE_HOME=$home/.local/state

for step in scripts/ci/[0-9][0-9]-*.sh; do
  echo "== ${step}"
  start=$SECONDS
  bash "$step"
  echo "== ${step} took $((SECONDS - start)) s"
done
