#!/usr/bin/env bash
# Installs what is needed, then builds and runs the whole suite twice: a plain
# build, and a build with the address and undefined-behaviour sanitizers.
# Tests that need a display start their own X server; none is needed here.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
unset DISPLAY
export KELP_WERROR=ON
for mode in plain sanitize; do
  if [ "$mode" = plain ]; then scripts/build.sh; dir=build; else scripts/build.sh --sanitize; dir=build-sanitize; fi
  echo "== tests ($mode build)"
  (cd "$dir" && ctest --output-on-failure -j "$(nproc)")
done
# Threads hand the run lock from one to the next: the thread sanitizer
# checks that exactly one of them touches the runtime at a time.
echo "== thread tests (thread sanitizer build)"
cmake -S . -B build-tsan -DKELP_TSAN=ON -DKELP_BUILD_BENCH=OFF -DKELP_WERROR=ON >/dev/null
cmake --build build-tsan -j "$(nproc)" --target test_threads
(cd build-tsan && ctest --output-on-failure -L threads)
