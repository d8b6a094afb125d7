#!/usr/bin/env bash
# Configures and builds Velmora into build/ (or $VELMORA_BUILD_DIR).
# Extra arguments go to CMake, e.g. -DVELMORA_SANITIZE=ON.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
build="${VELMORA_BUILD_DIR:-$here/build}"
cmake -S "$here" -B "$build" -G Ninja "$@" >/dev/null
cmake --build "$build"
