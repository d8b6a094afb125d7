#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main job.
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
"$here/scripts/install-deps.sh"
"$here/scripts/build.sh"
build="${VELMORA_BUILD_DIR:-$here/build}"
runner="$build/apps/cli/velmora-test"
if [ ! -x "$runner" ]; then
  echo "run.sh: the build did not produce $runner" >&2
  exit 2
fi
# The first run seeds the home folder with the sample rebar scripts and their
# cases; every run tests every script and prints the summary.
exec "$runner" "$@"
