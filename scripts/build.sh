#!/usr/bin/env bash
# Configures and builds into build/ (or build-sanitize/ with --sanitize).
# Names after the options are targets: only they and what they need are
# built (scripts/run-drill.sh builds just the drill this way).
set -euo pipefail
cd "$(dirname "$0")/.."
dir=build
# KELP_WERROR=ON in the environment (the test command sets it) makes warnings errors.
flags=(-DKELP_WERROR="${KELP_WERROR:-OFF}")
if [ "${1:-}" = "--sanitize" ]; then
  dir=build-sanitize
  flags+=(-DKELP_SANITIZE=ON -DKELP_BUILD_BENCH=OFF)
  shift
fi
targets=()
for target in "$@"; do targets+=(--target "$target"); done
cmake -S . -B "$dir" "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)" "${targets[@]}"
