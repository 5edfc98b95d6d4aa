#!/usr/bin/env bash
# Configures and builds into build/ (or build-sanitize/ with --sanitize).
set -euo pipefail
cd "$(dirname "$0")/.."
dir=build
# KELP_WERROR=ON in the environment (the test command sets it) makes warnings errors.
flags=(-DKELP_WERROR="${KELP_WERROR:-OFF}")
if [ "${1:-}" = "--sanitize" ]; then
  dir=build-sanitize
  flags+=(-DKELP_SANITIZE=ON -DKELP_BUILD_BENCH=OFF)
fi
cmake -S . -B "$dir" "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)"
