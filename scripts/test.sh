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
