#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test with CTest.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
"$here/scripts/install-deps.sh"
"$here/scripts/build.sh" "$@"
build="${VELMORA_BUILD_DIR:-$here/build}"
cd "$build"
ctest --output-on-failure -j "$(nproc)"
