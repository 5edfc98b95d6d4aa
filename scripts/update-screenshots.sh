#!/usr/bin/env bash
# Plays the drill's flow test again (under the test's own X server) and
# copies the pictures it takes of the welcome, practice and results windows
# to docs/screenshots/, where the README shows them.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -f build/CMakeCache.txt ] || cmake -S . -B build >/dev/null
cmake --build build -j "$(nproc)" --target sumbrook test_drill_windows
(cd build/tests && rm -f screenshots/drill_*.png &&
  ../bin/test_drill_windows --gtest_filter='DrillWindows.RoundsPlayedWithMouseAndKeysEndInTheirResults')
for window in welcome practice results; do
  cp "build/tests/screenshots/drill_$window.png" docs/screenshots/
done
ls -l docs/screenshots/
