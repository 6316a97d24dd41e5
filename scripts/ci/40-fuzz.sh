#!/usr/bin/env bash
# Every fuzz target, built with clang, libFuzzer and the sanitizers, runs for
# a bounded time from its seeds. A finding fails the step; copy the input it
# names into tests/fuzz/regressions/<target>/ once it is fixed, so every build
# replays it. FUZZ_SECONDS sets the time per target (default 20).
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${FUZZ_SECONDS:-20}
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
build=build/fuzz
mkdir -p "$build/findings"
for seeds in "$build"/fuzz/*.seeds; do
  target=$(basename "$seeds" .seeds)
  work="$build/work/$target"
  mkdir -p "$work"
  mapfile -t folders <"$seeds"
  echo "== $target for ${seconds} s"
  # -timeout: one input taking longer is a hang; the sanitizers report leaks.
  if ! "$build/bin/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
      -print_final_stats=1 -artifact_prefix="$build/findings/$target-" \
      "$work" "${folders[@]}" >"$build/findings/$target.log" 2>&1; then
    tail -n 60 "$build/findings/$target.log"
    echo "$target found a failure; its input is under $build/findings/" >&2
    exit 1
  fi
  # The figures are for the reader; a run that printed none has already
  # passed, so their absence does not fail the step.
  grep -E "stat::number_of_executed_units|stat::average_exec_per_sec" \
    "$build/findings/$target.log" || true
done
