#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing need.
# Run as root; does nothing when everything is there already.
set -euo pipefail
packages=(
  build-essential cmake pkg-config
  libgtk2.0-dev libfontconfig-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libsndfile1 libasound2
  fonts-liberation
  xvfb xauth xdotool x11-utils
  python3 clang-format
  # zone rules for the date tests
  tzdata
  # the clipboard tests' outside reader and writer
  xclip
  # the print tests read their PDFs back
  poppler-utils
  # the database's reference engine for its corpus and benchmark; the volume
  # benchmark's archive to compare with
  sqlite3 libsqlite3-dev
  # the socket and serial tests' peers: a relay that also joins terminal
  # pairs, an HTTP client, pyserial
  socat curl python3-serial
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  if [ "$(id -u)" -ne 0 ]; then
    echo "install-deps: run as root to install: ${missing[*]}" >&2
    exit 1
  fi
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq "${missing[@]}"
fi
