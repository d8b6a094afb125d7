#!/usr/bin/env bash
# Pictures of the workbench with a sample script run, taken on a real X server
# (Xvfb), written to build/screenshots/ (or the folder given).
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
build="${VELMORA_BUILD_DIR:-$here/build}"
out="${1:-$build/screenshots}"
cmake --build "$build" --target velmora-workbench-shot >/dev/null
home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
VELMORA_HOME="$home" QT_QPA_PLATFORM=xcb \
  xvfb-run -a -s "-screen 0 1600x1000x24" "$build/workbench/shot/velmora-workbench-shot" "$out"
