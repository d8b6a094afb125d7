#!/usr/bin/env bash
# Installs every Debian and npm package Velmora needs to build, test and benchmark.
# Idempotent and non-interactive; safe to run again.
set -euo pipefail

SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
APT=(-o DPkg::Lock::Timeout=600 -y -q)
export DEBIAN_FRONTEND=noninteractive

PACKAGES=(
  build-essential cmake ninja-build pkg-config git
  qt6-base-dev libqt6sql6-sqlite libqt6sql6-psql libqscintilla2-qt6-dev
  libmozjs-102-dev libmuparser-dev mdbtools mdbtools-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-14-dev
  postgresql postgresql-client
  openjdk-17-jre-headless chromium
  lcov
  xdg-utils
  xvfb xauth fonts-wqy-microhei wmctrl
)

# Node.js may already come from elsewhere (with its own npm); only add Debian's when absent.
command -v npm >/dev/null 2>&1 || PACKAGES+=(nodejs npm)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ "${#missing[@]}" -gt 0 ]; then
  $SUDO apt-get "${APT[@]}" update
  $SUDO apt-get "${APT[@]}" install --no-install-recommends "${missing[@]}"
fi

# JSCover (coverage server for the generated harness) is an npm package kept in tools/.
here="$(cd "$(dirname "$0")/.." && pwd)"
if [ ! -f "$here/tools/node_modules/jscover/target/dist/JSCover-all.jar" ] && \
   [ -z "$(find "$here/tools/node_modules/jscover" -name 'JSCover-all.jar' 2>/dev/null | head -1)" ]; then
  (cd "$here/tools" && npm install --no-audit --no-fund --loglevel=error)
fi
