#!/usr/bin/env bash
# Installs what is needed, builds, and starts the drill.  Arguments are
# passed to the drill (for instance --print-round --mode 1 --length 5).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh sumbrook
exec build/bin/sumbrook "$@"
