#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
"$here/scripts/install-deps.sh"
"$here/scripts/build.sh"
build="${VELMORA_BUILD_DIR:-$here/build}"
if [ -x "$build/apps/cli/velmora-test" ]; then
  exec "$build/apps/cli/velmora-test" "$@"
fi
echo "Built the libraries; the headless runner is not part of this build yet."
